#include "dsp/chain/AnalyserTap.h"

#include "support/Rounding.h"

namespace quorl {

bool AnalyserTap::Wants(std::int32_t source) const {
  return Analyser != nullptr && Analyser->Enabled() && Analyser->Source() == source;
}

void AnalyserTap::SetReference() const {
  const double span = Analyser->UpperEdge() - Analyser->LowerEdge();
  Analyser->SetFrequencyReference(RoundHalfEven(TunedFrequency() / 10.0 - span / 2.0));
}

void AnalyserTap::Show_S(std::int32_t source, const float* a, const float* b) const {
  if (!Wants(source)) return;
  Analyser->LoadSamples_S(a, b);
  SetReference();
  Analyser->SetLowSideLO(vars_.LowSideLO);
}

void AnalyserTap::Show_INT16(std::int32_t source, const std::int16_t* a, const std::int16_t* b,
                             bool withReference) const {
  if (!Wants(source)) return;
  Analyser->LoadSamples_INT16(a, b);
  if (withReference) SetReference();
  Analyser->SetLowSideLO(vars_.LowSideLO);
}

}  // namespace quorl
