// The sample that crosses the library's border.
#pragma once

#include "fourier/complex_sample.h"

namespace vantrel {

using carvello::SComplex;

}  // namespace vantrel
