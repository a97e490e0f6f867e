// Spectra in double, with a window whose side lobes are far below what tests look for.
#pragma once

#include <complex>
#include <cstddef>
#include <span>
#include <vector>

namespace carvello::test {

// The largest component of the signal in dB and the largest one beside it (farther than the window's main lobe is
// wide). The length is a power of two.
struct SSpectrumPeaks {
  std::size_t nBin;  // of the largest one
  double fLargest;
  double fSpur;
};
SSpectrumPeaks FindPeaks(std::vector<std::complex<double>> signal);

}  // namespace carvello::test
