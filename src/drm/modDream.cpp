#include "drm/modDream.h"

#include <utility>

#include "profile/modIniFiles.h"
#include "support/Product.h"
#include "support/ScopedFlag.h"

namespace quorl {

namespace {

constexpr const char* kUsualName = "DREAM.exe";
constexpr std::string_view kFrequencyToken = "%CurFreq%";
constexpr std::int32_t kTenthsOfHertzPerKilohertz = 10000;
constexpr int kYields = 15;                    // in which a new program's window comes up
constexpr std::int64_t kPatience = 3'000'000;  // microseconds

std::string FileName(const std::string& path) {
  return path.substr(path.find_last_of('/') + 1);
}

std::string Replaced(std::string text, std::string_view token, const std::string& value) {
  for (std::size_t at = text.find(token); at != std::string::npos; at = text.find(token, at + value.size()))
    text.replace(at, token.size(), value);
  return text;
}

WindowWish WishOf(std::int32_t style) {
  switch (style) {
    case 0:
      return WindowWish::Behind;
    case 1:
      return WindowWish::MinimisedBehind;
    case 2:
      return WindowWish::Hidden;
    default:
      return WindowWish::Focused;
  }
}

}  // namespace

modDream::modDream(const DreamMachine& machine, std::string folder, DreamLinks links)
    : machine_(machine), folder_(std::move(folder)), links_(std::move(links)) {}

void modDream::AddSettings(SettingsTable& table) {
  table.Add("DRM.RunDreamOnDRM", RunDreamOnDRM);
  table.Add("DRM.PathToDream", PathToDream);
  table.Add("DRM.DreamProgArgs", DreamProgArgs);
  table.Add("DRM.DreamWindowStyle", DreamWindowStyle);
  table.Add("DRM.DreamCloseOnExit", DreamCloseOnExit);
  table.Add("DRM.DreamCloseOnModeChange", DreamCloseOnModeChange);
}

std::int32_t modDream::IsProcessRunning(const std::string& name) {
  Failure failure;
  const bool found = !machine_.Programs.Find(name, failure).empty();
  if (!failure) return found ? 1 : 0;
  links_.Log(failure->Text);
  return -1;
}

// By the usual name and by the one that it has here; our own is known by its number, whatever it calls
// itself.
std::int32_t modDream::IsDecoderRunning() {
  if (machine_.Programs.IsRunning(DreamProcessId)) return 1;
  const std::int32_t usual = IsProcessRunning(kUsualName);
  return usual != 0 ? usual : IsProcessRunning(FileName(PathToDream));
}

std::string modDream::CommandTail() const {
  const std::string kilohertz = std::to_string(links_.TunedFrequency() / kTenthsOfHertzPerKilohertz);
  return " -M 0 -I " + std::to_string(links_.CaptureDevice()) + " -O " +
         std::to_string(links_.PlaybackDevice()) + "  " + Replaced(DreamProgArgs, kFrequencyToken, kilohertz);
}

// The decoder's own windows of analysis stay away, and it takes the spectrum the right way round.
void modDream::EditControlFile() {
  const std::string file = folder_ + "/Dream.ini";
  ProfileSaveItem(machine_.Storage, machine_.Boxes, "window geometry", "analdemvis", "0", file);
  ProfileSaveItem(machine_.Storage, machine_.Boxes, "receiver", "flipspectrum",
                  links_.LowSideLO() ? "1" : "0", file);
}

void modDream::RunDREAM() {
  if (inRun_ || ended_ || !RunDreamOnDRM || PathToDream.empty()) return;
  const ScopedFlag running(inRun_);
  if (machine_.Programs.IsRunning(closing_)) links_.Log("The decoder was asked to close, and stays");
  const std::int32_t found = IsDecoderRunning();
  if (found < 0) Tell("System Error checking for process DREAM.EXE - Please report Problem to QUORL");
  if (found == 0) Launch();
}

void modDream::Launch() {
  const ProgramStart start{PathToDream, CommandTail(), folder_, WishOf(DreamWindowStyle)};
  EditControlFile();
  if (ended_) return;  // while a box stood open
  Failure failure;
  {
    const ScopedFlag busy(RunDreamBusy);
    // Known at once, for who closes it in one of the yields.
    if (const int process = machine_.Programs.Start(start, failure)) DreamProcessId = process;
    for (int i = 0; i < kYields; ++i) machine_.Queue.Yield();
  }
  links_.Log(failure ? failure->Text : "The decoder runs: " + start.Program + start.Arguments);
  if (failure) Tell("DREAM program located at : " + PathToDream + "\n failed to execute");
}

void modDream::End() {
  ended_ = true;
  if (DreamCloseOnExit) CloseDream();
}

void modDream::Tell(const std::string& text) {
  machine_.Boxes.ShowMessage({.Text = text, .Title = kProductName});
}

void modDream::FindDreamWindow() {
  DreamWindow = machine_.Programs.FindWindow(DreamProcessId);
}

void modDream::CloseDream() {
  if (!machine_.Programs.IsRunning(DreamProcessId) || IsClosing()) return;
  closing_ = DreamProcessId;
  closingUntil_ = machine_.Time.Microseconds() + kPatience;
  FindDreamWindow();
  if (DreamWindow != 0) {
    machine_.Programs.CloseWindow(DreamWindow);
  } else {
    machine_.Programs.Close(DreamProcessId);
  }
}

bool modDream::IsClosing() {
  return closing_ != 0 && machine_.Programs.IsRunning(closing_) &&
         machine_.Time.Microseconds() < closingUntil_;
}

}  // namespace quorl
