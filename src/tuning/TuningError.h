// Codes of the failures that tuning objects hand to their caller.
#pragma once

#include <string>

#include "support/Error.h"

namespace quorl {

enum class TuningError : int { Overflow = 6, DivisionByZero = 11, ObjectNotSet = 91 };

inline Failure Fail(TuningError code, std::string text) {
  return Error{static_cast<int>(code), std::move(text)};
}

}  // namespace quorl
