// Which of the sets of loops this processor runs: every loop is written once and compiled for each of these.
#pragma once

#include <vector>

namespace carvello {

enum class EInstructionSet {
  Plain,   // what every x86-64 has (SSE2), or what another processor has
  Avx2,    // needs AVX2
  Avx512,  // needs AVX-512 F, BW and DQ
};

// Those of this processor, the best one last.
std::vector<EInstructionSet> InstructionSets();

// The best one of this processor. The environment variable CARVELLO_ISA ("plain", "avx2" or "avx512") asks for another;
// one that the processor does not have is not taken.
EInstructionSet PickInstructionSet();

// As CARVELLO_ISA calls it.
const char* NameOf(EInstructionSet set);

}  // namespace carvello
