// The one folder of band plans, themes, the recorder's temporary file and the decoder's control file.
#pragma once

#include <string>
#include <vector>

#include "platform/Files.h"

namespace quorl {

// What comes with the program: the files and folders below `From`, for the folder `To` below that of the
// user; empty: for that itself.
struct InstalledFolder {
  std::string From, To;
};

// Gives the folder's path, ready for use; empty with `failure` set where it can't be made.
//
// `named` is the folder that the user asked for; where it is empty, the folder is `usual`. A folder is filled
// from `installed` (may be empty: nothing to fill from): each file once, never over one that is there and
// never again, so that what the user has thrown away stays away, and what a newer version brings along comes.
// A named folder that exists already is the user's own and is not filled.
std::string PrepareApplicationFolder(Files& files, const std::string& named, const std::string& usual,
                                     const std::vector<InstalledFolder>& installed, Failure& failure);

}  // namespace quorl
