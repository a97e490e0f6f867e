#include "fft.h"

#include <cmath>
#include <numbers>
#include <utility>

namespace vantrel {

CFft::CFft(std::size_t length) {
  m_Twiddles.reserve(length / 2);
  for (std::size_t k = 0; k < length / 2; ++k) {
    const double fAngle = -2.0 * std::numbers::pi * static_cast<double>(k) / static_cast<double>(length);
    m_Twiddles.push_back({static_cast<float>(std::cos(fAngle)), static_cast<float>(std::sin(fAngle))});
  }
}

void CFft::Forward(SComplex* data) const {
  const std::size_t nLength = Length();
  for (std::size_t i = 1, j = 0; i < nLength; ++i) {
    std::size_t nBit = nLength / 2;
    for (; (j & nBit) != 0; nBit /= 2) j ^= nBit;
    j ^= nBit;
    if (i < j) std::swap(data[i], data[j]);
  }
  for (std::size_t nHalf = 1; nHalf < nLength; nHalf *= 2) {
    const std::size_t nTwiddleStep = nLength / (2 * nHalf);
    for (std::size_t nStart = 0; nStart < nLength; nStart += 2 * nHalf) {
      for (std::size_t k = 0; k < nHalf; ++k) {
        const SComplex w = m_Twiddles[k * nTwiddleStep];
        SComplex& a = data[nStart + k];
        SComplex& b = data[nStart + k + nHalf];
        const SComplex turned{b.re * w.re - b.im * w.im, b.re * w.im + b.im * w.re};
        b = {a.re - turned.re, a.im - turned.im};
        a = {a.re + turned.re, a.im + turned.im};
      }
    }
  }
}

void CFft::Inverse(SComplex* data) const {
  // The inverse is the forward transform with I and Q swapped before and after.
  const std::size_t nLength = Length();
  for (std::size_t i = 0; i < nLength; ++i) std::swap(data[i].re, data[i].im);
  Forward(data);
  for (std::size_t i = 0; i < nLength; ++i) std::swap(data[i].re, data[i].im);
}

}  // namespace vantrel
