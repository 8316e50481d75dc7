// The system's table of running programs.
#pragma once

#include <string>
#include <vector>

#include "support/Error.h"

namespace quorl {

// Numbers of the processes of that user in the table at `folder` (/proc) that run `program`: without regard
// to case, known by their file, by their first word (programs run by another loader, such as
// C:\folder\name.exe) or by the name that they gave themselves, which for a script is its file's. One that
// has ended and waits for its parent doesn't run. None with `failure` set where the table can't be read.
std::vector<int> FindPrograms(const std::string& folder, unsigned user, const std::string& program,
                              Failure& failure);

}  // namespace quorl
