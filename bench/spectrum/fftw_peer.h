// FFTW's transform of the same blocks, where its library was found.
#pragma once

#include <cstddef>
#include <memory>

#include "fourier/complex_sample.h"

namespace carvello::bench {

class CFftwPeer {
 public:
  virtual ~CFftwPeer() = default;
  virtual void Execute() = 0;

  // By the best plan that FFTW finds with patience; nullptr without FFTW. What `in` holds stays, `out` is written to.
  static std::unique_ptr<CFftwPeer> Make(std::size_t size, bool inverse, SComplex* in, SComplex* out);
};

}  // namespace carvello::bench
