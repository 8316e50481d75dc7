// What a fuzz target holds its reader to.
#pragma once

#include <cstdlib>
#include <string>

#include "support/Error.h"

namespace quorl::fuzz {

inline void Demand(bool holds) {
  if (!holds) std::abort();
}

// A failure that can be shown to a person.
inline void DemandOneLine(const Failure& failure) {
  Demand(failure && failure->Code != 0 && !failure->Text.empty());
  Demand(failure->Text.find('\n') == std::string::npos);
}

}  // namespace quorl::fuzz
