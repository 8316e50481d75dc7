// The settings of the main panel: who hands in rows, when they are stored.
#include "core/frmMain.h"

namespace quorl {

namespace {

constexpr int kSaveInterval = 60000;  // ms: what a power cut may cost at most
constexpr int kSaveRetry = 100;       // ms

constexpr int kStandardSize = 1;
// The keys of optDisplaySize's buttons; the last one that is set counts.
constexpr std::array<const char*, DisplaySizeTexts.size()> kSizeKeys{"ExtendedDisplay", "StandardDisplay",
                                                                     "CompactDisplay", "FullDisplay"};

}  // namespace

void frmMain::AddSettings() {
  wantedSize_ = kStandardSize;
  for (int size = 0; size < optDisplaySize_.Count(); ++size) {
    settings_.Add<bool>(
        kSizeKeys[static_cast<std::size_t>(size)], [this, size] { return optDisplaySize_.Pressed() == size; },
        [this, size](bool chosen) {
          if (chosen && size != kStandardSize) wantedSize_ = size;
        });
  }
  stored_.AddSettings(settings_, early_);
  scheme_.AddSettings(early_);
  radio_.AddSettings(settings_);
  radio_.Rx.AddSettings(settings_, early_);
  scrollables_.AddSettings(settings_);
  tuning_.AddSettings(settings_, early_);
  stats_.AddSettings(settings_);
  smeter_.AddSettings(settings_);
  scope_.AddSettings(settings_);
  memories_.AddSettings(settings_);
  memories_.AddOwnSettings(ownMemories_);
  wavFile_.AddSettings(wavFileRows_);
  recorder_.AddOwnSettings(ownRecorder_);
  timer_.AddSettings(timerRows_);
  remote_.AddSettings(remoteRows_);
  dream_.AddSettings(settings_);
  handOver_.AddSettings(settings_);
  notch_.AddSettings(settings_);
  nb_.AddSettings(settings_);
  agc_.AddSettings(settings_);
  volume_.AddSettings(settings_);
}

void frmMain::RestoreSettings() {
  log_.AddLog("RestoreSettings : Start");
  settings_.Read(store_);
  for (SettingsTable* own : {&ownMemories_, &wavFileRows_, &ownRecorder_, &timerRows_, &remoteRows_})
    own->Read(store_);
  scope_.ReadSettings(store_);
}

void frmMain::NoteWindowSize(std::int32_t width, std::int32_t height) {
  stored_.WindowWidth = width;
  stored_.WindowHeight = height;
}

void frmMain::SaveSettings() {
  radio_.NoteDevices();
  config_.Colours.WithColoursInForce([this] { WriteSettings(); });
}

void frmMain::WriteSettings() {
  early_.Write(store_);
  settings_.Write(store_);
  recorder_.WithOwnChoice([this] {
    for (SettingsTable* own : {&ownMemories_, &wavFileRows_, &ownRecorder_, &timerRows_, &remoteRows_})
      own->Write(store_);
  });
  scope_.WriteSettings(store_);
}

void frmMain::StartSaving() {
  tmrSaveSettings_.SetInterval(kSaveInterval);
  tmrSaveSettings_.SetEnabled(true);
}

// On the disk, too: what a power cut would cost otherwise. While the sound plays the disk is not waited for.
void frmMain::SaveNow() {
  if (loading_ || unloaded_ || played_.IsPlaying()) return;
  // A step holds the chip's refreshing back until it has been sent: that is not what the user chose.
  const bool sending = radio_.VFO().IsStepping();
  tmrSaveSettings_.SetInterval(sending ? kSaveRetry : kSaveInterval);
  if (sending) return;
  SaveSettings();
  radio_.VFO().SaveSettings();
  const auto tell = [this](const Failure& failure) {
    if (failure) log_.AddLog(failure->Text);
  };
  memories_.Save();
  if (on_) return store_.SaveBeside(beside_, tell);
  machine_.Beside.Finish();
  tell(store_.Save());
}

}  // namespace quorl
