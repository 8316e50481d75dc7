// What the configuration window does to the whole panel.
#include "core/frmMain.h"

#include "support/ScopedFlag.h"

namespace quorl {

ConfigLinks frmMain::LinksOfConfig() {
  ConfigLinks links{.Panel = context_,
                    .Queue = machine_.Queue,
                    .Boxes = machine_.Boxes,
                    .Store = store_,
                    .Serial = machine_.Serial,
                    .Storage = machine_.Storage,
                    .Chain = radio_.Tuning(),
                    .Tuning = tuning_,
                    .SoundCard = radio_.SoundCard(),
                    .Scope = scope_,
                    .Scheme = scheme_,
                    .Dream = dream_,
                    .Decoder = handOver_,
                    .Server = server_,
                    .Remote = remote_,
                    .InterfaceType = stored_.IFType,
                    .AutoTrackPresets = memories_.AutoTrackPresets,
                    .FormCaptionOffOnPwrOn = stored_.FormCaptionOffOnPwrOn,
                    .AutoStartSDR = stored_.AutoStartSDR,
                    .Version = options_.Version,
                    .ThemeFolder = options_.ApplicationFolder + "/themes"};
  links.IsSwitching = [this] { return switching_ || loading_; };
  links.LeaveRecording = [this] { played_.End(); };
  links.ExchangeBoard = [this](std::int32_t model, std::int32_t type) { ExchangeBoard(model, type); };
  links.UsualPlaybackDevice = [this] { return radio_.UsualPlaybackDevice(); };
  links.ChangeDevices = [this](std::int32_t capture, std::int32_t playback) {
    ChangeDevices(capture, playback);
  };
  links.NoteDevices = [this](std::int32_t capture, std::int32_t playback) {
    radio_.NoteDevices(capture, playback);
  };
  links.IsSoundCardLent = [this] { return handOver_.IsSoundReleased(); };
  links.Calibrate = [this](std::function<void(bool)> closed) { calibrate_.Open(std::move(closed)); };
  links.OpenFirstStart = [this] {
    if (!OnFirstStart()) setup_.Ask();
  };
  links.OpenGuide = [this] { OnGuide(); };
  links.CaptionChanged = [this] { RemoveCaption(on_ && stored_.FormCaptionOffOnPwrOn); };
  links.PaintPanel = [this] { PaintPanel(); };
  links.SaveSettings = [this] {
    radio_.Tuning().Save();
    SaveNow();
  };
  return links;
}

ConfigSetupLinks frmMain::LinksOfSetup() {
  LevelLinks level;
  level.RadioHears = [this](int device) {
    const QUORLDX8& card = radio_.SoundCard();
    return card.InAction && card.CurrentCaptureDevice == device;
  };
  level.FreeInput = [this] {
    if (switching_ || radio_.SoundCard().InAction) return !switching_;
    radio_.SoundCard().ReleaseDevices();
    return true;
  };
  level.IsLent = [this] { return handOver_.IsSoundReleased(); };
  return {machine_.Sound, machine_.Queue, machine_.Serial, radio_.Tuning(), store_, std::move(level)};
}

void frmMain::ConnectSetup() {
  radio_.OnBlockIn = [this](const std::int16_t* left, const std::int16_t* right) {
    setup_.NoteBlock(left, right, SamplesPerEvent);
  };
  radio_.SoundCard().OnPrepare = [this] { setup_.LetGo(); };
}

void frmMain::ExchangeBoard(std::int32_t SDRModelNo, std::int32_t interfaceType) {
  LetGoOfTuning();
  Raise(options_.OnBoard, SDRModelNo);
  stored_.IFType = interfaceType;
  radio_.ExchangeBoard(SDRModelNo, interfaceType, tuning_.ShaftEnabled);
  TakeTuning();
}

// A click on the power that comes meanwhile is carried out when the devices are there.
void frmMain::ChangeDevices(std::int32_t capture, std::int32_t playback) {
  Failure failure;
  {
    const ScopedFlag guard(switching_);
    failure = radio_.ChangeDevices(capture, playback);
  }
  if (failure) {
    LogSoundFailure(*failure);
    optPwr_.Press(1);
  }
  SwitchPower(powerWanted_);
}

void frmMain::PaintPanel() {
  form_.BackColour = scheme_.SDRBackgroundColour;
  colours_.ReColour();
  scrollables_.DarkenControls();
  colours_.UnFocusFrames();
}

}  // namespace quorl
