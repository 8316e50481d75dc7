// Keys of a file of sections and keys: plans, themes, the external decoder's settings.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/Dialogs.h"
#include "platform/Files.h"

namespace quorl {

struct ProfileItem {
  std::string Section, Key, Value;
  bool operator==(const ProfileItem&) const = default;
};

// Changes these keys in the file as it is at that moment, and replaces it once, where anything differs.
Failure SaveProfileItems(Files& files, const std::string& path, const std::vector<ProfileItem>& items);

// "ProfileSaveItem: " and such, with number and text of the error.
void TellProfileFault(Dialogs& boxes, const std::string& routine, const Error& error);

// Writes one key; the file is made where it is missing, and replaced whole. What goes wrong is told in a box.
void ProfileSaveItem(Files& files, Dialogs& boxes, const std::string& section, const std::string& key,
                     const std::string& value, const std::string& fileName);

// The value, or `otherwise` where there is none; of 2047 characters at most. With `element` above 0 that
// field of the value, counted from 1 and parted by commas: empty where there are fewer. A file that is there
// but can't be read is told in a box, and has nothing.
std::string ProfileGetItem(const Files& files, Dialogs& boxes, const std::string& section,
                           const std::string& key, const std::string& otherwise, const std::string& fileName,
                           std::int32_t element = 0);

}  // namespace quorl
