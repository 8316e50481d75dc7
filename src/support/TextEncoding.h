// Text of files from different times: UTF-8, or the Windows code page before it.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace quorl {

inline constexpr char kByteOrderMark[] = "\xEF\xBB\xBF";

bool IsUtf8(std::string_view bytes);
// Windows-1252 as UTF-8; its five unused codes become the control characters of that number.
std::string FromWindows1252(std::string_view bytes);
// Empty where a character has no place there.
std::optional<std::string> ToWindows1252(std::string_view utf8);
// The first `count` characters of valid UTF-8.
std::string_view FirstCharacters(std::string_view utf8, std::size_t count);

}  // namespace quorl
