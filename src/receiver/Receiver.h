// One receiver without a panel: state, filters, chain, AGC and pump, put together and ready for blocks.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>

#include "dsp/chain/VariableFilters.h"
#include "dsp/kernel/KernelSettings.h"
#include "platform/Clock.h"
#include "receiver/BlockPump.h"
#include "receiver/PumpPorts.h"

namespace quorl {

// The setters are what the panel's controls, the memories and the command line have in common; they mark the
// filters, and the next Housekeeping rebuilds them. Values are the controls' values.
class Receiver {
 public:
  // All arguments but `settings` are used as long as the receiver lives. `yield` delivers waiting events
  // once.
  Receiver(const Clock& clock, SoundOutput& sound, BlockRecorder& recorder, std::function<void()> yield,
           KernelSettings settings = {});

  KernelSettings Settings;
  PublicVars Vars;
  AnalyserTap Tap;
  FilterBank Filters;
  AGC Agc;
  ReceiveChain Chain;
  VariableFilters FilterMaker;
  Profiler Profiler1;  // times the pump
  BlockPump Pump;

  void SetDemodMode(std::int32_t mode);                      // DemodMode
  void SetFilterMode(std::int32_t mode);                     // 0 to 4: takes that record's edges
  void SetFilterEdges(std::int32_t low, std::int32_t high);  // Hz
  // IFFilterMode; Off switches the filter off.
  void SetIFFilter(std::int32_t mode);
  // Extents of the manual IF filter from the IF centre, Hz, for the demodulation mode in force.
  void SetManualIFFilter(std::int32_t low, std::int32_t high);
  // Width in Hz; the centre is a pitch (audio) or an offset from the IF's centre, counted downwards
  // in frequency on the air.
  void SetNotch(bool active, std::int32_t mode, std::int32_t type, std::int32_t centre, std::int32_t width);
  void SetNotchMirror(bool mirror);
  void SetNoiseBlanker(bool on, float controlValue);  // 0 to 10000
  void SetDynamicFilter(bool on);

  // What follows each block: waits for a block in work, rebuilds filters, tracks the notch. True where
  // PeakFrequency is new.
  bool Housekeeping();

  // Mean of the last blocks' levels before demodulation, in 16-bit units.
  float MeanSignalLevel() const;
};

}  // namespace quorl
