#include "spectrum.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace carvello::test {
namespace {

// Side lobes of a Kaiser window with this parameter are 170 dB down, its main lobe reaches 6 bins to either side.
constexpr double kWindowBeta = 18.0;
constexpr std::size_t kMainLobe = 8;

// Radix 2, in place.
void Transform(std::vector<std::complex<double>>& data) {
  const std::size_t nLength = data.size();
  for (std::size_t i = 1, j = 0; i < nLength; ++i) {
    std::size_t nBit = nLength / 2;
    for (; (j & nBit) != 0; nBit /= 2) j ^= nBit;
    j ^= nBit;
    if (i < j) std::swap(data[i], data[j]);
  }
  std::vector<std::complex<double>> turns(nLength / 2);
  for (std::size_t i = 0; i < turns.size(); ++i) {
    turns[i] = std::polar(1.0, -2.0 * std::numbers::pi * static_cast<double>(i) / static_cast<double>(nLength));
  }
  for (std::size_t nHalf = 1; nHalf < nLength; nHalf *= 2) {
    const std::size_t nTurnStep = nLength / (2 * nHalf);
    for (std::size_t nFirst = 0; nFirst < nLength; nFirst += 2 * nHalf) {
      for (std::size_t i = 0; i < nHalf; ++i) {
        const std::complex<double> odd = data[nFirst + nHalf + i] * turns[i * nTurnStep];
        data[nFirst + nHalf + i] = data[nFirst + i] - odd;
        data[nFirst + i] += odd;
      }
    }
  }
}

}  // namespace

SSpectrumPeaks FindPeaks(std::vector<std::complex<double>> signal) {
  const std::size_t nLength = signal.size();
  double fWindowSum = 0.0;
  for (std::size_t n = 0; n < nLength; ++n) {
    const double x = 2.0 * (static_cast<double>(n) + 0.5) / static_cast<double>(nLength) - 1.0;
    const double fWindow = std::cyl_bessel_i(0.0, kWindowBeta * std::sqrt(1.0 - x * x));
    signal[n] *= fWindow;
    fWindowSum += fWindow;
  }
  Transform(signal);
  const auto decibel = [&](std::size_t bin) { return 20.0 * std::log10(std::abs(signal[bin]) / fWindowSum + 1e-15); };

  SSpectrumPeaks peaks{};
  for (std::size_t i = 1; i < nLength; ++i) {
    if (std::abs(signal[i]) > std::abs(signal[peaks.nBin])) peaks.nBin = i;
  }
  peaks.fLargest = decibel(peaks.nBin);
  std::size_t nSpur = (peaks.nBin + nLength / 2) % nLength;
  for (std::size_t i = 0; i < nLength; ++i) {
    const std::size_t nApart = (i + nLength - peaks.nBin) % nLength;
    if (std::min(nApart, nLength - nApart) <= kMainLobe) continue;
    if (std::abs(signal[i]) > std::abs(signal[nSpur])) nSpur = i;
  }
  peaks.fSpur = decibel(nSpur);
  return peaks;
}

}  // namespace carvello::test
