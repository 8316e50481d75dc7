#include "core/SteeredRadio.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <utility>

#include "display/SMeterPanel.h"
#include "interaction/PanelTexts.h"
#include "interaction/ScrollableTable.h"
#include "support/Decibels.h"
#include "support/Product.h"
#include "support/Rounding.h"

namespace quorl {

namespace {

constexpr double kDeciHertz = 10.0;
// Hz, as the buttons of the filters name them; their edges are the listener's.
constexpr std::array<std::int32_t, FilterModeCount> kFilterWidths{5000, 400, 2400, 3200, 4000};
constexpr std::int32_t kBroadcastFilter = 0, kMorseFilter = 1, kSpeechFilter = 2;

constexpr ScrollableStart kVolume = kScrollableStarts[CtlIndex::OutVol];
constexpr double kVolumeReach = double{kVolume.MaxValue} - double{kVolume.MinValue};

// The filter whose name is nearest to that width, the wider one of two.
std::int32_t NearestFilter(double hertz) {
  std::int32_t nearest = 0;
  const auto away = [hertz](std::int32_t filter) {
    return std::fabs(kFilterWidths[static_cast<std::size_t>(filter)] - hertz);
  };
  for (std::int32_t filter = 1; filter < FilterModeCount; ++filter) {
    const bool wider =
        kFilterWidths[static_cast<std::size_t>(filter)] > kFilterWidths[static_cast<std::size_t>(nearest)];
    if (away(filter) < away(nearest) || (wider && away(filter) == away(nearest))) nearest = filter;
  }
  return nearest;
}

std::int32_t FilterFor(RemoteMode mode, std::int32_t width) {
  if (mode == RemoteMode::CW) return kMorseFilter;
  const bool sideband = mode == RemoteMode::USB || mode == RemoteMode::LSB;
  if (width == RemoteRadio::kUsualWidth) return sideband ? kSpeechFilter : kBroadcastFilter;
  // An AM signal has both sidebands, and its filter is that of one.
  return NearestFilter(mode == RemoteMode::AM ? width / 2.0 : width);
}

std::int32_t DemodModeOf(RemoteMode mode) {
  switch (mode) {
    case RemoteMode::CW:
    case RemoteMode::USB:
      return DemodMode::USB;
    case RemoteMode::LSB:
      return DemodMode::LSB;
    case RemoteMode::FM:
      return DemodMode::FM;
    case RemoteMode::AM:
      break;
  }
  return DemodMode::AM;
}

SteeredRadioLinks LinksWithoutPanel(LiveRadio& radio) {
  return {
      .IsOn = [&radio] { return radio.SoundCard().InAction; },
      .SwitchPower =
          [&radio](bool on) {
            if (on)
              static_cast<void>(radio.Start());
            else
              radio.Stop();
          },
      .SignalLevel = [&radio] { return std::max(radio.Rx.MeanSignalLevel() - SMeterPanel::kFloor, 0.0F); }};
}

}  // namespace

SteeredRadio::SteeredRadio(LiveRadio& radio) : SteeredRadio(radio, LinksWithoutPanel(radio)) {}

SteeredRadio::SteeredRadio(LiveRadio& radio, SteeredRadioLinks links)
    : radio_(radio), links_(std::move(links)) {}

std::string SteeredRadio::Description() const {
  const auto board = static_cast<std::size_t>(radio_.Tuning().SDRModelNo());
  return std::string(kProductName) + " with " + SDRModelNames.at(board);
}

double SteeredRadio::Frequency() const {
  return radio_.Tuning().Tune().Wanted() / kDeciHertz;
}

double SteeredRadio::HighestFrequency() const {
  return radio_.Tuning().Tune().Highest() / kDeciHertz;
}

// A client counts in whole hertz: the end of the reach is the one that it was told.
RemoteOutcome SteeredRadio::Tune(double hertz) {
  Tuner& tuner = radio_.Tuning().Tune();
  const bool inReach = hertz >= 0 && hertz <= std::round(HighestFrequency());
  if (!inReach || radio_.VFO().Reach() < 0) return RemoteOutcome::OutOfRange;
  if (tuner.IsPlaying()) return RemoteOutcome::Refused;
  tuner.MoveTo(std::min(RoundHalfEven(hertz * kDeciHertz), tuner.Highest()));
  const std::shared_ptr<Oscillator> chip = radio_.VFO().OscType;
  return chip && chip->CanSend() ? RemoteOutcome::Done : RemoteOutcome::Unreachable;
}

RemoteMode SteeredRadio::Mode() const {
  const PublicVars& vars = radio_.Rx.Vars;
  switch (vars.CurrentDemodMode) {
    case DemodMode::USB:
      return vars.CurrentFilterMode == kMorseFilter ? RemoteMode::CW : RemoteMode::USB;
    case DemodMode::LSB:
      return RemoteMode::LSB;
    case DemodMode::FM:
      return RemoteMode::FM;
    default:
      return RemoteMode::AM;
  }
}

std::int32_t SteeredRadio::Passband() const {
  const PublicVars& vars = radio_.Rx.Vars;
  const RemoteMode mode = Mode();
  const bool both = mode == RemoteMode::AM || mode == RemoteMode::FM;
  return both ? 2 * vars.FilterHi : vars.FilterHi - vars.FilterLo;
}

// A sideband that keeps its width stays Morse's where it was.
RemoteOutcome SteeredRadio::SetMode(RemoteMode mode, std::int32_t width) {
  radio_.Rx.SetDemodMode(DemodModeOf(mode));
  const bool keeps = width == kSameWidth && mode != RemoteMode::CW;
  if (!keeps) radio_.Rx.SetFilterMode(FilterFor(mode, width));
  return RemoteOutcome::Done;
}

// What an S-meter at rest says is the least: nothing is weaker than the noise that it leaves out.
std::int32_t SteeredRadio::Strength() const {
  const double decibels = IsOn() ? std::max(Decibels(links_.SignalLevel()), 0.0) : 0.0;
  return RoundDown(decibels) - RoundHalfEven(SMeterPanel::kS9);
}

double SteeredRadio::Volume() const {
  return (double{radio_.Rx.Vars.OutputVolume} - double{kVolume.MinValue}) / kVolumeReach;
}

void SteeredRadio::SetVolume(double place) {
  radio_.Rx.SetVolume(static_cast<float>(kVolume.MinValue + place * kVolumeReach));
}

RemoteOutcome SteeredRadio::SwitchPower(bool on) {
  if (on != IsOn()) links_.SwitchPower(on);
  return on == IsOn() ? RemoteOutcome::Done : RemoteOutcome::Unreachable;
}

}  // namespace quorl
