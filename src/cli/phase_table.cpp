#include "cli/phase_table.h"

#include <cmath>
#include <numbers>

namespace carvello {

CPhaseTable::CPhaseTable(std::int64_t frequency, std::uint32_t rate)
    : m_nRate(rate),
      m_nStep(static_cast<std::uint64_t>((frequency % std::int64_t{rate} + std::int64_t{rate}) % std::int64_t{rate})) {
  m_cosines.reserve(kSignalBlock);
  m_sines.reserve(kSignalBlock);
  for (std::uint64_t n = 0; n < kSignalBlock; ++n) {
    const double phase = PhaseAt(m_nStep * n % m_nRate);
    m_cosines.push_back(std::cos(phase));
    m_sines.push_back(std::sin(phase));
  }
}

void CPhaseTable::AddTo(double* values, std::size_t frames, double amplitude, const double* envelope) {
  const double phase = PhaseAt(m_nPhase);
  const double real = amplitude * std::cos(phase);
  const double imaginary = amplitude * std::sin(phase);
  for (std::size_t n = 0; n < frames; ++n) {
    values[2 * n] += envelope[n] * (real * m_cosines[n] - imaginary * m_sines[n]);
    values[2 * n + 1] += envelope[n] * (real * m_sines[n] + imaginary * m_cosines[n]);
  }
  Advance(frames);
}

void CPhaseTable::MakeEnvelope(double* envelope, std::size_t frames, double depth) {
  const double phase = PhaseAt(m_nPhase);
  const double real = depth * std::cos(phase);
  const double imaginary = depth * std::sin(phase);
  for (std::size_t n = 0; n < frames; ++n) envelope[n] = 1.0 + real * m_cosines[n] - imaginary * m_sines[n];
  Advance(frames);
}

void CPhaseTable::Advance(std::size_t frames) {
  m_nPhase = (m_nPhase + m_nStep * frames) % m_nRate;
}

double CPhaseTable::PhaseAt(std::uint64_t turnsTimesRate) const {
  return 2.0 * std::numbers::pi * static_cast<double>(turnsTimesRate) / static_cast<double>(m_nRate);
}

}  // namespace carvello
