// The terminal while listening: one live line, and keys that tune.
#pragma once

#include <termios.h>

#include <memory>
#include <optional>
#include <string>

#include "core/LiveRadio.h"
#include "platform/linux/system/LinuxEventQueue.h"

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
  termios before_{};
  bool isTerminal_ = false;
};

class ListenScreen {
 public:
  ListenScreen(LiveRadio& radio, float volume);

  // Tells the keys and reads them from standard input through `queue`, where that is a terminal.
  void WatchKeys(LinuxEventQueue& queue);
  bool HasKeys() const { return keys_ != nullptr; }
  // Draws the line anew, at the end of standard error.
  void Draw();
  // Ends the line, so that what follows stands below it.
  void Finish();
  // The sound device has vanished: the line says so until it has been opened again and plays.
  void ShowSoundLost();
  void ShowSoundPlays();
  bool IsDone() const { return done_; }

 private:
  void TakeKeys();
  void TakeKey(const std::string& key);
  void TellKeys();
  void Tune(double steps);
  void ChangeStep(int places);
  void NextMode();
  void NextFilter();
  void ToggleNotch();
  void ChangeVolume(float by);
  void ToggleMute();
  void ReopenSound();
  std::string Line() const;

  LiveRadio& radio_;
  std::optional<RawTerminal> terminal_;  // while keys are read
  std::unique_ptr<FileWatch> keys_;
  float volume_;  // the control's value
  bool muted_ = false, muting_ = false;
  bool notch_ = false;
  bool soundLost_ = false, reopened_ = false;
  bool drawn_ = false;
  bool done_ = false;
  Listening following_;
};

}  // namespace quorl::cli
