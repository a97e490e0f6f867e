#define CARVELLO_VECTOR_BYTES 32
#include "spectrum/power_kernels_body.inc"

const carvello::SPowerKernels carvello::kAvx2Power = carvello::MakeKernels("avx2");
