// The receiver's display instrument: spectrum analyser, two-channel oscilloscope and XY display.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "config/SettingsStore.h"
#include "config/SettingsTable.h"
#include "display/analyser/FrequencyScale.h"
#include "display/analyser/ModeSettings.h"
#include "display/analyser/ScopeFrame.h"
#include "display/analyser/SpectrumLine.h"
#include "display/canvas/Canvas.h"
#include "dsp/chain/ChainPorts.h"
#include "dsp/fft/clsFFTReal.h"
#include "state/PublicVars.h"

namespace quorl {

enum class SpectrumWindow { None, Hann, BlackmanHarris };

// Construct, hand in the surfaces, init; then samples in, and Display once for each picture. Nothing is drawn
// before init, and nothing happens while it isn't Active. One thread; a frame delivers waiting events every
// 64 bins and waits for a block in work, so anything may be changed while it is being drawn.
class clsSpectrumAnalyser : public AnalyserInput {
 public:
  // All is used as long as the instrument lives. `yield` delivers waiting events once.
  clsSpectrumAnalyser(KernelSettings& settings, const PublicVars& vars, std::function<void()> yield);

  static constexpr std::int32_t kOrder = 11, kPoints = 2048, kBins = 1024;
  static constexpr std::int32_t kYieldBins = 64;

  // Plain properties.
  bool Active = false;
  std::int32_t SpectrumSource = 0;  // the tap it is fed from
  bool AutoGain = false;
  bool ReverseSpectrum = false;  // the sweep runs upwards
  bool Freeze = true;            // the picture stands; nothing is transformed or aged
  bool SmoothSpectrum = true;
  std::int32_t DisplayWidth = 1024;  // samples of the time window
  std::int32_t SpectrumWidth = 0;
  std::int32_t StartX = 0, StopX = 1024;           // the user's window; ApplyWindow after setting them
  std::int32_t FStart = 0, FEnd = 0, FOffset = 0;  // Hz
  double MasterGain = 1.0;
  Colour Y1Colour = 0, Y2Colour = 0, ControlColourNormal = 0xC0, ControlColourFocused = 0xFF;
  // Ours: the picture in decibels below a full-scale sine, between these ends.
  bool LevelView = false;
  double LevelTop = 0, LevelFloor = -120;  // dB
  bool Fill = false;                       // the ground under channel 1, in the level view
  SpectrumWindow Window = SpectrumWindow::None;
  bool TwoSided = false;

  // The spectrum on the scale is a radio frequency; otherwise plain audio.
  bool OnAir = true;

  // Frames that are averaged, 1 to 24; the oldest weighs most.
  std::int32_t SpectrumSmooth() const { return smoothing_.Count(); }
  void SetSpectrumSmooth(std::int32_t count);
  std::int32_t DefaultSmoothCount = 8;
  Colour YTextColour = 0xFF7F00, XTextColour = 0xFFFF00, FilterCurveColour = 0xC0,
         NotchFilterColour = 0xC0FF60, GraticuleColour = 0x7F00, ScopeBackColour = 0;
  bool HideFreqToolTip = false;
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
  bool ShowNotch = false, ShowFilter = false;
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

  // Takes StartX and StopX: StartBin, StopBin and the layout follow.
  void ApplyWindow();
  std::int32_t StartBin() const { return startBin_; }
  std::int32_t StopBin() const { return stopBin_; }
  double HertzPerBin() const;
  // What the picture shows, as its labels say it: that of the frame last drawn, so that a frozen picture
  // keeps its frequencies.
  FrequencyScale Frequencies() const;
  // dB below a full-scale sine of channel 1 at picture bin `x` (from the left edge), without gain and shift;
  // of the frame last drawn. kNoLevel outside.
  static constexpr float kNoLevel = -1000.0F;
  float LevelAt(double x) const;

  // AnalyserInput.
  bool Enabled() const override { return Active; }
  std::int32_t Source() const override { return SpectrumSource; }
  double LowerEdge() const override { return FStart; }
  double UpperEdge() const override { return FEnd; }
  void SetFrequencyReference(std::int32_t hertz) override;
  void SetLowSideLO(bool low) override;

  // Section "SpectrumAnalyser": read by itself, written with what is in force. Values out of range become the
  // nearest good ones.
  void ReadSettings(const SettingsStore& store);
  void WriteSettings(SettingsStore& store) const;

  // Told each line of channel 1 in frequency mode, unless frozen. May be empty.
  std::function<void(const SpectrumLine&)> OnLine;
  // Drawn over the traces, in this order; used as long as they are listed.
  std::vector<ScopeLayer*> Layers;
};

}  // namespace quorl
