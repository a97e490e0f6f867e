#include "partitioned_filter.h"

#include <algorithm>
#include <utility>

namespace vantrel {

CPartitionedFilter::CPartitionedFilter(const CKaiserLowPass& design)
    : m_nHalfLength(design.HalfLength()),
      m_Transform(2 * kBlock),
      m_Input(2 * kBlock),
      m_Product(2 * kBlock),
      m_Filtered(2 * kBlock),
      m_Work(m_Transform.WorkSize()) {
  const std::size_t nTaps = 2 * m_nHalfLength - 1;  // the taps at the very ends are 0
  const std::size_t nParts = (nTaps + kBlock - 1) / kBlock;
  m_Parts.assign(nParts, std::vector<SComplex>(2 * kBlock));
  m_Spectra.assign(nParts, std::vector<SComplex>(2 * kBlock));
  for (std::size_t n = 0; n < nTaps; ++n) {
    const double fTime = static_cast<double>(n) - static_cast<double>(m_nHalfLength - 1);
    // The transform's factor is put in here.
    m_Parts[n / kBlock][n % kBlock].re = static_cast<float>(design(fTime) / (2.0 * kBlock));
  }
  for (std::vector<SComplex>& part : m_Parts) {
    m_Transform.Forward(part.data(), m_Filtered.data(), m_Work.data());
    std::swap(part, m_Filtered);
  }
  // Never more than a filter's half and two blocks wait.
  m_Ready.resize(m_nHalfLength + 3 * kBlock);
}

std::size_t CPartitionedFilter::Process(const SComplex* input, std::size_t count, SComplex* output) {
  std::size_t nOutput = 0;
  while (count > 0) {
    const std::size_t nPiece = std::min(count, kBlock - m_nFilled);
    std::copy_n(input, nPiece, m_Input.data() + kBlock + m_nFilled);
    m_nFilled += nPiece;
    m_nTaken += nPiece;
    input += nPiece;
    count -= nPiece;
    if (m_nFilled == kBlock) FilterBlock();
    for (; m_nGiven + Delay() < m_nTaken; ++m_nGiven) {
      // Output sample 0 is the filter's middle response.
      output[nOutput++] = m_Ready[(m_nGiven + m_nHalfLength - 1) % m_Ready.size()];
    }
  }
  return nOutput;
}

void CPartitionedFilter::FilterBlock() {
  const std::size_t nParts = m_Parts.size();
  m_nNewest = (m_nNewest + 1) % nParts;
  m_Transform.Forward(m_Input.data(), m_Spectra[m_nNewest].data(), m_Work.data());
  std::fill(m_Product.begin(), m_Product.end(), SComplex{});
  for (std::size_t nPart = 0; nPart < nParts; ++nPart) {
    const SComplex* x = m_Spectra[(m_nNewest + nParts - nPart) % nParts].data();
    const SComplex* h = m_Parts[nPart].data();
    for (std::size_t i = 0; i < 2 * kBlock; ++i) {
      m_Product[i].re += x[i].re * h[i].re - x[i].im * h[i].im;
      m_Product[i].im += x[i].re * h[i].im + x[i].im * h[i].re;
    }
  }
  m_Transform.Inverse(m_Product.data(), m_Filtered.data(), m_Work.data());
  // The first half is wrapped round by the transform; the second one is the convolution.
  for (std::size_t i = 0; i < kBlock; ++i) m_Ready[m_nFiltered++ % m_Ready.size()] = m_Filtered[kBlock + i];
  std::copy_n(m_Input.data() + kBlock, kBlock, m_Input.data());
  m_nFilled = 0;
}

}  // namespace vantrel
