// The windows of other programs, on a desktop that tells of them.
#pragma once

#include <string>
#include <vector>

#include "platform/Processes.h"

namespace quorl {

class ProgramWindows {
 public:
  virtual ~ProgramWindows() = default;
  // What a program whose window is to come up so finds in its environment: "NAME=value".
  virtual std::vector<std::string> Environment(WindowWish wish) const = 0;
  // Watches for the window of `process`, and has the desktop minimise or hide it. One process at a time.
  virtual void Wish(int process, WindowWish wish) = 0;
  // `process` has ended: its number is nobody's, or another's.
  virtual void Forget(int process) = 0;
  // A window of `process` that can be asked to close; 0 for none.
  virtual Processes::WindowNumber Find(int process) = 0;
  virtual void Close(Processes::WindowNumber window) = 0;
};

}  // namespace quorl
