// A frame of the instrument: from a block to a picture that is shown.
#include <algorithm>
#include <cmath>

#include "display/analyser/Graticule.h"
#include "display/analyser/clsSpectrumAnalyser.h"
#include "dsp/kernel/VectorKernel.h"
#include "support/Decibels.h"
#include "support/ScopedFlag.h"

namespace quorl {

namespace {

constexpr double kSilence = -400.0;  // dB: the lift of a gain of 0

double LiftOf(const ChannelSettings& channel, double masterGain) {
  const double gain = static_cast<double>(channel.Gain) * masterGain;
  return gain > 0.0 ? Decibels(gain) : kSilence;
}

}  // namespace

void clsSpectrumAnalyser::Display() {
  Display_S(samplesI_.data(), samplesQ_.data());
}

void clsSpectrumAnalyser::Display_I16(const std::int16_t* samplesI, const std::int16_t* samplesQ) {
  if (!Active || !initialised_ || inDisplay_) return;
  Int16ToFloat_S_2(samplesI, samplesI_.data(), kPoints);
  Int16ToFloat_S_2(samplesQ, samplesQ_.data(), kPoints);
  Display();
}

void clsSpectrumAnalyser::Display_S(const float* samplesI, const float* samplesQ) {
  if (!Active || !initialised_ || inDisplay_) return;
  const ScopedFlag inDisplay(inDisplay_);
  loaded_ = true;
  TakeSamples(samplesI, samplesQ);
  if (!FastMode() && !Freeze) Smooth();
  TakeY(!AutoGain && !Freeze);
  Frame(true);
}

void clsSpectrumAnalyser::DisplayFrozen() {
  if (!Active || !initialised_ || inDisplay_) return;
  const ScopedFlag inDisplay(inDisplay_);
  // Spectra can't be shown as samples, nor the other way: another mode takes the last block that came.
  if (loaded_ && heldMode_ != mode_) {
    TakeSamples(samplesI_.data(), samplesQ_.data());
    TakeY(!AutoGain);
  }
  Frame(false);
}

void clsSpectrumAnalyser::TakeSamples(const float* samplesI, const float* samplesQ) {
  mode_ == ScopeMode::Frequency ? MakeSpectra(samplesI, samplesQ) : TakeTraces(samplesI, samplesQ);
  heldMode_ = mode_;
}

void clsSpectrumAnalyser::MakeSpectra(const float* samplesI, const float* samplesQ) {
  const bool wasTwoSided = heldBand_.TwoSided;
  heldBand_ = CurrentBand();
  const std::int32_t bins = heldBand_.Bins();
  if (heldBand_.TwoSided != wasTwoSided) smoothing_.Clear();
  const auto make = [&](bool on, Channel& channel, const float* samples) {
    float* line = channel.Line.data();
    if (on && heldBand_.TwoSided) transform_.TwoSided(samplesI, samplesQ, Window, line);
    if (on && !heldBand_.TwoSided) transform_.Real(samples, Window, line);
    ZeroVector_S(line + bins, kPoints + 1 - bins);
  };
  make(Chn1Enabled(), channels_[0], samplesI);
  make(Shows(1), channels_[1], samplesQ);
  if (!OnLine || Freeze || !Chn1Enabled()) return;
  OnLine({{channels_[0].Line.data(), static_cast<std::size_t>(bins)},
          heldBand_.Window(frequencyWindow_.Start, frequencyWindow_.Stop),
          heldBand_.Ascending});
}

void clsSpectrumAnalyser::TakeTraces(const float* samplesI, const float* samplesQ) {
  if (Shows(0)) CopyVector_S(samplesI, channels_[0].Line.data(), kPoints);
  if (Shows(1)) CopyVector_S(samplesQ, channels_[1].Line.data(), kPoints);
  for (Channel& channel : channels_) channel.Line[kPoints] = 0.0F;
  if (mode_ != ScopeMode::Time) return;
  if (TriggerChn() == 1) {
    const std::int32_t width = std::clamp(DisplayWidth, 1, kPoints);
    timeWindow_ = TriggerOnChannel1(channels_[0].Line.data(), width, timeWindow_);
  } else if (TriggerChn() == 2) {
    const std::int32_t width = std::clamp(StopX, 0, kPoints) - std::clamp(StartX, 0, kPoints);
    timeWindow_ = TriggerOnChannel2(channels_[1].Line.data(), width, timeWindow_);
  }
}

// Of two-sided spectra there is only the one of both inputs.
bool clsSpectrumAnalyser::Shows(int channel) const {
  if (channel == 0) return Chn1Enabled();
  return Chn2Enabled() && !(mode_ == ScopeMode::Frequency && ShownBand().TwoSided);
}

void clsSpectrumAnalyser::Smooth() {
  const bool frequency = mode_ == ScopeMode::Frequency;
  const std::int32_t start = frequency ? 0 : timeWindow_.Start;
  const std::int32_t count = frequency ? heldBand_.Bins() : std::min(kBins, kPoints - start);
  for (int channel = 0; channel < 2; ++channel) {
    if (!Shows(channel)) continue;
    smoothing_.Average(channel, channels_[static_cast<std::size_t>(channel)].Line.data() + start, count);
  }
}

void clsSpectrumAnalyser::TakeY(bool prescaled) {
  const TraceWindow bins = ShownBins();
  const bool logarithmic = mode_ == ScopeMode::Frequency && LogMode();
  for (Channel& channel : channels_) {
    CopyVector_S(channel.Line.data(), channel.Y.data(), kPoints + 1);
    const ChannelSettings& settings = &channel == channels_.data() ? Settings().Chn1 : Settings().Chn2;
    if (prescaled && !logarithmic) Prescale(settings, bins.Start, bins.Stop, channel.Y.data());
  }
}

// A picture that stands keeps the frequencies at which it was taken.
ScopeBand clsSpectrumAnalyser::ShownBand() const {
  return heldMode_ == ScopeMode::Frequency ? heldBand_ : CurrentBand();
}

// Elements of the channels' arrays that are seen.
TraceWindow clsSpectrumAnalyser::ShownBins() const {
  if (mode_ != ScopeMode::Frequency) return timeWindow_;
  const ScopeBand band = ShownBand();
  const std::int32_t start = std::min(frequencyWindow_.Start, band.Bins());
  const std::int32_t stop = std::min(frequencyWindow_.Stop, band.Bins());
  return band.Ascending ? TraceWindow{start, stop} : TraceWindow{band.Bins() - stop, band.Bins() - start};
}

CanvasScale clsSpectrumAnalyser::ScaleFor(const Canvas* surface) const {
  constexpr double kNoWindow = 100;
  const ScaleSettings& scale = Scale();
  const double max = static_cast<double>(scale.Max), range = static_cast<double>(scale.Range);
  if (mode_ == ScopeMode::XY) {
    const bool seen = surface != nullptr && surface->Height() > 0;
    const double shape = seen ? static_cast<double>(surface->Width()) / surface->Height() : 1.0;
    return {-max * shape, max, shape * range, -range};
  }
  const TraceWindow bins = ShownBins();
  const double width = bins.Stop - bins.Start < 1 ? kNoWindow : bins.Stop - bins.Start;
  if (mode_ == ScopeMode::Frequency && LevelView) {
    const LevelFit::Ends ends = LevelFit::Nearest(LevelTop, LevelFloor);
    return {0, ends.Top, width, ends.Floor - ends.Top};
  }
  return {0, max, width, -range};
}

// While a frame is being drawn the surfaces keep its scale; the next one sets its own.
void clsSpectrumAnalyser::Layout() {
  if (inDisplay_ || !initialised_) return;
  for (Canvas* surface : surfaces_) {
    if (surface != nullptr) surface->SetScale(ScaleFor(surfaces_[0] != nullptr ? surfaces_[0] : surface));
  }
}

FramePlan clsSpectrumAnalyser::Plan() const {
  FramePlan plan;
  plan.Mode = mode_;
  plan.Band = ShownBand();
  const std::int32_t bins = plan.Band.Bins();
  plan.Frequencies =
      plan.Band.Window(std::min(frequencyWindow_.Start, bins), std::min(frequencyWindow_.Stop, bins));
  plan.Scale = ScaleFor(surfaces_[static_cast<std::size_t>(hidden_)]);
  plan.LevelView = LevelView && mode_ == ScopeMode::Frequency;
  const LevelFit::Ends ends = LevelFit::Nearest(LevelTop, LevelFloor);
  plan.Top = ends.Top;
  plan.Floor = ends.Floor;
  plan.Frozen = Freeze;
  plan.Record = Settings();
  plan.YScale = Scale();
  const TraceWindow shown = ShownBins();
  plan.StartBin = shown.Start;
  plan.StopBin = shown.Stop;
  const auto lift = [&](const ChannelSettings& channel) {
    const double shift = static_cast<double>(channel.Shift) / 150.0 * (ends.Top - ends.Floor);
    const double lifted = LiftOf(channel, MasterGain) + shift;
    return lifted > kSilence ? std::min(lifted, -kSilence) : kSilence;  // a number, whatever the settings
  };
  plan.Lift1 = lift(plan.Record.Chn1);
  plan.Lift2 = lift(plan.Record.Chn2);
  plan.LevelLift = plan.Record.Chn1.Enabled || !plan.Record.Chn2.Enabled ? plan.Lift1 : plan.Lift2;
  plan.Fill = Fill;
  plan.ShowFilter = ShowFilter;
  plan.PeakHold = PeakHold != PeakHolding::Off;
  if (ShowNotch && mode_ == ScopeMode::Frequency) plan.Notch = PlaceNotch(vars_, plan.Band);
  plan.Colours = {Y1Colour,          Y2Colour,          YTextColour,     XTextColour,
                  FilterCurveColour, NotchFilterColour, GraticuleColour, ScopeBackColour};
  return plan;
}

void clsSpectrumAnalyser::TakeLevels(bool fresh) {
  const bool frequency = mode_ == ScopeMode::Frequency;
  const ScopeBand band = ShownBand();
  if (frequency && Shows(0)) {
    levels1_.Take(channels_[0].Line.data(), band);
  } else {
    levels1_.Clear();
  }
  if (frequency && LevelView && Shows(1)) {
    levels2_.Take(channels_[1].Line.data(), band);
  } else {
    levels2_.Clear();
  }
  if (fresh && !Freeze) FollowLevels();
}

// Peaks and ends of the scale, from frame to frame.
void clsSpectrumAnalyser::FollowLevels() {
  const double seconds = std::max(blocks_, 1) * static_cast<double>(kPoints) / FSampling;
  blocks_ = 0;
  const TraceWindow window{plan_.Frequencies.StartX, plan_.Frequencies.StopX};
  const LevelKey key{plan_.Band, SpectrumSource, Window};
  const bool moved = window.Start != fitWindow_.Start || window.Stop != fitWindow_.Stop;
  if (!(key == levelKey_)) peaks_.Clear();
  if (!(key == levelKey_) || moved) {
    fit_.Clear();
    framesSinceFit_ = 0;
  }
  levelKey_ = key;
  fitWindow_ = window;

  const std::span<const float> levels = levels1_.Levels();
  if (PeakHold == PeakHolding::Off || levels.empty()) {
    peaks_.Clear();
  } else {
    peaks_.Take(levels, seconds, PeakHold);
  }
  if (!LevelView || levels.empty()) return;
  const auto count = static_cast<std::size_t>(window.Stop - window.Start) + 1;
  fit_.Take(levels.subspan(static_cast<std::size_t>(window.Start), count),
            LiftOf(Settings().Chn1, MasterGain));
  if (++framesSinceFit_ >= LevelFit::kFrames && fit_.Frames() == LevelFit::kFrames && AutoGain) FitLevels();
}

bool clsSpectrumAnalyser::FitLevels() {
  if (fit_.Frames() == 0) return false;
  const LevelFit::Ends ends = fit_.Fit();
  LevelTop = ends.Top;
  LevelFloor = ends.Floor;
  framesSinceFit_ = 0;
  if (OnLevelsFitted) OnLevelsFitted();
  return true;
}

void clsSpectrumAnalyser::ScaleTraces() {
  const Sweep sweep = plan_.SweepOf();
  for (Channel& channel : channels_) {
    CopyVector_S(channel.Y.data(), channel.Trace.data(), kPoints + 1);
    if (plan_.Mode != ScopeMode::Frequency) continue;
    const ChannelSettings& settings = &channel == channels_.data() ? plan_.Record.Chn1 : plan_.Record.Chn2;
    plan_.Record.LogMode ? ScaleLog(settings, plan_.YScale.Max, sweep, channel.Trace.data())
                         : ScaleLinear(settings, sweep, channel.Trace.data());
  }
}

FrameTraces clsSpectrumAnalyser::Traces() const {
  FrameTraces traces;
  const bool second =
      plan_.Record.Chn2.Enabled && !(plan_.Mode == ScopeMode::Frequency && plan_.Band.TwoSided);
  if (plan_.Record.Chn1.Enabled) traces.Y1 = channels_[0].Trace.data();
  if (second) traces.Y2 = channels_[1].Trace.data();
  traces.Levels1 = levels1_.Levels();
  traces.Levels2 = levels2_.Levels();
  traces.Peaks = peaks_.Peaks();
  return traces;
}

void clsSpectrumAnalyser::Frame(bool fresh) {
  plan_ = Plan();
  drawn_ = true;
  TakeLevels(fresh);
  Render();
}

void clsSpectrumAnalyser::Render() {
  constexpr int kAttempts = 3;  // where the surfaces change under the frame, it is drawn on the new ones
  for (int attempt = 0; attempt < kAttempts; ++attempt) {
    const auto hidden = static_cast<std::size_t>(hidden_);
    Canvas* surface = surfaces_[hidden];
    Canvas* shown = surfaces_[1 - hidden];
    if (surface == nullptr || shown == nullptr || surface->Width() < 1 || surface->Height() < 1) return;
    surfacesOfFrame_ = surfacesTaken_;
    plan_ = Plan();
    plan_.Levels = levels1_.Levels();
    if (!RenderOn(*surface)) {
      if (loaded_ && heldMode_ != mode_) return;  // nothing is held yet for the new mode
      continue;
    }
    surface->SetVisible(true);
    shown->SetVisible(false);
    hidden_ = 1 - hidden_;
    return;
  }
}

bool clsSpectrumAnalyser::RenderOn(Canvas& surface) {
  surface.SetScale(plan_.Scale);
  DrawGraticule(surface, plan_);
  if (!DrawSpectrum(surface)) return false;
  for (ScopeLayer* layer : Layers) {
    surface.SetScale(plan_.Scale);
    layer->Draw(surface, plan_);
  }
  surface.SetScale(plan_.Scale);
  DrawGraticuleLabels(surface, plan_);
  return true;
}

bool clsSpectrumAnalyser::DrawSpectrum(Canvas& surface) {
  if (!drawn_) return true;
  if (!plan_.LevelView) ScaleTraces();
  return painter_.Draw(surface, plan_, Traces(), curve_);
}

// A block that is in work goes before the picture.
bool clsSpectrumAnalyser::GoOn() {
  do {
    yield_();
  } while (vars_.DSPRunning);
  return surfacesTaken_ == surfacesOfFrame_;
}

FrequencyScale clsSpectrumAnalyser::Frequencies() const {
  if (drawn_) return plan_.Frequencies;
  return CurrentBand().Window(frequencyWindow_.Start, frequencyWindow_.Stop);
}

float clsSpectrumAnalyser::SampleAt(std::int32_t sample) const {
  const bool held = heldMode_ != ScopeMode::Frequency && sample >= 0 && sample < kPoints;
  return held && loaded_ ? channels_[0].Line[static_cast<std::size_t>(sample)] : 0.0F;
}

float clsSpectrumAnalyser::LevelAt(double x) const {
  const std::span<const float> levels = levels1_.Levels();
  const double bin = std::round(plan_.Frequencies.StartX + x);
  if (!(bin >= 0.0 && bin < static_cast<double>(levels.size()))) return kNoLevel;
  return levels[static_cast<std::size_t>(bin)];
}

}  // namespace quorl
