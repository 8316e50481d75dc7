#include "platform/virtual/VirtualProcesses.h"

#include "support/Text.h"

namespace quorl {

std::vector<int> VirtualProcesses::Find(const std::string& program) const {
  std::vector<int> found;
  for (const auto& [process, name] : Running) {
    if (EqualsNoCase(name, program)) found.push_back(process);
  }
  return found;
}

Failure VirtualProcesses::Start(const std::string& program, const std::string& arguments,
                                const std::string& directory) {
  Starts.push_back({program, arguments, directory});
  if (!StartFailure) Running[nextProcess_++] = program.substr(program.rfind('/') + 1);
  return StartFailure;
}

void VirtualProcesses::Close(int process) {
  Closed.push_back(process);
  if (!IgnoresClose) Running.erase(process);
}

}  // namespace quorl
