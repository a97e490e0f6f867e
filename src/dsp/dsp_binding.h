// DspBinding: the table of the downconverter library's entry points, bound at run time from the program's own folder.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "fourier/complex_sample.h"
#include "support/platform.h"

namespace carvello {

struct DspBinding {
  std::uint32_t bLoaded = 0;  // 1 when the library was loaded and its 18 names were found
  platform::LibraryHandle hModule = nullptr;
  std::vector<std::string> missing;  // the names that a library does not have which was loaded and is incomplete

  void (*Advanced)(std::uint32_t mode) = nullptr;
  std::uint32_t (*AllocInstance)(const wchar_t* applicationName) = nullptr;
  void (*Closedown)() = nullptr;
  std::uint32_t (*Diagnostics)(std::uint32_t handle, char* text, std::uint32_t capacity) = nullptr;
  void (*DisableFractionalResampler)(std::uint32_t handle) = nullptr;
  void (*DownconvertInit)(std::uint32_t handle, std::uint32_t inputRate, std::uint32_t outputRate) = nullptr;
  std::uint32_t (*DownconvertRateIn)(std::uint32_t handle) = nullptr;
  std::uint32_t (*DownconvertRateOut)(std::uint32_t handle) = nullptr;
  void (*DownconvertRun)(std::uint32_t handle, const SComplex* input, std::uint32_t inputCount, SComplex* output,
                         std::uint32_t* outputCount) = nullptr;
  void (*FirstStageExclude)(std::uint32_t handle, std::uint32_t exclude) = nullptr;
  void (*FirstStageOnly)(std::uint32_t handle, std::uint32_t only) = nullptr;
  std::uint32_t (*IsAdvanced)() = nullptr;
  void (*NCO)(std::uint32_t handle, std::int64_t shift, std::uint32_t inputRate, const SComplex* source,
              std::uint32_t count, SComplex* destination) = nullptr;
  void (*ReleaseInstance)(std::uint32_t handle) = nullptr;
  void (*FractionalInit)(std::uint32_t handle, std::uint32_t inputRate, std::uint32_t outputRate) = nullptr;
  void (*FractionalProcess)(std::uint32_t handle, const SComplex* input, std::uint32_t inputCount, SComplex* output,
                            std::uint32_t* outputCount) = nullptr;
  void (*PartionedFFTInit)(std::uint32_t handle, std::uint32_t inputRate, std::uint32_t outputRate) = nullptr;
  void (*PartionedFFTProcess)(std::uint32_t handle, const SComplex* input, std::uint32_t inputCount, SComplex* output,
                              std::uint32_t* outputCount) = nullptr;
  // Beside the 18: nullptr where the library has none.
  std::int64_t (*DownconvertResume)(std::uint32_t handle, std::int64_t firstOutput) = nullptr;

  DspBinding() = default;
  ~DspBinding();  // frees the library
  DspBinding(const DspBinding&) = delete;
  DspBinding& operator=(const DspBinding&) = delete;
};

// Full path of the library that BindDsp tries: the program's own folder and "Vantrel" with the system's ending.
std::string DspLibraryPath();
// 1 when the library was loaded from `path` and is complete. On 0 nothing may be called through the table.
std::uint32_t BindDsp(DspBinding& binding, const std::string& path = DspLibraryPath());

// How many output samples of the instance, rounded up, wait for input that lies ahead. Nothing when the library does
// not tell: one of another maker, or one without memory.
std::optional<std::uint32_t> DownconvertDelay(const DspBinding& binding, std::uint32_t handle);

// The instance's next output sample is number `firstOutput`; see DownconvertResume. The input sample to begin with;
// nothing when the library cannot.
std::optional<std::int64_t> ResumeDownconverter(const DspBinding& binding, std::uint32_t handle,
                                                std::int64_t firstOutput);

}  // namespace carvello
