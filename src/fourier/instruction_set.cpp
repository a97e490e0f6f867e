#include "fourier/instruction_set.h"

#include <cstdlib>
#include <string_view>

namespace carvello {

std::vector<EInstructionSet> InstructionSets() {
  std::vector<EInstructionSet> sets = {EInstructionSet::Plain};
#ifdef CARVELLO_X86_64
  if (__builtin_cpu_supports("avx2")) sets.push_back(EInstructionSet::Avx2);
  if (__builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512bw") && __builtin_cpu_supports("avx512dq")) {
    sets.push_back(EInstructionSet::Avx512);
  }
#endif
  return sets;
}

EInstructionSet PickInstructionSet() {
  const std::vector<EInstructionSet> sets = InstructionSets();
  const char* pszWanted = std::getenv("CARVELLO_ISA");
  if (pszWanted == nullptr) return sets.back();
  for (const EInstructionSet set : sets) {
    if (std::string_view(pszWanted) == NameOf(set)) return set;
  }
  return sets.back();
}

const char* NameOf(EInstructionSet set) {
  switch (set) {
    case EInstructionSet::Plain:
      return "plain";
    case EInstructionSet::Avx2:
      return "avx2";
    case EInstructionSet::Avx512:
      return "avx512";
  }
  return "";
}

}  // namespace carvello
