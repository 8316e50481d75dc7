#define QUORL_KERNEL_NAME kKernelAvx2
#define QUORL_KERNEL_SET "AVX2"
#include "dsp/kernel/KernelVariant.h"
