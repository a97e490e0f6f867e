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

// Looks up all; the names that the library does not have.
std::vector<std::string> FindAll(DspBinding& binding) {
  std::vector<std::string> missing;
  const auto find = [&](const char* name, auto*& entryPoint) {
    if (!Find(binding.hModule, name, entryPoint)) missing.emplace_back(name);
  };
  find("Advanced", binding.Advanced);
  find("AllocInstance", binding.AllocInstance);
  find("Closedown", binding.Closedown);
  find("Diagnostics", binding.Diagnostics);
  find("DisableFractionalResampler", binding.DisableFractionalResampler);
  find("DownconvertInit", binding.DownconvertInit);
  find("DownconvertRateIn", binding.DownconvertRateIn);
  find("DownconvertRateOut", binding.DownconvertRateOut);
  find("DownconvertRun", binding.DownconvertRun);
  find("FirstStageExclude", binding.FirstStageExclude);
  find("FirstStageOnly", binding.FirstStageOnly);
  find("FractionalInit", binding.FractionalInit);
  find("FractionalProcess", binding.FractionalProcess);
  find("IsAdvanced", binding.IsAdvanced);
  find("NCO", binding.NCO);
  find("ReleaseInstance", binding.ReleaseInstance);
  find("PartionedFFTInit", binding.PartionedFFTInit);
  find("PartionedFFTProcess", binding.PartionedFFTProcess);
  return missing;
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
  binding.DownconvertResume = nullptr;
  binding.hModule = platform::LoadSharedLibrary(path);
  if (binding.hModule == nullptr) return 0;

  binding.missing = FindAll(binding);
  binding.bLoaded = binding.missing.empty() ? 1 : 0;
  Find(binding.hModule, "DownconvertResume", binding.DownconvertResume);
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

std::optional<std::int64_t> ResumeDownconverter(const DspBinding& binding, std::uint32_t handle,
                                                std::int64_t firstOutput) {
  if (binding.DownconvertResume == nullptr) return std::nullopt;
  const std::int64_t input = binding.DownconvertResume(handle, firstOutput);
  return input < 0 ? std::nullopt : std::optional(input);
}

}  // namespace carvello
