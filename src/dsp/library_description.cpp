#include "dsp/library_description.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace carvello {

SLibraryDescription DescribeLibrary(const DspBinding& dsp) {
  constexpr std::uint32_t kInputRate = 2'000'000;
  constexpr std::uint32_t kOutputRate = 10'000;
  SLibraryDescription description;
  const std::uint32_t handle = dsp.AllocInstance(L"-");
  if (handle == 0) return description;
  dsp.DownconvertInit(handle, kInputRate, kOutputRate);
  std::string text(dsp.Diagnostics(handle, nullptr, 0) + std::size_t{1}, '\0');
  dsp.Diagnostics(handle, text.data(), static_cast<std::uint32_t>(text.size()));
  dsp.ReleaseInstance(handle);
  constexpr std::string_view kName = "\nVantrel ";
  if (const std::size_t at = text.find(kName); at != std::string::npos) {
    const std::size_t begin = at + kName.size();
    description.version = text.substr(begin, text.find('\n', begin) - begin);
  }
  const std::size_t end = text.find(" kernels\n");
  const std::size_t blank = end == std::string::npos || end == 0 ? end : text.rfind(' ', end - 1);
  if (blank != std::string::npos) description.set = text.substr(blank + 1, end - blank - 1);
  return description;
}

}  // namespace carvello
