#define QUORL_KERNEL_NAME kKernelBaseline
#define QUORL_KERNEL_SET "baseline"
#include "dsp/kernel/KernelVariant.h"
