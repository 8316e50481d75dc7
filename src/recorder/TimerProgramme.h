// What the timer records, and when.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace quorl {

enum class TimerRepeat { Once, Daily, Weekly };

// A preset of a band plan, by its places from 0; or, where Plan is empty, a frequency with mode and filter.
struct TimerTarget {
  std::string Plan;  // name of the plan's file, without its ending
  std::int32_t SubBand = 0, Preset = 0;
  std::int32_t Freq = 0;  // dHz
  std::int32_t Mode = 0, FilterMode = 0;

  bool operator==(const TimerTarget&) const = default;
};

struct TimerProgramme {
  // Place of the IF among the rates: 0 to 4 are the deck's own, 48 to 3 kHz.
  static constexpr std::int32_t kIF = 5;

  bool Active = false;
  double Start = 0.0, End = 0.0;  // local time, days as of DaysOf; the end lies behind the start
  TimerRepeat Repeat = TimerRepeat::Once;
  TimerTarget Target;
  std::int32_t Rate = 0;

  bool operator==(const TimerProgramme&) const = default;
};

// One line for the settings, and back; empty where it is none.
std::string ProgrammeText(const TimerProgramme& programme);
std::optional<TimerProgramme> ParseProgramme(std::string_view text);

// Why it can't be recorded, for a person; empty where it can. `now` in days.
std::string ProgrammeFault(const TimerProgramme& programme, double now);

// The programme for its next time behind `now`; one that was meant for once is no longer active then.
void TurnProgramme(TimerProgramme& programme, double now);

}  // namespace quorl
