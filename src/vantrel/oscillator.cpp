#include "oscillator.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <numbers>

#include "kernels.h"

namespace vantrel {
namespace {

constexpr std::size_t kBlock = 1024;

// exp(-j 2 pi residue / rate)
SComplex Turn(std::uint64_t residue, std::uint32_t rate) {
  const double fAngle = -2.0 * std::numbers::pi * static_cast<double>(residue) / static_cast<double>(rate);
  return {static_cast<float>(std::cos(fAngle)), static_cast<float>(std::sin(fAngle))};
}

}  // namespace

void COscillator::SetFrequency(std::int64_t shift, std::uint32_t rate) {
  m_nShift = shift;
  m_nRate = rate;
  m_nStep = 0;
  if (rate == 0) return;
  const std::int64_t nSignedRate = rate;
  m_nStep = static_cast<std::uint64_t>((shift % nSignedRate + nSignedRate) % nSignedRate);
  m_Table.resize(kBlock);
  for (std::size_t i = 0; i < kBlock; ++i) m_Table[i] = Turn(m_nStep * i % rate, rate);
  m_nBlock = ~m_nPosition;  // no block yet
}

void COscillator::Process(std::int64_t shift, std::uint32_t rate, const SComplex* source, std::size_t count,
                          SComplex* destination) {
  if (shift != m_nShift || rate != m_nRate) SetFrequency(shift, rate);
  if (m_nStep == 0) {
    if (destination != source) std::memmove(destination, source, count * sizeof(SComplex));
    m_nPosition += count;
    return;
  }
  const auto rotate = Kernels().Rotate;
  while (count > 0) {
    if (m_nBlock != m_nPosition / kBlock) {
      m_nBlock = m_nPosition / kBlock;
      // Both factors are below 2^32.
      m_Phasor = Turn(m_nStep * (m_nBlock * kBlock % rate) % rate, rate);
    }
    const std::size_t nInBlock = m_nPosition % kBlock;
    const std::size_t nPiece = std::min(count, kBlock - nInBlock);
    rotate(&source->re, &destination->re, nPiece, &m_Table[nInBlock].re, m_Phasor.re, m_Phasor.im);
    source += nPiece;
    destination += nPiece;
    count -= nPiece;
    m_nPosition += nPiece;
  }
}

}  // namespace vantrel
