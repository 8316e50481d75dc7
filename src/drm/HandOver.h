// Entering and leaving DRM mode: sound card and decoder change hands.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "config/SettingsTable.h"
#include "controls/Timer.h"
#include "drm/modDream.h"

namespace quorl {

// What the radio does for it.
struct HandOverLinks {
  std::function<bool()> InDRM = [] { return false; };
  // The sound can't be touched now: the power is being switched, or the start isn't done.
  std::function<bool()> IsBusy = [] { return false; };
  std::function<void()> ReleaseSound = [] {};  // stops it, and lets go of its devices
  // Lets go of what is open and, where the power is on, opens the devices of now, by their names. Failing is
  // told, and ends in Off.
  std::function<void()> OpenSound = [] {};
  std::function<void()> Changed = [] {};  // whose the sound card is, perhaps
};

// Whoever changes the mode tells it here; the work is done from the queue, when the change with all that
// belongs to it is through, and one at a time. Leaving, the sound card is opened when a decoder that was
// asked to close has gone, or has had its three seconds.
class HandOver {
 public:
  // Everything outlives the object.
  HandOver(EventQueue& queue, modDream& dream, HandOverLinks links);

  bool CloseSoundcardOnDRM = false;  // the decoder has the sound card to itself
  // Name of the device that DRM mode plays on, such as one without a loudspeaker that the decoder hears;
  // empty for the usual one.
  std::string PlaybackDevice;

  void AddSettings(SettingsTable& table);

  // The mode is another one now.
  void ModeChanged();
  // The power goes on: whether the sound card stays closed, as it is the decoder's.
  bool KeepsSound();
  // The sound card is the decoder's: whoever else wants a device of it leaves it alone.
  bool IsSoundReleased() const { return released_; }
  // What DRM mode plays on, while it is entered; else, and for the usual device, empty.
  std::string PlaysOn() const { return entered_ ? playsOn_ : std::string(); }
  // The program ends: nothing changes hands any more.
  void Stop();

  Timer tmrHandOver;

 private:
  void tmrHandOver_Timer();
  void Enter();
  void Leave();

  modDream& dream_;
  HandOverLinks links_;
  std::string playsOn_;
  bool entered_ = false;
  bool starts_ = false;  // the decoder is to be started
  bool released_ = false;
  bool inTimer_ = false, stopped_ = false;
};

}  // namespace quorl
