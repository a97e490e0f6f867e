#include "spectrum/band_extractor.h"

#include <algorithm>
#include <complex>
#include <new>
#include <vector>

#include "fourier/unit_root.h"
#include "spectrum/first_filter.h"

namespace carvello {
namespace {

// Bins that are taken: all up to the stop edge on either side, and at least one for every point.
std::int64_t TakenBins(const SBandPlan& plan) {
  const std::int64_t nUpToStop = 2 * ((plan.nStop + kPartsPerBin - 1) / kPartsPerBin + 1);
  return std::clamp(nUpToStop, plan.PointCount(), std::min(2 * plan.PointCount(), kFrameSize));
}

std::complex<double> Turn(std::int64_t numerator, std::int64_t denominator) {
  const SUnitRoot root = UnitRoot(numerator, denominator);
  return {root.re, root.im};
}

}  // namespace

const SBandKernels& BandKernels([[maybe_unused]] EInstructionSet set) {
#ifdef CARVELLO_X86_64
  if (set == EInstructionSet::Avx512) return kAvx512Band;
  if (set == EInstructionSet::Avx2) return kAvx2Band;
#endif
  return kPlainBand;
}

CBandExtractor::CBandExtractor(const SBandPlan& plan) : CBandExtractor(plan, PickInstructionSet()) {}

CBandExtractor::CBandExtractor(const SBandPlan& plan, EInstructionSet set)
    : m_kernels(BandKernels(set)),
      m_nPoints(static_cast<std::size_t>(plan.PointCount())),
      m_nSkipped(static_cast<std::size_t>(kFrameMargin / plan.nDecimation)),
      m_nTaken(static_cast<std::size_t>(plan.SamplesPerFrame())),
      m_transform(m_nPoints, set) {
  const std::int64_t nBins = TakenBins(plan);
  const std::int64_t nLowest = plan.nCentreBin - nBins / 2;
  m_pGains.reset(AllocComplex(nBins));
  if (!m_pGains) throw std::bad_alloc();
  const std::vector<double> gains = FirstFilterGains(plan, nBins / 2 + 1);
  const std::complex<double> constant = Turn(plan.nTurn, plan.nCircle) / static_cast<double>(kFrameSize);
  const auto nPhases = static_cast<std::int64_t>(plan.nPhases);
  const auto nResidue = static_cast<std::int64_t>(plan.nResidue);
  SComplex* gain = m_pGains.get();
  for (std::int64_t i = 0; i < nBins; ++i) {
    const double fGain = gains[static_cast<std::size_t>(std::abs(i - nBins / 2))];
    // A bin's turn within residue / phases samples. The product is below 2^16 * 2^40.
    const std::complex<double> value = fGain * constant * Turn((nLowest + i) * nResidue, kFrameSize * nPhases);
    *gain++ = {static_cast<float>(value.real()), static_cast<float>(value.imag())};
  }
  AddPieces(nLowest, 0, m_nPoints);
  m_nSetPieces = m_nPieces;
  AddPieces(nLowest + plan.PointCount(), m_nPoints, static_cast<std::size_t>(nBins) - m_nPoints);
}

// The frame's end is also one of the points', so a piece ends where the points do.
void CBandExtractor::AddPieces(std::int64_t bin, std::size_t gain, std::size_t count) {
  while (count > 0) {
    const auto nBin = static_cast<std::size_t>(bin - FloorDivide(bin, kFrameSize) * kFrameSize);
    const std::size_t nPoint = nBin % m_nPoints;
    const std::size_t nCount = std::min(count, m_nPoints - nPoint);
    m_Pieces[m_nPieces++] = {nBin, gain, nPoint, nCount};
    bin += static_cast<std::int64_t>(nCount);
    gain += nCount;
    count -= nCount;
  }
}

void CBandExtractor::Extract(const SComplex* spectrum, SComplex* samples, SComplex* work) const noexcept {
  SComplex* const points = work;
  SComplex* const result = points + m_nPoints;
  for (std::size_t i = 0; i < m_nPieces; ++i) {
    const SPiece& piece = m_Pieces[i];
    const auto multiply = i < m_nSetPieces ? m_kernels.Set : m_kernels.Add;
    multiply(spectrum + piece.nBin, m_pGains.get() + piece.nGain, points + piece.nPoint, piece.nCount);
  }
  m_transform.Inverse(points, result, result + m_nPoints);
  std::copy_n(result + m_nSkipped, m_nTaken, samples);
}

}  // namespace carvello
