// The one way to the tuned frequency, for all who tune: wheel, keys, dial, encoder, and whoever names a
// frequency outright.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

#include "tuning/clsVFO.h"

namespace quorl {

// A frequency takes its time on the wire, and the event queue runs meanwhile. What is asked for then is kept
// and carried out when the frame is done: steps add up, a frequency asked for outright takes the place of
// all that waits, and steps after it count from there. A verb returns when its wish has been carried out, or
// noted where a frame is out. When all is done the chip holds what the VFO's fields ask for.
// Frequencies are dHz (tenths of a hertz). Main thread.
class Tuner {
 public:
  explicit Tuner(std::shared_ptr<clsVFO> vfo);
  ~Tuner();
  Tuner(const Tuner&) = delete;
  Tuner& operator=(const Tuner&) = delete;

  clsVFO& VFO() const { return *vfo_; }
  // The frequency that stands when all that waits has been carried out: what a display shows.
  std::int32_t Wanted() const { return played_.value_or(OnAir()); }
  // What the samples that come in are tuned to.
  std::int32_t Tuned() const { return played_.value_or(vfo_->TunedFrequency()); }
  // The oscillator's frequency that goes with what is wanted on the air.
  std::int32_t WantedOscillator() const { return vfo_->OscillatorFor(OnAir()); }

  // From the grid point next to what is wanted (clsVFO::Inc_Freq) by `dHz`, up or down; 0 does nothing.
  // Stops at 0 and at Highest(). Returns what is wanted then.
  std::int32_t StepBy(double dHz);
  // To that very frequency, off the grid too; stops likewise. Returns what is wanted then.
  std::int32_t MoveTo(std::int32_t dHz);
  // The oscillator's side; tunes anew.
  void SetHiSideLO(bool high);
  // A recording of the band plays: its frequency is the one that is wanted, and until EndPlay nobody tunes
  // (OnRefused) and nothing is sent. Again for each frequency of the recording.
  void Play(std::int32_t dHz);
  bool IsPlaying() const { return played_.has_value(); }
  // The radio is back on the air. What waited is carried out.
  void EndPlay();
  // The highest frequency that chip and IF can do. A clock too low for the IF can do none: then it is the
  // highest one that the VFO notes.
  std::int32_t Highest() const;

  // Sends what the VFO asks for, once more where the chip has it already: clock, IF or side are others. While
  // another frame is out, or a recording plays, that is left to Settle.
  void Refresh();
  // A verb is under way: what it sends may be on the wire.
  bool IsWorking() const { return working_; }
  // Sends the chip's last frame once more; nothing while another one is out.
  void Resend();
  // The chip may have lost all that it held: initialises it, and sends what the VFO asks for. Waits for a
  // frame that is out.
  void Revive();
  // Sends what the VFO asks for where the chip holds something else and can be reached. Once: what fails is
  // for the next call.
  void Settle();

  std::function<void()> OnWanted = [] {};   // Wanted() may have changed; before anything is sent
  std::function<void()> OnStop = [] {};     // a wish went beyond Highest()
  std::function<void()> OnRefused = [] {};  // a wish while a recording plays

 private:
  struct Wish {
    std::int32_t Frequency;
    bool IsStep;
  };

  std::int32_t OnAir() const { return wish_ ? wish_->Frequency : vfo_->TunedFrequency(); }
  std::int32_t Ask(double dHz, bool isStep);
  void CarryOut(const Wish& wish);
  bool IsChipAstray() const;

  std::shared_ptr<clsVFO> vfo_;
  std::optional<Wish> wish_;
  std::optional<std::int32_t> played_;  // dHz
  bool chipLost_ = false;
  bool working_ = false;
};

}  // namespace quorl
