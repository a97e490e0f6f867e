#include "fir_table.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <condition_variable>
#include <list>
#include <numbers>
#include <utility>

#include "alias_filter.h"
#include "channel_correction.h"
#include "kernels.h"
#include "mutex.h"

namespace vantrel {
namespace {

constexpr std::size_t kCoefficients = 4;

// Tables that live on without a stage: whoever starts anew with the same rates need not wait for their design.
constexpr std::size_t kLatestTables = 32;

// The cubic through four values at the Chebyshev nodes of 0..1, where the largest error between them is least.
class CCubicFit {
 public:
  CCubicFit() {
    for (std::size_t i = 0; i < kCoefficients; ++i) {
      m_Nodes[i] = 0.5 - 0.5 * std::cos((2.0 * static_cast<double>(i) + 1.0) * std::numbers::pi / 8.0);
    }
  }

  double Node(std::size_t i) const { return m_Nodes[i]; }

  // Divided differences, then Newton's form multiplied out into powers.
  std::array<double, kCoefficients> Powers(std::array<double, kCoefficients> values) const {
    for (std::size_t nOrder = 1; nOrder < kCoefficients; ++nOrder) {
      for (std::size_t i = kCoefficients - 1; i >= nOrder; --i) {
        values[i] = (values[i] - values[i - 1]) / (m_Nodes[i] - m_Nodes[i - nOrder]);
      }
    }
    std::array<double, kCoefficients> powers{};
    for (std::size_t n = kCoefficients; n-- > 0;) {
      for (std::size_t i = kCoefficients - 1; i > 0; --i) powers[i] = powers[i - 1] - m_Nodes[n] * powers[i];
      powers[0] = values[n] - m_Nodes[n] * powers[0];
    }
    return powers;
  }

 private:
  std::array<double, kCoefficients> m_Nodes{};
};

// The tables that there are. Different ones are designed side by side, and who wants one that is being designed waits
// for it.
class CTableShelf {
 public:
  std::shared_ptr<const CFirTable> Table(const SStagePlan& key, const SStagePlan& plan) {
    CLockGuard lock(m_Mutex);
    for (;;) {
      const auto found = std::find_if(m_Places.begin(), m_Places.end(), [&](const auto& x) { return x.key == key; });
      if (found == m_Places.end()) break;
      if (found->bInDesign) {
        lock.Wait(m_DesignEnds);
      } else if (auto pTable = found->pTable.lock()) {
        return pTable;
      } else {
        m_Places.erase(found);
      }
    }
    const auto place = m_Places.insert(m_Places.end(), SPlace{key, {}});
    lock.Unlock();
    std::shared_ptr<const CFirTable> pTable;
    try {
      pTable = std::make_shared<const CFirTable>(plan);
    } catch (...) {
      // Whoever waits for it tries itself.
      lock.Lock();
      m_Places.erase(place);
      m_DesignEnds.notify_all();
      throw;
    }
    lock.Lock();
    place->pTable = pTable;
    place->bInDesign = false;
    m_DesignEnds.notify_all();
    m_Places.remove_if([](const SPlace& other) { return !other.bInDesign && other.pTable.expired(); });
    // The one that falls off the end may be the last to hold its table, which then goes without the lock.
    std::shared_ptr<const CFirTable> pOldest = std::exchange(m_Latest[m_nLatest], pTable);
    m_nLatest = (m_nLatest + 1) % m_Latest.size();
    lock.Unlock();
    return pTable;
  }

 private:
  struct SPlace {
    SStagePlan key;
    std::weak_ptr<const CFirTable> pTable;
    bool bInDesign = true;
  };

  CMutex m_Mutex;
  std::condition_variable m_DesignEnds;
  std::list<SPlace> m_Places VANTREL_GUARDED_BY(m_Mutex);
  std::array<std::shared_ptr<const CFirTable>, kLatestTables> m_Latest VANTREL_GUARDED_BY(m_Mutex);
  std::size_t m_nLatest VANTREL_GUARDED_BY(m_Mutex) = 0;  // where the next one goes
};

}  // namespace

CFirTable::CFirTable(const SStagePlan& plan) : m_bCubic(plan.nPhases > kMostExactPhases) {
  if (plan.kind == SStagePlan::EKind::AliasBands) {
    FillAliasBands(plan);
    return;
  }
  const CKaiserLowPass design(plan.fPassEdge, plan.fStopEdge);
  const std::vector<double> factors = ChannelCorrection(plan);
  m_nTaps = 2 * design.HalfLength();
  if (m_bCubic) {
    FillCubic(design, factors);
  } else {
    FillExact(design, factors, plan.nPhases);
  }
}

void CFirTable::FillAliasBands(const SStagePlan& plan) {
  const std::vector<double> taps = DesignAliasFilter(plan.nStep, plan.fPassEdge, plan.fStopEdge);
  // One more tap than there are stands behind the middle of an even number.
  m_nTaps = taps.size() + 1;
  m_Rows.resize(2 * m_nTaps);
  float* pair = m_Rows.data() + 2 * (MiddleTap() - taps.size() / 2);
  for (const double fTap : taps) {
    *pair++ = static_cast<float>(fTap);
    *pair++ = static_cast<float>(fTap);
  }
}

// The taps for an output that stands `phase` behind an input sample, as smooth functions of it around `middlePhase`.
std::vector<double> CFirTable::TapsAtPhase(const CKaiserLowPass& design, const std::vector<double>& factors,
                                           double middlePhase, double phase) const {
  const std::size_t nReach = factors.size() - 1;
  std::vector<double> taps(m_nTaps + 2 * nReach);
  for (std::size_t n = 0; n < taps.size(); ++n) {
    const double fTime = static_cast<double>(n) - static_cast<double>(MiddleTap() + nReach);
    taps[n] = design.Near(fTime - middlePhase, fTime - phase);
  }
  return CorrectTaps(taps, factors);
}

void CFirTable::FillExact(const CKaiserLowPass& design, const std::vector<double>& factors, std::uint64_t phases) {
  m_Rows.reserve(phases * m_nTaps * 2);
  for (std::uint64_t nPhase = 0; nPhase < phases; ++nPhase) {
    const double fPhase = static_cast<double>(nPhase) / static_cast<double>(phases);
    for (const double fTap : TapsAtPhase(design, factors, fPhase, fPhase)) {
      m_Rows.insert(m_Rows.end(), 2, static_cast<float>(fTap));
    }
  }
}

void CFirTable::FillCubic(const CKaiserLowPass& design, const std::vector<double>& factors) {
  const CCubicFit fit;
  m_Rows.resize(kCubicRows * kCoefficients * m_nTaps * 2);
  float* row = m_Rows.data();
  for (std::uint64_t nRow = 0; nRow < kCubicRows; ++nRow, row += kCoefficients * m_nTaps * 2) {
    const auto phase = [nRow](double part) {
      return (static_cast<double>(nRow) + part) / static_cast<double>(kCubicRows);
    };
    std::array<std::vector<double>, kCoefficients> tapsAtNodes;
    for (std::size_t i = 0; i < kCoefficients; ++i) {
      tapsAtNodes[i] = TapsAtPhase(design, factors, phase(0.5), phase(fit.Node(i)));
    }
    for (std::size_t nTap = 0; nTap < m_nTaps; ++nTap) {
      std::array<double, kCoefficients> values{};
      for (std::size_t i = 0; i < kCoefficients; ++i) values[i] = tapsAtNodes[i][nTap];
      const auto powers = fit.Powers(values);
      for (std::size_t i = 0; i < kCoefficients; ++i) {
        float* pair = row + (i * m_nTaps + nTap) * 2;
        pair[0] = pair[1] = static_cast<float>(powers[i]);
      }
    }
  }
}

std::shared_ptr<const CFirTable> SharedFirTable(const SStagePlan& plan) {
  static CTableShelf s_Shelf;
  // A low-pass does not depend on the step, nor do cubic rows on the phases.
  SStagePlan key = plan;
  if (key.kind == SStagePlan::EKind::LowPass) key.nStep = 0;
  if (key.nPhases > CFirTable::kMostExactPhases) key.nPhases = 0;
  return s_Shelf.Table(key, plan);
}

}  // namespace vantrel
