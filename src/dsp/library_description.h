// What the downconverter library tells of itself.
#pragma once

#include <optional>
#include <string>

#include "dsp/dsp_binding.h"

namespace carvello {

// The library of this project describes itself and its loops in lines of a text that others may do without.
struct SLibraryDescription {
  std::optional<std::string> version;  // for example "1.0.0"
  std::optional<std::string> set;      // of instructions, for example "AVX2"
};
SLibraryDescription DescribeLibrary(const DspBinding& dsp);

}  // namespace carvello
