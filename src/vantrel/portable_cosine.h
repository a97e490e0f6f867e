// A cosine that is the same to the last bit on every system. Those of C libraries differ there; where equations make
// much of little differences, the same filter would come out with other taps, and outputs would differ between systems.
#pragma once

#include <numbers>

namespace vantrel {

// For angles from 0 to pi, within a few units of 1e-16. By operations only that IEEE 754 rounds in one way.
inline double PortableCosine(double angle) {
  const bool bObtuse = angle > 0.5 * std::numbers::pi;
  const double x = bObtuse ? std::numbers::pi - angle : angle;
  double fCosine = 1.0;
  for (int k = 22; k > 0; k -= 2) fCosine = 1.0 - x * x / (k * (k - 1)) * fCosine;
  return bObtuse ? -fCosine : fCosine;
}

}  // namespace vantrel
