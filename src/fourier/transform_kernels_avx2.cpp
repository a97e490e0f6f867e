#define CARVELLO_VECTOR_BYTES 32
#include "fourier/transform_kernels_body.inc"

const carvello::STransformKernels carvello::kAvx2Transform = carvello::MakeKernels("avx2");
