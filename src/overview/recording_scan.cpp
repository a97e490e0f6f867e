#include "overview/recording_scan.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>

#include "overview/scan_signals.h"
#include "overview/scan_statistics.h"
#include "spectrum/noise_floor.h"
#include "spectrum/power_spectrum.h"
#include "support/platform.h"

namespace carvello {
namespace {

constexpr std::int64_t kFramesPerUnit = 65'536;
constexpr std::int64_t kLeastPerUnit = 8;
constexpr std::int64_t kLookTransforms = 512;  // that the noise is learnt from before every frame is looked at
constexpr float kLobes = 0.01f;                // of a bin's power, what the same moment leaves in its neighbourhood
constexpr std::size_t kLobeReach = 256;
constexpr std::size_t kSampledBins = 256;
constexpr float kMedianOfNoise = 0.6931472f;
constexpr float kClick = 2.0f;  // of the noise in all of the band

// A quantiser's noise in a bin: nothing that was ever digital has less.
double LeastNoise(const CRecordingSet& recording, const SScanGrid& grid, double noiseBandwidth) {
  const double fStep = (recording.nBitsPerSample > 16 ? 1.0 / 256.0 : 1.0) / 32'768.0;
  return fStep * fStep / 6.0 * noiseBandwidth / static_cast<double>(grid.nLength);
}

// Reads transforms that stand side by side, and computes them one after the other.
class CTransformReader {
 public:
  explicit CTransformReader(const SScanGrid& grid)
      : m_grid(grid), m_spectrum(grid.nLength, EWindow::Hann), m_power(grid.nLength) {}

  // A span that is shorter than a transform stands in its middle, with silence around it.
  bool Read(IFrameSource& source, std::int64_t first, std::int64_t count) {
    m_nFirst = m_grid.FirstFrame(first);
    const auto nLength = static_cast<std::int64_t>(m_grid.nLength);
    const std::int64_t nFrames = m_grid.FirstFrame(first + count - 1) + nLength - m_nFirst;
    const std::int64_t nThere = std::min(nFrames, m_grid.nFrames);
    m_frames.resize(static_cast<std::size_t>(nFrames));
    if (nThere < nFrames) std::fill(m_frames.begin(), m_frames.end(), SComplex{});
    return ReadAll(source, m_nFirst, m_frames.data() + (nFrames - nThere) / 2, nThere);
  }
  std::vector<float>& Transform(std::int64_t transform) {
    m_spectrum.Transform(m_frames.data() + m_grid.FirstFrame(transform) - m_nFirst, m_power.data());
    return m_power;
  }

 private:
  const SScanGrid& m_grid;
  CPowerSpectrum m_spectrum;
  std::vector<float> m_power;
  std::vector<SComplex> m_frames;
  std::int64_t m_nFirst = 0;
};

// A bin that stood out by itself in one transform.
struct SBurst {
  std::int64_t nTransform;
  std::size_t nBin;
  float fPower;
};

// What was learnt from some of the transforms: mean powers, and the noise in them.
struct SFirstLook {
  std::vector<float> means;
  std::vector<float> floor;
};

// What lifts most of the band at once, as lightning and switches do, is no signal: such a transform is brought down to
// where the others are.
class CClickDamper {
 public:
  explicit CClickDamper(const SFirstLook& look) : m_look(look) {
    const std::size_t nStep = std::max<std::size_t>(look.means.size() / kSampledBins, 1);
    for (std::size_t k = 0; k < look.means.size(); k += nStep) {
      m_bins.push_back(k);
      m_limits.push_back(kClick * kMedianOfNoise * look.means[k]);
    }
    m_sampled.resize(m_bins.size());
  }

  // False for one that was brought down.
  bool Damp(std::vector<float>& power) {
    // The median exceeds a limit when so many do. That most transforms are as usual is told without sorting.
    std::size_t nAbove = 0;
    for (std::size_t i = 0; i < m_bins.size(); ++i) nAbove += power[m_bins[i]] > m_limits[i] ? 1U : 0U;
    const std::size_t nMiddle = m_bins.size() / 2;
    if (nAbove < m_bins.size() - nMiddle) return true;
    for (std::size_t i = 0; i < m_bins.size(); ++i) m_sampled[i] = power[m_bins[i]] / m_look.means[m_bins[i]];
    const auto middle = m_sampled.begin() + static_cast<std::ptrdiff_t>(nMiddle);
    std::nth_element(m_sampled.begin(), middle, m_sampled.end());
    const float fScale = kMedianOfNoise / *middle;
    for (float& fPower : power) fPower *= fScale;
    return false;
  }

 private:
  const SFirstLook& m_look;
  std::vector<std::size_t> m_bins;  // a sample of all
  std::vector<float> m_limits;      // of their powers
  std::vector<float> m_sampled;
};

class CBurstFinder {
 public:
  CBurstFinder(const std::vector<float>& floor, double single) : m_thresholds(floor.size()) {
    for (std::size_t k = 0; k < floor.size(); ++k) m_thresholds[k] = static_cast<float>(floor[k] * single);
  }

  void Find(std::int64_t transform, const std::vector<float>& power, std::vector<SBurst>& bursts) {
    FindBins(power);
    // The strongest within reach of each, from bin to bin; those that can still be one stand from nStrongest on.
    m_strongest.clear();
    std::size_t nStrongest = 0;
    std::size_t nAhead = 0;
    for (const std::size_t nBin : m_bins) {
      for (; nAhead < m_bins.size() && m_bins[nAhead] <= nBin + kLobeReach; ++nAhead) {
        while (m_strongest.size() > nStrongest && power[m_strongest.back()] <= power[m_bins[nAhead]]) {
          m_strongest.pop_back();
        }
        m_strongest.push_back(m_bins[nAhead]);
      }
      while (m_strongest[nStrongest] + kLobeReach < nBin) ++nStrongest;
      if (power[nBin] >= kLobes * power[m_strongest[nStrongest]]) bursts.push_back({transform, nBin, power[nBin]});
    }
  }

 private:
  // Those above their thresholds: few, so that whole groups without one are passed over.
  void FindBins(const std::vector<float>& power) {
    constexpr std::size_t kGroup = 64;  // divides every length
    m_bins.clear();
    for (std::size_t nGroup = 0; nGroup < power.size(); nGroup += kGroup) {
      const float* const pPower = power.data() + nGroup;
      const float* const pThreshold = m_thresholds.data() + nGroup;
      int nAbove = 0;
      for (std::size_t k = 0; k < kGroup; ++k) nAbove += pPower[k] > pThreshold[k] ? 1 : 0;
      if (nAbove == 0) continue;
      for (std::size_t k = 0; k < kGroup; ++k) {
        if (pPower[k] > pThreshold[k]) m_bins.push_back(nGroup + k);
      }
    }
  }

  std::vector<float> m_thresholds;
  std::vector<std::size_t> m_bins;
  std::vector<std::size_t> m_strongest;
};

class CScanWorker : public IUnitWorker {
 public:
  CScanWorker(const SScanGrid& grid, std::int64_t perUnit, const SFirstLook& look, double single,
              SScanStatistics& statistics)
      : m_grid(grid),
        m_nPerUnit(perUnit),
        m_reader(grid),
        m_damper(look),
        m_finder(look.floor, single),
        m_statistics(statistics) {}

  bool Read(std::int64_t unit, IFrameSource& source) override {
    const std::int64_t nBegin = unit * m_nPerUnit;
    return m_reader.Read(source, nBegin, std::min(m_nPerUnit, m_grid.nTransforms - nBegin));
  }

  void Work(std::int64_t unit) override {
    m_segments.clear();
    m_bursts.clear();
    const std::int64_t nBegin = unit * m_nPerUnit;
    const std::int64_t nEnd = std::min(nBegin + m_nPerUnit, m_grid.nTransforms);
    m_largest.assign(m_grid.nLength, 0.0f);
    for (std::int64_t n = nBegin; n < nEnd; ++n) {
      std::vector<float>& power = m_reader.Transform(n);
      const bool bAsUsual = m_damper.Damp(power);
      const std::int64_t nRow = m_grid.RowOf(n);
      if (m_segments.empty() || m_segments.back().nRow != nRow) {
        m_segments.push_back({nRow, std::vector<float>(m_grid.nLength, 0.0f)});
      }
      Accumulate(power.data(), power.size(), m_segments.back().sums.data(), m_largest.data());
      if (bAsUsual) m_finder.Find(n, power, m_bursts);
    }
  }

  void Merge(std::int64_t) override {
    for (const SSegment& segment : m_segments) {
      const std::int64_t nCount = m_grid.RowBegin(segment.nRow + 1) - m_grid.RowBegin(segment.nRow);
      float* const pRow = m_statistics.rows.data() + segment.nRow * static_cast<std::int64_t>(m_grid.nLength);
      const float fShare = 1.0f / static_cast<float>(nCount);
      for (std::size_t k = 0; k < m_grid.nLength; ++k) pRow[k] += segment.sums[k] * fShare;
    }
    for (const SBurst& burst : m_bursts) {
      SBinBursts& bin = m_statistics.bursts[burst.nBin];
      if (bin.nCount++ == 0) bin.nFirst = burst.nTransform;
      bin.nLast = burst.nTransform;
      bin.fLargest = std::max(bin.fLargest, burst.fPower);
    }
  }

 private:
  struct SSegment {
    std::int64_t nRow;
    std::vector<float> sums;
  };

  const SScanGrid& m_grid;
  std::int64_t m_nPerUnit;
  CTransformReader m_reader;
  CClickDamper m_damper;
  CBurstFinder m_finder;
  SScanStatistics& m_statistics;
  std::vector<SSegment> m_segments;
  std::vector<SBurst> m_bursts;
  std::vector<float> m_largest;
};

// The noise by some of the transforms, evenly spread.
bool LookAtNoise(const SScanGrid& grid, IFrameSource& source, double least, SFirstLook& look, const GoesOn& goesOn,
                 std::string& error) {
  const std::int64_t nLooks = std::min(grid.nTransforms, kLookTransforms);
  CTransformReader reader(grid);
  std::vector<float> sums(grid.nLength, 0.0f);
  std::vector<float> largest(grid.nLength, 0.0f);
  for (std::int64_t i = 0; i < nLooks; ++i) {
    if (!goesOn(0.0)) return false;
    const std::int64_t nTransform = i * grid.nTransforms / nLooks;
    if (!reader.Read(source, nTransform, 1)) {
      error = source.Problem().empty() ? "the recording ends earlier than it did" : source.Problem();
      return false;
    }
    const std::vector<float>& power = reader.Transform(nTransform);
    Accumulate(power.data(), power.size(), sums.data(), largest.data());
  }
  for (float& fSum : sums) fSum = std::max(fSum / static_cast<float>(nLooks), static_cast<float>(least));
  const auto fLooks = static_cast<double>(nLooks);
  look.floor =
      NoiseFloor(sums, nLooks < grid.nTransforms ? fLooks : IndependentTransforms(fLooks), least, grid.WidestSignal());
  look.means = std::move(sums);
  return true;
}

}  // namespace

bool ScanRecording(const CRecordingSet& recording, IFrameSource& source, const SScanRequest& request,
                   const GoesOn& goesOn, SSignalScan& result, std::string& error) {
  result = {};
  error.clear();
  const SScanGrid grid = MakeScanGrid(request.nFirstFrame, request.nFrames, recording.nSampleRate);
  const SScanThresholds thresholds(grid, request.dAbove);
  const double fLeast =
      LeastNoise(recording, grid, CPowerSpectrum(CBlockTransform::kSmallestSize, EWindow::Hann).NoiseBandwidth());
  SFirstLook look;
  if (!LookAtNoise(grid, source, fLeast, look, goesOn, error)) return false;

  SScanStatistics statistics;
  statistics.rows.assign(static_cast<std::size_t>(grid.nRows) * grid.nLength, 0.0f);
  statistics.bursts.resize(grid.nLength);
  const std::int64_t nPerUnit = std::max(kFramesPerUnit / grid.Hop(), kLeastPerUnit);
  const std::int64_t nUnits = (grid.nTransforms + nPerUnit - 1) / nPerUnit;
  const auto makeWorker = [&] {
    return std::make_unique<CScanWorker>(grid, nPerUnit, look, thresholds.fSingle, statistics);
  };
  if (!WorkInOrder(nUnits, platform::ProcessorCount(), source, makeWorker, goesOn, error)) return false;
  DescribeSignals(grid, statistics, thresholds, request, recording, fLeast, result);
  return true;
}

}  // namespace carvello
