// Between a memory and the radio: a block to the receiver, the receiver into a block.
#pragma once

#include <cstdint>
#include <functional>

#include "interaction/PanelContext.h"
#include "memories/BandPlan.h"

namespace quorl {

// What a memory needs of the panels beside it. Frequencies in dHz. Every entry may stay as it is.
struct MemoryLinks {
  std::function<void(std::int32_t dHz)> Tune = [](std::int32_t) {};
  std::function<std::int32_t()> Tuned = [] { return 0; };  // or about to be, where a frame is out
  std::function<void()> ShowStepLock = [] {};
  // The step of that place in the step table; releases a locked one.
  std::function<void(std::int32_t index)> SetTuningRate = [](std::int32_t) {};
  std::function<void(std::int32_t hertz)> TellRecorder = [](std::int32_t) {};
  std::function<bool()> LauncherIsBusy = [] { return false; };
  std::function<void()> Changed = [] {};  // names and frequencies in the plan in use
  std::function<void(const std::string& caption, bool visible)> Splash = [](const std::string&, bool) {};
};

class Recall {
 public:
  // All is used as long as it lives.
  Recall(const PanelContext& context, const MemoryLinks& links) : context_(context), links_(links) {}

  // While a block is being applied. Another one that comes meanwhile is dropped.
  bool ApplyingSettings = false;
  // The AGC's mode before a block took the user's.
  std::int32_t SavedAGCMode = 0;
  // A block without a frequency is not applied; one that doesn't know LO side or volume leaves them.
  bool SafeMemories = false;

  // Every block ends in the AGC's user mode, unless its AGC mode is negative.
  void ApplySettings(const TuningSettings& block);
  // All but the tuning step; marks the block as changed.
  void CaptureSettings(TuningSettings& block) const;

 private:
  struct Edge {
    int Entry;
    std::int32_t Hertz;  // negative: the table's
  };
  void PutEdges(Edge high, Edge low, const FilterSettingsRecord& table);
  void ApplyFilter(const TuningSettings& block);
  void ApplyIFFilter(const TuningSettings& block);
  void ApplyNotch(const TuningSettings& block);
  void ApplyAGC(const TuningSettings& block);
  void Put(int entry, double value) { context_.Scrollables.SetValue(entry, static_cast<float>(value)); }

  PanelContext context_;
  const MemoryLinks& links_;
};

}  // namespace quorl
