// Running programs of the machine.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "platform/EventQueue.h"
#include "platform/Processes.h"
#include "platform/linux/system/FileHandle.h"
#include "platform/linux/system/ProgramWindows.h"

namespace quorl {

// Blank-separated words; "double" and 'single' quotes keep blanks inside a word, \" is a quote.
std::vector<std::string> SplitCommandLine(const std::string& line);

class LinuxProcesses : public Processes {
 public:
  // `queue` tells of a started program's end, so that nothing of it is left in the system's table; without
  // one, and on a queue that doesn't watch files, the next call sees to it. `windows` may be null. Both
  // outlive the object.
  explicit LinuxProcesses(EventQueue* queue = nullptr, ProgramWindows* windows = nullptr);
  ~LinuxProcesses() override;

  std::vector<int> Find(const std::string& program, Failure& failure) const override;
  int Start(const ProgramStart& start, Failure& failure) override;
  bool IsRunning(int process) override;
  WindowNumber FindWindow(int process) override;
  void CloseWindow(WindowNumber window) override;
  void Close(int process) override;

 private:
  // The handle stands for this process alone, whatever becomes of its number.
  struct Child {
    FileHandle Handle;
    std::unique_ptr<FileWatch> Watch;
  };

  void Keep(int process, FileHandle handle);
  void Reap(int process);
  void ReapAll();

  EventQueue* queue_;
  ProgramWindows* windows_;
  std::map<int, Child> children_;
};

}  // namespace quorl
