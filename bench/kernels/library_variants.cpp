#include "kernels/library_variants.h"

#include <cstdlib>
#include <filesystem>
#include <stdexcept>

namespace carvello::bench {
namespace {

std::string DescriptionOf(const DspBinding& dsp) {
  const std::uint32_t hInstance = dsp.AllocInstance(L"bench_kernels");
  dsp.DownconvertInit(hInstance, 48'000, 24'000);
  char text[512] = "";
  dsp.Diagnostics(hInstance, text, sizeof text);
  dsp.ReleaseInstance(hInstance);
  return text;
}

}  // namespace

std::vector<SLibraryVariant> LoadLibraryVariants() {
  std::string strFolder = (std::filesystem::temp_directory_path() / "carvello-bench-XXXXXX").string();
  if (mkdtemp(strFolder.data()) == nullptr) throw std::runtime_error("no temporary folder");
  std::vector<SLibraryVariant> variants;
  for (const char* pszName : {"plain", "avx2", "avx512"}) {
    const std::string strCopy = strFolder + "/" + pszName + ".so";
    std::filesystem::copy_file(DspLibraryPath(), strCopy);
    setenv("CARVELLO_ISA", pszName, 1);
    auto pDsp = std::make_unique<DspBinding>();
    if (BindDsp(*pDsp, strCopy) == 0) throw std::runtime_error("the library is missing: " + DspLibraryPath());
    // Another one than asked for where the processor does not have it.
    const bool bRuns = DescriptionOf(*pDsp).find(std::string(pszName) + " kernels") != std::string::npos;
    if (bRuns) variants.push_back({pszName, std::move(pDsp)});
  }
  unsetenv("CARVELLO_ISA");
  std::filesystem::remove_all(strFolder);  // what is loaded stays loaded
  return variants;
}

}  // namespace carvello::bench
