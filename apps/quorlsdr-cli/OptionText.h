// Option values out of their texts. A text that doesn't fit raises CLI::ValidationError with one line that
// says what is wrong and what is needed.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace quorl::cli {

struct Range {
  int Low;
  int High;
};

int ParseWhole(const std::string& option, const std::string& text, Range range);

// Index of `text` in `names`.
int ParseChoice(const std::string& option, const std::string& text, std::span<const std::string_view> names);

// The stretches between the colons of `text`, at least one.
std::vector<std::string> SplitAtColons(const std::string& text);

// `names` with bars between, for the help texts.
std::string JoinNames(std::span<const std::string_view> names);

[[noreturn]] void Refuse(const std::string& option, const std::string& why);

}  // namespace quorl::cli
