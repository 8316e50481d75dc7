// Records at its hour what somebody has asked for, and leaves the radio as it was found.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "config/SettingsTable.h"
#include "platform/EventQueue.h"
#include "recorder/TimerProgramme.h"
#include "recorder/clsWavFile.h"

namespace quorl {

// What the timer asks of the radio around the deck.
struct TimerLinks {
  // Whether tuning and recording would be carried out at once: not while a plan is being read or a box waits
  // for an answer. Then the timer looks again a second later.
  std::function<bool()> IsReady = [] { return true; };
  // Recalls a preset, or tunes. Empty for success, else why not.
  std::function<std::string(const TimerTarget&)> Tune = [](const TimerTarget&) { return std::string(); };
  std::function<bool()> IsOn = [] { return false; };
  std::function<void(bool)> SetPower = [](bool) {};
  // Presses Record with that rate (TimerProgramme::Rate), and what was chosen by hand comes back with
  // Release.
  std::function<void(std::int32_t)> Record = [](std::int32_t) {};
  // The deck has been emptied behind the panel's back: its buttons and its rate follow.
  std::function<void()> Release = [] {};
  std::function<void(const std::string&)> Log = [](const std::string&) {};
  // Programmes have changed and are to be stored; their list is to be shown anew.
  std::function<void()> Changed = [] {};
};

// A recording by hand comes first: a programme whose time has come waits for its end and records the rest.
// One that was stopped by hand and not saved is saved first, by its own date.
class RecordingTimer {
 public:
  static constexpr std::size_t kProgrammes = 8;

  // Everything outlives the timer.
  RecordingTimer(clsWavFile& deck, const WavFileMachine& machine, TimerLinks links);

  std::array<TimerProgramme, kProgrammes> Programmes;
  // Where files go; empty: the deck's LastDirectory.
  std::string Folder;

  void Start();  // looks at the clock each second from now on
  void Stop();
  // One that is not to be recorded now any more: saves what there is of it.
  void Cancel();
  // Place of the programme that is being recorded.
  std::optional<std::size_t> Running() const { return running_; }
  // What is going on, or comes next, in one line; empty for nothing.
  std::string State() const;
  void AddSettings(SettingsTable& table);

 private:
  void Tick();
  void Begin(std::size_t which);
  void Watch(double now);
  void End();
  void Leave();
  bool MakeRoom();
  bool SaveByDate();
  std::string PathFor(double when, std::int32_t freq) const;
  std::optional<std::size_t> Due(double now) const;
  void TurnPassed(double now);
  double Now() const;

  clsWavFile& deck_;
  WavFileMachine machine_;
  TimerLinks links_;
  std::unique_ptr<QueueTimer> timer_;
  std::optional<std::size_t> running_;
  std::int64_t halvesAtEnd_ = -1;  // below 0: the end hasn't come
  int secondsBehindEnd_ = 0;
  std::string savedAs_;
  bool wasOn_ = false, inTick_ = false, waits_ = false;
};

}  // namespace quorl
