// Where the data that comes with the program lies.
#pragma once

#include <string>

#include "platform/Files.h"
#include "platform/linux/system/ApplicationFolder.h"

namespace quorl {

// The folder that holds demo/, bandplans/ and themes/: the one that QUORLSDR_DATA names, the installed one,
// or that of the source tree the program was built from.
std::string FindInstalledData(const Files& files);

// What of that data fills the application folder: plans, and themes below it.
std::vector<InstalledFolder> FilledFrom(const std::string& data);

}  // namespace quorl
