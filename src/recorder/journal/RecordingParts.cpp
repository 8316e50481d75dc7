#include "recorder/journal/RecordingParts.h"

#include <algorithm>
#include <charconv>
#include <string_view>

namespace quorl {
namespace {

constexpr std::string_view kStem = "~QUORLWAV-", kEnding = ".TMP";

// 0 for a name of another kind.
std::int32_t NumberOf(std::string_view name) {
  if (!name.starts_with(kStem) || !name.ends_with(kEnding)) return 0;
  const std::string_view digits = name.substr(kStem.size(), name.size() - kStem.size() - kEnding.size());
  std::int32_t number = 0;
  const auto [end, fault] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
  const bool whole = fault == std::errc{} && end == digits.data() + digits.size();
  return whole && std::to_string(number) == digits ? number : 0;
}

}  // namespace

std::string PartName(const std::string& target, std::int32_t part) {
  if (part < 2) return target;
  const auto slash = target.rfind('/');
  const auto name = slash == std::string::npos ? 0 : slash + 1;
  auto dot = target.rfind('.');
  if (dot == std::string::npos || dot <= name) dot = target.size();
  return target.substr(0, dot) + "-" + std::to_string(part) + target.substr(dot);
}

std::vector<std::string> TakenNames(const Files& files, const std::string& target, std::int32_t parts) {
  std::vector<std::string> taken;
  for (std::int32_t part = 1; part <= parts; ++part) {
    if (std::string name = PartName(target, part); files.Exists(name)) taken.push_back(std::move(name));
  }
  return taken;
}

std::string RecordingParts::Finished(std::int32_t part) const {
  return Path(std::string(kStem) + std::to_string(part) + std::string(kEnding));
}

std::vector<std::int32_t> RecordingParts::FinishedNumbers(const Files& files) const {
  std::vector<std::int32_t> numbers;
  for (const std::string& name : files.List(folder_.empty() ? "." : folder_, std::string(kEnding))) {
    if (const std::int32_t number = NumberOf(name); number > 0) numbers.push_back(number);
  }
  std::sort(numbers.begin(), numbers.end());
  return numbers;
}

std::vector<std::string> RecordingParts::Existing(const Files& files) const {
  std::vector<std::string> existing;
  for (const std::int32_t number : FinishedNumbers(files)) existing.push_back(Finished(number));
  if (files.Exists(Current())) existing.push_back(Current());
  return existing;
}

std::int32_t RecordingParts::LastFinished(const Files& files) const {
  const std::vector<std::int32_t> numbers = FinishedNumbers(files);
  return numbers.empty() ? 0 : numbers.back();
}

Failure RecordingParts::RemoveAll(Files& files) const {
  std::vector<std::string> paths = Existing(files);
  if (files.Exists(Journal())) paths.insert(paths.begin(), Journal());
  for (const std::string& path : paths) {
    if (Failure failure = files.Remove(path)) return failure;
  }
  return {};
}

}  // namespace quorl
