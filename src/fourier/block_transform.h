// The Fourier transform of a block of samples, forward and inverse.
//
// All of an output's arithmetic is fixed: every processor and every system gives the same bits.
#pragma once

#include <cstddef>

#include "fourier/complex_sample.h"
#include "fourier/instruction_set.h"
#include "fourier/transform_kernels.h"

namespace carvello {

class CBlockTransform {
 public:
  static constexpr std::size_t kSmallestSize = 64;
  static constexpr std::size_t kLargestSize = 1'048'576;

  // The size is a power of two within the limits. The first of a size makes tables that all share; several threads may
  // use one at once. Throws std::bad_alloc.
  explicit CBlockTransform(std::size_t size);
  // With the loops of this instruction set, which the processor must have.
  CBlockTransform(std::size_t size, EInstructionSet set);

  std::size_t Size() const noexcept { return m_nSize; }
  // Of the memory that a transform works in, in samples.
  std::size_t WorkSize() const noexcept { return m_nSize; }

  // out[k] = sum of in[n] exp(-j 2 pi k n / size), unscaled, in natural order. Input, output and work are three
  // different places; fastest where each is aligned to 64 bytes, as AllocComplex gives them. The same bits wherever
  // they are.
  void Forward(const SComplex* in, SComplex* out, SComplex* work) const noexcept {
    m_pTransform(*m_pPlan, false, in, out, work);
  }
  // out[n] = sum of in[k] exp(j 2 pi k n / size): an input that was transformed forward comes back times the size.
  void Inverse(const SComplex* in, SComplex* out, SComplex* work) const noexcept {
    m_pTransform(*m_pPlan, true, in, out, work);
  }

 private:
  std::size_t m_nSize;
  const STransformPlan* m_pPlan;  // shared by all of this size, for ever
  decltype(STransformKernels::Transform) m_pTransform;
};

}  // namespace carvello
