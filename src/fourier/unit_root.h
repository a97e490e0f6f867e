// Roots of one that are the same to the last bit on every system. The sines and cosines of C libraries differ there,
// and so would a spectrum that was made with them.
#pragma once

#include <cstdint>

namespace carvello {

struct SUnitRoot {
  double re = 1.0;
  double im = 0.0;
};

// exp(j 2 pi numerator / denominator), within a few units of 1e-16; multiples of an eighth turn are as exact as doubles
// can be. By operations only that IEEE 754 rounds in one way. The denominator is positive and below 2^60.
SUnitRoot UnitRoot(std::int64_t numerator, std::int64_t denominator);

}  // namespace carvello
