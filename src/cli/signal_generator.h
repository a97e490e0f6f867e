// CSignalGenerator: the samples of a made-up recording, from its first to its last.
#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "cli/noise_source.h"
#include "cli/phase_table.h"
#include "cli/synth_settings.h"

namespace carvello {

// Stations of the kind "am" carry a tone of this frequency at this depth.
inline constexpr std::int64_t kModulationFrequency = 1000;  // Hz
inline constexpr double kModulationDepth = 0.7;

class CSignalGenerator {
 public:
  explicit CSignalGenerator(const SSynthSettings& settings);

  // The next `frames` frames, interleaved I/Q, full scale 1.0. At most kSignalBlock.
  void Next(double* values, std::size_t frames);

 private:
  struct SVoice {
    CPhaseTable table;
    double dAmplitude;
    bool bAm;
  };

  std::vector<SVoice> m_voices;
  CPhaseTable m_modulation;
  std::vector<double> m_steady;    // the envelope of a bare carrier: ones
  std::vector<double> m_envelope;  // that of a modulated one
  CNoiseSource m_noise;
  double m_dNoiseDeviation = 0.0;  // of I and of Q
};

}  // namespace carvello
