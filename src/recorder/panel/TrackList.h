// The tracks of a recording: a line for each stretch of one frequency, in place of the memories.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "controls/Controls.h"
#include "recorder/files/RecordingHeader.h"

namespace quorl {

// " 7205" and so on in kHz, date and time, duration.
std::string TrackLine(const LogRecord& record, const RecordingFormat& format);

class TrackList {
 public:
  static constexpr std::size_t kMostLines = 10'000;

  explicit TrackList(ControlRegistry& registry);

  Frame picRecorderTrackList;
  Label txtRecordingLogHeaders;
  ListBox lstRecordingLogs;
  CommandButton cmdExportTracks;  // opens the menu
  Menu mnuExportTracks;

  // Tracks are to become files: the record of the chosen line, or all of them.
  std::function<void(std::optional<std::size_t> record, bool flac)> Export = [](std::optional<std::size_t>,
                                                                                bool) {};
  // A hand has chosen the line of that record of the log.
  std::function<void(std::int32_t record)> Chosen = [](std::int32_t) {};

  // One line for each record that lasts half a second at least, and chooses the first.
  void Fill(const std::vector<LogRecord>& log, const RecordingFormat& format);
  void Clear() { Fill({}, {}); }
  // Chooses that line without telling; nothing where there is none.
  void Select(int line);
  // The line of that record of the log.
  void SelectRecord(std::int32_t record);
  // To the neighbour of the chosen line, which is told; nothing at the ends.
  void Step(int direction);

 private:
  void mnuExportTracks_Click(int item);

  std::vector<std::int32_t> records_;  // of each line, its number in the log
  Listening exporting_;
  bool quiet_ = false;
};

}  // namespace quorl
