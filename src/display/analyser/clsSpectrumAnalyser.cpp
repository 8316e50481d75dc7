#include "display/analyser/clsSpectrumAnalyser.h"

#include <algorithm>

#include "dsp/kernel/VectorKernel.h"
#include "support/Rounding.h"

namespace quorl {

namespace {

constexpr ScaleSettings ScaleOf(float max, float min) {
  return {max, min, max - min};
}
constexpr float kFullScaleLine = 33554432.0F;  // of a full-scale sine on a bin: 32768 x 1024
constexpr ScaleSettings kLinearScale = ScaleOf(kFullScaleLine, 0.0F), kLogScale = ScaleOf(12.0F, 0.0F),
                        kSampleScale = ScaleOf(32768.0F, -32768.0F);
constexpr float kShiftOfRange = 150.0F;

float OffsetOf(float shift, float range) {
  return shift / kShiftOfRange * range;
}

Colour Scaled(Colour colour, double percent) {
  Colour scaled = 0;
  for (int byte = 0; byte < 3; ++byte) {
    const double part = (colour >> (8 * byte) & 0xFF) * percent / 100.0;
    scaled |= static_cast<Colour>(std::clamp(RoundHalfEven(part), 0, 255)) << (8 * byte);
  }
  return scaled;
}

}  // namespace

clsSpectrumAnalyser::clsSpectrumAnalyser(KernelSettings& settings, const PublicVars& vars,
                                         std::function<void()> yield)
    : vars_(vars), yield_(std::move(yield)), transform_(settings), painter_([this] { return GoOn(); }) {
  for (ModeSettings& mode : modes_) mode.Linear = mode.Log = kSampleScale;
  modes_[ScopeMode::Frequency].Linear = kLinearScale;
  modes_[ScopeMode::Frequency].Log = kLogScale;
  Brighten();
}

void clsSpectrumAnalyser::init() {
  if (initialised_) return;
  transform_.Init();
  smoothing_.Allocate(kPoints);
  for (SampleBuffer* buffer : {&samplesI_, &samplesQ_}) buffer->assign(kPoints + 1, 0.0F);
  for (Channel& channel : channels_) {
    for (SampleBuffer* buffer : {&channel.Line, &channel.Y, &channel.Trace})
      buffer->assign(kPoints + 1, 0.0F);
  }
  FEnd = FSampling / 2;
  frequencyWindow_ = {RoundHalfEven(FStart / HertzPerBin()), RoundHalfEven(FEnd / HertzPerBin())};
  initialised_ = true;
  Layout();
}

// Properties.

void clsSpectrumAnalyser::SetSpectrumSmooth(std::int32_t count) {
  smoothing_.SetCount(count);
}

Colour clsSpectrumAnalyser::Y1BaseColour() const {
  return baseColours_[0];
}
void clsSpectrumAnalyser::SetY1BaseColour(Colour colour) {
  baseColours_[0] = colour;
  Brighten();
}
Colour clsSpectrumAnalyser::Y2BaseColour() const {
  return baseColours_[1];
}
void clsSpectrumAnalyser::SetY2BaseColour(Colour colour) {
  baseColours_[1] = colour;
  Brighten();
}
void clsSpectrumAnalyser::SetChannelBrightness(int channel, double percent) {
  if (channel < 0 || channel > 1) return;
  brightness_[static_cast<std::size_t>(channel)] = percent;
  Brighten();
}
void clsSpectrumAnalyser::Brighten() {
  Y1Colour = Scaled(baseColours_[0], brightness_[0]);
  Y2Colour = Scaled(baseColours_[1], brightness_[1]);
}

ScaleSettings& clsSpectrumAnalyser::Scale() {
  ModeSettings& mode = Settings();
  return mode_ == ScopeMode::Frequency && mode.LogMode ? mode.Log : mode.Linear;
}

void clsSpectrumAnalyser::SetLogMode(bool log) {
  Settings().LogMode = log;
  Layout();
}
void clsSpectrumAnalyser::SetFastMode(bool fast) {
  Settings().FastMode = fast;
}
void clsSpectrumAnalyser::SetChn1Trig(bool on) {
  Settings().Chn1.Trig = on;
}
void clsSpectrumAnalyser::SetChn2Trig(bool on) {
  Settings().Chn2.Trig = on;
}
void clsSpectrumAnalyser::SetChn1Enabled(bool on) {
  Settings().Chn1.Enabled = on;
}
void clsSpectrumAnalyser::SetChn2Enabled(bool on) {
  Settings().Chn2.Enabled = on;
}
void clsSpectrumAnalyser::SetChn1Gain(float gain) {
  Settings().Chn1.Gain = gain;
}
void clsSpectrumAnalyser::SetChn2Gain(float gain) {
  Settings().Chn2.Gain = gain;
}
void clsSpectrumAnalyser::SetChn1Shift(float shift) {
  ChannelSettings& channel = Settings().Chn1;
  channel.Shift = shift;
  channel.Offset = OffsetOf(shift, YScaleRange());
}
void clsSpectrumAnalyser::SetChn2Shift(float shift) {
  ChannelSettings& channel = Settings().Chn2;
  channel.Shift = shift;
  channel.Offset = OffsetOf(shift, YScaleRange());
}
void clsSpectrumAnalyser::SetTriggerChn(std::int32_t channel) {
  ModeSettings& mode = Settings();
  mode.TriggerChn = channel;
  mode.Chn1.Trig = channel == 1;
  mode.Chn2.Trig = channel == 2;
}
void clsSpectrumAnalyser::SetYScaleMax(float max) {
  Scale() = ScaleOf(max, Scale().Min);
  Layout();
}
void clsSpectrumAnalyser::SetYScaleMin(float min) {
  Scale() = ScaleOf(Scale().Max, min);
  Layout();
}

void clsSpectrumAnalyser::SetMode(std::int32_t mode) {
  const std::int32_t last = mode_;
  mode_ = std::clamp(mode, 0, ScopeMode::Count - 1);
  if (mode_ == ScopeMode::XY) Settings().Chn1.Enabled = Settings().Chn2.Enabled = true;
  // Rows of spectra have nothing to say about samples.
  if (mode_ != last) smoothing_.Clear();
  Layout();
}

void clsSpectrumAnalyser::picDisplay0(Canvas* surface) {
  surfaces_[0] = surface;
  ++surfacesTaken_;
  Layout();
}
void clsSpectrumAnalyser::picDisplay1(Canvas* surface) {
  surfaces_[1] = surface;
  ++surfacesTaken_;
  Layout();
}

// The band and its window.

bool clsSpectrumAnalyser::IsOnAir(std::int32_t source, std::int32_t demodMode, bool playing) {
  switch (source) {
    case SpectrumSource::IFIn:
      return !playing;
    case SpectrumSource::PreDemod:
      return true;
    case SpectrumSource::PostDemod:
      return demodMode != DemodMode::USB && demodMode != DemodMode::LSB;
    default:
      return false;
  }
}

bool clsSpectrumAnalyser::TwoSidedInForce() const {
  return TwoSided && OnAir && vars_.SDRModelNo == SDRModel::IQXtalRX &&
         (SpectrumSource == SpectrumSource::IFIn || SpectrumSource == SpectrumSource::PreDemod);
}

void clsSpectrumAnalyser::ApplySource() {
  OnAir = IsOnAir(SpectrumSource, vars_.CurrentDemodMode, Playing());
  PlaceBand();
}

void clsSpectrumAnalyser::PlaceBand() {
  constexpr std::int32_t kNegativeHalf = FSampling / 2;
  FOffset = !OnAir ? 0 : TwoSidedInForce() && lowSideLO_ ? reference_ - kNegativeHalf : reference_;
  ReverseSpectrum = !OnAir || lowSideLO_;
}

void clsSpectrumAnalyser::SetFrequencyReference(std::int32_t hertz) {
  reference_ = hertz;
  PlaceBand();
}

void clsSpectrumAnalyser::SetLowSideLO(bool low) {
  lowSideLO_ = low;
  PlaceBand();
}

ScopeBand clsSpectrumAnalyser::CurrentBand() const {
  return {OnAir ? FOffset : 0, !OnAir || ReverseSpectrum, TwoSidedInForce(), OnAir};
}

void clsSpectrumAnalyser::ApplyWindow() {
  if (mode_ == ScopeMode::Frequency) {
    const std::int32_t start = std::clamp(StartX, 0, kPoints);
    frequencyWindow_ = {start, std::clamp(StopX, start, kPoints)};
  } else if (mode_ == ScopeMode::Time) {
    const std::int32_t start = std::clamp(StartX, 0, kPoints - 1);
    timeWindow_ = {start, std::clamp(StopX, start, kPoints - 1)};
  }
  Layout();
}

std::int32_t clsSpectrumAnalyser::StartBin() const {
  if (mode_ != ScopeMode::Frequency) return timeWindow_.Start;
  return ReverseSpectrum ? frequencyWindow_.Start : std::max(Bins() - frequencyWindow_.Stop, 0);
}

std::int32_t clsSpectrumAnalyser::StopBin() const {
  if (mode_ != ScopeMode::Frequency) return timeWindow_.Stop;
  return ReverseSpectrum ? frequencyWindow_.Stop : std::max(Bins() - frequencyWindow_.Start, 0);
}

// Samples and filters.

void clsSpectrumAnalyser::LoadSamples_INT16(const std::int16_t* samplesI, const std::int16_t* samplesQ) {
  if (!Active || !initialised_) return;
  Int16ToFloat_S_2(samplesI, samplesI_.data(), kPoints);
  Int16ToFloat_S_2(samplesQ, samplesQ_.data(), kPoints);
  ++blocks_;
  loaded_ = true;
  ApplySource();
}

void clsSpectrumAnalyser::LoadSamples_S(const float* samplesI, const float* samplesQ) {
  if (!Active || !initialised_) return;
  CopyVector_S(samplesI, samplesI_.data(), kPoints);
  CopyVector_S(samplesQ, samplesQ_.data(), kPoints);
  ++blocks_;
  loaded_ = true;
  ApplySource();
}

void clsSpectrumAnalyser::LoadFilterCoeffs_T_S(const float* taps) {
  // Only the frequency picture has it, whatever is shown now.
  const ModeSettings& mode = modes_[ScopeMode::Frequency];
  curve_.LoadTaps(transform_.FFTReal, taps, mode.LogMode, mode.LogMode ? mode.Log.Max : mode.Linear.Max);
}

void clsSpectrumAnalyser::LoadFilterCoeffs_F_S(const float* magnitudes) {
  curve_.LoadMagnitudes(magnitudes);
}

}  // namespace quorl
