// CPhaseTable: a complex oscillator of whole Hz, exact over any length.
//
// The phase at the head of every block is a whole number of samples' phase steps modulo the sample rate, so it never
// drifts; within the block it comes from a table made once.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace carvello {

inline constexpr std::size_t kSignalBlock = 4096;  // frames

class CPhaseTable {
 public:
  // frequency: Hz, of either sign; rate: frames/s, above 0.
  CPhaseTable(std::int64_t frequency, std::uint32_t rate);

  // Adds amplitude x envelope[n] x e^(j phase) to `frames` interleaved I/Q values and goes on behind them. At most
  // kSignalBlock frames.
  void AddTo(double* values, std::size_t frames, double amplitude, const double* envelope);
  // envelope[n] = 1 + depth x cos(phase), and goes on as above.
  void MakeEnvelope(double* envelope, std::size_t frames, double depth);

 private:
  void Advance(std::size_t frames);
  double PhaseAt(std::uint64_t turnsTimesRate) const;  // radians

  std::uint64_t m_nRate;
  std::uint64_t m_nStep;       // phase step of a frame, in 1/rate of a turn, below the rate
  std::uint64_t m_nPhase = 0;  // of the next frame, in 1/rate of a turn, below the rate
  std::vector<double> m_cosines;
  std::vector<double> m_sines;
};

}  // namespace carvello
