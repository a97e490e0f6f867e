// What must have happened once before samples are processed: the downconverter library bound and set up, and the
// primitives fitted to the processor.
#pragma once

#include <string>

#include "dsp/dsp_binding.h"

namespace carvello {

// False when the library at `path` is missing or incomplete; no job can run then, and MissingLibraryText tells why.
bool StartDsp(DspBinding& binding, const std::string& path = DspLibraryPath());

std::string MissingLibraryText(const std::string& path = DspLibraryPath());

}  // namespace carvello
