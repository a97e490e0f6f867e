#define CARVELLO_VECTOR_BYTES 64
#include "spectrum/power_kernels_body.inc"

const carvello::SPowerKernels carvello::kAvx512Power = carvello::MakeKernels("avx512");
