#include "sim/SimulatedBoard.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "sim/Convolve.h"
#include "support/Decibels.h"

namespace quorl {
namespace {

constexpr std::int64_t kFirstSample = kFirstChunk * kChunkFrames;
// IF filter: -6 dB at 11 kHz to each side, 70 dB down from 13.5 kHz on.
constexpr double kHalfBandwidthHz = 11000.0;

std::int16_t ToSample(float value) {
  return static_cast<std::int16_t>(std::lrint(std::clamp(value, -32768.0F, 32767.0F)));
}

}  // namespace

BoardSettings BoardOfModel(int sdrModelNo) {
  BoardSettings settings;
  if (sdrModelNo == 1) settings.IntermediateHz = 455e3;
  if (sdrModelNo == 2) settings.Output = BoardOutput::Quadrature;
  return settings;
}

SimulatedBoard::SimulatedBoard(const SimulatedChip& chip, std::unique_ptr<SimulatedBand> band,
                               const BoardSettings& settings)
    : chip_(&chip), band_(std::move(band)), settings_(settings), position_(kFirstSample) {
  TakeSettings();
}

void SimulatedBoard::Become(const SimulatedChip& chip, const BoardSettings& settings) {
  chip_ = &chip;
  settings_ = settings;
  oscillatorHz_.reset();
  responses_ = {};
  chunk_ = -1;
  TakeSettings();
}

void SimulatedBoard::TakeSettings() {
  gain_ = 32767.0 * Ratio(-settings_.FullScaleDbm);
  std::array<double, kTaps> design{};
  DesignLowPass(kHalfBandwidthHz / kOutputRate, 7.0, kTaps, design.data());
  std::transform(design.begin(), design.end(), taps_.begin(),
                 [this](double tap) { return static_cast<float>(tap * gain_); });
  SetQuadratureError(settings_.AmplitudeErrorDb, settings_.PhaseErrorDegrees);
}

void SimulatedBoard::SetQuadratureError(double amplitudeDb, double phaseDegrees) {
  const double amplitude = Ratio(amplitudeDb);
  const double phase = phaseDegrees * std::numbers::pi / 180.0;
  quadratureDirect_ = static_cast<float>(amplitude * std::cos(phase));
  quadratureCross_ = static_cast<float>(amplitude * std::sin(phase));
}

std::array<SimulatedBoard::Response, 2> SimulatedBoard::ResponsesTo(double oscillatorHz) const {
  std::array<Response, 2> responses{};
  const auto inRange = [this](double hz) { return hz >= settings_.LowestHz && hz <= settings_.HighestHz; };
  const double difference = oscillatorHz - settings_.IntermediateHz;
  // Below the IF the oscillator adds to the signal instead of being its upper or lower neighbour.
  const Response below = {inRange(std::abs(difference)), {std::abs(difference), difference > 0.0, 0.0, 1.0}};
  const double sum = oscillatorHz + settings_.IntermediateHz;
  const Response above = {inRange(sum), {sum, false, 0.0, 1.0}};

  const bool wantAbove = above.Active && (settings_.LowSideInjection || !below.Active);
  responses[0] = wantAbove ? above : below;
  responses[1] = wantAbove ? below : above;
  // An oscillator below the IF serves a signal on either side of the IF: no preselector parts these two.
  if (difference > 0.0) responses[1].Window.Gain = Ratio(-settings_.ImageRejectionDb);
  return responses;
}

void SimulatedBoard::FollowChip() {
  const std::optional<double> oscillator = chip_->OutputHz();
  if (oscillator == oscillatorHz_) return;
  oscillatorHz_ = oscillator;
  std::array<Response, 2> next{};
  if (oscillator) next = ResponsesTo(*oscillator);
  for (std::size_t k = 0; k < next.size(); ++k) {
    Response& old = responses_[k];
    if (!next[k].Active) {
      old.Active = false;
      continue;
    }
    // A signal's phase is (its frequency - centre) x time + phase: a step of the centre is taken back here.
    const double step = old.Window.CentreHz == 0.0 ? 0.0 : next[k].Window.CentreHz - old.Window.CentreHz;
    const double turns = step * (static_cast<double>(position_) / kOutputRate);
    next[k].Window.PhaseCycles = std::fmod(old.Window.PhaseCycles + std::fmod(turns, 1.0), 1.0);
    old = next[k];
  }
  const std::int64_t chunk = position_ / kChunkFrames;
  if (chunk == chunk_) Compose(chunk, static_cast<int>(position_ % kChunkFrames));
}

void SimulatedBoard::Compose(std::int64_t chunk, int from) {
  for (Samples* mix : {&mixI_, &mixQ_}) std::fill(mix->begin() + kHistory + from, mix->end(), 0.0F);
  float* i = mixI_.data() + kHistory;
  float* q = mixQ_.data() + kHistory;
  band_->AddNoise(chunk, from, i, q);
  for (const Response& response : responses_) {
    if (response.Active) band_->AddStations(chunk, from, response.Window, i, q);
  }
  if (oscillatorHz_) band_->AddSparks(chunk, from, 1.0F, i, q);

  Convolve(taps_.data(), kTaps, i + from, kChunkFrames - from, ifI_.data() + from);
  Convolve(taps_.data(), kTaps, q + from, kChunkFrames - from, ifQ_.data() + from);
}

void SimulatedBoard::BeginChunk(std::int64_t chunk) {
  if (chunk != chunk_ + 1) Compose(chunk - 1, 0);
  for (Samples* mix : {&mixI_, &mixQ_}) std::copy_n(mix->begin() + kChunkFrames, kHistory, mix->begin());
  Compose(chunk, 0);
  chunk_ = chunk;
}

// The second mixer: a quarter of the sampling rate turns the signal by a right angle a sample.
void SimulatedBoard::Emit(int at, std::int16_t* frame) const {
  const float i = ifI_[static_cast<std::size_t>(at)];
  const float q = ifQ_[static_cast<std::size_t>(at)];
  float re = i, im = q;
  switch (at % 4) {
    case 1:
      re = -q;
      im = i;
      break;
    case 2:
      re = -i;
      im = -q;
      break;
    case 3:
      re = q;
      im = -i;
      break;
    default:
      break;
  }
  frame[0] = ToSample(re);
  // The wanted signal turns clockwise: Q runs ahead of I.
  frame[1] = settings_.Output == BoardOutput::Quadrature
                 ? ToSample(-(quadratureDirect_ * im + quadratureCross_ * re))
                 : std::int16_t{0};
}

void SimulatedBoard::Render(std::int16_t* interleaved, int frames) {
  FollowChip();
  for (int n = 0; n < frames; ++n) {
    const std::int64_t chunk = position_ / kChunkFrames;
    if (chunk != chunk_) BeginChunk(chunk);
    Emit(static_cast<int>(position_ % kChunkFrames), interleaved + std::ptrdiff_t{2} * n);
    ++position_;
  }
}

void SimulatedBoard::Seek(double second) {
  position_ = kFirstSample + std::llround(std::max(0.0, second) * kOutputRate);
  chunk_ = -1;
}

double SimulatedBoard::PositionSeconds() const {
  return static_cast<double>(position_ - kFirstSample) / kOutputRate;
}

}  // namespace quorl
