// The sample that the engine works on.
#pragma once

namespace carvello {

// A complex sample as the library and all engine code hold it: I then Q, 16-bit full scale is 32768.
struct SComplex {
  float re = 0.0f;
  float im = 0.0f;
};

}  // namespace carvello
