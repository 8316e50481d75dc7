#include "sound/FindDevice.h"

#include <algorithm>

namespace quorl {

int FindDevice(const std::vector<std::string>& names, const std::string& savedName, int savedNumber) {
  const int count = static_cast<int>(names.size());
  if (savedName.empty()) return savedNumber;
  if (savedNumber >= 1 && savedNumber <= count &&
      names[static_cast<std::size_t>(savedNumber) - 1] == savedName) {
    return savedNumber;
  }
  // The end of the list stands for the number after the last device's.
  return static_cast<int>(std::find(names.begin(), names.end(), savedName) - names.begin()) + 1;
}

}  // namespace quorl
