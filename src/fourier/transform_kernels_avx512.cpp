#define CARVELLO_VECTOR_BYTES 64
#include "fourier/transform_kernels_body.inc"

const carvello::STransformKernels carvello::kAvx512Transform = carvello::MakeKernels("avx512");
