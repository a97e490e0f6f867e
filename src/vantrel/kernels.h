// The inner loops, in one set for each instruction set. Samples are interleaved I/Q floats; every tap stands twice in
// a row in its table, once for I and once for Q, so that a filter is a plain product of two float arrays.
//
// Every result depends on nothing but the values that go into it: how many results one call asks for changes no bit.
#pragma once

#include <cstddef>

namespace vantrel {

// Tap counts are multiples of this.
inline constexpr std::size_t kTapGranule = 8;
// FirSinglePhase is fastest with this stride and at most so many taps.
inline constexpr std::size_t kFastStride = 8;
inline constexpr std::size_t kMostFastTaps = 48;

// One output of a filter with several phases: where its first sample stands in the input (in samples), its row in the
// table, and how far between this row's phase and the next it lies (0..1, used by FirCubic only).
struct SDot {
  std::size_t nFirst = 0;
  std::size_t nRow = 0;
  float fFraction = 0.0f;
};

struct SKernels {
  const char* pszName;
  // destination = source * (cosines + j sines), for `count` samples. Both tables hold every value twice in a row, and
  // the first of each pair of sines negated. In place is allowed.
  void (*RotateByTable)(const float* source, float* destination, std::size_t count, const float* cosines,
                        const float* alternatingSines);
  // The same times a phasor.
  void (*RotateByProduct)(const float* source, float* destination, std::size_t count, const float* cosines,
                          const float* alternatingSines, float phasorRe, float phasorIm);
  // `count` outputs with the same taps, `stride` samples from one to the next.
  void (*FirSinglePhase)(const float* input, std::size_t stride, const float* taps, std::size_t tapCount,
                         std::size_t count, float* output);
  // `count` outputs with a row of taps each.
  void (*FirPhases)(const float* input, const SDot* dots, std::size_t count, const float* rows, std::size_t tapCount,
                    float* output);
  // The same with taps that are cubic polynomials: a row holds all constant terms, then all linear ones and so on.
  void (*FirCubic)(const float* input, const SDot* dots, std::size_t count, const float* rows, std::size_t tapCount,
                   float* output);
};

extern const SKernels kPlainKernels;
extern const SKernels kAvx2Kernels;    // needs AVX2
extern const SKernels kAvx512Kernels;  // needs AVX-512 F and DQ

// The best set for this processor, picked once. The environment variable CARVELLO_ISA ("plain", "avx2" or "avx512")
// asks for another; one that the processor does not have is not taken.
const SKernels& Kernels();

}  // namespace vantrel
