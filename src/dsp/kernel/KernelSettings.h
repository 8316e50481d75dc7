// What all signal processing objects of one receiver share: the route of the vector kernel, and the way to
// tell the user something.
#pragma once

#include <functional>
#include <string>

namespace quorl {

struct KernelSettings {
  bool UseSPL = false;        // stored and told; the one route is the kernel's own
  bool SPLAvailable = false;  // an outside vector library was found at start
  std::function<void(const std::string& text)> Report = [](const std::string&) {};
};

}  // namespace quorl
