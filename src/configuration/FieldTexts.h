// Numbers as the fields of the configuration show and read them.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace quorl {

// Hertz in groups of three: "45 000 000".
std::string HertzText(double hertz);
// The same of a clock, with a figure for the megahertz at least.
std::string ClockText(double hertz);
// Seconds, to a tenth of a nanosecond.
std::string BitPeriodText(double seconds);
// The period that a text like those of BitPeriodText means; the usual one exactly. Empty where it is no
// number or below 0.
std::optional<double> ParseBitPeriod(const std::string& text);
// "&H378".
std::string AddressText(std::uint16_t address);
// "&H378", "0x378" or "888", in any case; empty where it is no address from 0 to 65535.
std::optional<std::uint16_t> ParseAddress(const std::string& text);

}  // namespace quorl
