// A process table made of memory.
#pragma once

#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "platform/Processes.h"

namespace quorl {

// A started program stays in the table until it is closed. All fields are there for tests to read and set.
class VirtualProcesses : public Processes {
 public:
  std::map<int, std::string> Running;  // process number -> file name of the program; strangers too
  std::vector<ProgramStart> Starts;    // failed ones too
  std::vector<int> Closed;             // asked to, by the system's signal
  std::vector<WindowNumber> ClosedWindows;
  std::set<int> Children;  // started here and still running
  Failure StartFailure, ListFailure;
  bool HasWindows = false;  // a program's window has its process number
  std::function<void(int process)> OnStart = [](int) {};
  // What a program does that is asked to close.
  std::function<void(int process)> OnClose = [this](int process) { End(process); };

  void End(int process) {
    Running.erase(process);
    Children.erase(process);
  }

  std::vector<int> Find(const std::string& program, Failure& failure) const override;
  int Start(const ProgramStart& start, Failure& failure) override;
  bool IsRunning(int process) override { return Children.contains(process); }
  WindowNumber FindWindow(int process) override;
  void CloseWindow(WindowNumber window) override;
  void Close(int process) override;

 private:
  int nextProcess_ = 1000;
};

}  // namespace quorl
