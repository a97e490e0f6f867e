#include "ui/fake_spectrum.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "engine/block_listener.h"
#include "spectrum/level_code.h"

namespace carvello::test {

double FakeLevel(const SFakeState& state, double frequency, double frame) {
  double level = state.dNoise;
  for (const SFakeStation& station : state.stations) {
    if (frame < station.dFirstFrame || frame >= station.dLastFrame) continue;
    if (std::abs(frequency - station.dFrequency) <= station.dWidth / 2.0) level = std::max(level, station.dLevel);
  }
  return level;
}

namespace {

class CCounter : public IBlockListener {
 public:
  explicit CCounter(std::shared_ptr<SFakeState> pState) : m_pState(std::move(pState)) {}
  void OnBlock(const SharedBlock& /*samples*/, std::int64_t /*position*/, std::int32_t frames) noexcept override {
    m_pState->nHeard += frames;
  }

 private:
  std::shared_ptr<SFakeState> m_pState;
};

}  // namespace

std::shared_ptr<IBlockListener> CFakeSpectrum::Listener() {
  return std::make_shared<CCounter>(m_pState);
}

void CFakeSpectrum::Show(const SSpectrumView& view) {
  m_pState->views.push_back(view);
  auto pPicture = std::make_shared<SSpectrumPicture>();
  pPicture->view = view;
  pPicture->nTransform = view.nTransform == 0 ? 4096 : view.nTransform;
  const auto columns = static_cast<std::size_t>(view.nColumns);
  const auto rows = static_cast<std::size_t>(view.nRows);
  pPicture->mean.assign(columns * rows, kUnknownLevel);
  pPicture->average.assign(columns, -std::numeric_limits<float>::infinity());
  const double hertz = (view.dHighFrequency - view.dLowFrequency) / view.nColumns;
  const double frames = view.dFrames / view.nRows;
  const auto known = static_cast<std::size_t>(m_pState->dKnown * view.nRows);
  for (std::size_t row = 0; row < known; ++row) {
    for (std::size_t column = 0; column < columns; ++column) {
      const double level = FakeLevel(*m_pState, view.dLowFrequency + (static_cast<double>(column) + 0.5) * hertz,
                                     view.dFirstFrame + (static_cast<double>(row) + 0.5) * frames);
      pPicture->mean[row * columns + column] = LevelCode(static_cast<float>(std::pow(10.0, level / 10.0)));
      pPicture->average[column] = std::max(pPicture->average[column], static_cast<float>(level));
    }
  }
  pPicture->maximum = pPicture->mean;
  pPicture->peak = pPicture->average;
  pPicture->rows.assign(rows, ERowKnown::Nothing);
  std::fill_n(pPicture->rows.begin(), known, ERowKnown::Every);
  pPicture->dKnown = m_pState->dKnown;
  pPicture->bComplete = m_pState->dKnown >= 1.0;
  m_pPicture = pPicture;
  if (m_pState->changed) m_pState->changed();
}

void CFakeSpectrum::FindCarrier(double /*frequency*/, double /*reach*/, double /*firstFrame*/, double /*frames*/,
                                std::function<void(std::optional<double>)> answer) {
  answer(m_pState->carrier);
}

void CFakeSpectrum::Search(const SSignalSearch& search, std::function<void(const SSearchNews&)> tell) {
  m_pState->searches.push_back(search);
  tell({.dDone = 0.5});
  if (!m_pState->bHoldSearch)
    tell({.dDone = 1.0, .bEnded = true, .strProblem = m_pState->strSearchProblem, .found = m_pState->found});
}

}  // namespace carvello::test
