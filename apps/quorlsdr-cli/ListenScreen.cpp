#include "ListenScreen.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

#include "Fault.h"
#include "display/SMeterPanel.h"
#include "interaction/PanelTexts.h"
#include "support/Decibels.h"
#include "support/NumberPicture.h"
#include "support/ScopedFlag.h"

namespace quorl::cli {
namespace {

constexpr int kMeterBars = 10;  // a full sound card fills them
constexpr double kDbPerBar = 9.0;
constexpr int kNotchWidth = 100;  // Hz
constexpr float kMute = -10000.0F, kLoudest = 8000.0F;

// A bar and the reading of a level over the noise floor, both of fixed width.
std::string SMeter(float level) {
  const int bars = std::clamp(static_cast<int>(Decibels(level) / kDbPerBar), 0, kMeterBars);
  std::string reading = SMeterReading(level);
  reading.resize(std::size("S9 +00 dB") - 1, ' ');
  return "[" + std::string(static_cast<std::size_t>(bars), '#') +
         std::string(static_cast<std::size_t>(kMeterBars - bars), '-') + "] " + reading;
}

// The caption of the mode's button without its mnemonic.
std::string ModeName(std::int32_t mode) {
  std::string name = DemodModeTexts[static_cast<std::size_t>(mode)].Caption;
  std::erase(name, '&');
  return name;
}

}  // namespace

RawTerminal::RawTerminal() {
  isTerminal_ = isatty(STDIN_FILENO) != 0 && tcgetattr(STDIN_FILENO, &before_) == 0;
  if (!isTerminal_) return;
  termios raw = before_;
  raw.c_lflag &= ~static_cast<tcflag_t>(ICANON | ECHO);
  raw.c_cc[VMIN] = 0;
  raw.c_cc[VTIME] = 0;
  tcsetattr(STDIN_FILENO, TCSANOW, &raw);
}

RawTerminal::~RawTerminal() {
  if (isTerminal_) tcsetattr(STDIN_FILENO, TCSANOW, &before_);
}

// Whoever else turns the volume ends the mute, and the keys go on from there.
ListenScreen::ListenScreen(LiveRadio& radio, float volume) : radio_(radio), volume_(volume) {
  following_ = radio_.Rx.Changed.Listen([this](ReceiverPart part) {
    if (part != ReceiverPart::Volume || muting_) return;
    muted_ = false;
    volume_ = radio_.Rx.Vars.OutputVolume;
  });
}

void ListenScreen::WatchKeys(LinuxEventQueue& queue) {
  terminal_.emplace();
  if (!terminal_->IsTerminal()) return;
  keys_ = queue.WatchFile(STDIN_FILENO, [this] { TakeKeys(); });
  TellKeys();
}

void ListenScreen::TellKeys() {
  if (isatty(STDERR_FILENO) == 0) return;
  Finish();
  std::fputs(
      "up/down tune, page up/down ten steps, left/right step, m mode, f filter,\n"
      "n notch, +/- volume, space mute, p reopen the sound devices, q quit\n",
      stderr);
}

void ListenScreen::TakeKeys() {
  std::array<char, 64> bytes;
  const ssize_t got = read(STDIN_FILENO, bytes.data(), bytes.size());
  if (got <= 0) {
    keys_.reset();
    return;
  }
  for (ssize_t i = 0; i < got;) {
    const auto at = static_cast<std::size_t>(i);
    // An arrow is ESC [ (or O) and a letter, a page key ESC [ and a digit and ~.
    const std::size_t rest = static_cast<std::size_t>(got) - at;
    std::size_t length = 1;
    if (bytes[at] == 27 && rest >= 3)
      length = bytes[at + 2] >= '0' && bytes[at + 2] <= '9' && rest >= 4 ? 4 : 3;
    if (length > 1 && bytes[at + 1] == 'O') bytes[at + 1] = '[';
    TakeKey(std::string(bytes.data() + at, length));
    i += static_cast<ssize_t>(length);
  }
}

void ListenScreen::TakeKey(const std::string& key) {
  struct Action {
    const char* Key;
    void (*Act)(ListenScreen& screen);
  };
  static constexpr Action kActions[] = {
      {"\x1b[A", [](ListenScreen& s) { s.Tune(1); }},
      {"\x1b[B", [](ListenScreen& s) { s.Tune(-1); }},
      {"\x1b[5~", [](ListenScreen& s) { s.Tune(10); }},
      {"\x1b[6~", [](ListenScreen& s) { s.Tune(-10); }},
      {"\x1b[C", [](ListenScreen& s) { s.ChangeStep(-1); }},
      {"\x1b[D", [](ListenScreen& s) { s.ChangeStep(1); }},
      {"m", [](ListenScreen& s) { s.NextMode(); }},
      {"f", [](ListenScreen& s) { s.NextFilter(); }},
      {"+", [](ListenScreen& s) { s.ChangeVolume(200); }},
      {"-", [](ListenScreen& s) { s.ChangeVolume(-200); }},
      {" ", [](ListenScreen& s) { s.ToggleMute(); }},
      {"q", [](ListenScreen& s) { s.done_ = true; }},
      {"n", [](ListenScreen& s) { s.ToggleNotch(); }},
      {"p", [](ListenScreen& s) { s.ReopenSound(); }},
  };
  for (const Action& action : kActions) {
    if (key == action.Key) {
      action.Act(*this);
      Draw();
      return;
    }
  }
  TellKeys();
}

void ListenScreen::Tune(double steps) {
  radio_.Tuning().Tune().StepBy(steps * radio_.VFO().TuneStep());
}

void ListenScreen::ChangeStep(int places) {
  clsVFO& vfo = radio_.VFO();
  vfo.SetTuneStep(std::clamp(vfo.TuneStep() * std::pow(10.0, places), 10.0, 1e6));
}

void ListenScreen::NextMode() {
  Receiver& receiver = radio_.Rx;
  receiver.SetDemodMode((receiver.Vars.CurrentDemodMode + 1) % DemodMode::Count);
}

void ListenScreen::NextFilter() {
  Receiver& receiver = radio_.Rx;
  receiver.SetFilterMode((receiver.Vars.CurrentFilterMode + 1) % FilterModeCount);
}

void ListenScreen::ToggleNotch() {
  notch_ = !notch_;
  Receiver& receiver = radio_.Rx;
  receiver.SwitchNotch(notch_);
  receiver.SetNotchMode(NotchModes::Auto);
  receiver.SetNotchWidth(kNotchWidth);
}

void ListenScreen::ReopenSound() {
  Finish();
  radio_.Stop();
  const Failure failure = radio_.Start();
  reopened_ = !failure;
  if (failure) PrintFault(failure->Text);
}

void ListenScreen::ShowSoundLost() {
  soundLost_ = true;
  reopened_ = false;
}

void ListenScreen::ShowSoundPlays() {
  if (reopened_) soundLost_ = false;
}

void ListenScreen::ChangeVolume(float by) {
  radio_.Rx.SetVolume(std::clamp(volume_ + by, kMute, kLoudest));
}

void ListenScreen::ToggleMute() {
  const ScopedFlag muting(muting_);
  muted_ = !muted_;
  radio_.Rx.SetVolume(muted_ ? kMute : volume_);
}

std::string ListenScreen::Line() const {
  const Receiver& receiver = radio_.Rx;
  const PublicVars& vars = receiver.Vars;
  const clsVFO& vfo = radio_.VFO();
  const float level = std::max(receiver.MeanSignalLevel() - SMeterPanel::kFloor, 0.0F);
  const std::string step =
      soundLost_ ? "NO SOUND, p reopens" : FormatPicture(vfo.TuneStep() / 10.0, "#,##0 Hz") + " step";
  char text[240];
  std::snprintf(text, sizeof text, "%s %-3s %-7s %s load %4.1f%% %s%s%s",
                FormatPicture(radio_.Tuning().Tune().Wanted() / 10.0, "#0 000 000.0 Hz").c_str(),
                ModeName(vars.CurrentDemodMode).c_str(),
                FilterModeTexts[static_cast<std::size_t>(vars.CurrentFilterMode)].Caption,
                SMeter(level).c_str(), 100.0 * static_cast<double>(receiver.Pump.PumpLoad), step.c_str(),
                muted_ ? " muted" : "", notch_ ? " notch" : "");
  return text;
}

void ListenScreen::Draw() {
  if (isatty(STDERR_FILENO) == 0) return;
  // A line that wraps can't be drawn over.
  winsize window{};
  std::string line = Line();
  if (ioctl(STDERR_FILENO, TIOCGWINSZ, &window) == 0 && window.ws_col > 1) {
    line.resize(std::min<std::size_t>(line.size(), window.ws_col - 1U));
  }
  std::fprintf(stderr, "\r%s\x1b[K", line.c_str());
  std::fflush(stderr);
  drawn_ = true;
}

void ListenScreen::Finish() {
  if (drawn_) std::fprintf(stderr, "\n");
  drawn_ = false;
}

}  // namespace quorl::cli
