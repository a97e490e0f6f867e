// An instance of the built downconverter library, loaded as the program loads it, and the signals that tests feed it.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <complex>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <functional>
#include <numbers>
#include <sstream>
#include <string>
#include <vector>

#include "dsp/dsp_binding.h"

namespace carvello::test {

using Samples = std::vector<SComplex>;

inline const DspBinding& Dsp() {
  static DspBinding s_Binding;
  static const std::uint32_t s_nLoaded = BindDsp(s_Binding);
  if (s_nLoaded == 0) throw std::runtime_error("the library is missing: " + DspLibraryPath());
  return s_Binding;
}

// How many samples the next call gets.
using BlockSizes = std::function<std::size_t()>;
inline BlockSizes BlocksOf(std::size_t size) {
  return [size] { return size; };
}

class CLibraryInstance {
 public:
  CLibraryInstance() : m_hInstance(Dsp().AllocInstance(L"Carvello")) {}
  CLibraryInstance(std::uint32_t inputRate, std::uint32_t outputRate, bool wholeNumber = false) : CLibraryInstance() {
    Dsp().DownconvertInit(m_hInstance, inputRate, outputRate);
    if (wholeNumber) Dsp().DisableFractionalResampler(m_hInstance);
  }
  ~CLibraryInstance() { Dsp().ReleaseInstance(m_hInstance); }
  CLibraryInstance(const CLibraryInstance&) = delete;
  CLibraryInstance& operator=(const CLibraryInstance&) = delete;

  std::uint32_t Handle() const { return m_hInstance; }

  using Entry = void (*)(std::uint32_t, const SComplex*, std::uint32_t, SComplex*, std::uint32_t*);

  // Feeds all of the input to an entry point in blocks. Fails the test when a call gives more samples than it took.
  Samples Feed(Entry entry, const Samples& input, const BlockSizes& sizes = BlocksOf(1 << 16)) const {
    Samples output(input.size());
    std::size_t nOutput = 0;
    for (std::size_t nDone = 0; nDone < input.size();) {
      const std::size_t nBlock = std::min(sizes(), input.size() - nDone);
      std::uint32_t nGiven = 0;
      entry(m_hInstance, input.data() + nDone, static_cast<std::uint32_t>(nBlock), output.data() + nOutput, &nGiven);
      if (nGiven > nBlock) ADD_FAILURE() << nGiven << " samples given for " << nBlock;
      nDone += nBlock;
      nOutput += nGiven;
    }
    output.resize(nOutput);
    return output;
  }

  Samples Run(const Samples& input, const BlockSizes& sizes = BlocksOf(1 << 16)) const {
    return Feed(Dsp().DownconvertRun, input, sizes);
  }

  std::string Text() const {
    std::string strText(Dsp().Diagnostics(m_hInstance, nullptr, 0) + 1, '\0');
    Dsp().Diagnostics(m_hInstance, strText.data(), static_cast<std::uint32_t>(strText.size()));
    strText.pop_back();
    return strText;
  }

 private:
  std::uint32_t m_hInstance;
};

// Output rates of the stages, as Diagnostics tells them.
inline std::vector<double> StageRates(const CLibraryInstance& instance) {
  std::vector<double> rates;
  std::istringstream text(instance.Text());
  for (std::string strLine; std::getline(text, strLine);) {
    double rateIn = 0.0;
    double rateOut = 0.0;
    int nStage = 0;
    if (std::sscanf(strLine.c_str(), "stage %d: %lf to %lf", &nStage, &rateIn, &rateOut) == 3) {
      rates.push_back(rateOut);
    }
  }
  return rates;
}

inline std::complex<double> Value(const SComplex& sample) {
  return {sample.re, sample.im};
}
inline SComplex Sample(std::complex<double> value) {
  return {static_cast<float>(value.real()), static_cast<float>(value.imag())};
}

// exp(j 2 pi f n), f in cycles per sample. Several turning pointers side by side, for speed: tests feed long tones.
inline Samples Tone(double frequency, std::size_t count, double amplitude = 1.0) {
  constexpr std::size_t kPointers = 8;
  double re[kPointers];
  double im[kPointers];
  for (std::size_t i = 0; i < kPointers; ++i) {
    const auto value = std::polar(amplitude, 2.0 * std::numbers::pi * frequency * static_cast<double>(i));
    re[i] = value.real();
    im[i] = value.imag();
  }
  const auto step = std::polar(1.0, 2.0 * std::numbers::pi * frequency * static_cast<double>(kPointers));
  const double fStepRe = step.real();
  const double fStepIm = step.imag();
  Samples samples((count + kPointers - 1) / kPointers * kPointers);
  for (std::size_t n = 0; n < samples.size(); n += kPointers) {
    for (std::size_t i = 0; i < kPointers; ++i) {
      samples[n + i] = {static_cast<float>(re[i]), static_cast<float>(im[i])};
      const double fRe = re[i] * fStepRe - im[i] * fStepIm;
      im[i] = re[i] * fStepIm + im[i] * fStepRe;
      re[i] = fRe;
    }
  }
  samples.resize(count);
  return samples;
}

// White, uniform in both parts, full scale 16 bit.
inline Samples Noise(std::size_t count, std::uint32_t seed = 1) {
  Samples samples(count);
  const auto next = [&seed] {
    seed = seed * 1664525u + 1013904223u;
    return static_cast<float>(static_cast<std::int16_t>(seed >> 16));
  };
  for (SComplex& sample : samples) sample = {next(), next()};
  return samples;
}

inline bool SameBits(const Samples& a, const Samples& b) {
  return a.size() == b.size() && std::memcmp(a.data(), b.data(), a.size() * sizeof(SComplex)) == 0;
}

inline double Decibel(double amplitude) {
  return 20.0 * std::log10(amplitude);
}

// Outputs before this one still see the signal's beginning, whatever the rates.
constexpr std::size_t kSettled = 64;

}  // namespace carvello::test
