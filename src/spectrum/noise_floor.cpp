#include "spectrum/noise_floor.h"

#include <algorithm>
#include <cmath>

namespace carvello {
namespace {

constexpr double kPowersPerBlock = 8'192.0;
constexpr double kLeastPowers = 64.0;      // or a block tells nothing
constexpr std::size_t kSmallestBlock = 8;  // bins
constexpr std::size_t kLargestBlock = 64;
constexpr std::size_t kLeastBlocks = 16;
constexpr double kQuarterDeviation = 2.0;  // of the logarithm, of one power; sqrt(1/4 / (3/4)) / log(4/3)
constexpr double kSlackDeviations = 3.0;
constexpr double kQuarterPoint = -0.67448975;  // of the normal distribution

double WilsonHilferty(double count, double normal) {
  const double fRoot = 1.0 - 1.0 / (9.0 * count) + normal / (3.0 * std::sqrt(count));
  return std::max(fRoot * fRoot * fRoot, 0.0);
}

// What the normal distribution exceeds with this chance (M. Abramowitz and I. A. Stegun, "Handbook of Mathematical
// Functions", 1964, 26.2.23).
double NormalExceeds(double chance) {
  const double t = std::sqrt(-2.0 * std::log(std::min(chance, 0.5)));
  return t - (2.515517 + t * (0.802853 + t * 0.010328)) / (1.0 + t * (1.432788 + t * (0.189269 + t * 0.001308)));
}

// The least or the largest of the values up to `reach` away.
template <typename Better>
std::vector<double> Filtered(const std::vector<double>& values, std::size_t reach, Better better) {
  std::vector<double> filtered(values.size());
  for (std::size_t i = 0; i < values.size(); ++i) {
    const std::size_t nFirst = i > reach ? i - reach : 0;
    const std::size_t nEnd = std::min(i + reach + 1, values.size());
    filtered[i] = *std::min_element(values.begin() + static_cast<std::ptrdiff_t>(nFirst),
                                    values.begin() + static_cast<std::ptrdiff_t>(nEnd), better);
  }
  return filtered;
}

// Of the blocks' bins: what is no more than noise, along a slope that the blocks beside it tell.
class CBlocks {
 public:
  CBlocks(const std::vector<float>& means, std::size_t length, double count, double least, std::size_t widest)
      : m_means(means),
        m_nLength(length),
        m_nBlocks(means.size() / length),
        m_dCount(count),
        m_dLeast(least),
        m_nReach(widest / (2 * length) + 1) {}

  // Logarithms, of the middles of the blocks. `before`: as they were found without a slope.
  std::vector<double> Levels(const std::vector<double>& before) const {
    std::vector<double> levels(m_nBlocks);
    std::vector<double> sorted(m_nLength);
    for (std::size_t i = 0; i < m_nBlocks; ++i) {
      const std::size_t nLow = i == 0 ? 0 : i - 1;
      const std::size_t nHigh = std::min(i + 1, m_nBlocks - 1);
      const double fSlope =
          nHigh == nLow ? 0.0 : (before[nHigh] - before[nLow]) / static_cast<double>((nHigh - nLow) * m_nLength);
      for (std::size_t k = 0; k < m_nLength; ++k) {
        const double fPlace = static_cast<double>(k) + 0.5 - static_cast<double>(m_nLength) / 2.0;
        sorted[k] = m_means[i * m_nLength + k] * std::exp(-fSlope * fPlace);
      }
      const auto quarter = sorted.begin() + static_cast<std::ptrdiff_t>(m_nLength / 4);
      std::nth_element(sorted.begin(), quarter, sorted.end());
      levels[i] = std::log(std::max(*quarter / WilsonHilferty(m_dCount, kQuarterPoint), m_dLeast));
    }
    return Filtered(Filtered(levels, m_nReach, std::less<>()), m_nReach, std::greater<>());
  }
  std::size_t Count() const { return m_nBlocks; }

 private:
  const std::vector<float>& m_means;
  std::size_t m_nLength;
  std::size_t m_nBlocks;
  double m_dCount;
  double m_dLeast;
  std::size_t m_nReach;
};

// Bins of a block: as many powers in it as tell its level to some per cent.
std::size_t BlockOf(std::size_t bins, double count) {
  const auto nWanted = static_cast<std::size_t>(kPowersPerBlock / std::max(count, 1.0));
  const auto nLeast = static_cast<std::size_t>(kLeastPowers / std::max(count, 1.0));
  const std::size_t nFitting = std::min(std::clamp(nWanted, kSmallestBlock, kLargestBlock), bins / kLeastBlocks);
  return std::clamp<std::size_t>(std::max(nFitting, nLeast), 1, bins);
}

}  // namespace

double NoiseFloorSlack(std::size_t bins, double count) {
  // The deviation of the lower quarter point of so many powers, each spread exponentially, about half of which follow
  // from their neighbours under a window of Hann.
  const double fPowers = static_cast<double>(BlockOf(bins, count)) * std::max(count, 1.0) / 2.0;
  return std::exp(kSlackDeviations * kQuarterDeviation / std::sqrt(fPowers));
}

double MeanOfNoiseExceeds(double count, double chance) {
  return WilsonHilferty(count, NormalExceeds(chance));
}

double IndependentTransforms(double transforms) {
  // Neighbours' powers correlate by (1/6)^2.
  return std::max(transforms / (1.0 + 2.0 / 36.0), 1.0);
}

std::vector<float> NoiseFloor(const std::vector<float>& means, double count, double least, std::size_t widest) {
  const std::size_t nBlock = BlockOf(means.size(), count);
  const CBlocks blocks(means, nBlock, count, least, widest);
  const std::size_t nBlocks = blocks.Count();
  const std::vector<double> levels = blocks.Levels(blocks.Levels(std::vector<double>(nBlocks, 0.0)));

  // Between the middles of blocks, evenly in decibels.
  std::vector<float> floor(means.size());
  for (std::size_t k = 0; k < means.size(); ++k) {
    const double fPlace = (static_cast<double>(k) + 0.5) / static_cast<double>(nBlock) - 0.5;
    const double fWhole = std::clamp(std::floor(fPlace), 0.0, static_cast<double>(nBlocks - 1));
    const auto nFirst = static_cast<std::size_t>(fWhole);
    const std::size_t nSecond = std::min(nFirst + 1, nBlocks - 1);
    const double fShare = std::clamp(fPlace - fWhole, 0.0, 1.0);
    floor[k] = static_cast<float>(std::exp(levels[nFirst] + fShare * (levels[nSecond] - levels[nFirst])));
  }
  return floor;
}

}  // namespace carvello
