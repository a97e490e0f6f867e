#include "spectrum/picture_plan.h"

#include <algorithm>
#include <bit>
#include <cmath>

#include "fourier/block_transform.h"

namespace carvello {
namespace {

constexpr double kBinsPerColumn = 2.0;

}  // namespace

std::size_t PictureTransformLength(const SPictureSpan& span) {
  constexpr auto kSmallest = static_cast<double>(CBlockTransform::kSmallestSize);
  constexpr auto kLargest = static_cast<double>(CBlockTransform::kLargestSize);
  const double fColumn = (span.dHighFrequency - span.dLowFrequency) / static_cast<double>(span.nColumns);
  const double fForColumns = std::clamp(kBinsPerColumn * span.dSampleRate / fColumn, kSmallest, kLargest);
  const double fRow = static_cast<double>(span.nFrames) / static_cast<double>(span.nRows);
  const double fForRows = std::clamp(fRow, kSmallest, kLargest);
  const double fWanted = fForColumns <= fForRows ? fForColumns : std::sqrt(fForColumns * fForRows);
  // A length just above a power of two is not worth the next one.
  std::size_t nLength = std::bit_ceil(static_cast<std::size_t>(0.99 * fWanted));
  while (nLength > CBlockTransform::kSmallestSize && static_cast<std::int64_t>(nLength) > span.nTotalFrames) {
    nLength /= 2;
  }
  return std::max(nLength, CBlockTransform::kSmallestSize);
}

CPicturePlan::CPicturePlan(const SPictureSpan& span, std::size_t length, std::int64_t most)
    : m_span(span), m_nLength(length), m_nMost(most) {}

std::int64_t CPicturePlan::Transforms(std::int64_t row) const {
  const std::int64_t nFrames = RowBegin(row + 1) - RowBegin(row);
  const auto nHop = static_cast<std::int64_t>(m_nLength / 2);
  const std::int64_t nAll = std::max<std::int64_t>((nFrames + nHop - 1) / nHop, 1);
  return m_nMost > 0 ? std::min(nAll, m_nMost) : nAll;
}

std::int64_t CPicturePlan::TransformFirst(std::int64_t row, std::int64_t transform) const {
  const std::int64_t nBegin = RowBegin(row);
  const auto fFrames = static_cast<double>(RowBegin(row + 1) - nBegin);
  const double fShare = (static_cast<double>(transform) + 0.5) / static_cast<double>(Transforms(row));
  const auto nLength = static_cast<std::int64_t>(m_nLength);
  const std::int64_t nFirst = nBegin + static_cast<std::int64_t>(fFrames * fShare) - nLength / 2;
  return std::max<std::int64_t>(std::min(nFirst, m_span.nTotalFrames - nLength), 0);
}

bool CPicturePlan::HoldsBins() const {
  const double fColumn = (m_span.dHighFrequency - m_span.dLowFrequency) / static_cast<double>(m_span.nColumns);
  return fColumn * static_cast<double>(m_nLength) >= m_span.dSampleRate;
}

std::int64_t CPicturePlan::ColumnOf(double bin) const {
  const double fFrequency = (bin / static_cast<double>(m_nLength) - 0.5) * m_span.dSampleRate;
  const double fShare = (fFrequency - m_span.dLowFrequency) / (m_span.dHighFrequency - m_span.dLowFrequency);
  return static_cast<std::int64_t>(std::floor(fShare * static_cast<double>(m_span.nColumns)));
}

std::pair<std::size_t, std::size_t> CPicturePlan::Bins(std::int64_t column) const {
  const auto fLength = static_cast<double>(m_nLength);
  const auto fPlaceOf = [&](std::int64_t edge) {
    const double fShare = static_cast<double>(edge) / static_cast<double>(m_span.nColumns);
    const double fFrequency = m_span.dLowFrequency + fShare * (m_span.dHighFrequency - m_span.dLowFrequency);
    return fFrequency * fLength / m_span.dSampleRate + fLength / 2.0;
  };
  const double fLow = fPlaceOf(column);
  const double fHigh = fPlaceOf(column + 1);
  // What rounding left above or below a whole place is that place.
  constexpr double kSlip = 1e-6;
  double fFirst = std::ceil(fLow - kSlip);
  double fEnd = std::ceil(fHigh - kSlip);
  if (fEnd <= fFirst) {
    fFirst = std::floor((fLow + fHigh) / 2.0 + 0.5);
    fEnd = fFirst + 1.0;
    // The band reaches half a bin beyond the highest bin's middle, to where the lowest one's is.
    if (fHigh > 0.0 && fLow < fLength) fFirst = std::min(fFirst, fLength - 1.0);
  }
  fFirst = std::max(fFirst, 0.0);
  fEnd = std::min(fEnd, fLength);
  if (fEnd <= fFirst) return {0, 0};
  return {static_cast<std::size_t>(fFirst), static_cast<std::size_t>(fEnd)};
}

}  // namespace carvello
