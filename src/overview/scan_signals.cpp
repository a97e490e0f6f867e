#include "overview/scan_signals.h"

#include <algorithm>
#include <cmath>

#include "spectrum/noise_floor.h"
#include "spectrum/signal_search.h"

namespace carvello {
namespace {

constexpr double kNoiseBandwidth = 1.5;  // of the window, in bins
constexpr double kOnPart = 0.1;          // of the strongest row, what is on as well
constexpr std::int64_t kShortRows = 3;
constexpr double kMoments = 0.1;  // of the rows that have the strongest bin
constexpr float kDiluted = 4.0f;
constexpr double kOnChance = 1e-3;     // that a row without the signal is taken for one with it
constexpr double kLinePart = 0.25;     // of a signal's power, what makes a line its carrier
constexpr std::size_t kLineReach = 2;  // bins on either side that a line fills
constexpr std::int64_t kSwitchingTransforms = 4;
constexpr std::size_t kSwitchingReach = 256;  // bins
constexpr float kSwitchingPart = 0.01f;       // of the power of what is switched

double Decibels(double power) {
  return 10.0 * std::log10(power);
}

class CSignalDescriber {
 public:
  CSignalDescriber(const SScanGrid& grid, const SScanStatistics& statistics, const SScanThresholds& thresholds,
                   const SScanRequest& request, const CRecordingSet& recording, double least)
      : m_grid(grid),
        m_statistics(statistics),
        m_thresholds(thresholds),
        m_request(request),
        m_recording(recording),
        m_means(grid.nLength, 0.0f),
        m_largestRows(grid.nLength, 0.0f) {
    for (std::int64_t r = 0; r < grid.nRows; ++r) {
      const auto fShare = static_cast<float>(RowTransforms(r) / static_cast<double>(grid.nTransforms));
      for (std::size_t k = 0; k < grid.nLength; ++k) {
        m_means[k] += Row(r)[k] * fShare;
        m_largestRows[k] = std::max(m_largestRows[k], Row(r)[k]);
      }
    }
    m_floor = NoiseFloor(m_means, IndependentTransforms(grid.WholeTransforms()), least, grid.WidestSignal());
  }

  void Describe(SSignalScan& result) {
    std::vector<float> sorted = m_floor;
    const auto middle = sorted.begin() + static_cast<std::ptrdiff_t>(sorted.size() / 2);
    std::nth_element(sorted.begin(), middle, sorted.end());
    result.dNoise = Decibels(*middle / (kNoiseBandwidth * m_grid.BinWidth()));
    result.dResolution = m_grid.BinWidth();
    // Powers of what does not fill a transform follow each other from bin to bin, and nothing can be told of them.
    if (m_grid.nFrames < static_cast<std::int64_t>(m_grid.nLength)) return;
    const SSignalSearch search = Search();
    m_powers = search.powers;
    for (const SSignalBand& band : OnRaster(WithoutSwitching(Trimmed(FindSignalBands(search), search)))) {
      if (static_cast<double>(band.Width()) * m_grid.BinWidth() < m_request.dMinWidth) continue;
      if (!m_request.bCentre && IsCentreLine(band)) {
        result.bCentreLeftOut = true;
        continue;
      }
      result.found.push_back(SignalOf(band));
    }
  }

 private:
  const float* Row(std::int64_t row) const {
    return m_statistics.rows.data() + static_cast<std::size_t>(row) * m_grid.nLength;
  }
  double RowTransforms(std::int64_t row) const {
    return static_cast<double>(m_grid.RowBegin(row + 1) - m_grid.RowBegin(row));
  }
  double Offset(double bin) const { return (bin - static_cast<double>(m_grid.nLength) / 2.0) * m_grid.BinWidth(); }

  SSignalSearch Search() const {
    SSignalSearch search;
    search.dBinWidth = m_grid.BinWidth();
    search.dRaster = m_request.dRaster;
    search.powers.assign(m_grid.nLength, 0.0f);
    search.standing.assign(m_grid.nLength, 0.0f);
    search.brief.assign(m_grid.nLength, false);
    for (std::size_t k = 0; k < m_grid.nLength; ++k) {
      const double fMean = m_means[k] / m_floor[k];
      const double fRow = m_largestRows[k] / m_floor[k];
      const bool bBurst = m_statistics.bursts[k].nCount > 0;
      const bool bSteady = fMean >= m_thresholds.fMean || fRow >= m_thresholds.fRow;
      if (bSteady || bBurst) {
        search.standing[k] = SSignalSearch::kSure;
      } else if (fMean >= m_thresholds.fMeanEdge || fRow >= m_thresholds.fRowEdge) {
        search.standing[k] = 1.0f;
      }
      search.brief[k] = bBurst && (!bSteady || IsDiluted(k));
      // A burst that is short for a row hardly shows in it.
      search.powers[k] =
          search.brief[k] ? m_statistics.bursts[k].fLargest : std::max(m_largestRows[k] - m_floor[k], 0.0f);
    }
    return search;
  }

  // Whether rows show little of the bursts in the bin, because all were over in a moment.
  bool IsDiluted(std::size_t bin) const {
    const SBinBursts& bursts = m_statistics.bursts[bin];
    return bursts.nLast - bursts.nFirst < kShortRows * (m_grid.nTransforms / m_grid.nRows) &&
           bursts.fLargest > kDiluted * (m_largestRows[bin] - m_floor[bin]);
  }

  std::int64_t RowsAboveEdge(std::size_t bin) const {
    std::int64_t nRows = 0;
    for (std::int64_t r = 0; r < m_grid.nRows; ++r)
      nRows += Row(r)[bin] >= m_thresholds.fRowEdge * m_floor[bin] ? 1 : 0;
    return nRows;
  }
  // Without the bins at the ends that stood out for moments only: switching a signal on or off fills a wide band.
  std::vector<SSignalBand> Trimmed(std::vector<SSignalBand> bands, const SSignalSearch& search) const {
    for (SSignalBand& band : bands) {
      if (search.brief[band.nPeak]) continue;
      const auto fLeast = kMoments * static_cast<double>(RowsAboveEdge(band.nPeak));
      const auto isMoment = [&](std::size_t bin) {
        return m_means[bin] < m_thresholds.fMeanEdge * m_floor[bin] && static_cast<double>(RowsAboveEdge(bin)) < fLeast;
      };
      while (band.nFirst < band.nPeak && isMoment(band.nFirst)) ++band.nFirst;
      while (band.nLast > band.nPeak && isMoment(band.nLast)) --band.nLast;
    }
    return bands;
  }

  // Without what stands out of the noise only in the moments in which something much stronger beside it begins or ends:
  // that is the switching of the other.
  std::vector<SSignalBand> WithoutSwitching(const std::vector<SSignalBand>& bands) const {
    std::vector<SSignalBand> left;
    for (const SSignalBand& band : bands) {
      const auto isOf = [&](const SSignalBand& other) { return IsSwitchingOf(other, band); };
      if (std::none_of(bands.begin(), bands.end(), isOf)) left.push_back(band);
    }
    return left;
  }
  bool IsSwitchingOf(const SSignalBand& strong, const SSignalBand& weak) const {
    const SBinBursts& switched = m_statistics.bursts[strong.nPeak];
    const SBinBursts& moments = m_statistics.bursts[weak.nPeak];
    if (moments.nCount > kSwitchingTransforms || !(m_powers[weak.nPeak] < kSwitchingPart * switched.fLargest) ||
        weak.nFirst > strong.nLast + kSwitchingReach || strong.nFirst > weak.nLast + kSwitchingReach) {
      return false;
    }
    // Next to one of the two.
    const auto isAtItsEnd = [&](std::int64_t transform) {
      return std::abs(transform - switched.nFirst) <= 1 || std::abs(transform - switched.nLast) <= 1;
    };
    if (moments.nCount > 0 && !(isAtItsEnd(moments.nFirst) && isAtItsEnd(moments.nLast))) return false;
    for (std::int64_t r = 0; r < m_grid.nRows; ++r) {
      if (Row(r)[weak.nPeak] < m_thresholds.fRowEdge * m_floor[weak.nPeak]) continue;
      const std::int64_t nFirst = m_grid.RowBegin(r);
      const std::int64_t nLast = m_grid.RowBegin(r + 1) - 1;
      const auto isNear = [&](std::int64_t transform) { return transform >= nFirst - 1 && transform <= nLast + 1; };
      if (!isNear(switched.nFirst) && !isNear(switched.nLast)) return false;
    }
    return true;
  }

  // The carrier where one stands out of the rest, or else the middle; Hz from the centre.
  double FrequencyOf(const SSignalBand& band) const {
    const double fMiddle = (static_cast<double>(band.nFirst) + static_cast<double>(band.nLast)) / 2.0;
    double fAll = 0.0;
    double fLine = 0.0;
    for (std::size_t k = band.nFirst; k <= band.nLast; ++k) {
      const double fPower = m_powers[k];
      fAll += fPower;
      if (k + kLineReach >= band.nPeak && k <= band.nPeak + kLineReach) fLine += fPower;
    }
    if (fLine < kLinePart * fAll) return Offset(fMiddle);
    const std::size_t nPeak = band.nPeak;
    if (nPeak == 0 || nPeak + 1 == m_grid.nLength) return Offset(static_cast<double>(nPeak));
    const double fPlace = LinePlace(m_powers[nPeak - 1], m_powers[nPeak], m_powers[nPeak + 1]);
    return Offset(static_cast<double>(nPeak) + fPlace);
  }
  double Absolute(const SSignalBand& band) const {
    const double fFrequency = static_cast<double>(m_recording.nRadioCenterFreq) + FrequencyOf(band);
    if (m_request.dRaster <= 0.0) return fFrequency;
    return std::round(fFrequency / m_request.dRaster) * m_request.dRaster;
  }

  // What stands on the same point of the raster is one.
  std::vector<SSignalBand> OnRaster(const std::vector<SSignalBand>& bands) const {
    std::vector<SSignalBand> joined;
    for (const SSignalBand& band : bands) {
      if (m_request.dRaster <= 0.0 || joined.empty() || Absolute(joined.back()) != Absolute(band)) {
        joined.push_back(band);
        continue;
      }
      SSignalBand& before = joined.back();
      before.nLast = std::max(before.nLast, band.nLast);
      if (m_powers[band.nPeak] > m_powers[before.nPeak]) before.nPeak = band.nPeak;
    }
    return joined;
  }

  bool IsCentreLine(const SSignalBand& band) const {
    return band.Width() <= 2 * kLineReach + 3 && std::abs(FrequencyOf(band)) < 0.5 * m_grid.BinWidth();
  }

  SSignal SignalOf(const SSignalBand& band) const {
    SSignal signal;
    signal.dFrequency = Absolute(band);
    signal.dBandwidth = static_cast<double>(band.Width()) * m_grid.BinWidth();
    // The outer halves of the outermost bins, and as much again, are the window's.
    const double fFrequency = signal.dFrequency - static_cast<double>(m_recording.nRadioCenterFreq);
    const double fBelow = fFrequency - Offset(static_cast<double>(band.nFirst) + 0.5);
    const double fAbove = Offset(static_cast<double>(band.nLast) - 0.5) - fFrequency;
    signal.dHolding = std::max(signal.dBandwidth, 2.0 * std::max(fBelow, fAbove));
    double fNoise = 0.0;
    double fLargest = 0.0;
    std::vector<double> powers(static_cast<std::size_t>(m_grid.nRows), 0.0);
    for (std::size_t k = band.nFirst; k <= band.nLast; ++k) {
      fNoise += m_floor[k];
      for (std::int64_t r = 0; r < m_grid.nRows; ++r) powers[static_cast<std::size_t>(r)] += Row(r)[k];
    }
    for (const double fPower : powers) fLargest = std::max(fLargest, fPower - fNoise);
    const double fLevel = IsShort(band) ? OverBursts(band, signal) : OverRows(powers, fNoise, fLargest, signal);
    signal.dLevel = Decibels(fLevel / kNoiseBandwidth);
    signal.dSnr = Decibels(fLevel / fNoise);
    const auto fStart = static_cast<double>(m_recording.tStart);
    signal.dStart += fStart;
    signal.dEnd += fStart;
    return signal;
  }

  // Whether it was on for so short a time that rows tell little of it.
  bool IsShort(const SSignalBand& band) const {
    const std::int64_t nPerRow = m_grid.nTransforms / m_grid.nRows;
    const std::int64_t nCount = m_statistics.bursts[band.nPeak].nCount;
    if (nCount == 0 || nCount >= kShortRows * nPerRow) return false;
    return m_statistics.bursts[band.nPeak].nLast - m_statistics.bursts[band.nPeak].nFirst < kShortRows * nPerRow ||
           !HasSteadyBin(band);
  }
  bool HasSteadyBin(const SSignalBand& band) const {
    for (std::size_t k = band.nFirst; k <= band.nLast; ++k) {
      if (m_means[k] >= m_thresholds.fMean * m_floor[k] || m_largestRows[k] >= m_thresholds.fRow * m_floor[k]) {
        return true;
      }
    }
    return false;
  }

  // The mean power above the noise of those rows in which it is on.
  double OverRows(const std::vector<double>& powers, double noise, double largest, SSignal& signal) const {
    const auto transformsOfARow = m_grid.nTransforms / m_grid.nRows;
    const double fRowCount = IndependentTransforms(static_cast<double>(transformsOfARow));
    const double fChance = MeanOfNoiseExceeds(fRowCount, kOnChance) - 1.0;
    const double fOn = std::min(std::max(kOnPart * largest, fChance * noise), largest);
    double fSum = 0.0;
    double fTransforms = 0.0;
    std::int64_t nFirst = -1;
    std::int64_t nLast = -1;
    for (std::int64_t r = 0; r < m_grid.nRows; ++r) {
      const double fPower = powers[static_cast<std::size_t>(r)] - noise;
      if (fPower < fOn) continue;
      fSum += fPower * RowTransforms(r);
      fTransforms += RowTransforms(r);
      if (nFirst < 0) nFirst = r;
      nLast = r;
    }
    signal.dStart = m_grid.TimeOf(m_grid.RowBegin(nFirst));
    signal.dEnd = m_grid.TimeOf(m_grid.RowBegin(nLast + 1));
    signal.dOccupancy = fTransforms / static_cast<double>(m_grid.nTransforms);
    return fSum / fTransforms;
  }

  // The largest power of it: a transform is longer than many a burst.
  double OverBursts(const SSignalBand& band, SSignal& signal) const {
    const SBinBursts& peak = m_statistics.bursts[band.nPeak];
    double fPower = 0.0;
    for (std::size_t k = band.nFirst; k <= band.nLast; ++k) {
      const SBinBursts& bin = m_statistics.bursts[k];
      fPower += bin.fLargest;
    }
    signal.dStart = m_grid.TimeOf(peak.nFirst);
    signal.dEnd = m_grid.TimeOf(peak.nLast + 1);
    signal.dOccupancy = static_cast<double>(peak.nCount) / static_cast<double>(m_grid.nTransforms);
    return fPower;
  }

  const SScanGrid& m_grid;
  const SScanStatistics& m_statistics;
  const SScanThresholds& m_thresholds;
  const SScanRequest& m_request;
  const CRecordingSet& m_recording;
  std::vector<float> m_means;
  std::vector<float> m_largestRows;
  std::vector<float> m_floor;
  std::vector<float> m_powers;  // that the signals were found by
};

}  // namespace

void DescribeSignals(const SScanGrid& grid, const SScanStatistics& statistics, const SScanThresholds& thresholds,
                     const SScanRequest& request, const CRecordingSet& recording, double least, SSignalScan& result) {
  CSignalDescriber(grid, statistics, thresholds, request, recording, least).Describe(result);
}

}  // namespace carvello
