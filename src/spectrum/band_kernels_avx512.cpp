#define CARVELLO_VECTOR_BYTES 64
#include "spectrum/band_kernels_body.inc"

const carvello::SBandKernels carvello::kAvx512Band = carvello::MakeKernels("avx512");
