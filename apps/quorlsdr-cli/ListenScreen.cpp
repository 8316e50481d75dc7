#include "ListenScreen.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

#include "state/PublicConstants.h"
#include "support/Picture.h"

namespace quorl::cli {
namespace {

constexpr std::array<const char*, DemodMode::Count> kModeNames{"AM", "USB", "LSB", "DRM", "FM", "BC"};
constexpr int kMeterBars = 14;  // of 12 dB each, half the panel's resolution
constexpr double kDbPerSUnit = 6.0;
constexpr double kS9 = 54.0;  // dB of the meter's scale
constexpr float kMute = -10000.0F, kLoudest = 8000.0F;

double Decibels(double ratio) {
  return ratio > 0.0 ? 20.0 * std::log10(ratio) : -99.0;
}

std::string SMeter(double level) {
  const double db = std::max(0.0, Decibels(level));
  const int bars = std::clamp(static_cast<int>(db / (2 * kDbPerSUnit)), 0, kMeterBars);
  std::string text = "[" + std::string(static_cast<std::size_t>(bars), '#') +
                     std::string(static_cast<std::size_t>(kMeterBars - bars), '-') + "] ";
  char reading[16];
  if (db > kS9) {
    std::snprintf(reading, sizeof reading, "S9+%02.0f", db - kS9);
  } else {
    std::snprintf(reading, sizeof reading, "S%-4d", static_cast<int>(db / kDbPerSUnit));
  }
  return text + reading;
}

}  // namespace

RawTerminal::RawTerminal()
    : isTerminal_(isatty(STDIN_FILENO) != 0 && tcgetattr(STDIN_FILENO, &before_) == 0) {
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

ListenScreen::ListenScreen(LiveRadio& radio, float volume) : radio_(radio), volume_(volume) {}

void ListenScreen::WatchKeys(LinuxEventQueue& queue) {
  if (terminal_.IsTerminal()) keys_ = queue.WatchFile(STDIN_FILENO, [this] { TakeKeys(); });
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
    // An arrow is ESC [ and a letter, a page key ESC [ and a digit and ~.
    const std::size_t rest = static_cast<std::size_t>(got) - at;
    std::size_t length = 1;
    if (bytes[at] == 27 && rest >= 3)
      length = bytes[at + 2] >= '0' && bytes[at + 2] <= '9' && rest >= 4 ? 4 : 3;
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
      {"q", [](ListenScreen& s) { s.Stop(); }},
      {"n",
       [](ListenScreen& s) {
         s.notch_ = !s.notch_;
         s.radio_.Radio.SetNotch(s.notch_, NotchModes::Auto, NotchTypes::Audio, 1000, 100);
       }},
  };
  for (const Action& action : kActions) {
    if (key == action.Key) {
      action.Act(*this);
      Draw();
      return;
    }
  }
  hintFor_ = 25;
}

void ListenScreen::Tune(double steps) {
  clsVFO& vfo = *radio_.VFO();
  double amount = std::abs(steps) * vfo.TuneStep();
  steps > 0 ? vfo.Inc_Freq(amount) : vfo.Dec_Freq(amount);
}

void ListenScreen::ChangeStep(int places) {
  clsVFO& vfo = *radio_.VFO();
  vfo.SetTuneStep(std::clamp(vfo.TuneStep() * std::pow(10.0, places), 10.0, 1e6));
}

void ListenScreen::NextMode() {
  Receiver& receiver = radio_.Radio;
  receiver.SetDemodMode((receiver.Vars.CurrentDemodMode + 1) % DemodMode::Count);
}

void ListenScreen::NextFilter() {
  Receiver& receiver = radio_.Radio;
  receiver.SetFilterMode((receiver.Vars.CurrentFilterMode + 1) % FilterModeCount);
}

void ListenScreen::ChangeVolume(float by) {
  muted_ = false;
  volume_ = std::clamp(volume_ + by, kMute, kLoudest);
  radio_.Radio.Agc.SetVolume(volume_);
}

void ListenScreen::ToggleMute() {
  muted_ = !muted_;
  radio_.Radio.Agc.SetVolume(muted_ ? kMute : volume_);
}

std::string ListenScreen::Line() const {
  const Receiver& receiver = radio_.Radio;
  const PublicVars& vars = receiver.Vars;
  const clsVFO& vfo = *radio_.VFO();
  char text[240];
  std::snprintf(text, sizeof text, "%s  %-3s %-7s step %s  %s  AGC %+5.1f dB  load %2.0f%%%s%s",
                FormatPicture(vfo.TunedFrequency() / 10.0, "#0 000 000.0 Hz").c_str(),
                kModeNames[static_cast<std::size_t>(vars.CurrentDemodMode)],
                FilterModeTexts[static_cast<std::size_t>(vars.CurrentFilterMode)].Caption,
                FormatPicture(vfo.TuneStep() / 10.0, "#,##0 Hz").c_str(),
                SMeter(receiver.MeanSignalLevel()).c_str(), Decibels(vars.AGCMeterGain),
                100.0 * static_cast<double>(receiver.Pump.PumpLoad), notch_ ? "  notch" : "",
                muted_ ? "  muted" : "");
  return text;
}

void ListenScreen::Draw() {
  if (isatty(STDERR_FILENO) == 0) return;
  std::string line = Line();
  if (hintFor_ > 0) {
    --hintFor_;
    line += "   " + hint_;
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
