// The level of the chosen sound input while it is seen, and a test tone for the output: part of whatever
// dialog chooses these devices.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <string>

#include "controls/Controls.h"
#include "controls/LevelBar.h"
#include "controls/Timer.h"
#include "sound/InputCapture.h"
#include "sound/InputLevel.h"
#include "sound/TestTone.h"

namespace quorl {

// What a radio in the same program has to do with the devices.
struct LevelLinks {
  // The radio captures from the device (from 1), and hands its blocks to NoteBlock.
  std::function<bool(int device)> RadioHears = [](int) { return false; };
  // The input is about to be opened: a radio that is off lets go of its own. False where it is not the time
  // for that.
  std::function<bool()> FreeInput = [] { return true; };
  // The sound card is another program's at present.
  std::function<bool()> IsLent = [] { return false; };
};

// Holds a device only while it is shown, and opens none that the radio has: its blocks are taken then.
// Hidden, it costs nothing.
class LevelPanel {
 public:
  // Controls are `dialog` + ".picLevel(0)" and so on. Registry, system and queue outlive the panel.
  LevelPanel(ControlRegistry& registry, const std::string& dialog, SoundSystem& system, EventQueue& queue,
             LevelLinks links = {});

  ControlArray<LevelBar> picLevel;  // left, right
  ControlArray<Label> lblLevel;
  Label lblLevelHint;  // what to do about it
  CommandButton cmdTestTone;
  Label lblTestTone;  // why there is none

  // Whether the panel is seen. What is not gives its devices back.
  void Show(bool shown);
  // The devices as they are chosen, from 1; 0 for none. `SDRModelNo` is the board that the input belongs to,
  // -1 for one that isn't known.
  void ChooseInput(int device);
  void ChooseOutput(int device) { output_ = device; }
  void ChooseBoard(int SDRModelNo) { model_ = SDRModelNo; }
  // A block that the radio has captured.
  void NoteBlock(const std::int16_t* left, const std::int16_t* right, std::int32_t n);
  // Somebody is about to open the devices: they are free when this returns.
  void LetGo();

  void cmdTestTone_Click();

 private:
  void Follow();
  void OpenInput();
  void Take(const std::int16_t* left, const std::int16_t* right, std::int32_t n);
  void Rest(const std::string& why);
  void ShowLevels();
  void Advise();
  std::string CableAdvice() const;
  void Hint(const std::string& text, bool warns);

  LevelLinks links_;
  InputLevel level_;
  InputCapture capture_;
  TestTone tone_;
  Timer tmrLevel_;
  int input_ = 0, output_ = 0, model_ = -1;
  bool shown_ = false;
  int wait_ = 0;       // ticks until the input is tried again
  int quiet_ = 0;      // ticks since the last block
  std::string fault_;  // why the input can't be opened
};

}  // namespace quorl
