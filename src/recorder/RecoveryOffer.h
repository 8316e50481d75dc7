// At the start: a recording that a program left behind unsaved is offered to who sits there.
#pragma once

#include <functional>
#include <string>

#include "recorder/clsWavFile.h"
#include "recorder/journal/Recovery.h"

namespace quorl {

// Accepted, the deck holds it as if it had just been stopped. Refused, it stays where it is and is offered
// again at the next start, until a new recording takes its place (clsWavFile::IsLeftBehind).
class RecoveryOffer {
 public:
  // Everything outlives the offer.
  RecoveryOffer(clsWavFile& deck, const WavFileMachine& machine, const std::string& folder);

  std::function<void()> OnAdopted = [] {};
  std::function<void(const std::string&)> Log = [](const std::string&) {};

  // Returns at once; the question comes by the queue. What another program is recording is left alone.
  void Look();
  // From then until it is decided what becomes of it: the folder is not free before.
  bool IsOpen() const { return open_; }

 private:
  bool Found(const FoundRecording& found);  // whether it is being mended now
  void Mended(const FoundRecording& found);
  void Tell(const Error& fault);
  bool Asks(const FoundRecording& found);

  clsWavFile& deck_;
  WavFileMachine machine_;
  RecordingParts parts_;
  Recovery recovery_;
  bool open_ = false;
};

}  // namespace quorl
