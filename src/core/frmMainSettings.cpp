// The settings of the main panel: the table, reading and writing it.
#include "core/frmMain.h"
#include "support/Rounding.h"

namespace quorl {

namespace {

constexpr int kSaveInterval = 60000;  // ms: what a power cut may cost at most
constexpr int kSaveRetry = 100;       // ms

}  // namespace

std::vector<StoredSetting> frmMain::SettingsTable() {
  PublicVars& vars = radio_->Rx.Vars;
  MainOptions& o = stored_;
  std::vector<StoredSetting> table{
      {"SDRModelNo", true, &vars.SDRModelNo},
      {"CurrentMainBandIndex", true, &vars.CurrentMainBandIndex},
      {"NoiseFloor", true, &o.NoiseFloor},
      {"ExtendedDisplay", true, &o.ExtendedDisplay},
      {"StandardDisplay", true, &o.StandardDisplay},
      {"CompactDisplay", true, &o.CompactDisplay},
      {"FullDisplay", true, &o.FullDisplay},
      {"SpectrumAnalyserOn", true, &o.SpectrumAnalyserOn},
      {"PerfStatsOn", true, &o.PerfStatsOn},
      {"UseSPL", true, &radio_->Rx.Settings.UseSPL},
      {"ShaftAutoRate", true, &tuning_->ShaftAutoRateOn},
      {"EnableShaftEncoder", true, &tuning_->ShaftEnabled},
      {"ScrollWheelEnableOverScope", true, &o.ScrollWheelEnableOverScope},
      {"CurrentPlaybackDevice", true, &o.CurrentPlaybackDevice},
      {"CurrentPlaybackDeviceName", true, &o.CurrentPlaybackDeviceName},
      {"CurrentCaptureDevice", true, &o.CurrentCaptureDevice},
      {"CurrentCaptureDeviceName", true, &o.CurrentCaptureDeviceName},
      {"AutoDDSRefresh", true, &o.AutoDDSRefresh},
      {"MouseOverS.HiLiteBorder", true, &scrollables_->HiLiteBorder},
      {"DRM.RunDreamOnDRM", true, &o.RunDreamOnDRM},
      {"DRM.MuteAFOnDRM", true, &radio_->Rx.MuteAFOnDRM},
      {"DRM.CloseSoundcardOnDRM", true, &o.CloseSoundcardOnDRM},
      {"DRM.PathToDream", true, &o.PathToDream},
      {"DRM.DreamProgArgs", true, &o.DreamProgArgs},
      {"DRM.DreamWindowStyle", true, &o.DreamWindowStyle},
      {"DRM.DreamCloseOnExit", true, &o.DreamCloseOnExit},
      {"DRM.DreamCloseOnModeChange", true, &o.DreamCloseOnModeChange},
      {"KBDSupport", true, &tuning_->KBDSupport},
      {"AutoTrackPresets", true, &o.AutoTrackPresets},
      {"FormCaptionOffOnPwrOn", true, &o.FormCaptionOffOnPwrOn},
      {"AutoStartSDR", true, &o.AutoStartSDR},
      {"LastOutputVolume", true, &o.LastOutputVolume},
      {"WindowWidth", true, &o.WindowWidth},
      {"WindowHeight", true, &o.WindowHeight},
      {"ShortDelay", true, &o.ShortDelay},
  };
  for (const ColourSetting& colour : kColourSettings)
    table.push_back({colour.Key, true, &(scheme_.*colour.Field)});
  table.insert(table.end(), {
                                {"VFO1.IFType", false, &o.IFType},
                                {"AGCON", false, &vars.AGCON},
                                {"AGCMode", false, &vars.AGCMode},
                                {"AGCAttack", false, &o.AGCAttack},
                                {"AGCDecay", false, &o.AGCDecay},
                                {"OutputAttenuation", false, &vars.OutputAttenuation},
                                {"CurrentFilterMode", false, &vars.CurrentFilterMode},
                                {"CurrentDemodMode", false, &vars.CurrentDemodMode},
                                {"MusicMode", false, &vars.MusicMode},
                                {"AGCDelayTime", false, &vars.AGCDelayTime},
                                {"AGCSmoothTime", false, &vars.AGCSmoothTime},
                                {"LastTunedFrequency", false, &o.LastTunedFrequency},
                                {"OutputVolume", false, &o.OutputVolume},
                                {"FilterHi", false, &vars.FilterHi},
                                {"FilterLo", false, &vars.FilterLo},
                                {"NotchType", false, &vars.NotchType},
                                {"NotchCentre", false, &o.NotchCentre},
                                {"NotchWidth", false, &o.NotchWidth},
                                {"NotchMode", false, &vars.NotchMode},
                                {"NotchActive", false, &vars.NotchActive},
                                {"NotchMirror", false, &vars.NotchMirror},
                                {"NBOn", false, &vars.NBOn},
                                {"NB", false, &o.NB},
                                {"IFFilterActive", false, &vars.IFFilterActive},
                                {"CurrentIFFilterMode", false, &vars.CurrentIFFilterMode},
                            });
  for (std::int32_t mode = 0; mode < DemodMode::Count; ++mode) {
    for (std::int32_t filter = 0; filter < IFFilterMode::Count; ++filter) {
      FilterSettingsRecord& record =
          vars.IFFilterSettings[static_cast<std::size_t>(filter)][static_cast<std::size_t>(mode)];
      const std::string key =
          "IFFilterSettings(" + std::to_string(mode) + ").FilterSettings(" + std::to_string(filter) + ").";
      table.push_back({key + "CurrentHi", false, &record.CurrentHi});
      table.push_back({key + "CurrentLo", false, &record.CurrentLo});
    }
  }
  return table;
}

void frmMain::RestoreSettings() {
  log_.AddLog("RestoreSettings : Start");
  for (const StoredSetting& setting : SettingsTable()) {
    if (setting.ReadBack) ReadSetting(store_, setting);
  }
}

// Brings what the controls and objects hold into the variables of the table.
void frmMain::CollectSettings() {
  ScrollableControls& values = *scrollables_;
  stored_.NoiseFloor = RoundHalfEven(static_cast<double>(smeter_->NoiseFloor) * 100000.0);
  const int size = optDisplaySize_->Pressed();
  stored_.ExtendedDisplay = size == 0;
  stored_.StandardDisplay = size == 1;
  stored_.CompactDisplay = size == 2;
  stored_.FullDisplay = size == 3;
  stored_.PerfStatsOn = stats_->chkPerfStatsOn.Value() ? 1 : 0;
  stored_.AGCAttack = values(CtlIndex::AGCAttack).Value;
  stored_.AGCDecay = values(CtlIndex::AGCDecay).Value;
  stored_.NotchCentre = RoundHalfEven(values(CtlIndex::NotchC).Value);
  stored_.NotchWidth = RoundHalfEven(values(CtlIndex::NotchW).Value);
  stored_.NB = values(CtlIndex::NB).Value;
  stored_.OutputVolume = stored_.LastOutputVolume = RoundHalfEven(values(CtlIndex::OutVol).Value);
  if (const clsVFO* vfo = radio_->VFO()) {
    stored_.LastTunedFrequency = vfo->TunedFrequency();
    stored_.AutoDDSRefresh = vfo->AutoUpdate;
  }
  if (!radio_->HasSoundCard()) return;
  const QUORLDX8& card = radio_->SoundCard();
  const auto remember = [](const std::vector<std::string>& names, std::int32_t number,
                           std::int32_t& storedNumber, std::string& storedName) {
    // A device that is gone keeps its name, so that it is found again when it is back.
    if (number < 1 || number > static_cast<std::int32_t>(names.size())) return;
    storedNumber = number;
    storedName = names[static_cast<std::size_t>(number - 1)];
  };
  std::vector<std::string> names;
  card.GetPlayDeviceNames(names);
  remember(names, card.CurrentPlaybackDevice, stored_.CurrentPlaybackDevice,
           stored_.CurrentPlaybackDeviceName);
  card.GetCapDeviceNames(names);
  remember(names, card.CurrentCaptureDevice, stored_.CurrentCaptureDevice, stored_.CurrentCaptureDeviceName);
}

void frmMain::NoteWindowSize(std::int32_t width, std::int32_t height) {
  stored_.WindowWidth = width;
  stored_.WindowHeight = height;
}

void frmMain::SaveSettings() {
  CollectSettings();
  for (const StoredSetting& setting : SettingsTable()) WriteSetting(store_, setting);
}

void frmMain::StartSaving() {
  tmrSaveSettings_ = std::make_unique<Timer>(machine_.Queue, [this] { SaveNow(); });
  tmrSaveSettings_->SetInterval(kSaveInterval);
  tmrSaveSettings_->SetEnabled(true);
}

// On the disk, too: what a power cut would cost otherwise.
void frmMain::SaveNow() {
  if (loading_ || unloaded_) return;
  // A step holds the chip's refreshing back until it has been sent: that is not what the user chose.
  const bool sending = radio_->VFO() != nullptr && radio_->VFO()->IsStepping();
  tmrSaveSettings_->SetInterval(sending ? kSaveRetry : kSaveInterval);
  if (sending) return;
  SaveSettings();
  if (const clsVFO* vfo = radio_->VFO()) vfo->SaveSettings();
  if (const Failure failure = store_.Save()) log_.AddLog(failure->Text);
}

}  // namespace quorl
