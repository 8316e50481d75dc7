#include "dsp/kernel/VectorKernel.h"

#include <algorithm>
#include <cstdlib>
#include <string_view>

#include "dsp/kernel/KernelTable.h"

namespace quorl {

KernelChoice RunnableKernels() {
  KernelChoice choice{{&kKernelBaseline}, 1};
#ifdef QUORL_KERNEL_X86
  __builtin_cpu_init();
  if (__builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma")) {
    choice.Tables[choice.Count++] = &kKernelAvx2;
    if (__builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512bw") &&
        __builtin_cpu_supports("avx512dq") && __builtin_cpu_supports("avx512vl")) {
      choice.Tables[choice.Count++] = &kKernelAvx512;
    }
  }
#endif
  return choice;
}

namespace {

const KernelTable& ChooseKernel() {
  const KernelChoice choice = RunnableKernels();
  const char* wanted = std::getenv(kKernelVariable);
  for (int i = 0; wanted != nullptr && i < choice.Count; ++i) {
    if (choice.Tables[i]->InstructionSet == std::string_view(wanted)) return *choice.Tables[i];
  }
  return *choice.Tables[choice.Count - 1];
}

const KernelTable& kKernel = ChooseKernel();

}  // namespace

#define KERNEL_ROUTINE(result, name, parameters, arguments) \
  result name parameters {                                  \
    return kKernel.name arguments;                          \
  }
#include "dsp/kernel/KernelTable.def"
#undef KERNEL_ROUTINE

void CopyVector_S(const float* in, float* out, std::int32_t n) {
  if (n > 0) std::copy_n(in, n, out);
}
void CopyVector_16(const std::int16_t* in, std::int16_t* out, std::int32_t n) {
  if (n > 0) std::copy_n(in, n, out);
}
void ZeroVector_S(float* v, std::int32_t n) {
  if (n > 0) std::fill_n(v, n, 0.0F);
}
void ZeroVector_16(std::int16_t* v, std::int32_t n) {
  if (n > 0) std::fill_n(v, n, std::int16_t{0});
}

const char* KernelInstructionSet() {
  return kKernel.InstructionSet;
}

}  // namespace quorl
