#include "recorder/files/RecordingName.h"

#include "platform/CalendarDays.h"

namespace quorl {

std::int64_t WholeKilohertz(std::int32_t dhz) {
  return (std::int64_t{dhz} + 5000) / 10000;
}

std::string RecordingName(double when, std::int32_t dhz) {
  const std::string date = DateText(when);  // "2026-11-23 18:05:09"
  return date.substr(0, 13) + date.substr(14, 2) + " " + std::to_string(WholeKilohertz(dhz)) + " kHz";
}

std::string FreePath(const Files& files, const std::string& folder, const std::string& name,
                     const std::string& ending) {
  const std::string start = (folder.empty() || folder.ends_with('/') ? folder : folder + "/") + name;
  std::string path = start + ending;
  for (int number = 2; files.Exists(path); ++number)
    path = start + " (" + std::to_string(number) + ")" + ending;
  return path;
}

}  // namespace quorl
