// A recording with as many tracks as a year of tuning leaves.
#include <string>
#include <vector>

#include "Rows.h"
#include "platform/virtual/VirtualFiles.h"
#include "recorder/files/RecordingHeader.h"

namespace quorl {

std::vector<Row> MeasureRecorder() {
  std::vector<LogRecord> log;
  for (std::int64_t k = 0; k < 100000; ++k) log.push_back({46000.0, 72050000, 44 + k, 45 + k});
  VirtualFiles files;
  files.Put("/tracks.wav", MakeWavHeader({}, 44, 0) + MakeTrailer(log));
  Failure failure;
  const auto file = files.Open("/tracks.wav", OpenMode::Read, failure);
  const auto read = [&file] { ReadRecording(*file); };
  return {{"Files", "recording with 100,000 tracks, opened", MillisecondsOf(read, 1), "ms", 100.0}};
}

}  // namespace quorl
