// Small work on text: comparing without case, trimming, numbers and booleans as text.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace quorl {

// Case means the letters A to Z; other bytes must be the same.
bool EqualsNoCase(std::string_view a, std::string_view b);
bool EndsWithNoCase(std::string_view text, std::string_view suffix);
std::string ToLower(std::string_view text);

// Without the blanks and tabs at both ends.
std::string_view Trim(std::string_view text);

// The whole text must be one decimal number, with a point and without thousands separators; blanks around it
// and a leading plus are allowed. Nothing infinite. Empty where it isn't one.
std::optional<double> ParseDouble(std::string_view text);
// As ParseDouble, of what a person typed or a picture shows: blanks don't count ("10 000 000").
std::optional<double> ParseTyped(std::string_view text);
// As ParseDouble, rounded half to even; empty outside of 32 bits.
std::optional<std::int32_t> ParseInt32(std::string_view text);
// "True" and "False" in any case; a number is true unless it is 0.
std::optional<bool> ParseFlag(std::string_view text);

// Plain decimal text, no exponent, with as many digits as it takes to read the same number back.
std::string NumberText(double value);
std::string NumberText(std::int32_t value);
// "True" or "False".
std::string FlagText(bool value);

// The last part of a path; all of it where it has no slash.
std::string FileNameOf(const std::string& path);

}  // namespace quorl
