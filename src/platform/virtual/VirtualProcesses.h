// A process table made of memory.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "platform/Processes.h"

namespace quorl {

// A started program stays in the table until it is closed. All fields are there for tests to read and set.
class VirtualProcesses : public Processes {
 public:
  struct Started {
    std::string Program, Arguments, Directory;
  };

  std::map<int, std::string> Running;  // process number -> file name of the program
  std::vector<Started> Starts;         // failed ones too
  std::vector<int> Closed;
  Failure StartFailure;       // Start fails with it while it is set
  bool IgnoresClose = false;  // programs stay when asked to close

  std::vector<int> Find(const std::string& program) const override;
  Failure Start(const std::string& program, const std::string& arguments,
                const std::string& directory) override;
  void Close(int process) override;

 private:
  int nextProcess_ = 1000;
};

}  // namespace quorl
