// Forward and inverse Fourier transforms of one length, a power of two. Radix 2, in place.
#pragma once

#include <cstddef>
#include <vector>

#include "sample.h"

namespace vantrel {

class CFft {
 public:
  explicit CFft(std::size_t length);

  std::size_t Length() const { return m_Twiddles.size() * 2; }
  void Forward(SComplex* data) const;
  void Inverse(SComplex* data) const;  // without the factor 1 / length

 private:
  std::vector<SComplex> m_Twiddles;  // exp(-j 2 pi k / length), half a turn
};

}  // namespace vantrel
