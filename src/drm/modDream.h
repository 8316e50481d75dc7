// The external decoder: whether it runs, starting it for what is tuned, asking it to close.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "config/SettingsTable.h"
#include "platform/Clock.h"
#include "platform/Dialogs.h"
#include "platform/EventQueue.h"
#include "platform/Files.h"
#include "platform/Processes.h"

namespace quorl {

struct DreamMachine {
  EventQueue& Queue;
  const Clock& Time;
  Dialogs& Boxes;
  Files& Storage;
  Processes& Programs;
};

// What a start is told of the radio.
struct DreamLinks {
  std::function<std::int32_t()> CaptureDevice = [] { return 1; };  // numbers of those in use, from 1
  std::function<std::int32_t()> PlaybackDevice = [] {
    return 1;
  };  // the usual one, whatever DRM mode plays on
  std::function<std::int32_t()> TunedFrequency = [] { return 0; };  // dHz
  std::function<bool()> LowSideLO = [] { return false; };
  std::function<void(const std::string& line)> Log = [](const std::string&) {};
};

class modDream {
 public:
  // Everything outlives the object. `folder` is where the decoder works and keeps its control file.
  modDream(const DreamMachine& machine, std::string folder, DreamLinks links);

  // What the user has chosen.
  bool RunDreamOnDRM = false, DreamCloseOnExit = true, DreamCloseOnModeChange = false;
  std::string PathToDream;
  std::string DreamProgArgs;  // "%CurFreq%" stands for the tuned frequency in kHz
  // 0 behind, 1 minimised behind, 2 hidden, else focused.
  std::int32_t DreamWindowStyle = 1;

  std::int32_t DreamProcessId = 0;          // of the one started last
  Processes::WindowNumber DreamWindow = 0;  // the one that was found for closing
  bool RunDreamBusy = false;                // while it is being started: events go on meanwhile

  void AddSettings(SettingsTable& table);

  // Starts the decoder, where the user wants it and none runs. Whoever has asked one to close waits first,
  // while IsClosing.
  void RunDREAM();
  // 1 where a program of that file name runs, 0 where none does, -1 where the system doesn't tell.
  std::int32_t IsProcessRunning(const std::string& name);
  void FindDreamWindow();
  // Asks the decoder that was started here to close. It may take its time, or stay. Nothing while IsClosing.
  void CloseDream();
  // The program ends: none is started any more, and ours is asked to close where the user wants that.
  void End();
  // A decoder that was asked to close is still there, and has not had its three seconds yet.
  bool IsClosing();

 private:
  std::int32_t IsDecoderRunning();
  std::string CommandTail() const;
  void EditControlFile();
  void Launch();
  void Tell(const std::string& text);

  DreamMachine machine_;
  std::string folder_;
  DreamLinks links_;
  bool inRun_ = false, ended_ = false;
  std::int32_t closing_ = 0;       // process that was asked to close
  std::int64_t closingUntil_ = 0;  // microseconds
};

}  // namespace quorl
