// Frequencies as people write and read them.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace quorl {

// Hertz. A bare number is kHz, as stations are told by: "7205", "7.205M", "7205 kHz", "7205000Hz"; letter
// case and blanks don't count. Empty where it is no frequency.
std::optional<double> ParseFrequency(std::string_view text);

// Why tuning ends at `highest` (dHz).
std::string TuningLimitText(std::int32_t highest);

}  // namespace quorl
