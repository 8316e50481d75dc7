#include "recorder/RecordingTimer.h"

#include <algorithm>
#include <chrono>

#include "platform/CalendarDays.h"
#include "recorder/files/RecordingName.h"
#include "recorder/journal/RecordingParts.h"
#include "support/ScopedFlag.h"

namespace quorl {
namespace {

constexpr std::chrono::seconds kTick{1};
// A half takes 22 s at most; a sound that has stopped fills none.
constexpr int kMostSecondsBehindEnd = 45;

// "2026-11-23 18:05"
std::string Hour(double when) {
  return DateText(when).substr(0, 16);
}

}  // namespace

RecordingTimer::RecordingTimer(clsWavFile& deck, const WavFileMachine& machine, TimerLinks links)
    : deck_(deck),
      machine_(machine),
      links_(std::move(links)),
      timer_(machine.Queue.CreateTimer([this] { Tick(); })) {}

void RecordingTimer::Start() {
  timer_->Start(kTick);
}

void RecordingTimer::Stop() {
  timer_->Stop();
}

double RecordingTimer::Now() const {
  return DaysOf(machine_.Time.Now());
}

std::optional<std::size_t> RecordingTimer::Due(double now) const {
  for (std::size_t i = 0; i < kProgrammes; ++i) {
    const TimerProgramme& each = Programmes[i];
    if (each.Active && each.Start <= now && each.End > now) return i;
  }
  return {};
}

void RecordingTimer::TurnPassed(double now) {
  for (TimerProgramme& each : Programmes) {
    if (!each.Active || each.End > now) continue;
    links_.Log("The timer missed the recording of " + Hour(each.Start));
    TurnProgramme(each, now);
    links_.Changed();
  }
}

void RecordingTimer::Tick() {
  if (inTick_ || deck_.IsBusy()) return;
  const ScopedFlag inTick(inTick_);
  const double now = Now();
  if (running_) {
    Watch(now);
    return;
  }
  TurnPassed(now);
  const std::optional<std::size_t> due = Due(now);
  if (due && !deck_.IsUnderWay()) {
    if (!links_.IsReady()) return;
    Begin(*due);
  } else if (due && !waits_) {
    links_.Log("The timer waits for the end of the recording by hand");
  }
  waits_ = due && !running_;
}

// What is on the deck goes: a recording that nobody saved under its own date, a file that plays back to its
// place. False where that recording can't be saved.
bool RecordingTimer::MakeRoom() {
  if (deck_.IsUnsaved() && !SaveByDate()) return false;
  deck_.StopPlayer();
  deck_.CloseFile();
  links_.Release();
  return true;
}

void RecordingTimer::Begin(std::size_t which) {
  const TimerProgramme programme = Programmes[which];
  wasOn_ = links_.IsOn();
  std::string fault;
  if (!MakeRoom()) fault = "the recording before it can't be saved";
  if (fault.empty()) fault = links_.Tune(programme.Target);
  if (fault.empty()) {
    links_.SetPower(true);
    if (!links_.IsOn()) fault = "the sound doesn't start";
  }
  if (fault.empty()) {
    links_.Record(programme.Rate);
    if (!deck_.IsRecording()) fault = "the recording can't begin";
  }
  running_ = which;
  halvesAtEnd_ = -1;
  secondsBehindEnd_ = 0;
  if (fault.empty()) {
    links_.Log("The timer records until " + Hour(programme.End));
    links_.Changed();
    return;
  }
  links_.Log("The timer can't record: " + fault);
  links_.SetPower(wasOn_);
  Leave();
}

// Whoever stops, saves or closes the recording by hand takes it over.
void RecordingTimer::Watch(double now) {
  if (!deck_.IsUnderWay()) {
    Leave();
    return;
  }
  if (now < Programmes[*running_].End) return;
  if (halvesAtEnd_ < 0) halvesAtEnd_ = deck_.HalvesFilled();
  ++secondsBehindEnd_;
  if (deck_.HalvesFilled() > halvesAtEnd_ || secondsBehindEnd_ > kMostSecondsBehindEnd) End();
}

void RecordingTimer::End() {
  deck_.StopPlayer();
  if (SaveByDate()) {
    links_.Log("The timer has recorded " + savedAs_);
    deck_.CloseFile();
  }
  links_.Release();
  links_.SetPower(wasOn_);
  Leave();
}

void RecordingTimer::Leave() {
  TimerProgramme& programme = Programmes[*running_];
  TurnProgramme(programme, std::max(Now(), programme.End));
  running_.reset();
  links_.Changed();
}

void RecordingTimer::Cancel() {
  if (!running_ || inTick_ || deck_.IsBusy()) return;
  const ScopedFlag inTick(inTick_);
  End();
}

std::string RecordingTimer::PathFor(double when, std::int32_t freq) const {
  std::string folder = Folder.empty() ? deck_.LastDirectory : Folder;
  if (folder.empty()) folder = deck_.DefaultDirectory;
  const std::string name = folder + "/" + RecordingName(when, freq);
  std::string path = name + ".wav";
  for (int number = 2; !TakenNames(machine_.Storage, path, deck_.PartsToSave()).empty(); ++number) {
    path = name + " (" + std::to_string(number) + ").wav";
  }
  return path;
}

// The name that the user has typed for the next recording stays.
bool RecordingTimer::SaveByDate() {
  LogRecord first = deck_.Beginning();
  if (first.Freq == 0) first = {Now(), deck_.TunedFrequency(), 0, 0};
  const std::string path = PathFor(first.When, first.Freq);
  const std::string name = deck_.RecordFileName, directory = deck_.LastDirectory;
  const bool saved = deck_.SaveAs(path) == 0;
  deck_.RecordFileName = name;
  deck_.LastDirectory = directory;
  if (saved) savedAs_ = path;
  return saved;
}

std::string RecordingTimer::State() const {
  if (running_) return "The timer records until " + Hour(Programmes[*running_].End);
  if (waits_) return "The timer waits for the end of this recording";
  const TimerProgramme* next = nullptr;
  for (const TimerProgramme& each : Programmes) {
    if (each.Active && (next == nullptr || each.Start < next->Start)) next = &each;
  }
  return next == nullptr ? "" : "The timer records at " + Hour(next->Start);
}

void RecordingTimer::AddSettings(SettingsTable& table) {
  for (std::size_t i = 0; i < kProgrammes; ++i) {
    table.Add<std::string>(
        "Timer" + std::to_string(i + 1),
        [this, i] {
          return Programmes[i] == TimerProgramme{} ? std::string() : ProgrammeText(Programmes[i]);
        },
        [this, i](const std::string& text) {
          if (const std::optional<TimerProgramme> read = ParseProgramme(text)) {
            Programmes[i] = *read;
          } else if (!text.empty()) {
            links_.Log("Setting \"Timer" + std::to_string(i + 1) + "\" is no programme and is left out");
          }
        });
  }
}

}  // namespace quorl
