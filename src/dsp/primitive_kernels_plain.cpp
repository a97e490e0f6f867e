#include "dsp/primitive_kernels_body.h"

const carvello::SPrimitiveKernels carvello::kPlainPrimitives = carvello::kKernels;
