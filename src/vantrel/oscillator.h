// The oscillator that brings a frequency to 0 Hz, exact for any length of signal.
#pragma once

#include <array>
#include <complex>
#include <cstddef>
#include <cstdint>

#include "aligned_floats.h"
#include "sample.h"

namespace vantrel {

// Sample n is multiplied by exp(-j 2 pi ((shift * n) mod rate) / rate). The residue is a whole number, so there is no
// drift. Where the turns repeat soon, as they do for shifts on a raster, a table holds them. Otherwise tables hold the
// turns within a block of samples and within a group of blocks, and one more turn per group, computed from its residue,
// leads there. Blocks stand at fixed sample numbers, whatever calls they come in.
class COscillator {
 public:
  // The next sample is number `position`. All memory that any shift and rate need is taken here.
  explicit COscillator(std::uint64_t position = 0);

  // The next sample is number `position`.
  void Seek(std::uint64_t position) { m_nPosition = position; }

  // In place is allowed. A shift or rate other than before takes effect as if it had been there from sample 0. A shift
  // of 0 (or a multiple of the rate), or a rate of 0, only copies.
  void Process(std::int64_t shift, std::uint32_t rate, const SComplex* source, std::size_t count,
               SComplex* destination) noexcept;

 private:
  static constexpr std::size_t kGroup = 64;            // blocks
  static constexpr std::size_t kLongestPeriod = 8192;  // its tables still fit into a processor's own cache

  void SetFrequency(std::int64_t shift, std::uint32_t rate);
  void RotateInBlock(const SComplex* source, std::size_t count, SComplex* destination);
  void SeekBlock(std::uint64_t block);
  // (step * samples) mod rate, of any number of samples.
  std::uint64_t Residue(std::uint64_t samples) const;

  std::uint64_t m_nPosition;
  std::int64_t m_nShift = 0;
  std::uint32_t m_nRate = 0;
  std::uint64_t m_nStep = 0;  // the shift as a residue, 0 .. rate - 1
  std::size_t m_nBlockLength = 0;
  bool m_bPeriodic = false;          // a block holds whole periods
  AlignedFloats m_Cosines;           // the turns from a block's first sample on, every value twice in a row
  AlignedFloats m_AlternatingSines;  // the first of each pair negated
  std::array<std::complex<double>, kGroup> m_BlockTurns;  // those of a group's blocks from its first one on
  std::uint64_t m_nBlock = 0;                             // the block that m_Phasor belongs to
  std::complex<double> m_GroupTurn;                       // of the first sample of its group
  SComplex m_Phasor;                                      // the turn of its first sample
};

}  // namespace vantrel
