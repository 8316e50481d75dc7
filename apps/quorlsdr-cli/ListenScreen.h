// The terminal while listening: one live line, and keys that tune.
#pragma once

#include <termios.h>

#include <memory>
#include <string>

#include "core/LiveRadio.h"
#include "platform/linux/LinuxEventQueue.h"

namespace quorl::cli {

// Takes single key presses from a terminal for as long as it lives.
class RawTerminal {
 public:
  RawTerminal();
  ~RawTerminal();
  RawTerminal(const RawTerminal&) = delete;
  RawTerminal& operator=(const RawTerminal&) = delete;
  bool IsTerminal() const { return isTerminal_; }

 private:
  bool isTerminal_;
  termios before_{};
};

class ListenScreen {
 public:
  ListenScreen(LiveRadio& radio, float volume);

  // Reads keys from standard input through `queue`, where that is a terminal.
  void WatchKeys(LinuxEventQueue& queue);
  // Draws the line anew, at the end of standard error.
  void Draw();
  // Ends the line, so that what follows stands below it.
  void Finish();
  bool IsDone() const { return done_; }
  void Stop() { done_ = true; }

 private:
  void TakeKeys();
  void TakeKey(const std::string& key);
  void Tune(double steps);
  void ChangeStep(int places);
  void NextMode();
  void NextFilter();
  void ChangeVolume(float by);
  void ToggleMute();
  std::string Line() const;

  LiveRadio& radio_;
  RawTerminal terminal_;
  std::unique_ptr<FileWatch> keys_;
  float volume_;  // the control's value
  bool muted_ = false;
  bool notch_ = false;
  bool drawn_ = false;
  bool done_ = false;
  std::string hint_ =
      "up/down tune, left/right step, m mode, f filter, n notch, +/- volume, space mute, q quit";
  int hintFor_ = 25;  // draws
};

}  // namespace quorl::cli
