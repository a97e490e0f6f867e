// The loops of taking a band out of a frame, in one set for each instruction set. All sets give the same bits.
#pragma once

#include <cstddef>

#include "fourier/complex_sample.h"
#include "fourier/instruction_set.h"

namespace carvello {

struct SBandKernels {
  const char* pszName;
  // points = bins * gains, of `count` each.
  void (*Set)(const SComplex* bins, const SComplex* gains, SComplex* points, std::size_t count);
  // points += bins * gains.
  void (*Add)(const SComplex* bins, const SComplex* gains, SComplex* points, std::size_t count);
};

extern const SBandKernels kPlainBand;
extern const SBandKernels kAvx2Band;    // needs AVX2
extern const SBandKernels kAvx512Band;  // needs AVX-512 F, BW and DQ

const SBandKernels& BandKernels(EInstructionSet set);

}  // namespace carvello
