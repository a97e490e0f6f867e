// What every x86-64 has (SSE2), and what a compiler makes of 16-byte vectors on another processor.
#define CARVELLO_VECTOR_BYTES 16
#include "spectrum/band_kernels_body.inc"

const carvello::SBandKernels carvello::kPlainBand = carvello::MakeKernels("plain");
