#include "support/TextEncoding.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace quorl {
namespace {

// Codes 0x80 to 0x9F; all others are those of Unicode.
constexpr std::array<char32_t, 32> kUpper = {0x20AC, 0x81,   0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                             0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x8D,   0x017D, 0x8F,
                                             0x90,   0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                             0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x9D,   0x017E, 0x0178};

struct Character {
  char32_t Code = 0;
  std::size_t Length = 0;  // bytes; 0 where it is no UTF-8
};

Character FirstOf(std::string_view bytes) {
  const auto at = [&bytes](std::size_t i) { return static_cast<unsigned char>(bytes[i]); };
  const unsigned char lead = at(0);
  if (lead < 0x80) return {lead, 1};
  const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
  if (lead < 0xC2 || lead > 0xF4 || bytes.size() < length) return {};
  char32_t code = lead & (0xFFU >> (length + 1));
  for (std::size_t i = 1; i < length; ++i) {
    if ((at(i) & 0xC0) != 0x80) return {};
    code = code << 6U | (at(i) & 0x3FU);
  }
  constexpr std::array<char32_t, 5> kLeast = {0, 0, 0x80, 0x800, 0x10000};
  const bool surrogate = code >= 0xD800 && code <= 0xDFFF;
  if (code < kLeast[length] || code > 0x10FFFF || surrogate) return {};
  return {code, length};
}

void Append(std::string& text, char32_t code) {
  if (code < 0x80) {
    text += static_cast<char>(code);
  } else if (code < 0x800) {
    text += {static_cast<char>(0xC0 | code >> 6U), static_cast<char>(0x80 | (code & 0x3F))};
  } else {
    text += {static_cast<char>(0xE0 | code >> 12U), static_cast<char>(0x80 | (code >> 6U & 0x3F)),
             static_cast<char>(0x80 | (code & 0x3F))};
  }
}

}  // namespace

bool IsUtf8(std::string_view bytes) {
  while (!bytes.empty()) {
    const std::size_t length = FirstOf(bytes).Length;
    if (length == 0) return false;
    bytes.remove_prefix(length);
  }
  return true;
}

std::string FromWindows1252(std::string_view bytes) {
  std::string text;
  text.reserve(bytes.size());
  for (const char byte : bytes) {
    const auto code = static_cast<unsigned char>(byte);
    Append(text, code >= 0x80 && code < 0xA0 ? kUpper[code - 0x80U] : char32_t{code});
  }
  return text;
}

std::optional<std::string> ToWindows1252(std::string_view utf8) {
  std::string bytes;
  bytes.reserve(utf8.size());
  while (!utf8.empty()) {
    const Character next = FirstOf(utf8);
    if (next.Length == 0) return {};
    const auto upper = std::find(kUpper.begin(), kUpper.end(), next.Code);
    if (upper != kUpper.end()) {
      bytes += static_cast<char>(0x80 + (upper - kUpper.begin()));
    } else if (next.Code < 0x80 || (next.Code >= 0xA0 && next.Code <= 0xFF)) {
      bytes += static_cast<char>(next.Code);
    } else {
      return {};
    }
    utf8.remove_prefix(next.Length);
  }
  return bytes;
}

std::string_view FirstCharacters(std::string_view utf8, std::size_t count) {
  std::size_t end = 0;
  for (; count > 0 && end < utf8.size(); --count)
    end += std::max<std::size_t>(FirstOf(utf8.substr(end)).Length, 1);
  return utf8.substr(0, end);
}

}  // namespace quorl
