// How an answer is written: bare values and codes, or with names where the client asks for them by a sign.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace quorl {

// The numbers of the protocol's "RPRT".
enum class RigctlCode : std::int8_t {
  Done = 0,
  Invalid = -1,       // a parameter that is none, or that the radio can't do
  Unreachable = -6,   // the device doesn't answer
  Refused = -9,       // not now
  Unavailable = -11,  // this radio has no such thing
};

// One command's answer, appended to `answers` part by part.
class RigctlAnswer {
 public:
  // `separator` goes between the parts of an answer with names; 0 for one without.
  RigctlAnswer(std::string& answers, char separator) : answers_(answers), separator_(separator) {}

  // The command and its parameters, before anything else.
  void Head(std::string_view name, std::string_view parameters);
  // A value. An empty name: it has none in either form.
  void Value(std::string_view name, std::string_view text);
  // The end of the answer. Bare values are an answer by themselves, where all went well.
  void End(RigctlCode code);
  // The end of an answer that has no code in either form.
  void EndBare();
  bool HasNames() const { return separator_ != 0; }

 private:
  std::string& answers_;
  char separator_;
  bool hasValues_ = false;
};

}  // namespace quorl
