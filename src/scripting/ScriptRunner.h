// Drives the panel by the names of its controls, a line at a time: for end-to-end tests, pictures and kiosks.
#pragma once

#include <functional>
#include <iosfwd>
#include <string>
#include <vector>

#include "controls/Control.h"
#include "controls/ControlRegistry.h"
#include "platform/Clock.h"
#include "platform/EventQueue.h"

namespace quorl {

struct ScriptHooks {
  // Renders the window, or the view of that name, into a PNG file; false where that can't be done.
  std::function<bool(const std::string& path, double scale, const std::string& panel)> Shot;
  // Where there is a window: the keyboard's focus goes to a control, false where it takes none; and a key
  // goes down or up where the focus is. Else keys go to the control that was given the focus, or to frmMain.
  std::function<bool(const Control& control)> Focus;
  std::function<void(const Key& key, bool down)> PressKey;
  std::function<void(std::string answer)> Answer = [](const std::string&) {};
  // The program is about to end: the script ends with it.
  std::function<bool()> IsClosing = [] { return false; };
};

class ScriptRunner {
 public:
  static constexpr int kPassed = 0, kExpectationFailed = 1, kScriptFault = 2;

  ScriptRunner(ControlRegistry& registry, EventQueue& queue, const Clock& clock, ScriptHooks hooks,
               std::ostream& output);

  bool Verbose = false;  // print tells colours, enabled and visible, too

  // Runs the lines of `text` until their end, "quit" or a click on what closes the program. `name` stands
  // before messages. Stops at the first fault.
  int Run(const std::string& text, const std::string& name);

 private:
  using Words = std::vector<std::string>;
  struct Command {
    const char* Name;
    std::size_t Least, Most;  // words after the name
    void (ScriptRunner::*Run)(const Words& words);
  };
  static const std::vector<Command>& Commands();

  void Click(const Words& words);
  void RightClick(const Words& words);
  void DoubleClick(const Words& words);
  void Press(const Words& words);
  void Release(const Words& words);
  void Set(const Words& words);
  void Wheel(const Words& words);
  void Drag(const Words& words);
  void Focus(const Words& words);
  void PressKey(const Words& words);
  void Hover(const Words& words);
  void Wait(const Words& words);
  void WaitFor(const Words& words);
  void Answer(const Words& words);
  void Print(const Words& words);
  void Expect(const Words& words);
  void ExpectNear(const Words& words);
  void Shot(const Words& words);
  void Dump(const Words& words);
  void Quit(const Words& words);

  void RunLine(const std::string& line);
  Control& Find(const std::string& name) const;
  void PrintControl(const Control& control) const;
  void BringKey(const Key& key, bool down);
  bool Pass(int milliseconds, const std::function<bool()>& until);
  bool IsDone() const { return quit_ || hooks_.IsClosing(); }

  ControlRegistry& registry_;
  EventQueue& queue_;
  const Clock& clock_;
  ScriptHooks hooks_;
  std::ostream& output_;
  std::string focused_;  // the control that has the keyboard, where there is no window
  bool quit_ = false;
};

// Hands over the answers that stand before every other line, for boxes that come before the script can run.
// Returns the script without them; its lines keep their numbers.
std::string TakeAnswers(const std::string& text, const std::function<void(std::string answer)>& answer);

}  // namespace quorl
