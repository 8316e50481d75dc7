#include "diagnostics/Profiler.h"

#include "support/NumberPicture.h"

namespace quorl {

void Profiler::StopTiming() {
  elapsed_ = clock_.Microseconds() - start_;
}

double Profiler::ElapsedTime() const {
  return static_cast<double>(elapsed_) / static_cast<double>(CPUFreq()) * 1000000.0;
}

std::string Profiler::Stopp() {
  StopTiming();
  return FormatPicture(ElapsedTime() / 1000.0, "#,##0.000 ms");
}

}  // namespace quorl
