// The sample that all filters and transforms work on, and that crosses the downconverter library's border.
#pragma once

namespace carvello {

// A complex sample: I then Q, 8 bytes. In the engine 16-bit full scale is 32768; what is linear takes any.
struct SComplex {
  float re = 0.0f;
  float im = 0.0f;
};

}  // namespace carvello
