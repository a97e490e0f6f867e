#include "fourier/unit_root.h"

#include <numbers>
#include <utility>

namespace carvello {

SUnitRoot UnitRoot(std::int64_t numerator, std::int64_t denominator) {
  // To the first eighth of a turn in whole numbers; an odd eighth is run through backwards.
  numerator %= denominator;
  if (numerator < 0) numerator += denominator;
  const std::int64_t nEighth = 8 * numerator / denominator;
  const std::int64_t nRest = 8 * numerator - nEighth * denominator;
  const bool bBackwards = nEighth % 2 != 0;
  const double x = 0.25 * std::numbers::pi * static_cast<double>(bBackwards ? denominator - nRest : nRest) /
                   static_cast<double>(denominator);
  double fCosine = 1.0;
  double fSine = 1.0;
  for (int k = 18; k > 0; k -= 2) {
    fCosine = 1.0 - x * x / (k * (k - 1)) * fCosine;
    fSine = 1.0 - x * x / (k * (k + 1)) * fSine;
  }
  fSine *= x;
  // An odd eighth stands mirrored at its end.
  if (bBackwards) std::swap(fCosine, fSine);
  switch (nEighth / 2) {
    case 0:
      return {fCosine, fSine};
    case 1:
      return {-fSine, fCosine};
    case 2:
      return {-fCosine, -fSine};
    default:
      return {fSine, -fCosine};
  }
}

}  // namespace carvello
