#include "recorder/TimerProgramme.h"

#include <array>
#include <cmath>
#include <vector>

#include "platform/CalendarDays.h"
#include "support/Text.h"

namespace quorl {
namespace {

constexpr char kSeparator = ';';
constexpr std::array<std::string_view, 3> kRepeats{"Once", "Daily", "Weekly"};
constexpr std::array<double, 3> kPeriods{0.0, 1.0, 7.0};  // days
constexpr std::size_t kFields = 11;

// Text fields stand last, as a plan's name may hold anything.
std::vector<std::string_view> Fields(std::string_view text) {
  std::vector<std::string_view> fields;
  while (fields.size() + 1 < kFields) {
    const std::size_t end = text.find(kSeparator);
    if (end == std::string_view::npos) break;
    fields.push_back(text.substr(0, end));
    text.remove_prefix(end + 1);
  }
  fields.push_back(text);
  return fields;
}

std::optional<TimerRepeat> ParseRepeat(std::string_view text) {
  for (std::size_t i = 0; i < kRepeats.size(); ++i) {
    if (EqualsNoCase(text, kRepeats[i])) return static_cast<TimerRepeat>(i);
  }
  return {};
}

bool IsWithin(std::int32_t value, std::int32_t most) {
  return value >= 0 && value <= most;
}

bool IsSound(const TimerProgramme& programme) {
  const TimerTarget& target = programme.Target;
  return programme.End > programme.Start && IsWithin(programme.Rate, TimerProgramme::kIF) &&
         IsWithin(target.SubBand, 17) && IsWithin(target.Preset, 11) && IsWithin(target.Mode, 5) &&
         IsWithin(target.FilterMode, 4) && target.Freq >= 0;
}

}  // namespace

std::string ProgrammeText(const TimerProgramme& programme) {
  const TimerTarget& target = programme.Target;
  std::string text = FlagText(programme.Active);
  const auto add = [&text](std::string_view field) { (text += kSeparator) += field; };
  add(DateText(programme.Start));
  add(DateText(programme.End));
  add(kRepeats[static_cast<std::size_t>(programme.Repeat)]);
  for (const std::int32_t number :
       {programme.Rate, target.Freq, target.Mode, target.FilterMode, target.SubBand, target.Preset}) {
    add(NumberText(number));
  }
  add(target.Plan);
  return text;
}

std::optional<TimerProgramme> ParseProgramme(std::string_view text) {
  const std::vector<std::string_view> fields = Fields(text);
  if (fields.size() < kFields) return {};
  TimerProgramme programme;
  const std::optional<bool> active = ParseFlag(fields[0]);
  const std::optional<double> start = ParseDate(fields[1]), end = ParseDate(fields[2]);
  const std::optional<TimerRepeat> repeat = ParseRepeat(fields[3]);
  if (!active || !start || !end || !repeat) return {};
  programme.Active = *active;
  programme.Start = *start;
  programme.End = *end;
  programme.Repeat = *repeat;
  TimerTarget& target = programme.Target;
  std::size_t field = 4;
  for (std::int32_t* number :
       {&programme.Rate, &target.Freq, &target.Mode, &target.FilterMode, &target.SubBand, &target.Preset}) {
    const std::optional<std::int32_t> read = ParseInt32(fields[field++]);
    if (!read) return {};
    *number = *read;
  }
  target.Plan = std::string(fields[field]);
  return IsSound(programme) ? std::optional(programme) : std::nullopt;
}

std::string ProgrammeFault(const TimerProgramme& programme, double now) {
  const TimerTarget& target = programme.Target;
  if (programme.End <= programme.Start) return "The end lies before the start. Give an end behind it.";
  if (programme.Repeat == TimerRepeat::Once && programme.End <= now) {
    return "The end has passed already. Give a time to come, or let it repeat.";
  }
  const double period = kPeriods[static_cast<std::size_t>(programme.Repeat)];
  if (period > 0.0 && programme.End - programme.Start >= period) {
    return "It takes longer than the time until it repeats. Give an earlier end.";
  }
  if (target.Plan.empty() && target.Freq < 10) return "Give a frequency in kHz, or a preset.";
  return {};
}

void TurnProgramme(TimerProgramme& programme, double now) {
  const double period = kPeriods[static_cast<std::size_t>(programme.Repeat)];
  if (period == 0.0) {
    programme.Active = programme.Active && programme.End > now;
    return;
  }
  if (programme.End > now) return;
  const double turns = std::floor((now - programme.End) / period) + 1.0;
  programme.Start += turns * period;
  programme.End += turns * period;
}

}  // namespace quorl
