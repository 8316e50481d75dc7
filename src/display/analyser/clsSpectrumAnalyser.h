// The receiver's display instrument: spectrum analyser, two-channel oscilloscope and XY display.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <span>
#include <vector>

#include "config/SettingsStore.h"
#include "display/analyser/AnalyserSettings.h"
#include "display/analyser/FilterCurve.h"
#include "display/analyser/FramePlan.h"
#include "display/analyser/FrequencyScale.h"
#include "display/analyser/LevelLine.h"
#include "display/analyser/ModeSettings.h"
#include "display/analyser/ScopeBand.h"
#include "display/analyser/ScopeFrame.h"
#include "display/analyser/Smoothing.h"
#include "display/analyser/SpectrumLine.h"
#include "display/analyser/SpectrumTransform.h"
#include "display/analyser/TracePainter.h"
#include "display/analyser/Trigger.h"
#include "display/canvas/Canvas.h"
#include "dsp/chain/ChainPorts.h"
#include "state/PublicVars.h"

namespace quorl {

// Construct, hand in the surfaces, init; then samples in, and Display once for each picture. Nothing is drawn
// before init, and nothing happens while it isn't Active. One thread; a frame delivers waiting events every
// 64 bins and waits for a block in work, so anything may be changed while it is being drawn.
class clsSpectrumAnalyser : public AnalyserInput, public AnalyserProperties {
 public:
  // All is used as long as the instrument lives. `yield` delivers waiting events once.
  clsSpectrumAnalyser(KernelSettings& settings, const PublicVars& vars, std::function<void()> yield);

  static constexpr std::int32_t kPoints = kScopePoints, kBins = kScopeBins;
  static constexpr std::int32_t kYieldBins = TracePainter::kYieldBins;

  // Plain properties.
  std::int32_t SpectrumSource = 0;                 // the tap it is fed from
  bool Freeze = true;                              // the picture stands; nothing is transformed or aged
  std::int32_t DisplayWidth = 1024;                // samples of the time window
  std::int32_t StartX = 0, StopX = 1024;           // the user's window; ApplyWindow after setting them
  std::int32_t FStart = 0, FEnd = 0, FOffset = 0;  // Hz
  double MasterGain = 1.0;
  Colour Y1Colour = 0, Y2Colour = 0;
  // Ours: the picture in decibels below a full-scale sine, between these ends.
  bool LevelView = false;
  double LevelTop = 0, LevelFloor = -120;  // dB
  bool Fill = false;                       // the ground under channel 1, in the level view
  SpectrumWindow Window = SpectrumWindow::None;
  PeakHolding PeakHold = PeakHolding::Off;  // of channel 1, in the level view
  bool TwoSided = false;                    // where the board has I and Q, and the source is ahead of both
  // Whether a recording takes the antenna's place. Never empty.
  std::function<bool()> Playing = [] { return false; };

  // The spectrum on the scale is a radio frequency; otherwise plain audio. Follows the source, the mode of
  // demodulation and what plays: with each block, and at once with ApplySource.
  bool OnAir = true;
  static bool IsOnAir(std::int32_t source, std::int32_t demodMode, bool playing);
  void ApplySource();
  // What TwoSided comes to now; then the window's ends count kPoints bins, otherwise kBins.
  bool TwoSidedInForce() const;
  std::int32_t Bins() const { return TwoSidedInForce() ? kPoints : kBins; }

  // Frames that are averaged, 1 to 24; the oldest weighs most.
  std::int32_t SpectrumSmooth() const { return smoothing_.Count(); }
  void SetSpectrumSmooth(std::int32_t count);
  Colour Y2BaseColour() const;
  void SetY2BaseColour(Colour colour);  // keeps the brightness
  Colour Y1BaseColour() const;
  void SetY1BaseColour(Colour colour);
  // `channel` 0 or 1; `percent` of the base colour.
  void SetChannelBrightness(int channel, double percent);

  // Of the record of the mode in force.
  bool LogMode() const { return Settings().LogMode; }
  void SetLogMode(bool log);
  bool FastMode() const { return Settings().FastMode; }
  void SetFastMode(bool fast);
  bool Chn1Trig() const { return Settings().Chn1.Trig; }
  void SetChn1Trig(bool on);
  bool Chn2Trig() const { return Settings().Chn2.Trig; }
  void SetChn2Trig(bool on);
  bool Chn1Enabled() const { return Settings().Chn1.Enabled; }
  void SetChn1Enabled(bool on);
  bool Chn2Enabled() const override { return Settings().Chn2.Enabled; }
  void SetChn2Enabled(bool on);
  float Chn1Gain() const { return Settings().Chn1.Gain; }
  void SetChn1Gain(float gain);
  float Chn2Gain() const { return Settings().Chn2.Gain; }
  void SetChn2Gain(float gain);
  std::int32_t TriggerChn() const { return Settings().TriggerChn; }
  void SetTriggerChn(std::int32_t channel);
  bool Y1PlusY2 = false, Y1MinusY2 = false;
  float YScaleOffset = 0.0F;
  float Chn1Shift() const { return Settings().Chn1.Shift; }
  void SetChn1Shift(float shift);
  float Chn2Shift() const { return Settings().Chn2.Shift; }
  void SetChn2Shift(float shift);
  // Of the linear or the logarithmic scale, in frequency mode as LogMode says.
  float YScaleMax() const { return Scale().Max; }
  void SetYScaleMax(float max);
  float YScaleMin() const { return Scale().Min; }
  void SetYScaleMin(float min);
  float YScaleRange() const { return Scale().Range; }
  std::int32_t Mode() const { return mode_; }
  void SetMode(std::int32_t mode);
  // The surfaces are used until others, or null, take their places.
  void picDisplay0(Canvas* surface);
  void picDisplay1(Canvas* surface);

  void init();
  bool Initialised() const { return initialised_; }
  void LoadSamples_INT16(const std::int16_t* samplesI, const std::int16_t* samplesQ) override;
  void LoadSamples_S(const float* samplesI, const float* samplesQ) override;
  // The filter's taps [kPoints], or its magnitudes [kPoints].
  void LoadFilterCoeffs_T_S(const float* taps) override;
  void LoadFilterCoeffs_F_S(const float* magnitudes);
  void Display();
  void Display_I16(const std::int16_t* samplesI, const std::int16_t* samplesQ);
  void DisplayFrozen();
  void Display_S(const float* samplesI, const float* samplesQ);
  // The traces that are held, and what is drawn over them, in the scale of the frame last prepared. False
  // where the surface has gone while others had their turn.
  bool DrawSpectrum(Canvas& surface);

  // Takes StartX and StopX: StartBin, StopBin and the layout follow. In the XY picture nothing happens: that
  // shows the window of the time picture as it last stood.
  void ApplyWindow();
  // Sweeping upwards StartX and StopX, else counted from the other end; in the other modes the samples that
  // are seen.
  std::int32_t StartBin() const;
  std::int32_t StopBin() const;
  double HertzPerBin() const { return kScopeHertzPerBin; }
  // What the picture shows, as its labels say it: that of the frame last drawn, so that a frozen picture
  // keeps its frequencies.
  FrequencyScale Frequencies() const;
  // dB below a full-scale sine of channel 1 at picture bin `x` (from the left edge), without gain and shift;
  // of the frame last drawn. kNoLevel outside.
  static constexpr float kNoLevel = -1000.0F;
  float LevelAt(double x) const;
  // Of channel 1 at a sample of the block on display, in 16-bit units before gain and shift; 0 outside, and
  // in frequency mode.
  float SampleAt(std::int32_t sample) const;
  // Of channel 1 by picture bin of the whole band, as the peaks are drawn before gain and shift; may be
  // empty.
  std::span<const float> Peaks() const { return peaks_.Peaks(); }
  // Moves LevelTop and LevelFloor to what the last two seconds have shown of the window: 6 dB above the peak
  // and 6 below the median, in whole dB. With AutoGain it happens by itself every two seconds. False where
  // nothing has been shown.
  bool FitLevels();
  std::function<void()> OnLevelsFitted;  // told after each fit; may be empty

  // AnalyserInput.
  bool Enabled() const override { return Active; }
  std::int32_t Source() const override { return SpectrumSource; }
  double LowerEdge() const override { return FStart; }
  double UpperEdge() const override { return FEnd; }
  // `hertz` is that of the left edge of a picture of kBins bins: the tuned frequency less 12 kHz. FOffset
  // follows: 0 for plain audio, and 24 kHz less in a two-sided picture of a low-side oscillator.
  void SetFrequencyReference(std::int32_t hertz) override;
  void SetLowSideLO(bool low) override;
  bool IsPlainAudio() const override { return !OnAir; }

  // Section "SpectrumAnalyser": read by itself, written with what is in force. Values out of range become the
  // nearest good ones.
  void ReadSettings(const SettingsStore& store);
  void WriteSettings(SettingsStore& store) const;

  // Told each line of channel 1 in frequency mode, unless frozen. May be empty.
  std::function<void(const SpectrumLine&)> OnLine;
  // Drawn over the traces, in this order; used as long as they are listed.
  std::vector<ScopeLayer*> Layers;

 private:
  // What a channel holds: the line as it was made or averaged, the same with gain and shift as they were
  // then, and the heights at which it is drawn. kPoints + 1 elements each; those past the last bin are 0.
  struct Channel {
    SampleBuffer Line, Y, Trace;
  };
  // Everything that the decibels of a bin depend on besides the signal.
  struct LevelKey {
    bool operator==(const LevelKey&) const = default;
    ScopeBand Band;
    std::int32_t Source = 0;
    SpectrumWindow Window = SpectrumWindow::None;
  };

  ModeSettings& Settings() { return modes_[static_cast<std::size_t>(mode_)]; }
  const ModeSettings& Settings() const { return modes_[static_cast<std::size_t>(mode_)]; }
  ScaleSettings& Scale();
  const ScaleSettings& Scale() const { return const_cast<clsSpectrumAnalyser*>(this)->Scale(); }
  void PlaceBand();
  ScopeBand CurrentBand() const;
  ScopeBand ShownBand() const;
  TraceWindow ShownBins() const;
  CanvasScale ScaleFor(const Canvas* surface) const;
  void Layout();
  AnalyserSettings Stored() const;
  void Brighten();

  // Frames.
  void TakeSamples(const float* samplesI, const float* samplesQ);
  void MakeSpectra(const float* samplesI, const float* samplesQ);
  void TakeTraces(const float* samplesI, const float* samplesQ);
  void Smooth();
  void TakeY(bool prescaled);
  void TakeLevels(bool fresh);
  void FollowLevels();
  void ScaleTraces();
  FrameTraces Traces() const;
  FramePlan Plan() const;
  void Frame(bool fresh);
  void Render();
  bool RenderOn(Canvas& surface);
  bool GoOn();
  bool Shows(int channel) const;

  const PublicVars& vars_;
  std::function<void()> yield_;
  bool initialised_ = false, inDisplay_ = false;
  std::int32_t mode_ = ScopeMode::Frequency;
  std::array<ModeSettings, ScopeMode::Count> modes_;
  std::array<Colour, 2> baseColours_{0xFF00, 0xFFFF};
  std::array<double, 2> brightness_{100, 100};
  std::int32_t reference_ = 0;
  bool lowSideLO_ = false;
  TraceWindow frequencyWindow_{0, kBins}, timeWindow_{0, kBins - 1};

  SpectrumTransform transform_;
  Smoothing smoothing_;
  FilterCurve curve_;
  SampleBuffer samplesI_, samplesQ_;
  std::array<Channel, 2> channels_;
  bool loaded_ = false;         // there has been a block
  std::int32_t heldMode_ = -1;  // of what the channels hold; none before the first block
  ScopeBand heldBand_;
  LevelKey levelKey_;
  std::int32_t blocks_ = 0;  // that came since the last frame
  LevelLine levels1_, levels2_;
  PeakLine peaks_;
  LevelFit fit_;
  TraceWindow fitWindow_;
  std::size_t framesSinceFit_ = 0;

  std::array<Canvas*, 2> surfaces_{};
  int hidden_ = 0;                   // the surface that is drawn next
  std::uint32_t surfacesTaken_ = 0;  // counts the changes of surfaces_
  bool drawn_ = false;               // there is a plan
  FramePlan plan_;
  std::uint32_t surfacesOfFrame_ = 0;
  TracePainter painter_;
};

}  // namespace quorl
