// The sample that crosses the library's border.
#pragma once

namespace vantrel {

// A complex sample: I then Q, 8 bytes. The library is linear, so any full scale will do.
struct SComplex {
  float re = 0.0f;
  float im = 0.0f;
};

}  // namespace vantrel
