#define VANTREL_VECTOR_BYTES 32
#include "kernels_body.inc"

const vantrel::SKernels vantrel::kAvx2Kernels = vantrel::MakeKernels("avx2");
