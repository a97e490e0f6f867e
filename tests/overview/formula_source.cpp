#include "overview/formula_source.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace carvello::test {
namespace {

// SplitMix64.
std::uint64_t Mixed(std::uint64_t value) {
  value += 0x9E37'79B9'7F4A'7C15;
  value = (value ^ (value >> 30)) * 0xBF58'476D'1CE4'E5B9;
  value = (value ^ (value >> 27)) * 0x94D0'49BB'1331'11EB;
  return value ^ (value >> 31);
}

double Amplitude(double level) {
  return 32'768.0 * std::pow(10.0, level / 20.0);
}

}  // namespace

std::int64_t CFormulaSource::Read(std::int64_t first, SComplex* destination, std::int64_t count) {
  m_strProblem.clear();
  std::int64_t nEnd = std::clamp<std::int64_t>(first + count, 0, m_nFrames);
  if (m_nBroken >= 0 && nEnd > m_nBroken) {
    nEnd = std::max(m_nBroken, first);
    m_strProblem = "made.wav: cannot be read";
  }
  for (std::int64_t n = first; n < nEnd; ++n) destination[n - first] = m_signal(n);
  return std::max<std::int64_t>(nEnd - first, 0);
}

SComplex ToneFrame(std::int64_t frame, double frequency, double level) {
  const double fTurns = frequency * static_cast<double>(frame);
  const double fAngle = 2.0 * std::numbers::pi * (fTurns - std::floor(fTurns));
  const double fAmplitude = Amplitude(level);
  return {static_cast<float>(fAmplitude * std::cos(fAngle)), static_cast<float>(fAmplitude * std::sin(fAngle))};
}

SComplex NoiseFrame(std::int64_t frame, double level, std::uint64_t seed) {
  const std::uint64_t nRandom = Mixed(Mixed(seed) ^ static_cast<std::uint64_t>(frame));
  const double fFirst = (static_cast<double>(nRandom >> 40) + 0.5) / 16'777'216.0;
  const double fSecond = static_cast<double>(nRandom & 0xFF'FFFF) / 16'777'216.0;
  const double fRadius = Amplitude(level) * std::sqrt(-std::log(fFirst));
  return {static_cast<float>(fRadius * std::cos(2.0 * std::numbers::pi * fSecond)),
          static_cast<float>(fRadius * std::sin(2.0 * std::numbers::pi * fSecond))};
}

SComplex operator+(const SComplex& a, const SComplex& b) {
  return {a.re + b.re, a.im + b.im};
}

}  // namespace carvello::test
