#include "kernels.h"

#include <cstdlib>
#include <string_view>

namespace vantrel {
namespace {

const SKernels& Pick() {
#ifdef VANTREL_HAVE_AVX2
  const char* pszWanted = std::getenv("CARVELLO_ISA");
  const bool bPlainWanted = pszWanted != nullptr && std::string_view(pszWanted) == "plain";
  if (!bPlainWanted && __builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma")) return kAvx2Kernels;
#endif
  return kPlainKernels;
}

}  // namespace

const SKernels& Kernels() {
  static const SKernels& s_Kernels = Pick();
  return s_Kernels;
}

}  // namespace vantrel
