// Any bytes at all from a client: what is answered is bounded, and the same in whatever pieces they come.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>

#include "Demand.h"
#include "remote/RememberedRadio.h"
#include "remote/RigctlSession.h"

namespace {

using quorl::RigctlSession;
using quorl::fuzz::Demand;

// All that a client hears that sends these bytes in pieces of that size and reads after each.
std::string Conversation(const std::string& bytes, std::size_t piece) {
  quorl::test::RememberedRadio radio;
  radio.Hertz = 7050000;
  RigctlSession session(radio);
  std::string waiting, answers, heard;
  for (std::size_t at = 0; at < bytes.size() && !session.Ended(); at += piece) {
    waiting.append(bytes, at, piece);
    std::size_t taken = 1;
    while (taken != 0) {
      taken = session.Take(waiting, answers);
      Demand(taken <= waiting.size());
      Demand(answers.size() <= RigctlSession::kMostWaiting);
      Demand(answers.empty() || answers.back() == '\n');
      waiting.erase(0, taken);
      if (taken == 0 && answers.empty()) break;
      // Where a full buffer stopped the session, reading lets it go on.
      if (!answers.empty()) taken = 1;
      heard += answers;
      answers.clear();
    }
    Demand(session.Ended() || waiting.size() <= RigctlSession::kLongestLine);
    Demand(session.Ended() || waiting.find('\n') == std::string::npos);
  }
  Demand(radio.Hertz >= 0 && radio.Hertz <= radio.Highest);
  Demand(radio.Place >= 0 && radio.Place <= 1);
  Demand(radio.Width >= 0);
  return heard;
}

// The same without reading: it stands still in time.
void DemandBoundUnread(const std::string& bytes) {
  quorl::test::RememberedRadio radio;
  RigctlSession session(radio);
  std::string waiting = bytes, answers;
  while (const std::size_t taken = session.Take(waiting, answers)) waiting.erase(0, taken);
  Demand(answers.size() <= RigctlSession::kMostWaiting);
}

}  // namespace

// The first byte is the size of the pieces.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const std::string bytes(reinterpret_cast<const char*>(data + 1), size - 1);
  const std::string whole = Conversation(bytes, std::max<std::size_t>(bytes.size(), 1));
  Demand(Conversation(bytes, std::size_t{data[0]} + 1) == whole);
  DemandBoundUnread(bytes);
  return 0;
}
