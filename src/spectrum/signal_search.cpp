#include "spectrum/signal_search.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace carvello {
namespace {

constexpr double kDip = 8.0;              // 9 dB
constexpr double kLineDip = 3.2;          // 5 dB
constexpr double kAudio = 4'900.0;        // Hz: what stations on the closest raster leave room for
constexpr double kLargestStep = 4'000.0;  // Hz, of lines in even steps
constexpr std::size_t kLeastLines = 7;
constexpr std::size_t kLineBins = 7;   // a band that is no wider may be a line
constexpr double kCarrierPart = 0.5;   // what is left of a carrier's power for a side band at most
constexpr double kMirrorRatio = 2.5;   // between the two
constexpr std::size_t kWideBins = 32;  // of a band that has edges
constexpr std::size_t kEdgePart = 10;  // of its width
constexpr std::size_t kSkirt = 512;    // bins that the side lobes of a line are reckoned for
constexpr std::size_t kSlopeBins = 3;  // beside the middle of a line

// The most that a line leaves in a bin so many bins away, as a part of its power; with 10 dB in reserve.
double Skirt(double distance) {
  const double d = std::max(distance - 0.5, 1.5);
  const double fAmplitude = 1.0 / (std::numbers::pi * d * (d * d - 1.0));
  return 10.0 * fAmplitude * fAmplitude;
}

// Bins that stand out by themselves, not as the side lobes of another. The spectrum of samples goes on at its other
// end.
std::vector<bool> OwnBins(const SSignalSearch& search) {
  const std::vector<float>& powers = search.powers;
  const std::size_t nBins = powers.size();
  std::vector<float> lobes(nBins, 0.0f);
  for (std::size_t p = 0; p < nBins; ++p) {
    const float fPeak = powers[p];
    if (search.standing[p] < SSignalSearch::kSure) continue;
    if (powers[(p + nBins - 1) % nBins] > fPeak || powers[(p + 1) % nBins] > fPeak) continue;
    for (std::size_t d = 3; d <= std::min(kSkirt, nBins / 2); ++d) {
      const auto fLobe = static_cast<float>(fPeak * Skirt(static_cast<double>(d)));
      for (const std::size_t nBin : {(p + nBins - d) % nBins, (p + d) % nBins}) {
        lobes[nBin] = std::max(lobes[nBin], fLobe);
      }
    }
  }
  std::vector<bool> own(nBins);
  for (std::size_t k = 0; k < nBins; ++k) own[k] = search.standing[k] >= 1.0f && powers[k] > lobes[k];
  if (nBins <= kSlopeBins) return own;
  // Nor as the slope of what stands at the other end.
  for (std::size_t k = 0; k < kSlopeBins && powers[k] < powers[(k + nBins - 1) % nBins]; ++k) own[k] = false;
  for (std::size_t k = nBins; k > nBins - kSlopeBins && powers[k - 1] < powers[k % nBins]; --k) own[k - 1] = false;
  return own;
}

class CBands {
 public:
  explicit CBands(const SSignalSearch& search) : m_search(search) {}

  std::vector<SSignalBand> Found() {
    Collect();
    JoinEvenSteps();
    JoinSidebands();
    JoinEdges();
    return m_bands;
  }

 private:
  double Power(std::size_t bin) const { return m_search.powers[bin]; }

  // Bins side by side, or with one between them, of which one at least is sure.
  void Collect() {
    const std::vector<bool> own = OwnBins(m_search);
    for (std::size_t k = 0; k < own.size(); ++k) {
      if (!own[k]) continue;
      const std::size_t nFirst = k;
      std::size_t nLast = k;
      bool bSure = false;
      for (; k < own.size() && k <= nLast + 2; ++k) {
        if (!own[k]) continue;
        nLast = k;
        bSure = bSure || m_search.standing[k] >= SSignalSearch::kSure;
      }
      k = nLast;
      if (bSure) Part(nFirst, nLast);
    }
  }

  void Add(std::size_t first, std::size_t last) {
    SSignalBand band{first, last, first};
    bool bSure = false;
    for (std::size_t k = first; k <= last; ++k) {
      if (Power(k) > Power(band.nPeak)) band.nPeak = k;
      bSure = bSure || m_search.standing[k] >= SSignalSearch::kSure;
    }
    if (bSure) m_bands.push_back(band);
  }

  // Where the power falls deeply between two rises.
  void Part(std::size_t first, std::size_t last) {
    std::size_t nBegin = first;
    // Two lines side by side leave a dip of 6 dB where they are three bins apart.
    const double fDip = last - first < 2 * kLineBins ? kLineDip : kDip;
    double fRise = Power(first);  // the largest since the last dip
    std::size_t nDip = first;     // the deepest since then
    for (std::size_t k = first; k <= last; ++k) {
      if (Power(k) > fDip * Power(nDip) && fRise > fDip * Power(nDip) && nDip > nBegin) {
        Add(nBegin, nDip - 1);
        nBegin = nDip;
        fRise = Power(k);
        nDip = k;
      }
      if (Power(k) >= fRise) {
        fRise = Power(k);
        nDip = k;
      } else if (Power(k) < Power(nDip)) {
        nDip = k;
      }
    }
    Add(nBegin, last);
  }

  void Join(std::size_t from, std::size_t to) {
    SSignalBand& band = m_bands[from];
    for (std::size_t i = from + 1; i <= to; ++i) {
      band.nLast = std::max(band.nLast, m_bands[i].nLast);
      if (Power(m_bands[i].nPeak) > Power(band.nPeak)) band.nPeak = m_bands[i].nPeak;
    }
    m_bands.erase(m_bands.begin() + static_cast<std::ptrdiff_t>(from) + 1,
                  m_bands.begin() + static_cast<std::ptrdiff_t>(to) + 1);
  }

  bool IsLine(std::size_t band) const { return m_bands[band].Width() <= kLineBins; }
  double LineOf(std::size_t band) const {
    const std::size_t nPeak = m_bands[band].nPeak;
    if (nPeak == 0 || nPeak + 1 == m_search.powers.size()) return static_cast<double>(nPeak);
    return static_cast<double>(nPeak) +
           LinePlace(m_search.powers[nPeak - 1], m_search.powers[nPeak], m_search.powers[nPeak + 1]);
  }

  void JoinEvenSteps() {
    for (std::size_t i = 0; i + kLeastLines <= m_bands.size(); ++i) {
      if (!IsLine(i) || !IsLine(i + 1)) continue;
      const double fStep = LineOf(i + 1) - LineOf(i);
      if (fStep * m_search.dBinWidth > kLargestStep) continue;
      std::size_t nEnd = i + 1;
      while (nEnd < m_bands.size() && IsLine(nEnd)) {
        const double fSteps = (LineOf(nEnd) - LineOf(nEnd - 1)) / fStep;
        if (std::abs(fSteps - std::round(fSteps)) * fStep > 0.75 || fSteps < 0.5 || fSteps > 2.5) break;
        ++nEnd;
      }
      if (nEnd - i >= kLeastLines) Join(i, nEnd - 1);
    }
  }

  // Of a carrier: the bands whose mirror images are there as well. Weak carriers come first: what stands around them is
  // theirs, though a strong one may have a neighbour like them on its other side.
  void JoinSidebands() {
    std::vector<std::size_t> peaks;
    for (const SSignalBand& band : m_bands) peaks.push_back(band.nPeak);
    std::stable_sort(peaks.begin(), peaks.end(), [&](std::size_t a, std::size_t b) { return Power(a) < Power(b); });
    for (const std::size_t nPeak : peaks) {
      const auto own =
          std::find_if(m_bands.begin(), m_bands.end(), [&](const SSignalBand& b) { return b.nPeak == nPeak; });
      if (own == m_bands.end()) continue;  // it became part of another one
      const auto nCarrier = static_cast<std::size_t>(own - m_bands.begin());
      std::size_t nFrom = nCarrier;
      std::size_t nTo = nCarrier;
      for (std::size_t i = nCarrier; i-- > 0 && IsNear(i, nCarrier);) {
        for (std::size_t j = nCarrier + 1; j < m_bands.size() && IsNear(j, nCarrier); ++j) {
          if (!AreMirrored(i, j, nCarrier)) continue;
          nFrom = std::min(nFrom, i);
          nTo = std::max(nTo, j);
        }
      }
      if (nFrom == nTo) continue;
      Join(nFrom, nTo);
      m_bands[nFrom].nPeak = nPeak;
    }
  }

  bool IsBrief(std::size_t band) const {
    for (std::size_t k = m_bands[band].nFirst; k <= m_bands[band].nLast; ++k) {
      if (m_search.standing[k] >= SSignalSearch::kSure && !m_search.brief[k]) return false;
    }
    return true;
  }
  bool IsEdge(std::size_t band, std::size_t wide) const {
    if (!IsBrief(band) || IsBrief(wide) || m_bands[wide].Width() < kWideBins) return false;
    const std::size_t nGap =
        band < wide ? m_bands[wide].nFirst - m_bands[band].nLast : m_bands[band].nFirst - m_bands[wide].nLast;
    return nGap < m_bands[wide].Width() / kEdgePart && Power(m_bands[band].nPeak) < Power(m_bands[wide].nPeak);
  }
  void JoinEdges() {
    for (std::size_t i = 0; i < m_bands.size(); ++i) {
      while (i + 1 < m_bands.size() && IsEdge(i + 1, i)) Join(i, i + 1);
      while (i > 0 && IsEdge(i - 1, i)) {
        Join(i - 1, i);
        --i;
      }
    }
  }

  bool IsNear(std::size_t band, std::size_t carrier) const {
    double fReach = kAudio;
    if (m_search.dRaster > 0.0) fReach = std::min(fReach, m_search.dRaster / 2.0);
    const auto fCarrier = static_cast<double>(m_bands[carrier].nPeak);
    const double fDistance = std::abs(static_cast<double>(m_bands[band].nPeak) - fCarrier) * m_search.dBinWidth;
    return fDistance < fReach && Power(m_bands[band].nPeak) < kCarrierPart * Power(m_bands[carrier].nPeak);
  }

  bool AreMirrored(std::size_t low, std::size_t high, std::size_t carrier) const {
    const double fLow = Power(m_bands[low].nPeak);
    const double fHigh = Power(m_bands[high].nPeak);
    if (fLow > kMirrorRatio * fHigh || fHigh > kMirrorRatio * fLow) return false;
    const auto nCarrier = static_cast<std::ptrdiff_t>(m_bands[carrier].nPeak);
    const std::ptrdiff_t nBelow = nCarrier - static_cast<std::ptrdiff_t>(m_bands[low].nPeak);
    const std::ptrdiff_t nAbove = static_cast<std::ptrdiff_t>(m_bands[high].nPeak) - nCarrier;
    // The peaks of wide ones may stand anywhere in them.
    const auto nSlack = static_cast<std::ptrdiff_t>(std::max(m_bands[low].Width(), m_bands[high].Width()) / 2);
    return std::abs(nBelow - nAbove) <= std::max<std::ptrdiff_t>(nSlack, 1);
  }

  const SSignalSearch& m_search;
  std::vector<SSignalBand> m_bands;
};

}  // namespace

std::vector<SSignalBand> FindSignalBands(const SSignalSearch& search) {
  return CBands(search).Found();
}

double LinePlace(float below, float peak, float above) {
  const bool bAbove = above > below;
  const double fRatio = std::sqrt(static_cast<double>(std::max(bAbove ? above : below, 0.0f)) / peak);
  const double fPlace = std::clamp((2.0 * fRatio - 1.0) / (fRatio + 1.0), 0.0, 0.5);
  return bAbove ? fPlace : -fPlace;
}

}  // namespace carvello
