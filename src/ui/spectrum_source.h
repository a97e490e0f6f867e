// ISpectrumSource: what the spectrum window takes its pictures from. Nothing of it ever waits.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "overview/spectrum_view.h"

namespace carvello {

class IBlockListener;

struct SFoundSignal {
  double dFrequency = 0.0;  // Hz
  double dBandwidth = 0.0;
  double dLevel = 0.0;  // dBFS
  double dSnr = 0.0;    // dB
  double dStart = 0.0;  // seconds since 1970 UTC
  double dEnd = 0.0;
  double dHolding = 0.0;  // Hz that a cut around its frequency needs; see SSignal
};

struct SSignalSearch {
  double dFirstFrame = 0.0;
  double dFrames = 0.0;
  double dAbove = 10.0;  // dB above the noise floor
  double dRaster = 0.0;  // Hz
};

// How far a search is, and what came of it in the end.
struct SSearchNews {
  double dDone = 0.0;
  bool bEnded = false;
  std::string strProblem{};
  std::vector<SFoundSignal> found{};
};

class ISpectrumSource {
 public:
  virtual ~ISpectrumSource() = default;

  virtual void Show(const SSpectrumView& view) = 0;
  virtual std::shared_ptr<const SSpectrumPicture> Picture() const = 0;
  virtual double Progress() const = 0;  // 0..1 of the recording that was looked at
  virtual std::string Problem() const = 0;
  // No reading of its own from now on, or again.
  virtual void Pause(bool pause) = 0;
  // What takes the blocks that a job reads; null where nothing does.
  virtual std::shared_ptr<IBlockListener> Listener() = 0;
  // The frequency (Hz from the centre) of the strongest carrier within `reach`. `answer` is called on any thread.
  virtual void FindCarrier(double frequency, double reach, double firstFrame, double frames,
                           std::function<void(std::optional<double>)> answer) = 0;
  // A new search ends the one before, of which nothing more is told. `tell` is called on any thread.
  virtual void Search(const SSignalSearch& search, std::function<void(const SSearchNews&)> tell) = 0;
  virtual void EndSearch() = 0;
};

}  // namespace carvello
