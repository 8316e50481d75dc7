// Other programs: what runs, starting one, asking it to close.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "support/Error.h"

namespace quorl {

// How a program's window is to come up, with the keyboard or without it. A wish: the desktop decides.
enum class WindowWish { Hidden = 0, Focused = 1, Behind = 4, MinimisedBehind = 6 };

struct ProgramStart {
  std::string Program;         // a path, or a name that the system looks up
  std::string Arguments = {};  // of one command line
  std::string Directory = {};  // where it works; empty is the current one
  WindowWish Window = WindowWish::Focused;
};

// Only a program that was started here, and has not ended yet, can be watched and asked to close: the system
// may give the number of one that has ended to anybody's next.
class Processes {
 public:
  using WindowNumber = std::uint32_t;

  virtual ~Processes() = default;
  // Process numbers of this user's running programs whose file name equals `program` without regard to case.
  // None with `failure` set where the system doesn't tell.
  virtual std::vector<int> Find(const std::string& program, Failure& failure) const = 0;
  // Starts a program and does not wait for it; it outlives this one. Its process number; 0 with `failure`
  // set.
  virtual int Start(const ProgramStart& start, Failure& failure) = 0;
  virtual bool IsRunning(int process) = 0;
  // A window of the program that stands by itself on the desktop; 0 where none is found.
  virtual WindowNumber FindWindow(int process) = 0;
  // As the window's own close button would ask.
  virtual void CloseWindow(WindowNumber window) = 0;
  // Asks the program itself, by the system's signal.
  virtual void Close(int process) = 0;
};

}  // namespace quorl
