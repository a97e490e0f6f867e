#include "dsp/primitive_kernels_body.inc"

const carvello::SPrimitiveKernels carvello::kPlainPrimitives = carvello::MakeKernels("plain");
