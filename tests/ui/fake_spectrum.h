// CFakeSpectrum: a band of made-up stations in the place of a recording's overview. Its pictures are there at once, and
// what it is asked for is kept.
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "ui/spectrum_source.h"

namespace carvello::test {

struct SFakeStation {
  double dFrequency;  // Hz from the centre
  double dWidth;
  double dLevel;  // dBFS
  double dFirstFrame = 0.0;
  double dLastFrame = 1e18;
};

// What a test sees and sets, also when the window has let go of its source.
struct SFakeState {
  std::vector<SFakeStation> stations;
  double dNoise = -110.0;
  double dKnown = 1.0;  // of the rows, from the first on
  double dProgress = 1.0;
  std::string strProblem;
  std::optional<double> carrier;  // Hz from the centre: the answer to every question for one
  std::vector<SFoundSignal> found;
  std::string strSearchProblem;
  bool bHoldSearch = false;  // a search begins, and does not end

  std::function<void()> changed;
  std::vector<SSpectrumView> views;
  std::vector<SSignalSearch> searches;
  int nOpened = 0;
  int nEndedSearches = 0;
  bool bPaused = false;
  bool bKeeps = false;
  std::vector<bool> pauses;              // each that was asked for
  std::atomic<std::int64_t> nHeard = 0;  // frames of jobs
};

class CFakeSpectrum : public ISpectrumSource {
 public:
  explicit CFakeSpectrum(std::shared_ptr<SFakeState> pState) : m_pState(std::move(pState)) {}

  void Show(const SSpectrumView& view) override;
  std::shared_ptr<const SSpectrumPicture> Picture() const override { return m_pPicture; }
  double Progress() const override { return m_pState->dProgress; }
  std::string Problem() const override { return m_pState->strProblem; }
  void Pause(bool pause) override {
    m_pState->bPaused = pause;
    m_pState->pauses.push_back(pause);
  }
  std::shared_ptr<IBlockListener> Listener() override;
  void FindCarrier(double frequency, double reach, double firstFrame, double frames,
                   std::function<void(std::optional<double>)> answer) override;
  void Search(const SSignalSearch& search, std::function<void(const SSearchNews&)> tell) override;
  void EndSearch() override { ++m_pState->nEndedSearches; }

 private:
  std::shared_ptr<SFakeState> m_pState;
  std::shared_ptr<const SSpectrumPicture> m_pPicture;
};

// The level of a place: the stronger of noise and stations.
double FakeLevel(const SFakeState& state, double frequency, double frame);

}  // namespace carvello::test
