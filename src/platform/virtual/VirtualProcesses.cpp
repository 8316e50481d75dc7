#include "platform/virtual/VirtualProcesses.h"

#include "support/Text.h"

namespace quorl {

std::vector<int> VirtualProcesses::Find(const std::string& program, Failure& failure) const {
  failure = ListFailure;
  std::vector<int> found;
  for (const auto& [process, name] : Running) {
    if (!failure && EqualsNoCase(name, program)) found.push_back(process);
  }
  return found;
}

int VirtualProcesses::Start(const ProgramStart& start, Failure& failure) {
  Starts.push_back(start);
  failure = StartFailure;
  if (failure) return 0;
  const int process = nextProcess_++;
  Running[process] = FileNameOf(start.Program);
  Children.insert(process);
  OnStart(process);
  return process;
}

Processes::WindowNumber VirtualProcesses::FindWindow(int process) {
  return HasWindows && IsRunning(process) ? static_cast<WindowNumber>(process) : 0;
}

void VirtualProcesses::CloseWindow(WindowNumber window) {
  ClosedWindows.push_back(window);
  OnClose(static_cast<int>(window));
}

void VirtualProcesses::Close(int process) {
  if (!IsRunning(process)) return;
  Closed.push_back(process);
  OnClose(process);
}

}  // namespace quorl
