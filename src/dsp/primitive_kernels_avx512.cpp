#define CARVELLO_SHUFFLES_BYTES
#include "dsp/primitive_kernels_body.inc"

const carvello::SPrimitiveKernels carvello::kAvx512Primitives = carvello::MakeKernels("avx512");
