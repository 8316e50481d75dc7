// Finds a saved sound device again among the devices of today.
#pragma once

#include <string>
#include <vector>

namespace quorl {

// Number (from 1) of the device that was saved as `savedName` under `savedNumber`. The name decides, so that
// a headset that was plugged in meanwhile moves nothing; of several devices with that name the one under the
// saved number, else the first. Without a saved name it is `savedNumber` as it stands. Where the name is
// gone, a number that no device has: opening it fails with the message for the user, and no other input is
// taken instead.
int FindDevice(const std::vector<std::string>& names, const std::string& savedName, int savedNumber);

}  // namespace quorl
