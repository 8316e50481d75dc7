// The system's error numbers as failures that a person can act on.
#pragma once

#include <string>

#include "support/Error.h"

namespace quorl {

// "Can't <what>: <the system's reason>. <what to do>", for example
// SystemError("write /home/a/x.ini", ENOSPC).
Error SystemError(const std::string& what, int number);
// The same with advice of the caller's own.
Error SystemError(const std::string& what, int number, const std::string& advice);

}  // namespace quorl
