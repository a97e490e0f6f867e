#include "dsp/start_dsp.h"

#include "dsp/primitives.h"
#include "support/text.h"

namespace carvello {

bool StartDsp(DspBinding& binding, const std::string& path) {
  if (BindDsp(binding, path) == 0) return false;
  binding.Advanced(0);
  InitPrimitives();
  return true;
}

std::string MissingLibraryText(const std::string& path) {
  return Format("The downconverter library Vantrel is missing or incomplete: %s", path.c_str());
}

}  // namespace carvello
