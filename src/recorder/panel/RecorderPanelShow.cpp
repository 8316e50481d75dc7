// What the recorder's strip shows of the deck's state.
#include <algorithm>
#include <cmath>
#include <utility>

#include "config/Inks.h"
#include "recorder/panel/RecorderPanel.h"
#include "state/PublicConstants.h"
#include "support/NumberPicture.h"
#include "support/Text.h"

namespace quorl {
namespace {

constexpr Colour kEngaged = 255;                    // ground of a button that holds or repeats something
constexpr std::int64_t kDiskInterval = 10'000'000;  // microseconds
constexpr double kLeastMinutes = 10;                // that the disk holds before the panel says so

std::string TimeText(std::int64_t seconds) {
  const std::int64_t hours = seconds / 3600, minutes = seconds / 60 % 60;
  return FormatPicture(double(hours), "00") + ":" + FormatPicture(double(minutes), "00") + ":" +
         FormatPicture(double(seconds % 60), "00");
}

}  // namespace

bool RecorderPanel::Takes() const {
  return deck_.IsUnderWay();
}

bool RecorderPanel::Gives() const {
  return deck_.HasFile() && (deck_.PlayerMode() == PlayerModes::Playing || IsPaused());
}

RecordingFormat RecorderPanel::Format() const {
  if (deck_.HasFile()) return deck_.Playing();
  RecordingFormat format;
  format.Rate = deck_.RecordIF ? deck_.SamplingRate : deck_.WavSamplingRate();
  if (!deck_.RecordIF) return format;
  format.IF = deck_.Origin();
  if (format.IF->Model == SDRModel::IQXtalRX) format.Channels = 2;
  return format;
}

void RecorderPanel::ShowState() {
  if (own_ && deck_.IsClosed()) Choose(*std::exchange(own_, {}));
  Options.Show();
  Name.SetEnabled(!deck_.IsRecording());
  ShowButtons();
  ShowCounters();
  ShowPlace();
  LookAtDisk();
  ShowLine();
  links_.Changed();
}

void RecorderPanel::ShowButtons() {
  const bool takes = Takes(), gives = Gives();
  for (int i = 0; i < WavCtl::Count; ++i) {
    cmdWavCtls(i).Visible = !(takes && i >= WavCtl::Previous) && !(gives && i >= WavCtl::Load);
  }
  cmdWavCtls(WavCtl::Record).Down = takes;
  cmdWavCtls(WavCtl::Play).Down = gives;
  cmdWavCtls(WavCtl::Pause).Down = IsPaused();
  cmdWavCtls(WavCtl::Pause).BackColour = IsPaused() ? kEngaged : kNoColour;
  cmdWavCtls(WavCtl::Loop).Down = deck_.Looping;
  cmdWavCtls(WavCtl::Loop).BackColour = deck_.Looping ? kEngaged : kNoColour;
  shpLooping.Visible = deck_.Looping;
}

void RecorderPanel::ShowTracks(bool shown) {
  Tracks.picRecorderTrackList.Visible = shown;
  links_.ShowMemories(!shown);
}

void RecorderPanel::Housekeep() {
  ShowCounters();
  ShowPlace();
  ShowLine();
  if (Takes() && clock_.Microseconds() - lookedAtDisk_ >= kDiskInterval) LookAtDisk();
}

void RecorderPanel::ShowCounters() {
  if (samples_ == shownSamples_) return;
  shownSamples_ = samples_;
  const RecordingFormat format = Format();
  lblRecordTime.Caption = TimeText(samples_ / format.Rate);
  const std::int64_t kilobytes = (format.DataAt() + format.FrameBytes() * samples_) / 1024;
  lblRecordSize.Caption = FormatPicture(double(kilobytes), "#,##0");
}

void RecorderPanel::ShowPlace() {
  const bool loaded = deck_.HasFile();
  sldRecorderSeek.Visible = lblRecorderLeft.Visible = loaded;
  if (!loaded) return;
  const RecordingFormat format = deck_.Playing();
  const auto tenths = [&](std::int64_t from, std::int64_t to) {
    return std::max<std::int64_t>(to - from, 0) / format.FrameBytes() * 10 / format.Rate;
  };
  const std::int64_t first = deck_.FirstPosition(), last = deck_.BehindSamples(), at = deck_.PlayPosition();
  sldRecorderSeek.Max = static_cast<int>(tenths(first, last));
  sldRecorderSeek.SetValue(static_cast<int>(tenths(first, at)));
  sldRecorderSeek.Enabled = deck_.PlayerMode() == PlayerModes::Playing;
  lblRecorderLeft.Caption = "-" + TimeText(tenths(at, last) / 10);
  sldRecorderSeek.AccessibleText =
      TimeText(tenths(first, at) / 10) + " of " + TimeText(tenths(first, last) / 10);
}

// The disk may take its time to tell.
void RecorderPanel::LookAtDisk() {
  if (!started_ || looking_) return;
  looking_ = true;
  lookedAtDisk_ = clock_.Microseconds();
  calls_.Make<std::optional<std::int64_t>>(
      [&files = files_, path = deck_.TempFileName()] { return files.FreeSpace(path); },
      [this](std::optional<std::int64_t> bytes) {
        looking_ = false;
        freeBytes_ = bytes;
        ShowDisk();
      });
}

std::optional<double> RecorderPanel::HoursLeft() const {
  if (!freeBytes_) return {};
  return double(*freeBytes_) / double(Options.BytesPerHour());
}

void RecorderPanel::ShowDisk() {
  const std::optional<double> hours = HoursLeft();
  lblRecorderDisk.Visible = lblRecorderDiskDesc.Visible = hours.has_value();
  if (hours)
    lblRecorderDisk.Caption = FormatPicture(std::min(*hours, 9999.0), *hours < 99.9 ? "0.0" : "#,##0");
  ShowLine();
}

void RecorderPanel::ShowLine() {
  const std::string state = StateText(), caution = Caution();
  const bool asks = deck_.IsUnsaved() && !Takes();
  lblRecorderState.Caption = caution.empty() || asks ? state : caution;
  std::string all = state;
  for (const std::string& more : {caution, links_.TimerState()}) {
    if (!more.empty() && more != state) all += ". " + more;
  }
  lblRecorderState.ToolTip = all;
  lblRecorderState.ForeColour =
      asks || !caution.empty() ? kCautionInk : context_.Colours.Scheme().SDRLabelColour;
}

std::string RecorderPanel::StateText() const {
  const auto at = [this](const std::string& what) {
    return IsPaused() ? what + " paused" : links_.IsOn() ? what : what + " waits for On";
  };
  if (Sounds.IsRunning()) return Sounds.State();
  if (saved_ > 0) return "Saving " + FormatPicture(saved_, "0%");
  if (!note_.empty()) return note_;
  std::string timer = links_.TimerState();
  if (Takes() && own_ && parts_ == 0 && links_.IsOn() && !IsPaused() && !timer.empty()) return timer;
  if (Takes()) return at(parts_ > 0 ? "Recording file " + NumberText(parts_ + 1) : "Recording");
  if (deck_.IsUnsaved()) return "Recorded, not saved: Save or Close";
  if (Gives()) return at("Playing " + deck_.FileShortName);
  if (deck_.HasFile()) return "Loaded " + deck_.FileShortName;
  if (deck_.StatusOfMedia() == MediaStatus::Saved && !deck_.RecordFileName.empty())
    return "Saved as " + FileNameOf(deck_.RecordFileName);
  return timer.empty() ? "Ready" : timer;
}

// What a listener would rather know before than after.
std::string RecorderPanel::Caution() const {
  const PublicVars& vars = context_.Rx.Vars;
  if (links_.IsSoundLent()) return "Nothing comes in: the decoder has the sound card";
  const bool drm = vars.CurrentDemodMode == DemodMode::DRM;
  if (deck_.HasFile() && !deck_.Playing().IF && drm) return "DRM plays nearly silent: record the IF instead";
  if (deck_.HasFile() || (Takes() && !links_.IsOn())) return {};
  if (Takes() && writeFails_) return "The disk doesn't take the recording";
  if (const auto hours = HoursLeft(); Takes() && hours && *hours * 60 < kLeastMinutes)
    return "The disk holds " + FormatPicture(std::floor(*hours * 60), "0") + " minutes more";
  if (deck_.RecordIF) return {};
  if (drm) return "DRM plays nearly silent: record the IF";
  const std::int32_t most = deck_.WavSamplingRate() / 2;
  if (vars.FilterHi <= most) return {};
  return "The filter passes more than " + NumberText(most) + " Hz: that folds";
}

}  // namespace quorl
