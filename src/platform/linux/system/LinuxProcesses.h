// Running programs of the machine.
#pragma once

#include <string>
#include <vector>

#include "platform/Processes.h"

namespace quorl {

// Blank-separated words; "double" and 'single' quotes keep blanks inside a word, \" is a quote.
std::vector<std::string> SplitCommandLine(const std::string& line);

class LinuxProcesses : public Processes {
 public:
  // A program is known by its file, by its first word (scripts, and programs run by another loader, such as
  // C:\folder\name.exe) and by the name it gave itself.
  std::vector<int> Find(const std::string& program) const override;
  // `program` is a path, or a name looked up in PATH; an empty `directory` is the current one. The new
  // process is no child of this one: it outlives it and leaves nothing to wait for.
  Failure Start(const std::string& program, const std::string& arguments,
                const std::string& directory) override;
  void Close(int process) override;
};

}  // namespace quorl
