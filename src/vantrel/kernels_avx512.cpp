#define VANTREL_VECTOR_BYTES 64
#include "kernels_body.inc"

const vantrel::SKernels vantrel::kAvx512Kernels = vantrel::MakeKernels("avx512");
