// What the timer asks of the recorder's strip.
#include <utility>

#include "recorder/TimerProgramme.h"
#include "recorder/panel/RecorderPanel.h"

namespace quorl {

void RecorderPanel::Choose(const Choice& choice) {
  deck_.SetDecimator(choice.Decimator);
  deck_.RecordIF = choice.IF;
}

void RecorderPanel::RecordAt(std::int32_t rate) {
  if (!deck_.IsClosed()) return;
  own_ = Chosen();
  if (rate == TimerProgramme::kIF) {
    deck_.RecordIF = true;
  } else {
    Choose({1 << rate, false});
  }
  cmdWavCtls_Click(WavCtl::Record);
}

void RecorderPanel::TakeEmptyDeck() {
  samples_ = 0;
  plays_ = false;
  note_.clear();
  ShowTracks(false);
  Tracks.Clear();
  ShowState();
}

void RecorderPanel::WithOwnChoice(const std::function<void()>& write) {
  if (!own_) return write();
  const Choice timed = Chosen();
  Choose(*own_);
  write();
  Choose(timed);
}

}  // namespace quorl
