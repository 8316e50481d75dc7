// Leads the signal at one point of the chain to the spectrum analyser, when that point is the one it shows.
#pragma once

#include <cstdint>
#include <functional>

#include "dsp/chain/ChainPorts.h"
#include "state/PublicVars.h"

namespace quorl {

class AnalyserTap {
 public:
  AnalyserTap(const PublicVars& vars) : vars_(vars) {}

  AnalyserInput* Analyser = nullptr;                                // null as long as there is none
  std::function<std::int32_t()> TunedFrequency = [] { return 0; };  // dHz

  bool Chn2Enabled() const { return Analyser != nullptr && Analyser->Chn2Enabled(); }

  // One block at the point `source` (SpectrumSource), with the frequency of the display's left edge and the
  // LO side.
  void Show_S(std::int32_t source, const float* a, const float* b) const;
  void Show_INT16(std::int32_t source, const std::int16_t* a, const std::int16_t* b,
                  bool withReference) const;

 private:
  bool Wants(std::int32_t source) const;
  void SetReference() const;

  const PublicVars& vars_;
};

}  // namespace quorl
