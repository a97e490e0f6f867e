#include "dsp/primitive_kernels_body.inc"

const carvello::SPrimitiveKernels carvello::kAvx2Primitives = carvello::kKernels;
