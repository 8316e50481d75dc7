// Channel and scale settings of the instrument, kept for each of its modes.
#pragma once

#include <cstdint>

namespace quorl {

namespace ScopeMode {
inline constexpr std::int32_t Frequency = 0, Time = 1, XY = 2;
inline constexpr int Count = 3;
}  // namespace ScopeMode

struct ChannelSettings {
  float Gain = 1.0F;
  float Shift = 0.0F;   // -100 to 100
  float Offset = 0.0F;  // the shift as a share of the scale's range at the time when it was set
  bool Enabled = true;
  bool Trig = false;
};

struct ScaleSettings {
  float Max = 0, Min = 0, Range = 0;
};

struct ModeSettings {
  ChannelSettings Chn1, Chn2;
  std::int32_t TriggerChn = 0;  // 1 or 2; anything else runs free
  bool LogMode = false;         // logarithmic Y scale, in frequency mode
  bool FastMode = false;        // no smoothing
  ScaleSettings Linear, Log;
};

}  // namespace quorl
