// The table of function pointers through which the vector kernel reaches its instruction set.
#pragma once

#include <cstdint>

#include "dsp/kernel/FftPlan.h"

namespace quorl {

struct KernelTable {
  const char* InstructionSet;
#define KERNEL_ROUTINE(result, name, parameters, arguments) result(*name) parameters;
#include "dsp/kernel/KernelTable.def"
#undef KERNEL_ROUTINE
};

// Every table gives the same results but for the last bits of rounding.
extern const KernelTable kKernelBaseline;
#ifdef QUORL_KERNEL_X86
extern const KernelTable kKernelAvx2;    // needs AVX2 and FMA
extern const KernelTable kKernelAvx512;  // needs AVX-512 F, BW, DQ and VL
#endif

// The tables that this processor can run, best last.
struct KernelChoice {
  const KernelTable* Tables[3];
  int Count;
};
KernelChoice RunnableKernels();

}  // namespace quorl
