#define CARVELLO_SHUFFLES_BYTES
#include "dsp/primitive_kernels_body.inc"

const carvello::SPrimitiveKernels carvello::kAvx2Primitives = carvello::MakeKernels("avx2");
