// Fixed numbers and small enumerations that cross subsystem borders.
#pragma once

#include <array>
#include <cstdint>

namespace quorl {

inline constexpr std::int32_t FSampling = 48000;       // Hz
inline constexpr std::int32_t SamplesPerEvent = 2048;  // samples per channel in one block
inline constexpr std::int32_t BitsPerSample = 16;      // signed
inline constexpr std::int32_t NoChannelsIn = 2;
inline constexpr std::int32_t NoChannelsOut = 1;
inline constexpr std::int32_t NoBlocksInBuffer = 2;     // capture blocks in the sound card ring
inline constexpr std::int32_t Inp2OutpBufferRatio = 2;  // playback ring against capture ring
inline constexpr std::int32_t SegmentSize = 4096;       // FFT length of every convolution filter
inline constexpr std::int32_t BlockPoints = 2048;       // samples that every filter takes in per call
inline constexpr std::int32_t IFCentre = 12000;         // Hz, a quarter of the sampling rate
inline constexpr float BlockSeconds = 0.0426666662F;    // 2048 / 48000
inline constexpr double BlocksPerSecond = 23.4375;      // 48000 / 2048
inline constexpr float OutputLimit = 16384.0F;          // largest audio magnitude after the AGC
inline constexpr float AGCTarget = 16383.0F;            // audio peak that the AGC brings a signal to

// Elements of the statistics rings; both power ring means divide by the ring's upper bound.
inline constexpr std::int32_t SignalLevelRingSize = 4;
inline constexpr std::int32_t SignalPowerRingSize = 47;  // a little over two seconds of blocks
inline constexpr std::int32_t PeakBinRingSize = 16;
inline constexpr std::int32_t StatisticsRingSize = 47;
inline constexpr std::int32_t SignalPowerRingUpperBound = SignalPowerRingSize - 1;
inline constexpr std::int32_t PeakBinRingUpperBound = PeakBinRingSize - 1;

namespace SDRModel {
inline constexpr std::int32_t DRT1 = 0, ElektorDRM = 1, IQXtalRX = 2, RealToIQRX = 3;
}

namespace DemodMode {
inline constexpr std::int32_t AM = 0, USB = 1, LSB = 2, DRM = 3, FM = 4, BC = 5;
inline constexpr std::int32_t Count = 6;
}  // namespace DemodMode

namespace IFFilterMode {
inline constexpr std::int32_t Off = 0, Manual = 1, Track = 2;
inline constexpr std::int32_t Count = 3;
}  // namespace IFFilterMode

namespace AGCPreset {
inline constexpr std::int32_t Off = 0, Fast = 1, Normal = 2, Slow = 3, User = 4;
inline constexpr std::int32_t Count = 5;
}  // namespace AGCPreset

namespace NotchModes {
inline constexpr std::int32_t Manual = 0, Auto = 1;
}
namespace NotchTypes {
inline constexpr std::int32_t Audio = 0, IF = 1;
}

namespace SpectrumSource {
inline constexpr std::int32_t IFIn = 0, PreDemod = 1, PostDemod = 2, AFOut = 3;
}

namespace PlayerModes {
inline constexpr std::int32_t Recording = 1, Playing = 2;
}

inline constexpr std::int32_t FilterModeCount = 5;

// The tuning step selector, in deci-hertz.
inline constexpr std::array<std::int32_t, 17> TuneSteps{
    100000, 90000, 50000, 25000, 10000, 5000, 2500, 1000, 500, 250, 100, 50, 25, 10, 5, 2, 1};

// Default band edges of the five audio filters, Hz.
struct FilterEdges {
  std::int32_t Low;
  std::int32_t High;
};
inline constexpr std::array<FilterEdges, FilterModeCount> FilterDefaults{
    {{50, 5000}, {200, 600}, {300, 2300}, {300, 3000}, {240, 4000}}};

}  // namespace quorl
