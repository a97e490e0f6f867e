#include "overview/scan_statistics.h"

#include <algorithm>
#include <bit>
#include <cmath>

#include "spectrum/noise_floor.h"
#include "spectrum/power_spectrum.h"

namespace carvello {
namespace {

constexpr double kWidestStation = 400'000.0;   // Hz
constexpr double kWidestBin = 200.0;           // Hz
constexpr std::int64_t kLeastTransforms = 16;  // of a span, while the transforms are longer than the shortest
constexpr std::int64_t kPerRow = 8;            // transforms, at least
constexpr std::int64_t kMostRows = 1'024;
constexpr std::int64_t kMostCells = 16'777'216;  // rows x bins: 64 MiB

constexpr double kChance = 2e-4;      // of any signal from noise alone
constexpr double kLeastSlack = 1.1;   // what is known of the noise is not exact
constexpr double kEdgeChance = 1e-3;  // of a neighbouring bin
constexpr double kLeastEdge = 2.0;    // 3 dB

}  // namespace

std::size_t SScanGrid::WidestSignal() const {
  return std::clamp(static_cast<std::size_t>(kWidestStation / BinWidth()), nLength / 4, nLength / 2);
}

double SScanGrid::WholeTransforms() const {
  const std::int64_t nBehind = std::max<std::int64_t>(nFrames - static_cast<std::int64_t>(nLength), 0);
  return 1.0 + static_cast<double>(nBehind) / static_cast<double>(Hop());
}

std::int64_t SScanGrid::FirstFrame(std::int64_t transform) const {
  const std::int64_t nLast = std::max<std::int64_t>(nFrames - static_cast<std::int64_t>(nLength), 0);
  return nFirstFrame + std::min(transform * Hop(), nLast);
}

double SScanGrid::TimeOf(std::int64_t transform) const {
  const std::int64_t nFrame = std::clamp<std::int64_t>(transform * Hop() + Hop() / 2, 0, nFrames);
  // The first and the last half of the span belong to the transforms next to them.
  const std::int64_t nShown = transform <= 0 ? 0 : transform >= nTransforms ? nFrames : nFrame;
  return static_cast<double>(nFirstFrame + nShown) / static_cast<double>(nSampleRate);
}

SScanGrid MakeScanGrid(std::int64_t firstFrame, std::int64_t frames, std::uint32_t sampleRate) {
  SScanGrid grid;
  grid.nFirstFrame = firstFrame;
  grid.nFrames = frames;
  grid.nSampleRate = sampleRate;
  grid.nLength = std::clamp(std::bit_ceil(static_cast<std::size_t>(std::ceil(sampleRate / kWidestBin))),
                            CBlockTransform::kSmallestSize, CBlockTransform::kLargestSize);
  while (grid.nLength > CBlockTransform::kSmallestSize &&
         frames / static_cast<std::int64_t>(grid.nLength) < kLeastTransforms / 2) {
    grid.nLength /= 2;
  }
  const std::int64_t nBehind = std::max<std::int64_t>(frames - static_cast<std::int64_t>(grid.nLength), 0);
  grid.nTransforms = (nBehind + grid.Hop() - 1) / grid.Hop() + 1;
  const std::int64_t nCells = kMostCells / static_cast<std::int64_t>(grid.nLength);
  grid.nRows = std::clamp<std::int64_t>(grid.nTransforms / kPerRow, 1, std::min(kMostRows, nCells));
  return grid;
}

SScanThresholds::SScanThresholds(const SScanGrid& grid, double aboveDecibels) {
  const double fAbove = std::pow(10.0, aboveDecibels / 10.0);
  const auto fBins = static_cast<double>(grid.nLength);
  const auto fTransforms = static_cast<double>(grid.nTransforms);
  const auto fRows = static_cast<double>(grid.nRows);
  const double fInAll = IndependentTransforms(grid.WholeTransforms());
  const double fInRow = IndependentTransforms(std::min(std::floor(fTransforms / fRows), grid.WholeTransforms()));
  const double fPart = kChance / 3.0;
  const double fSlack = std::max(NoiseFloorSlack(grid.nLength, fInAll), kLeastSlack);
  // Powers of noise are spread exponentially: one in e^x is x times the mean, or more.
  fSingle = std::max(fSlack * std::log(fBins * fTransforms / fPart), fAbove);
  fRow = std::max(fSlack * MeanOfNoiseExceeds(fInRow, fPart / (fBins * fRows)), fAbove);
  fMean = std::max(fSlack * MeanOfNoiseExceeds(fInAll, fPart / fBins), fAbove);
  fRowEdge = std::min(std::max(kLeastEdge, MeanOfNoiseExceeds(fInRow, kEdgeChance / fRows)), fRow);
  fMeanEdge = std::min(std::max(kLeastEdge, MeanOfNoiseExceeds(fInAll, kEdgeChance)), fMean);
}

}  // namespace carvello
