// Other programs: what runs, starting and closing one.
#pragma once

#include <string>
#include <vector>

#include "support/Error.h"

namespace quorl {

class Processes {
 public:
  virtual ~Processes() = default;
  // Process numbers of the running programs whose file name equals `program` without regard to case.
  virtual std::vector<int> Find(const std::string& program) const = 0;
  // Starts `program` with the arguments of one command line in `directory`; does not wait for it.
  virtual Failure Start(const std::string& program, const std::string& arguments,
                        const std::string& directory) = 0;
  // Asks the process to close, as the window's close button would.
  virtual void Close(int process) = 0;
};

}  // namespace quorl
