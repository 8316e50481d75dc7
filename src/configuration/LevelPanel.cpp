#include "configuration/LevelPanel.h"

#include <algorithm>
#include <cmath>

#include "state/InputBand.h"
#include "state/PublicConstants.h"
#include "support/Decibels.h"
#include "support/NumberPicture.h"

namespace quorl {

namespace {

constexpr int kInterval = 160;            // ms
constexpr int kRetry = 3000 / kInterval;  // a device that refuses, or that somebody else wants first
constexpr int kQuiet = 2000 / kInterval;  // without a block
constexpr double kFullScale = 32767, kLowest = -60;  // dB at the bar's beginning

constexpr const char* kLent = "The decoder has the sound card.";
constexpr const char *kPlay = "T&est tone", *kEnd = "&End tone";

double DecibelsOf(double peak) {
  return std::round(std::max(Decibels(std::max(peak, 1.0) / kFullScale), kLowest - 1));
}

double PlaceOf(double decibels) {
  return std::clamp(1 - decibels / kLowest, 0.0, 1.0);
}

const char* WordOf(InputBand band) {
  return band == InputBand::Low ? "low" : band == InputBand::Right ? "right" : "too loud";
}

}  // namespace

LevelPanel::LevelPanel(ControlRegistry& registry, const std::string& dialog, SoundSystem& system,
                       EventQueue& queue, LevelLinks links)
    : picLevel(registry, dialog + ".picLevel", 2),
      lblLevel(registry, dialog + ".lblLevel", 2),
      lblLevelHint(registry, dialog + ".lblLevelHint"),
      cmdTestTone(registry, dialog + ".cmdTestTone"),
      lblTestTone(registry, dialog + ".lblTestTone"),
      links_(std::move(links)),
      capture_(system, [this](const auto* left, const auto* right, std::int32_t n) { Take(left, right, n); }),
      tone_(system, queue),
      tmrLevel_(queue, [this] { Follow(); }) {
  const std::vector<double> bands{0.0, PlaceOf(Decibels(kRightFrom / kFullScale)),
                                  PlaceOf(Decibels(kHighFrom / kFullScale))};
  for (int channel = 0; channel < 2; ++channel) {
    const std::string side = channel == 0 ? "left" : "right";
    picLevel(channel).Bands = bands;
    picLevel(channel).AccessibleName = "Level of the " + side + " channel";
    lblLevel(channel).AccessibleName = "Level of the " + side + " channel, decibels";
  }
  lblLevelHint.AccessibleName = "What the level says";
  lblTestTone.AccessibleName = "Test tone";
  cmdTestTone.Caption = kPlay;
  cmdTestTone.ToolTip = "1 kHz for a second on the chosen output, 20 dB below full level";
  cmdTestTone.Click = [this] { cmdTestTone_Click(); };
  tone_.OnEnd = [this] { cmdTestTone.Caption = kPlay; };
  tmrLevel_.SetInterval(kInterval);
  Rest({});
}

void LevelPanel::Show(bool shown) {
  if (shown == shown_) return;
  shown_ = shown;
  wait_ = quiet_ = 0;
  tmrLevel_.SetEnabled(shown);
  if (shown) return Follow();
  capture_.Close();
  tone_.Stop();
  lblTestTone.Caption = std::string();
  Rest({});
}

void LevelPanel::ChooseInput(int device) {
  if (device == input_) return;
  input_ = device;
  capture_.Close();
  wait_ = quiet_ = 0;
  Rest({});
  if (shown_) Follow();
}

void LevelPanel::LetGo() {
  capture_.Close();
  tone_.Stop();
  wait_ = kRetry;
}

void LevelPanel::NoteBlock(const std::int16_t* left, const std::int16_t* right, std::int32_t n) {
  if (shown_ && links_.RadioHears(input_)) Take(left, right, n);
}

void LevelPanel::Take(const std::int16_t* left, const std::int16_t* right, std::int32_t n) {
  level_.Take(left, right, n);
  quiet_ = 0;
}

void LevelPanel::Follow() {
  if (links_.IsLent() || input_ < 1) {
    capture_.Close();
    if (links_.IsLent()) tone_.Stop();
    return Rest(input_ < 1 ? "There is no sound input." : kLent);
  }
  if (links_.RadioHears(input_)) {
    capture_.Close();
    fault_.clear();
    wait_ = 0;
  } else if (!capture_.IsRunning()) {
    OpenInput();
  }
  if (!fault_.empty()) return Rest(fault_);
  if (wait_ > 0 && !capture_.IsRunning()) return Rest({});  // somebody else opens it first
  if (++quiet_ > kQuiet) return Rest("Nothing comes from this input.");
  ShowLevels();
}

void LevelPanel::OpenInput() {
  if (--wait_ > 0 || !links_.FreeInput()) return;
  wait_ = kRetry;
  quiet_ = 0;
  const Failure failure = capture_.Open(input_);
  fault_ = failure ? failure->Text : std::string();
  if (!failure) wait_ = 0;
}

void LevelPanel::Rest(const std::string& why) {
  level_.Rest();
  ShowLevels();
  Hint(why, !why.empty());
}

void LevelPanel::ShowLevels() {
  for (int channel = 0; channel < 2; ++channel) {
    LevelBar& bar = picLevel(channel);
    Label& text = lblLevel(channel);
    if (!level_.IsHeard()) {
      bar.Level = 0.0;
      text.Caption = std::string();
      bar.AccessibleText = "no signal";
      continue;
    }
    const double decibels = DecibelsOf(level_.Peak(channel));
    const InputBand band = InputBandOf(level_.Peak(channel));
    bar.Level = PlaceOf(decibels);
    bar.ForeColour = text.ForeColour = InputBandInk(band);
    if (decibels < kLowest) text.ForeColour = kNoColour;
    text.Caption = decibels < kLowest ? "silent" : FormatPicture(decibels, "#0 dB") + "  " + WordOf(band);
    bar.AccessibleText = text.Caption();
  }
  if (level_.IsHeard()) Advise();
}

void LevelPanel::Advise() {
  if (const std::string cable = CableAdvice(); !cable.empty()) return Hint(cable, true);
  const bool pair = model_ == SDRModel::IQXtalRX;
  const InputBand band = InputBandOf(pair ? std::max(level_.Peak(0), level_.Peak(1)) : level_.Peak(0));
  switch (band) {
    case InputBand::Low:
      return Hint("Low: with an antenna, turn the input up until the bar is green.", false);
    case InputBand::Right:
      return Hint("The level is right.", false);
    case InputBand::High:
      return Hint("Too loud: turn the input down until the bar is green.", true);
  }
}

// A board with I and Q needs both channels, the others the left one.
std::string LevelPanel::CableAdvice() const {
  const bool pair = model_ == SDRModel::IQXtalRX;
  switch (level_.SignalFault()) {
    case InputLevel::Fault::NoSignal:
      return "Silence: is the cable in this input, and the input not muted?";
    case InputLevel::Fault::LeftSilent:
      return pair ? "The left channel is silent: this board needs both. See to cable and input."
                  : "The left channel is silent: this board's signal belongs there.";
    case InputLevel::Fault::RightSilent:
      return pair ? "The right channel is silent: this board needs both. See to cable and input." : "";
    case InputLevel::Fault::Alike:
      return pair ? "Both channels carry the same: I and Q need a stereo input and cable." : "";
    case InputLevel::Fault::None:
      break;
  }
  return {};
}

void LevelPanel::Hint(const std::string& text, bool warns) {
  lblLevelHint.ForeColour = warns ? InputBandInk(InputBand::High) : kNoColour;
  lblLevelHint.Caption = text;
}

void LevelPanel::cmdTestTone_Click() {
  lblTestTone.Caption = std::string();
  if (tone_.IsPlaying()) return tone_.Stop();
  std::string fault;
  if (links_.IsLent()) {
    fault = kLent;
  } else if (output_ < 1) {
    fault = "There is no sound output.";
  } else if (const Failure failure = tone_.Start(output_)) {
    fault = failure->Text;
  }
  lblTestTone.Caption = fault;
  lblTestTone.ForeColour = InputBandInk(InputBand::High);
  if (tone_.IsPlaying()) cmdTestTone.Caption = kEnd;
}

}  // namespace quorl
