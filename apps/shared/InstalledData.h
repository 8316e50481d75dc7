// Where the data that comes with the program lies.
#pragma once

#include <string>
#include <vector>

#include "platform/Files.h"
#include "platform/linux/system/ApplicationFolder.h"

namespace quorl {

// The folder that holds demo/, bandplans/, themes/ and guide/: the one that QUORLSDR_DATA names, else
// ../share/quorlsdr from the folder of the program, wherever that was installed; the build tree has the same
// layout. The path comes with `failure` set where there is no such folder.
std::string FindInstalledData(const Files& files, Failure& failure);

// What of that data fills the application folder: plans, and themes below it.
std::vector<InstalledFolder> FilledFrom(const std::string& data);

}  // namespace quorl
