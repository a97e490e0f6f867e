#include "oscillator.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <numbers>
#include <numeric>

#include "kernels.h"

namespace vantrel {
namespace {

// exp(-j 2 pi residue / rate)
std::complex<double> Turn(std::uint64_t residue, std::uint32_t rate) {
  return std::polar(1.0, -2.0 * std::numbers::pi * static_cast<double>(residue) / static_cast<double>(rate));
}

constexpr std::size_t kLeastBlock = 512;

constexpr std::uint64_t kNoBlock = ~std::uint64_t{0};

}  // namespace

COscillator::COscillator(std::uint64_t position)
    : m_nPosition(position), m_Cosines(2 * kLongestPeriod), m_AlternatingSines(2 * kLongestPeriod) {
  static_assert(kLeastBlock <= kLongestPeriod);
}

std::uint64_t COscillator::Residue(std::uint64_t samples) const {
  return m_nStep * (samples % m_nRate) % m_nRate;  // both factors are below 2^32
}

void COscillator::SetFrequency(std::int64_t shift, std::uint32_t rate) {
  m_nShift = shift;
  m_nRate = rate;
  m_nStep = 0;
  m_nBlock = kNoBlock;
  if (rate == 0) return;
  const std::int64_t nSignedRate = rate;
  m_nStep = static_cast<std::uint64_t>((shift % nSignedRate + nSignedRate) % nSignedRate);
  const std::uint64_t nPeriod = rate / std::gcd(m_nStep, std::uint64_t{rate});
  m_bPeriodic = nPeriod <= kLongestPeriod;
  m_nBlockLength = m_bPeriodic ? (kLeastBlock + nPeriod - 1) / nPeriod * nPeriod : kLeastBlock;
  for (std::size_t i = 0; i < m_nBlockLength; ++i) {
    const std::complex<double> turn = Turn(Residue(i), rate);
    m_Cosines[2 * i] = m_Cosines[2 * i + 1] = static_cast<float>(turn.real());
    m_AlternatingSines[2 * i] = static_cast<float>(-turn.imag());
    m_AlternatingSines[2 * i + 1] = static_cast<float>(turn.imag());
  }
  if (m_bPeriodic) return;
  for (std::size_t i = 0; i < kGroup; ++i) m_BlockTurns[i] = Turn(Residue(i * m_nBlockLength), rate);
}

void COscillator::SeekBlock(std::uint64_t block) {
  if (m_nBlock == kNoBlock || m_nBlock / kGroup != block / kGroup) {
    m_GroupTurn = Turn(Residue(block / kGroup * kGroup * m_nBlockLength), m_nRate);
  }
  m_nBlock = block;
  const std::complex<double> turn = m_GroupTurn * m_BlockTurns[block % kGroup];
  m_Phasor = {static_cast<float>(turn.real()), static_cast<float>(turn.imag())};
}

void COscillator::Process(std::int64_t shift, std::uint32_t rate, const SComplex* source, std::size_t count,
                          SComplex* destination) noexcept {
  if (shift != m_nShift || rate != m_nRate) SetFrequency(shift, rate);
  if (m_nStep == 0) {
    if (destination != source) std::memmove(destination, source, count * sizeof(SComplex));
    m_nPosition += count;
    return;
  }
  while (count > 0) {
    const std::size_t nPiece = std::min(count, m_nBlockLength - m_nPosition % m_nBlockLength);
    RotateInBlock(source, nPiece, destination);
    source += nPiece;
    destination += nPiece;
    count -= nPiece;
    m_nPosition += nPiece;
  }
}

void COscillator::RotateInBlock(const SComplex* source, std::size_t count, SComplex* destination) {
  const std::size_t nFirst = m_nPosition % m_nBlockLength;
  const float* cosines = &m_Cosines[2 * nFirst];
  const float* sines = &m_AlternatingSines[2 * nFirst];
  if (m_bPeriodic) {
    Kernels().RotateByTable(&source->re, &destination->re, count, cosines, sines);
    return;
  }
  if (m_nBlock != m_nPosition / m_nBlockLength) SeekBlock(m_nPosition / m_nBlockLength);
  Kernels().RotateByProduct(&source->re, &destination->re, count, cosines, sines, m_Phasor.re, m_Phasor.im);
}

}  // namespace vantrel
