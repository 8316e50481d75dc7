// The decoder on the radio: what it is told, and how the sound card comes and goes.
#include "core/frmMain.h"
#include "support/Product.h"
#include "support/ScopedFlag.h"

namespace quorl {

DreamLinks frmMain::LinksOfDream() {
  DreamLinks links;
  links.CaptureDevice = [this] { return radio_.SoundCard().CurrentCaptureDevice; };
  links.PlaybackDevice = [this] { return radio_.UsualPlaybackDevice(); };
  links.TunedFrequency = [this] { return radio_.Tuning().Tune().Wanted(); };
  links.LowSideLO = [this] { return radio_.Rx.Vars.LowSideLO; };
  links.Log = [this](const std::string& line) { log_.AddLog(line); };
  return links;
}

HandOverLinks frmMain::LinksOfHandOver() {
  HandOverLinks links;
  links.InDRM = [this] { return radio_.Rx.Vars.CurrentDemodMode == DemodMode::DRM; };
  links.IsBusy = [this] { return loading_ || switching_ || radio_.Rx.Vars.DSPRunning; };
  links.ReleaseSound = [this] { ReleaseSound(); };
  links.OpenSound = [this] { OpenSound(); };
  links.Changed = [this] {
    decoderNote_.SetSoundReleased(handOver_.IsSoundReleased());
    recorder_.ShowState();
  };
  return links;
}

void frmMain::ChooseDevices() {
  radio_.NoteDevices();
  const std::string device = handOver_.PlaysOn();
  if (radio_.ChooseDevices(device)) return;
  const std::string text =
      "The playback device for DRM mode, \"" + device + "\", is not there: the usual one plays.";
  log_.AddLog(text);
  machine_.Boxes.ShowNotice({.Text = text, .Title = kProductName, .Icon = MessageIcon::Warning});
}

// A click on the power that comes meanwhile is carried out behind it, as one that comes while the power is
// being switched.
void frmMain::ReleaseSound() {
  const ScopedFlag guard(switching_);
  radio_.NoteDevices();
  radio_.Stop();
  radio_.SoundCard().ReleaseDevices();
  RestMeters();
  FollowPower();
}

void frmMain::OpenSound() {
  const ScopedFlag guard(switching_);
  radio_.Stop();
  radio_.SoundCard().ReleaseDevices();
  ChooseDevices();
  if (on_) StartSound();
  FollowPower();
}

}  // namespace quorl
