#include "spectrum/power_spectrum.h"

#include <cstdint>
#include <new>
#include <span>

#include "fourier/unit_root.h"

namespace carvello {
namespace {

// Weight n of N: the sum of a[k] cos(2 pi k n / N), the signs being those of the coefficients.
std::span<const double> Coefficients(EWindow window) {
  static constexpr double kHann[] = {0.5, -0.5};
  // F. J. Harris, "On the use of windows for harmonic analysis with the discrete Fourier transform", 1978.
  static constexpr double kBlackmanHarris[] = {0.35875, -0.48829, 0.14128, -0.01168};
  // HFT90D of G. Heinzel, A. Rüdiger and R. Schilling, "Spectrum and spectral density estimation by the DFT", 2002.
  static constexpr double kFlatTop[] = {1.0, -1.942604, 1.340318, -0.440811, 0.043097};
  if (window == EWindow::BlackmanHarris) return kBlackmanHarris;
  if (window == EWindow::FlatTop) return kFlatTop;
  return kHann;
}

constexpr double kFullScale = 32'768.0;

// The mean of a window is its first coefficient: divided by the sum of all weights, a tone keeps its amplitude.
std::vector<float> Weights(std::size_t length, EWindow window) {
  const std::span<const double> coefficients = Coefficients(window);
  const double fScale = coefficients[0] * static_cast<double>(length) * kFullScale;
  std::vector<double> cosines(length);
  for (std::size_t n = 0; n < length; ++n) {
    cosines[n] = UnitRoot(static_cast<std::int64_t>(n), static_cast<std::int64_t>(length)).re;
  }
  std::vector<float> weights(length);
  for (std::size_t n = 0; n < length; ++n) {
    double fWeight = 0.0;
    for (std::size_t k = 0; k < coefficients.size(); ++k) fWeight += coefficients[k] * cosines[k * n % length];
    weights[n] = static_cast<float>(fWeight / fScale);
  }
  return weights;
}

ComplexBuffer Allocate(std::size_t length) {
  ComplexBuffer pBuffer(AllocComplex(static_cast<std::int64_t>(length)));
  if (!pBuffer) throw std::bad_alloc();
  return pBuffer;
}

}  // namespace

CPowerSpectrum::CPowerSpectrum(std::size_t length, EWindow window)
    : CPowerSpectrum(length, window, PickInstructionSet()) {}

CPowerSpectrum::CPowerSpectrum(std::size_t length, EWindow window, EInstructionSet set)
    : m_window(window),
      m_kernels(PowerKernels(set)),
      m_transform(length, set),
      m_weights(Weights(length, window)),
      m_pWeighted(Allocate(length)),
      m_pBins(Allocate(length)),
      m_pWork(Allocate(m_transform.WorkSize())) {}

double CPowerSpectrum::NoiseBandwidth() const noexcept {
  const std::span<const double> coefficients = Coefficients(m_window);
  const double fMean = coefficients[0];
  double fSquares = fMean * fMean;
  for (const double fCoefficient : coefficients.subspan(1)) fSquares += fCoefficient * fCoefficient / 2.0;
  return fSquares / (fMean * fMean);
}

void CPowerSpectrum::Run(const SComplex* frames, Powers powers, float* result) noexcept {
  const std::size_t nHalf = Length() / 2;
  m_kernels.Weight(frames, m_weights.data(), m_pWeighted.get(), Length());
  m_transform.Forward(m_pWeighted.get(), m_pBins.get(), m_pWork.get());
  powers(m_pBins.get() + nHalf, result, nHalf);
  powers(m_pBins.get(), result + nHalf, nHalf);
}

void CPowerSpectrum::Transform(const SComplex* frames, float* power) noexcept {
  Run(frames, m_kernels.Power, power);
}

void CPowerSpectrum::Add(const SComplex* frames, float* sum) noexcept {
  Run(frames, m_kernels.AddPower, sum);
}

void CPowerSpectrum::Largest(const SComplex* frames, float* maximum) noexcept {
  Run(frames, m_kernels.LargestPower, maximum);
}

void Accumulate(const float* power, std::size_t count, float* sum, float* maximum) noexcept {
  static const SPowerKernels& s_kernels = PowerKernels(PickInstructionSet());
  s_kernels.Accumulate(power, count, sum, maximum);
}

const SPowerKernels& PowerKernels([[maybe_unused]] EInstructionSet set) {
#ifdef CARVELLO_X86_64
  if (set == EInstructionSet::Avx512) return kAvx512Power;
  if (set == EInstructionSet::Avx2) return kAvx2Power;
#endif
  return kPlainPower;
}

}  // namespace carvello
