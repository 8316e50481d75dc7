#include "recorder/panel/TrackList.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "platform/CalendarDays.h"
#include "support/NumberPicture.h"
#include "support/ScopedFlag.h"

namespace quorl {
namespace {

constexpr const char* kTrackHeaders = " F(KHz)   Date      Time   Duration";
constexpr const char* kNoTracks = "No Track Information Found";
constexpr std::size_t kFrequencyWidth = 6;
constexpr std::array<const char*, 5> kExports{"This track as WAV", "This track as FLAC", "-",
                                              "All tracks as WAV", "All tracks as FLAC"};
constexpr int kAllTracks = 3, kTrackAsFlac = 1, kAllAsFlac = 4;

std::int64_t SecondsOf(const LogRecord& record, const RecordingFormat& format) {
  const double frames = double(record.End - record.Start) / double(format.FrameBytes());
  return static_cast<std::int64_t>(std::floor(frames / format.Rate + 0.5));
}

std::string Padded(const std::string& text, std::size_t width) {
  return text.size() < width ? std::string(width - text.size(), ' ') + text : text;
}

}  // namespace

std::string TrackLine(const LogRecord& record, const RecordingFormat& format) {
  const std::int64_t seconds = SecondsOf(record, format), minutes = seconds / 60, hours = minutes / 60;
  const double kiloHertz = std::floor(record.Freq / 10000.0 + 0.5);
  return Padded(FormatPicture(kiloHertz, "0"), kFrequencyWidth) + " " + DateText(record.When) + " " +
         FormatPicture(double(hours), "0") + ":" + FormatPicture(double(minutes % 60), "00") + ":" +
         FormatPicture(double(seconds % 60), "00") + " ";
}

TrackList::TrackList(ControlRegistry& registry)
    : picRecorderTrackList(registry, "picRecorderTrackList"),
      txtRecordingLogHeaders(registry, "txtRecordingLogHeaders"),
      lstRecordingLogs(registry, "lstRecordingLogs"),
      cmdExportTracks(registry, "cmdExportTracks"),
      mnuExportTracks(registry, "mnuExportTracks", kExports) {
  picRecorderTrackList.Visible = false;
  picRecorderTrackList.AccessibleName = "Recording";
  lstRecordingLogs.AccessibleName = "Tracks";
  txtRecordingLogHeaders.AccessibleName = "Columns of the tracks";
  cmdExportTracks.Caption = "Export";
  cmdExportTracks.ToolTip = "Tracks as files of their own, in a folder beside the recording";
  cmdExportTracks.Click = [this] { mnuExportTracks.PopUp(); };
  exporting_ = mnuExportTracks.Click.Listen([this](int item) { mnuExportTracks_Click(item); });
  lstRecordingLogs.Click = [this] {
    const auto line = static_cast<std::size_t>(lstRecordingLogs.ListIndex());
    if (!quiet_ && line < records_.size()) Chosen(records_[line]);
  };
}

void TrackList::mnuExportTracks_Click(int item) {
  const auto line = static_cast<std::size_t>(lstRecordingLogs.ListIndex());
  const bool flac = item == kTrackAsFlac || item == kAllAsFlac;
  if (item >= kAllTracks) {
    Export({}, flac);
  } else if (line < records_.size()) {
    Export(static_cast<std::size_t>(records_[line]), flac);
  }
}

void TrackList::Fill(const std::vector<LogRecord>& log, const RecordingFormat& format) {
  std::vector<std::string> lines;
  std::size_t listed = 0;
  records_.clear();
  for (std::size_t i = 0; i < log.size(); ++i) {
    if (SecondsOf(log[i], format) <= 0 || ++listed > kMostLines) continue;
    records_.push_back(static_cast<std::int32_t>(i));
    lines.push_back(TrackLine(log[i], format));
  }
  cmdExportTracks.Enabled = !lines.empty();
  txtRecordingLogHeaders.Caption = log.empty() ? kNoTracks : kTrackHeaders;
  txtRecordingLogHeaders.ToolTip =
      listed > kMostLines ? "The first 10,000 of " + FormatPicture(double(listed), "#,##0") + " tracks" : "";
  const ScopedFlag quiet(quiet_);
  lstRecordingLogs.SetItems(std::move(lines));
  if (!records_.empty()) lstRecordingLogs.SetListIndex(0);
}

void TrackList::Select(int line) {
  const ScopedFlag quiet(quiet_);
  if (line >= 0 && line < static_cast<int>(records_.size())) lstRecordingLogs.SetListIndex(line);
}

void TrackList::SelectRecord(std::int32_t record) {
  const auto line = std::lower_bound(records_.begin(), records_.end(), record);
  if (line != records_.end() && *line == record) Select(static_cast<int>(line - records_.begin()));
}

void TrackList::Step(int direction) {
  const int line = lstRecordingLogs.ListIndex() + direction;
  if (line < 0 || line >= static_cast<int>(records_.size())) return;
  Select(line);
  Chosen(records_[static_cast<std::size_t>(line)]);
}

}  // namespace quorl
