#include "recorder/files/Tracks.h"

#include <algorithm>
#include <array>
#include <cinttypes>
#include <cmath>
#include <cstdio>

namespace quorl {
namespace {

constexpr double kShortest = 0.5;  // seconds; a pass over the band makes many shorter ones
constexpr double kLongest = 1e9;   // what a damaged log may tell

Track TrackOf(const Recording& recording, std::size_t number) {
  const LogRecord& record = recording.Log[number];
  const double bytesASecond = static_cast<double>(recording.Format.Rate * recording.Format.FrameBytes());
  const auto frameAt = [&recording](std::int64_t position) {
    const std::int64_t inside =
        std::clamp(position - recording.Format.DataAt(), std::int64_t{0}, recording.DataBytes);
    return inside / recording.Format.FrameBytes();
  };
  const double start = static_cast<double>(record.Start), end = static_cast<double>(record.End);
  Track track{number, record.When, record.Freq, 0.0, 0.0, 0, 0};
  const double at = (start - static_cast<double>(recording.Format.DataAt())) / bytesASecond;
  track.StartSeconds = std::clamp(at, 0.0, kLongest);
  track.Seconds = std::clamp((end - start) / bytesASecond, 0.0, kLongest);
  track.FirstFrame = frameAt(std::max(record.Start, std::int64_t{0}));
  track.Frames = std::max(std::int64_t{0}, frameAt(std::max(record.End, std::int64_t{0})) - track.FirstFrame);
  return track;
}

}  // namespace

std::vector<Track> TracksOf(const Recording& recording) {
  std::vector<Track> tracks;
  for (std::size_t number = 0; number < recording.Log.size(); ++number) {
    const Track track = TrackOf(recording, number);
    if (track.Seconds >= kShortest) tracks.push_back(track);
  }
  return tracks;
}

std::string HoursText(double seconds) {
  const auto whole = static_cast<std::int64_t>(std::floor(seconds + 0.5));
  std::array<char, 48> text{};
  std::snprintf(text.data(), text.size(), "%" PRId64 ":%02" PRId64 ":%02" PRId64, whole / 3600,
                whole / 60 % 60, whole % 60);
  return text.data();
}

}  // namespace quorl
