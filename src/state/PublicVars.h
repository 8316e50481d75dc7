// The receiver state that more than one subsystem reads or writes.
//
// One object for one receiver, owned by its frame and lent by reference. Everything runs on one thread, so
// there are no locks: a change lands between two blocks.
#pragma once

#include <array>
#include <cstdint>

#include "state/PublicConstants.h"

namespace quorl {

// One audio or IF filter setting of the user. Hz.
struct FilterSettingsRecord {
  bool operator==(const FilterSettingsRecord&) const = default;

  std::int32_t DefaultHi = 0;
  std::int32_t DefaultLo = 0;
  std::int32_t CurrentHi = 0;
  std::int32_t CurrentLo = 0;
  std::int32_t Spare = 0;
  std::int32_t MusicLoSave = 0;  // low edge to return to when Music is switched off
  bool MusicMode = false;
};

// One AGC preset: values of the delay control (tenths of a second) and ramp control (tenths of a ms).
struct AGCSettingsRecord {
  bool operator==(const AGCSettingsRecord&) const = default;

  std::int32_t DefaultDelay = 0;
  std::int32_t CurrentDelay = 0;
  std::int32_t SpareDelay = 0;
  std::int32_t DefaultRamp = 0;
  std::int32_t CurrentRamp = 0;
  std::int32_t SpareRamp = 0;
};

// Range and value of the notch centre control for both places of the notch, Hz.
struct NotchRanges {
  bool operator==(const NotchRanges&) const = default;

  float AudioMax = 6000.0F, AudioMin = 0.0F, AudioCurrent = 1000.0F;
  float IFMax = 6000.0F, IFMin = -6000.0F, IFCurrent = 1000.0F;
};

struct PublicVars {
  PublicVars();
  bool operator==(const PublicVars&) const = default;

  // Board, mode and filters.
  std::int32_t SDRModelNo = SDRModel::DRT1;
  std::int32_t CurrentDemodMode = DemodMode::AM;
  std::int32_t CurrentFilterMode = 0;
  std::int32_t CurrentIFFilterMode = IFFilterMode::Manual;
  std::int32_t CurrentMainBandIndex = 0;
  std::array<FilterSettingsRecord, FilterModeCount> FilterSettings;
  // Manual IF filter, indexed (IF filter mode, demodulation mode); extents from the IF centre.
  std::array<std::array<FilterSettingsRecord, DemodMode::Count>, IFFilterMode::Count> IFFilterSettings;
  std::int32_t FilterLo = FilterDefaults[0].Low;  // audio edges in force, Hz
  std::int32_t FilterHi = FilterDefaults[0].High;
  std::int32_t FilterHomeLo = FilterDefaults[0].Low;  // edges that a filter moved by hand goes back to, Hz
  std::int32_t FilterHomeHi = FilterDefaults[0].High;
  bool IFFilterActive = false;
  std::int32_t IFHi = 0, IFLo = 0;  // extents of the IF filter as they were last set, Hz
  bool MusicMode = false;
  bool FiltersDirty = true;  // an edge, mode or LO side changed: housekeeping rebuilds the filters
  bool LowSideLO = false;    // the local oscillator lies below the signal

  // Second mixer (BFO).
  std::int32_t BFOOffset = 0;              // Hz, signed by the LO side
  std::int32_t MixerFrequency = IFCentre;  // Hz
  std::int32_t MixerPhaseStep = 1 << 28;   // of 2^30, added per sample

  // Block in work, statistics.
  bool DSPRunning = false;
  bool PerfStatsOn = false;
  bool DRMAudioMuted = false;

  // Signal level before demodulation. The level ring has one element more than it uses, for its shift.
  std::array<float, SignalLevelRingSize + 1> SignalLevelRing{};  // root mean squares of the last blocks
  std::int32_t SignalLevelIndex = 0;
  std::array<float, SignalPowerRingSize> SignalPowerRing{};  // sums of squares of the last blocks
  std::int32_t SignalPowerIndex = 0;

  // AGC and volume.
  bool AGCON = true;
  std::int32_t AGCMode = AGCPreset::Normal;
  std::array<AGCSettingsRecord, AGCPreset::Count> AGCSettings;
  float AGCDelayTime = 5.0F;             // s: how long a peak stays in the delay line
  std::int32_t AGCDelayCallbacks = 117;  // the same in blocks
  std::int32_t AGCSmoothTime = 10;       // ms: length of the gain ramp
  std::int32_t AGCSmoothSamples = 480;   // the same in samples
  float AGCMeterGain = 1.0F;             // gain applied to the last block, for the read-out
  // Volume: above 0 a gain in software, else hardware attenuation in hundredths of a decibel.
  float OutputAttenuation = 0.0F;
  float OutputVolume = 0.0F;  // value of the volume control, which that was made of

  // Noise blanker.
  bool NBOn = false;
  float NBThreshold = 0.0F;  // share of the spectrum peak, 0 to 0.2
  float NBLevel = 0.0F;      // value of the blanker control, 0 to 10000, which that was made of

  // Notch and tone tracker.
  bool NotchActive = false;
  std::int32_t NotchMode = NotchModes::Manual;
  std::int32_t NotchType = NotchTypes::Audio;
  bool NotchMirror = false;         // pass the band instead of rejecting it
  std::int32_t NotchCentre = 1000;  // Hz
  std::int32_t NotchLastCentre = 1000;
  std::int32_t NotchWidth = 200;  // Hz
  std::int32_t NotchLastWidth = 200;
  std::int32_t NotchLo = 900;
  std::int32_t NotchHi = 1100;
  bool NotchDirty = false;
  NotchRanges NotchSettings;
  bool DynFilterActive = false;
  std::array<std::int32_t, PeakBinRingSize> PeakBinRing{};  // strongest audio bins, from the search's start
  std::int32_t PeakBinIndex = 0;
  std::int32_t PeakFrequency = 0;      // Hz, averaged frequency of the strongest tone
  std::int32_t PeakLastFrequency = 0;  // its value at the last move of the dynamic filter
};

}  // namespace quorl
