#include "dsp/primitive_kernels_body.h"

const carvello::SPrimitiveKernels carvello::kAvx2Primitives = carvello::kKernels;
