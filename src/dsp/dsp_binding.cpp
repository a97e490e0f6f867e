#include "dsp/dsp_binding.h"

#include <charconv>
#include <cmath>
#include <cstddef>
#include <string_view>
#include <system_error>

namespace carvello {
namespace {

// Looks up one entry point; false when the library has no such name.
template <class TFunction>
bool Find(platform::LibraryHandle library, const char* name, TFunction*& entryPoint) {
  entryPoint = reinterpret_cast<TFunction*>(platform::FindSymbol(library, name));
  return entryPoint != nullptr;
}

}  // namespace

DspBinding::~DspBinding() {
  if (hModule != nullptr) platform::FreeSharedLibrary(hModule);
}

std::string DspLibraryPath() {
  return platform::JoinPath(platform::FolderOf(platform::ProgramPath()), platform::SharedLibraryFileName("Vantrel"));
}

std::uint32_t BindDsp(DspBinding& binding, const std::string& path) {
  if (binding.hModule != nullptr) platform::FreeSharedLibrary(binding.hModule);
  binding.bLoaded = 0;
  binding.hModule = platform::LoadSharedLibrary(path);
  if (binding.hModule == nullptr) return 0;

  const platform::LibraryHandle hModule = binding.hModule;
  const bool bComplete =
      Find(hModule, "Advanced", binding.Advanced) && Find(hModule, "AllocInstance", binding.AllocInstance) &&
      Find(hModule, "Closedown", binding.Closedown) && Find(hModule, "Diagnostics", binding.Diagnostics) &&
      Find(hModule, "DisableFractionalResampler", binding.DisableFractionalResampler) &&
      Find(hModule, "DownconvertInit", binding.DownconvertInit) &&
      Find(hModule, "DownconvertRateIn", binding.DownconvertRateIn) &&
      Find(hModule, "DownconvertRateOut", binding.DownconvertRateOut) &&
      Find(hModule, "DownconvertRun", binding.DownconvertRun) &&
      Find(hModule, "FirstStageExclude", binding.FirstStageExclude) &&
      Find(hModule, "FirstStageOnly", binding.FirstStageOnly) &&
      Find(hModule, "FractionalInit", binding.FractionalInit) &&
      Find(hModule, "FractionalProcess", binding.FractionalProcess) &&
      Find(hModule, "IsAdvanced", binding.IsAdvanced) && Find(hModule, "NCO", binding.NCO) &&
      Find(hModule, "ReleaseInstance", binding.ReleaseInstance) &&
      Find(hModule, "PartionedFFTInit", binding.PartionedFFTInit) &&
      Find(hModule, "PartionedFFTProcess", binding.PartionedFFTProcess);
  binding.bLoaded = bComplete ? 1 : 0;
  return binding.bLoaded;
}

std::optional<std::uint32_t> DownconvertDelay(const DspBinding& binding, std::uint32_t handle) {
  // There is no entry point that tells it, but a line of the description does.
  constexpr std::string_view kBefore = "\nan output sample needs input up to ";
  constexpr double kMost = 1e6;
  std::string text(binding.Diagnostics(handle, nullptr, 0) + std::size_t{1}, '\0');
  binding.Diagnostics(handle, text.data(), static_cast<std::uint32_t>(text.size()));
  const std::size_t found = text.find(kBefore);
  if (found == std::string::npos) return std::nullopt;
  double delay = 0;
  const char* const number = text.data() + found + kBefore.size();
  const auto [end, error] = std::from_chars(number, text.data() + text.size(), delay);
  if (error != std::errc() || !(delay >= 0 && delay < kMost)) return std::nullopt;
  return static_cast<std::uint32_t>(std::ceil(delay));
}

}  // namespace carvello
