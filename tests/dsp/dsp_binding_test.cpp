#include "dsp/dsp_binding.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <optional>
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
  expectName(binding.DownconvertResume, "DownconvertResume");
}

TEST(DspBinding, LibraryOfTheEighteenNamesAloneIsComplete) {
  DspBinding binding;
  ASSERT_EQ(BindDsp(binding), 1u);
  EXPECT_EQ(BindDsp(binding, BesideThisProgram(platform::SharedLibraryFileName("EighteenVantrel"))), 1u);
  EXPECT_EQ(binding.bLoaded, 1u);
  EXPECT_EQ(binding.DownconvertResume, nullptr);
  EXPECT_EQ(ResumeDownconverter(binding, 1, 0), std::nullopt);
}

// A library of another maker describes itself as it likes.
TEST(DspBinding, DelayIsReadFromTheLibrarysDescriptionOrIsUnknown) {
  static std::string s_strText;
  DspBinding binding;
  binding.Diagnostics = [](std::uint32_t /*handle*/, char* text, std::uint32_t capacity) {
    const std::size_t nFits = capacity == 0 ? 0 : std::min<std::size_t>(s_strText.size(), capacity - 1);
    std::copy_n(s_strText.data(), nFits, text);
    if (capacity != 0) text[nFits] = '\0';
    return static_cast<std::uint32_t>(s_strText.size());
  };
  const std::string strLine = "Carvello\nan output sample needs input up to ";
  const auto delay = [&](const std::string& text) {
    s_strText = text;
    return DownconvertDelay(binding, 1);
  };
  EXPECT_EQ(delay(strLine + "45.001 output samples later\n"), 46u);
  EXPECT_EQ(delay(strLine + "45.000 output samples later\n"), 45u);
  EXPECT_EQ(delay(strLine + "0.000 output samples later\n"), 0u);
  EXPECT_EQ(delay(""), std::nullopt);
  EXPECT_EQ(delay("Another one"), std::nullopt);
  for (const char* pszNumber : {"", "some", "-1", "inf", "nan", "1e300"}) {
    EXPECT_EQ(delay(strLine + pszNumber + " output samples later\n"), std::nullopt) << pszNumber;
  }
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
