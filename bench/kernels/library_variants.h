// The downconverter library once for each instruction set that this processor has.
#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "dsp/dsp_binding.h"

namespace carvello::bench {

struct SLibraryVariant {
  std::string strName;
  std::unique_ptr<DspBinding> pDsp;
};

// A loaded library picks its set once. Each set gets a copy of the file, which the system takes for another library.
std::vector<SLibraryVariant> LoadLibraryVariants();

}  // namespace carvello::bench
