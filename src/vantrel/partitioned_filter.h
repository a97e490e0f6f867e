// The channel filter of an output rate at the input's own rate, by uniformly partitioned overlap-save convolution
// (T. G. Stockham, "High-speed convolution and correlation", 1966): the filter is cut into parts of one block, and the
// spectra of the last blocks are kept and multiplied with one part each.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "fourier/block_transform.h"
#include "kaiser_lowpass.h"
#include "sample.h"

namespace vantrel {

class CPartitionedFilter {
 public:
  explicit CPartitionedFilter(const CKaiserLowPass& design);

  // Output sample m stands at the time of input sample m. After n input samples in whatever calls, all but the last
  // Delay() of n output samples have been given, so a call gives at most `count`. In place is allowed.
  std::size_t Process(const SComplex* input, std::size_t count, SComplex* output);
  std::size_t Delay() const { return m_nHalfLength + kBlock - 1; }

  static constexpr std::size_t kBlock = 1024;

 private:
  void FilterBlock();

  std::size_t m_nHalfLength;
  carvello::CBlockTransform m_Transform;
  std::vector<std::vector<SComplex>> m_Parts;    // spectra of the filter's parts
  std::vector<std::vector<SComplex>> m_Spectra;  // of the last blocks, a ring
  std::size_t m_nNewest = 0;                     // in the ring
  std::vector<SComplex> m_Input;                 // the last block and the one being filled
  std::size_t m_nFilled = 0;
  std::vector<SComplex> m_Product;
  std::vector<SComplex> m_Filtered;  // what it is transformed back to
  std::vector<SComplex> m_Work;      // the transforms'
  std::vector<SComplex> m_Ready;     // filtered samples that wait for their turn, a ring
  std::uint64_t m_nTaken = 0;        // input samples since the start
  std::uint64_t m_nFiltered = 0;     // samples put into m_Ready, counted from the filter's first response
  std::uint64_t m_nGiven = 0;        // output samples since the start
};

}  // namespace vantrel
