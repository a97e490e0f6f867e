#include "cli/signal_generator.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace carvello {
namespace {

double AmplitudeOf(double decibels) {
  return std::pow(10.0, decibels / 20.0);
}

}  // namespace

CSignalGenerator::CSignalGenerator(const SSynthSettings& settings)
    : m_modulation(kModulationFrequency, settings.nSampleRate),
      m_steady(kSignalBlock, 1.0),
      m_envelope(kSignalBlock, 1.0),
      m_noise(settings.nSeed) {
  for (const SStation& station : settings.stations) {
    m_voices.push_back({CPhaseTable(station.nFrequency - settings.nCentre, settings.nSampleRate),
                        AmplitudeOf(station.dLevel), station.bAm});
  }
  // I and Q each carry half of the power.
  if (settings.noise) m_dNoiseDeviation = AmplitudeOf(*settings.noise) / std::numbers::sqrt2;
}

void CSignalGenerator::Next(double* values, std::size_t frames) {
  std::fill_n(values, 2 * frames, 0.0);
  m_modulation.MakeEnvelope(m_envelope.data(), frames, kModulationDepth);
  for (SVoice& voice : m_voices) {
    voice.table.AddTo(values, frames, voice.dAmplitude, (voice.bAm ? m_envelope : m_steady).data());
  }
  if (m_dNoiseDeviation > 0.0) {
    for (std::size_t i = 0; i < 2 * frames; ++i) values[i] += m_dNoiseDeviation * m_noise.Next();
  }
}

}  // namespace carvello
