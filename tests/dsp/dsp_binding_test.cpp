#include "dsp/dsp_binding.h"

#include <gtest/gtest.h>

#include <string>

#include "support/platform.h"

namespace carvello {
namespace {

std::string BesideThisProgram(const std::string& name) {
  return platform::JoinPath(platform::FolderOf(platform::ProgramPath()), name);
}

TEST(DspBinding, LibraryIsLookedForInTheProgramsOwnFolder) {
  EXPECT_EQ(platform::FolderOf(DspLibraryPath()), platform::FolderOf(platform::ProgramPath()));
  EXPECT_EQ(platform::NameOf(DspLibraryPath()), platform::SharedLibraryFileName("Vantrel"));
}

TEST(DspBinding, CompleteLibraryIsLoaded) {
  DspBinding binding;
  EXPECT_EQ(BindDsp(binding), 1u);
  EXPECT_EQ(binding.bLoaded, 1u);
  EXPECT_NE(binding.hModule, nullptr);
}

TEST(DspBinding, EveryEntryPointIsTheOneOfItsName) {
  DspBinding binding;
  ASSERT_EQ(BindDsp(binding), 1u);
  const auto expectName = [&binding](auto* entryPoint, const char* name) {
    EXPECT_NE(entryPoint, nullptr) << name;
    EXPECT_EQ(reinterpret_cast<void*>(entryPoint), platform::FindSymbol(binding.hModule, name)) << name;
  };
  expectName(binding.Advanced, "Advanced");
  expectName(binding.AllocInstance, "AllocInstance");
  expectName(binding.Closedown, "Closedown");
  expectName(binding.Diagnostics, "Diagnostics");
  expectName(binding.DisableFractionalResampler, "DisableFractionalResampler");
  expectName(binding.DownconvertInit, "DownconvertInit");
  expectName(binding.DownconvertRateIn, "DownconvertRateIn");
  expectName(binding.DownconvertRateOut, "DownconvertRateOut");
  expectName(binding.DownconvertRun, "DownconvertRun");
  expectName(binding.FirstStageExclude, "FirstStageExclude");
  expectName(binding.FirstStageOnly, "FirstStageOnly");
  expectName(binding.IsAdvanced, "IsAdvanced");
  expectName(binding.NCO, "NCO");
  expectName(binding.ReleaseInstance, "ReleaseInstance");
  expectName(binding.FractionalInit, "FractionalInit");
  expectName(binding.FractionalProcess, "FractionalProcess");
  expectName(binding.PartionedFFTInit, "PartionedFFTInit");
  expectName(binding.PartionedFFTProcess, "PartionedFFTProcess");
}

TEST(DspBinding, MissingLibraryIsNotLoaded) {
  DspBinding binding;
  EXPECT_EQ(BindDsp(binding, BesideThisProgram("no such library")), 0u);
  EXPECT_EQ(binding.bLoaded, 0u);
  EXPECT_EQ(binding.hModule, nullptr);
}

TEST(DspBinding, LibraryThatLacksANameCountsAsNotLoaded) {
  const std::string strPath = BesideThisProgram(platform::SharedLibraryFileName("IncompleteVantrel"));
  ASSERT_TRUE(platform::IsReadable(strPath)) << strPath;
  DspBinding binding;
  EXPECT_EQ(BindDsp(binding, strPath), 0u);
  EXPECT_EQ(binding.bLoaded, 0u);
  EXPECT_NE(binding.hModule, nullptr) << "the library itself can be loaded";
}

TEST(DspBinding, BindingAgainReplacesTheLibrary) {
  DspBinding binding;
  ASSERT_EQ(BindDsp(binding), 1u);
  EXPECT_EQ(BindDsp(binding, BesideThisProgram("no such library")), 0u);
  EXPECT_EQ(binding.hModule, nullptr);
  EXPECT_EQ(BindDsp(binding), 1u);
}

}  // namespace
}  // namespace carvello
