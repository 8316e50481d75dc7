#include "remote/RigctlCommands.h"

#include <algorithm>
#include <cstdio>
#include <optional>
#include <string>

#include "support/Text.h"

namespace quorl {

namespace {

using Parameters = RigctlParameters;

RigctlCode CodeOf(RemoteOutcome outcome) {
  switch (outcome) {
    case RemoteOutcome::OutOfRange:
      return RigctlCode::Invalid;
    case RemoteOutcome::Refused:
      return RigctlCode::Refused;
    case RemoteOutcome::Unreachable:
      return RigctlCode::Unreachable;
    case RemoteOutcome::Done:
      break;
  }
  return RigctlCode::Done;
}

std::string HertzText(double hertz) {
  char text[32];
  std::snprintf(text, sizeof text, "%.0f", hertz);
  return text;
}

RigctlCode GetFrequency(RemoteRadio& radio, const Parameters&, RigctlAnswer& answer) {
  answer.Value("Frequency", HertzText(radio.Frequency()));
  return RigctlCode::Done;
}

RigctlCode SetFrequency(RemoteRadio& radio, const Parameters& parameters, RigctlAnswer&) {
  const std::optional<double> hertz = ParseDouble(parameters[0]);
  return hertz ? CodeOf(radio.Tune(*hertz)) : RigctlCode::Invalid;
}

RigctlCode CheckVFO(RemoteRadio&, const Parameters&, RigctlAnswer& answer) {
  answer.Value("ChkVFO", "0");
  return RigctlCode::Done;
}

RigctlCode Quit(RemoteRadio&, const Parameters&, RigctlAnswer&) {
  return RigctlCode::Done;
}

constexpr RigctlCommand kCommands[] = {
    {'f', "get_freq", 0, GetFrequency},
    {'F', "set_freq", 1, SetFrequency},
    {'\0', "chk_vfo", 0, CheckVFO, false},
    {'q', "quit", 0, Quit, true, true},
};

template <typename Predicate>
const RigctlCommand* Find(Predicate predicate) {
  const auto* const found = std::find_if(std::begin(kCommands), std::end(kCommands), predicate);
  return found == std::end(kCommands) ? nullptr : found;
}

}  // namespace

const RigctlCommand* FindRigctlCommand(char letter) {
  return Find([letter](const RigctlCommand& command) { return letter != 0 && command.Letter == letter; });
}

const RigctlCommand* FindRigctlCommand(std::string_view name) {
  return Find([name](const RigctlCommand& command) { return command.Name == name; });
}

}  // namespace quorl
