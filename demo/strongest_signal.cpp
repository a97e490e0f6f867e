#include "strongest_signal.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstddef>
#include <numbers>

namespace carvello::demo {

namespace {

using Complex = std::complex<double>;

constexpr double kTwoPi = 2 * std::numbers::pi;

// The Hann window keeps strong signals elsewhere in the band out of the measured one's surroundings.
std::vector<Complex> Windowed(const std::vector<Complex>& samples, std::size_t count) {
  std::vector<Complex> windowed(count);
  for (std::size_t i = 0; i < count; ++i) {
    windowed[i] = samples[i] * (0.5 - 0.5 * std::cos(kTwoPi * static_cast<double>(i) / static_cast<double>(count)));
  }
  return windowed;
}

// Radix-2 transform in place; the size is a power of two.
void Transform(std::vector<Complex>& values) {
  const std::size_t count = values.size();
  for (std::size_t i = 1, j = 0; i < count; ++i) {
    std::size_t bit = count >> 1;
    for (; (j & bit) != 0; bit >>= 1) j ^= bit;
    j ^= bit;
    if (i < j) std::swap(values[i], values[j]);
  }
  for (std::size_t length = 2; length <= count; length *= 2) {
    std::vector<Complex> twiddles(length / 2);
    for (std::size_t k = 0; k < twiddles.size(); ++k) {
      twiddles[k] = std::polar(1.0, -kTwoPi * static_cast<double>(k) / static_cast<double>(length));
    }
    for (std::size_t start = 0; start < count; start += length) {
      for (std::size_t k = 0; k < twiddles.size(); ++k) {
        const Complex even = values[start + k];
        const Complex odd = values[start + k + length / 2] * twiddles[k];
        values[start + k] = even + odd;
        values[start + k + length / 2] = even - odd;
      }
    }
  }
}

// Magnitude of the spectrum at a place between the transform's bins.
double MagnitudeAt(const std::vector<Complex>& windowed, double bin) {
  const Complex step = std::polar(1.0, -kTwoPi * bin / static_cast<double>(windowed.size()));
  Complex sum = 0;
  // From the last sample to the first: sum = x[0] + step (x[1] + step (x[2] + …)).
  for (std::size_t i = windowed.size(); i-- > 0;) sum = windowed[i] + step * sum;
  return std::abs(sum);
}

}  // namespace

Signal FindStrongestSignal(const std::vector<Complex>& samples, double sampleRate) {
  const std::vector<Complex> windowed = Windowed(samples, std::bit_floor(samples.size()));
  std::vector<Complex> spectrum = windowed;
  Transform(spectrum);
  const auto peak = std::max_element(spectrum.begin(), spectrum.end(),
                                     [](const Complex& a, const Complex& b) { return std::norm(a) < std::norm(b); });

  // The magnitude has one maximum within a bin of the highest one: narrow it down.
  const auto highest = static_cast<double>(peak - spectrum.begin());
  double low = highest - 1;
  double high = highest + 1;
  while (high - low > 1e-4) {
    const double third = (high - low) / 3;
    if (MagnitudeAt(windowed, low + third) < MagnitudeAt(windowed, high - third)) {
      low += third;
    } else {
      high -= third;
    }
  }

  const double bin = (low + high) / 2;
  const auto count = static_cast<double>(windowed.size());
  Signal signal;
  signal.dFrequency = (bin < count / 2 ? bin : bin - count) * sampleRate / count;
  signal.dLevel = 20 * std::log10(2 * MagnitudeAt(windowed, bin) / count);  // the window halves a carrier
  return signal;
}

}  // namespace carvello::demo
