#define QUORL_KERNEL_NAME kKernelAvx512
#define QUORL_KERNEL_SET "AVX-512"
#include "dsp/kernel/KernelVariant.h"
