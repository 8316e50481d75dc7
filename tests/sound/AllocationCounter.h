// Counts what a thread takes from the heap.
#pragma once

#include <cstdint>

namespace quorl {

// Calls of operator new on this thread so far.
std::int64_t AllocationsOfThisThread();

}  // namespace quorl
