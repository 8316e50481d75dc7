// A failure told in words: what went wrong, where, and what to do about it.
#pragma once

#include <optional>
#include <string>

namespace quorl {

struct Error {
  int Code = 0;      // the system's error number, or a code that the raising module lists; never 0
  std::string Text;  // one line for a person, no line end
};

// What an operation returns that can fail and has nothing else to say: empty is success.
using Failure = std::optional<Error>;

}  // namespace quorl
