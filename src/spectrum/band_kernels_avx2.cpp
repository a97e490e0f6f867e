#define CARVELLO_VECTOR_BYTES 32
#include "spectrum/band_kernels_body.inc"

const carvello::SBandKernels carvello::kAvx2Band = carvello::MakeKernels("avx2");
