#include "recorder/files/RecordingLog.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cinttypes>
#include <cstdio>
#include <limits>

#include "platform/CalendarDays.h"

namespace quorl {
namespace {

constexpr char kFieldEnd = '\x04', kRecordEnd = '\0';
constexpr std::size_t kLongestField = 64;

std::string RecordText(const LogRecord& record) {
  std::array<char, 96> numbers{};
  std::string text;
  std::snprintf(numbers.data(), numbers.size(), "F=%010" PRId32 "%c", record.Freq, kFieldEnd);
  text += numbers.data();
  text += "T=" + DateText(record.When) + kFieldEnd;
  std::snprintf(numbers.data(), numbers.size(), "S=%010" PRId64 "%cE=%010" PRId64 "%c", record.Start,
                kFieldEnd, record.End, kFieldEnd);
  text += numbers.data();
  return text + kRecordEnd;
}

std::int64_t WholeNumber(std::string_view text) {
  std::int64_t number = 0;
  const auto [end, fault] = std::from_chars(text.data(), text.data() + text.size(), number);
  return fault == std::errc{} && end == text.data() + text.size() ? number : 0;
}

}  // namespace

std::string MakeTrailer(const std::vector<LogRecord>& log) {
  std::string trailer(kLogTag);
  trailer.reserve(trailer.size() + log.size() * static_cast<std::size_t>(kLogRecordBytes));
  for (const LogRecord& record : log) {
    if (record.Freq <= 0) continue;
    for (const char character : RecordText(record)) {
      trailer += character;
      trailer += '\0';
    }
  }
  return trailer;
}

void LogUnpacker::Take(std::string_view bytes) {
  for (const char byte : bytes) {
    if (!skip_) TakeCharacter(byte);
    skip_ = !skip_;
  }
}

void LogUnpacker::TakeCharacter(char character) {
  if (character == kFieldEnd) {
    CloseField();
  } else if (character == kRecordEnd) {
    if (Records.size() < kMostRecords) Records.push_back(record_);
    record_ = {};
    field_.clear();
  } else if (field_.size() < kLongestField) {
    field_ += character;
  }
}

void LogUnpacker::CloseField() {
  const std::string_view field = field_;
  if (field.size() >= 2 && field[1] == '=') {
    const std::string_view text = field.substr(2);
    const std::int64_t number = WholeNumber(text);
    if (field[0] == 'F' && number == static_cast<std::int32_t>(number)) {
      record_.Freq = static_cast<std::int32_t>(number);
    }
    if (field[0] == 'T') record_.When = ParseDate(text).value_or(0.0);
    if (field[0] == 'S') record_.Start = number;
    if (field[0] == 'E') record_.End = number;
  }
  field_.clear();
}

int FindRecord(const std::vector<LogRecord>& log, std::int64_t position) {
  const auto holds = [position](const LogRecord& r) { return r.Start <= position && position <= r.End; };
  const auto found = std::find_if(log.begin(), log.end(), holds);
  return found == log.end() ? -1 : static_cast<int>(found - log.begin());
}

}  // namespace quorl
