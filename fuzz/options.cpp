// Any words at all as the options of a reception: a receiver set within its limits, or a refusal in one line.
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "Demand.h"
#include "ReceiveOptions.h"
#include "platform/linux/system/LinuxClock.h"
#include "receiver/Receiver.h"

namespace {

using quorl::fuzz::Demand;

// One word a line; the parser takes them from the back.
std::vector<std::string> WordsOf(const std::uint8_t* data, std::size_t size) {
  std::vector<std::string> words(1);
  for (std::size_t i = 0; i < size; ++i) {
    if (data[i] == '\n') {
      words.insert(words.begin(), "");
    } else {
      words.front() += static_cast<char>(data[i]);
    }
  }
  return words;
}

void Apply(const quorl::cli::ReceiveOptions& options) {
  const quorl::LinuxClock clock;
  quorl::NoSoundOutput sound;
  quorl::NoRecorder recorder;
  quorl::Receiver receiver(clock, sound, recorder, [] {});
  quorl::cli::ApplyReceiveOptions(options, receiver);
  const quorl::PublicVars& vars = receiver.Vars;
  Demand(vars.CurrentDemodMode >= 0 && vars.CurrentDemodMode < quorl::DemodMode::Count);
  Demand(vars.CurrentIFFilterMode >= 0 && vars.CurrentIFFilterMode < quorl::IFFilterMode::Count);
  Demand(vars.FilterLo <= vars.FilterHi);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  CLI::App parser("receive");
  quorl::cli::ReceiveOptions options;
  quorl::cli::AddReceiveOptions(parser, options);
  try {
    parser.parse(WordsOf(data, size));
  } catch (const CLI::Error& refusal) {
    Demand(refusal.get_exit_code() == 0 || !std::string(refusal.what()).empty());
    return 0;
  }
  Apply(options);
  return 0;
}
