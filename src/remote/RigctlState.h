// What the radio can do, as clients of the Hamlib network protocol want to know it when they come.
#pragma once

#include <string>

#include "remote/RemoteRadio.h"

namespace quorl {

// Lines, each but the last with its line feed.
std::string RigctlStateText(const RemoteRadio& radio);

}  // namespace quorl
