#include "kernels.h"

#include <cstdlib>
#include <string_view>

namespace vantrel {
namespace {

const SKernels& Pick() {
  struct SCandidate {
    const SKernels& kernels;
    bool bRuns;  // on this processor
  };
  const SCandidate candidates[] = {
      {kPlainKernels, true},
#ifdef VANTREL_X86_64
      {kAvx2Kernels, __builtin_cpu_supports("avx2") != 0},
      {kAvx512Kernels, __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512dq")},
#endif
  };
  const char* pszWanted = std::getenv("CARVELLO_ISA");
  const SKernels* pKernels = nullptr;
  for (const SCandidate& candidate : candidates) {
    if (!candidate.bRuns) continue;
    pKernels = &candidate.kernels;  // the best one comes last
    if (pszWanted != nullptr && std::string_view(pszWanted) == candidate.kernels.pszName) break;
  }
  return *pKernels;
}

}  // namespace

const SKernels& Kernels() {
  static const SKernels& s_Kernels = Pick();
  return s_Kernels;
}

}  // namespace vantrel
