#include "oscillator.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <numbers>

#include "kernels.h"

namespace vantrel {
namespace {

// exp(-j 2 pi residue / rate)
std::complex<double> Turn(std::uint64_t residue, std::uint32_t rate) {
  return std::polar(1.0, -2.0 * std::numbers::pi * static_cast<double>(residue) / static_cast<double>(rate));
}

constexpr std::uint64_t kNoBlock = ~std::uint64_t{0};

}  // namespace

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
  m_Cosines.resize(2 * kBlock);
  m_Sines.resize(2 * kBlock);
  for (std::size_t i = 0; i < kBlock; ++i) {
    const std::complex<double> turn = Turn(Residue(i), rate);
    m_Cosines[2 * i] = m_Cosines[2 * i + 1] = static_cast<float>(turn.real());
    m_Sines[2 * i] = m_Sines[2 * i + 1] = static_cast<float>(turn.imag());
  }
  m_BlockTurns.resize(kGroup);
  for (std::size_t i = 0; i < kGroup; ++i) m_BlockTurns[i] = Turn(Residue(i * kBlock), rate);
}

void COscillator::SeekBlock(std::uint64_t block) {
  if (m_nBlock == kNoBlock || m_nBlock / kGroup != block / kGroup) {
    m_GroupTurn = Turn(Residue(block / kGroup * kGroup * kBlock), m_nRate);
  }
  m_nBlock = block;
  const std::complex<double> turn = m_GroupTurn * m_BlockTurns[block % kGroup];
  m_Phasor = {static_cast<float>(turn.real()), static_cast<float>(turn.imag())};
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
    if (m_nBlock != m_nPosition / kBlock) SeekBlock(m_nPosition / kBlock);
    const std::size_t nInBlock = m_nPosition % kBlock;
    const std::size_t nPiece = std::min(count, kBlock - nInBlock);
    rotate(&source->re, &destination->re, nPiece, &m_Cosines[2 * nInBlock], &m_Sines[2 * nInBlock], m_Phasor.re,
           m_Phasor.im);
    source += nPiece;
    destination += nPiece;
    count -= nPiece;
    m_nPosition += nPiece;
  }
}

}  // namespace vantrel
