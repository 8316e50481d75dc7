#include "sim/SimulatedChip.h"

namespace quorl {

std::optional<double> SynthesisedHz(std::uint32_t word, double clockHz) {
  if (word == 0) return {};
  const double hz = static_cast<double>(word) * clockHz / 4294967296.0;
  return word > 0x80000000U ? clockHz - hz : hz;
}

}  // namespace quorl
