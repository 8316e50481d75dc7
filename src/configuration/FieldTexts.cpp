#include "configuration/FieldTexts.h"

#include <charconv>
#include <cmath>

#include "support/NumberPicture.h"
#include "support/Text.h"
#include "tuning/clsDDSSerialIF.h"

namespace quorl {

std::string HertzText(double hertz) {
  return std::string(Trim(FormatPicture(hertz, "### ### ##0")));
}

std::string ClockText(double hertz) {
  return FormatPicture(hertz, "#0 000 000");
}

std::string BitPeriodText(double seconds) {
  return FormatPicture(seconds, "0.0#########");
}

std::optional<double> ParseBitPeriod(const std::string& text) {
  if (text == BitPeriodText(clsDDSSerialIF::kDefaultWaitTime)) return clsDDSSerialIF::kDefaultWaitTime;
  const std::optional<double> seconds = ParseTyped(text);
  return seconds && *seconds >= 0 ? seconds : std::nullopt;
}

std::string AddressText(std::uint16_t address) {
  char digits[4];
  const auto end = std::to_chars(digits, digits + sizeof digits, address, 16).ptr;
  std::string text(digits, end);
  for (char& digit : text) {
    if (digit >= 'a') digit = static_cast<char>(digit - 'a' + 'A');
  }
  return "&H" + text;
}

std::optional<std::uint16_t> ParseAddress(const std::string& text) {
  const std::string typed = ToLower(Trim(text));
  const bool hexadecimal = typed.starts_with("&h") || typed.starts_with("0x");
  const char* begin = typed.data() + (hexadecimal ? 2 : 0);
  const char* end = typed.data() + typed.size();
  std::uint16_t address = 0;
  const auto [stop, fault] = std::from_chars(begin, end, address, hexadecimal ? 16 : 10);
  if (fault != std::errc() || stop != end) return {};
  return address;
}

}  // namespace quorl
