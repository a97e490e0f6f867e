// What every x86-64 has (SSE2), and what a compiler makes of 16-byte vectors on another processor.
#define CARVELLO_VECTOR_BYTES 16
#include "spectrum/power_kernels_body.inc"

const carvello::SPowerKernels carvello::kPlainPower = carvello::MakeKernels("plain");
