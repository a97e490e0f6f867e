// What every x86-64 has (SSE2), and what a compiler makes of 16-byte vectors on another processor.
#define VANTREL_VECTOR_BYTES 16
#include "kernels_body.inc"

const vantrel::SKernels vantrel::kPlainKernels = vantrel::MakeKernels("plain");
