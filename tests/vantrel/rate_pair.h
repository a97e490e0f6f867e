// A pair of rates that tests go through.
#pragma once

#include <cmath>
#include <cstdint>
#include <ostream>
#include <string>

#include "library_instance.h"

namespace carvello::test {

struct SRates {
  std::uint32_t nIn;
  std::uint32_t nOut;
  bool bWholeNumber = false;

  double Ratio() const {
    const double fRatio = static_cast<double>(nIn) / static_cast<double>(nOut);
    return bWholeNumber ? std::round(fRatio) : fRatio;
  }
  double RateOut() const { return nIn / Ratio(); }

  CLibraryInstance NewInstance() const { return {nIn, nOut, bWholeNumber}; }
  // Enough input for about this many settled output samples.
  std::size_t InputFor(double settledOutputs) const {
    return static_cast<std::size_t>((2.0 * kSettled + settledOutputs) * Ratio());
  }
};

inline std::string NameOf(const SRates& rates) {
  return std::to_string(rates.nIn) + "to" + std::to_string(rates.nOut) + (rates.bWholeNumber ? "whole" : "");
}
inline void PrintTo(const SRates& rates, std::ostream* stream) {
  *stream << NameOf(rates);
}

// What the chain makes of a tone of `frequency` output rates: the largest difference of a settled output sample from a
// tone of `wanted` times its size. Gain, phase, frequency, time and whatever is beside the tone are all in it.
inline double WorstError(const SRates& rates, double frequency, double wanted, double settledOutputs = 16.0) {
  const Samples output = rates.NewInstance().Run(Tone(frequency / rates.Ratio(), rates.InputFor(settledOutputs)));
  if (output.size() <= kSettled) ADD_FAILURE() << "no settled output";
  const Samples expected = Tone(frequency, output.size(), wanted);
  double fWorst = 0.0;
  for (std::size_t m = kSettled; m < output.size(); ++m) {
    fWorst = std::max(fWorst, std::abs(Value(output[m]) - Value(expected[m])));
  }
  return fWorst;
}

// The output for a single sample of 1, and from it the gain of each frequency (in cycles per output sample) and its
// delay in output samples, from the single sample's own time on.
struct SImpulseResponse {
  Samples output;
  double fTime;  // of the impulse, in output samples
  double fRatio;

  std::complex<double> Gain(double frequency) const {
    std::complex<double> sum;
    for (std::size_t m = 0; m < output.size(); ++m) {
      const double fLater = static_cast<double>(m) - fTime;
      sum += Value(output[m]) * std::polar(1.0, -2.0 * std::numbers::pi * frequency * fLater);
    }
    return sum * fRatio;
  }
  double Delay(double frequency) const { return std::arg(Gain(frequency)) / (-2.0 * std::numbers::pi * frequency); }
};

inline SImpulseResponse ImpulseAt(const SRates& rates, std::size_t number, std::size_t length) {
  Samples input(length);
  input[number] = {1.0f, 0.0f};
  return {rates.NewInstance().Run(input), static_cast<double>(number) / rates.Ratio(), rates.Ratio()};
}

}  // namespace carvello::test
