// At the start: a recording that a program left behind unsaved is offered to who sits there.
#pragma once

#include <functional>
#include <string>

#include "recorder/clsWavFile.h"
#include "recorder/journal/Recovery.h"

namespace quorl {

// Accepted, the deck holds it as if it had just been stopped. Refused, it stays where it is and is offered
// again at the next start, until a new recording takes its place (clsWavFile::IsLeftBehind). Where the timer
// is to record and nobody answers, it is taken as if it had been accepted.
class RecoveryOffer {
 public:
  // Everything outlives the offer.
  RecoveryOffer(clsWavFile& deck, const WavFileMachine& machine, const std::string& folder);

  std::function<void()> OnAdopted = [] {};
  std::function<void(const std::string&)> Log = [](const std::string&) {};

  // Returns at once; the question comes by the queue. What another program is recording is left alone.
  void Look();
  // Something lies there, or may lie there: the folder is not free for a new recording without a question.
  bool IsOpen() const;
  // Onto the deck with it, without an answer or against a refusal. Returns at once.
  void Take();

 private:
  enum class State { None, Looking, Asking, Left, Mending };

  void Found(const FoundRecording& found);
  void Mend();
  void Mended(const FoundRecording& found);
  void Tell(const Error& fault);
  bool Asks(const FoundRecording& found);

  clsWavFile& deck_;
  WavFileMachine machine_;
  RecordingParts parts_;
  Recovery recovery_;
  State state_ = State::None;
};

}  // namespace quorl
