// The loops of power spectra, in one set for each instruction set. All sets give the same bits.
#pragma once

#include <cstddef>

#include "fourier/complex_sample.h"
#include "fourier/instruction_set.h"

namespace carvello {

struct SPowerKernels {
  const char* pszName;
  // samples of `count` times the window's weights.
  void (*Weight)(const SComplex* samples, const float* window, SComplex* weighted, std::size_t count);
  // power = the bins' squared magnitudes.
  void (*Power)(const SComplex* bins, float* power, std::size_t count);
  // sum += the bins' squared magnitudes.
  void (*AddPower)(const SComplex* bins, float* sum, std::size_t count);
  // maximum = the larger of maximum and the bins' squared magnitudes.
  void (*LargestPower)(const SComplex* bins, float* maximum, std::size_t count);
  // sum += power, maximum = the larger of maximum and power.
  void (*Accumulate)(const float* power, std::size_t count, float* sum, float* maximum);
};

extern const SPowerKernels kPlainPower;
extern const SPowerKernels kAvx2Power;    // needs AVX2
extern const SPowerKernels kAvx512Power;  // needs AVX-512 F, BW and DQ

const SPowerKernels& PowerKernels(EInstructionSet set);

}  // namespace carvello
