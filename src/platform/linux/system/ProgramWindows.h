// The windows of other programs, on a desktop that tells of them.
#pragma once

#include <string>
#include <vector>

#include "platform/Processes.h"

namespace quorl {

class ProgramWindows {
 public:
  virtual ~ProgramWindows() = default;
  // What to put into the environment of a program whose window is to come up so: entries of "NAME=value".
  virtual std::vector<std::string> Environment(WindowWish wish) const = 0;
  // The first window that `process` has on the desktop; 0 for none.
  virtual Processes::WindowNumber Find(int process) = 0;
  // Waits, on the queue, for a window of `process`, and has the desktop hide or minimise it. One at a time.
  virtual void Wish(int process, WindowWish wish) = 0;
  virtual void Close(Processes::WindowNumber window) = 0;
};

}  // namespace quorl
