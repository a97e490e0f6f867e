// Power spectra of windowed stretches of samples.
//
// All of the arithmetic is fixed: every processor and every system gives the same bits.
#pragma once

#include <cstddef>
#include <vector>

#include "dsp/primitives.h"
#include "fourier/block_transform.h"
#include "fourier/complex_sample.h"
#include "fourier/instruction_set.h"
#include "spectrum/power_kernels.h"

namespace carvello {

enum class EWindow {
  Hann,            // narrow; side lobes of -31 dB that fall off fast
  BlackmanHarris,  // four terms: side lobes of -92 dB
  FlatTop,         // levels right to 0.004 dB between bins too; side lobes of -90 dB
};

// A tone at full scale (amplitude 32768) in the middle of a bin has the power 1.0 (0 dBFS) there, whatever the window
// and the length. One of a thread.
class CPowerSpectrum {
 public:
  // The length is one that CBlockTransform has. Throws std::bad_alloc.
  CPowerSpectrum(std::size_t length, EWindow window);
  // With the loops of this instruction set, which the processor must have.
  CPowerSpectrum(std::size_t length, EWindow window, EInstructionSet set);

  std::size_t Length() const noexcept { return m_transform.Size(); }
  EWindow Window() const noexcept { return m_window; }
  // In bins: noise of the density d has the power d x this x rate / length in a bin.
  double NoiseBandwidth() const noexcept;

  // Of Length() frames: the power of Length() bins, the lowest frequency first. Bin k lies (k - length / 2) x rate /
  // length from the centre.
  void Transform(const SComplex* frames, float* power) noexcept;
  // The same, added to `sum`.
  void Add(const SComplex* frames, float* sum) noexcept;
  // The same, where it is larger than what stands in `maximum`.
  void Largest(const SComplex* frames, float* maximum) noexcept;

 private:
  using Powers = decltype(SPowerKernels::Power);
  void Run(const SComplex* frames, Powers powers, float* result) noexcept;

  EWindow m_window;
  const SPowerKernels& m_kernels;
  CBlockTransform m_transform;
  std::vector<float> m_weights;  // the window, scaled
  ComplexBuffer m_pWeighted;
  ComplexBuffer m_pBins;
  ComplexBuffer m_pWork;
};

// sum += power and maximum = the larger of maximum and power, of `count` bins each.
void Accumulate(const float* power, std::size_t count, float* sum, float* maximum) noexcept;

}  // namespace carvello
