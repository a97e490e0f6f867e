// What the programs and the library carry in their files besides code.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

// clang-format off
#include <windows.h>
// clang-format on

#include <memory>
#include <string>
#include <type_traits>
#include <vector>

#include "support/platform.h"
#include "support/platform_windows_text.h"
#include "support/version.h"

namespace carvello {
namespace {

using platform::Wide;
using testing::Contains;
using testing::HasSubstr;
using testing::Pair;

std::string BesideTheTest(const std::string& name) {
  return platform::JoinPath(platform::FolderOf(platform::ProgramPath()), name);
}

// A module's file, without any of its code run.
struct FreeModule {
  void operator()(HMODULE module) const { FreeLibrary(module); }
};
using Module = std::unique_ptr<std::remove_pointer_t<HMODULE>, FreeModule>;

Module Open(const std::string& name) {
  return Module(LoadLibraryExW(Wide(BesideTheTest(name)).c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE));
}

constexpr WORD kIconGroup = 14;
constexpr WORD kManifest = 24;

int CountResources(HMODULE module, WORD type) {
  int count = 0;
  EnumResourceNamesW(
      module, MAKEINTRESOURCEW(type),
      [](HMODULE, LPCWSTR, LPWSTR, LONG_PTR sum) -> BOOL { return ++*reinterpret_cast<int*>(sum) > 0; },
      reinterpret_cast<LONG_PTR>(&count));
  return count;
}

// The bytes of the resource with the number 1.
std::string FirstResource(HMODULE module, WORD type) {
  const HRSRC resource = FindResourceW(module, MAKEINTRESOURCEW(1), MAKEINTRESOURCEW(type));
  if (resource == nullptr) return {};
  return {static_cast<const char*>(LockResource(LoadResource(module, resource))), SizeofResource(module, resource)};
}

// What the version record has in numbers.
VS_FIXEDFILEINFO NumbersOf(const std::string& name) {
  const std::wstring path = Wide(BesideTheTest(name));
  std::vector<char> record(GetFileVersionInfoSizeW(path.c_str(), nullptr));
  void* found = nullptr;
  UINT size = 0;
  if (record.empty() || GetFileVersionInfoW(path.c_str(), 0, static_cast<DWORD>(record.size()), record.data()) == 0 ||
      VerQueryValueW(record.data(), L"\\", &found, &size) == 0 || size < sizeof(VS_FIXEDFILEINFO)) {
    return {};
  }
  return *static_cast<const VS_FIXEDFILEINFO*>(found);
}

// ---- programs --------------------------------------------------------------------------------------------------

class WindowsPrograms : public testing::TestWithParam<std::string> {};

TEST_P(WindowsPrograms, HaveTheirVersionRecordInTheirFiles) {
  const std::string program = BesideTheTest(GetParam() + ".exe");
  const VersionTexts own = VersionInfo();
  const VersionTexts texts = VersionInfo(program);
  EXPECT_EQ(texts.strLongTitle, own.strLongTitle);
  EXPECT_EQ(texts.strModulePath, program);
  EXPECT_THAT(texts.values, Contains(Pair("Company Name", "Halvarn")));
  EXPECT_THAT(texts.values, Contains(Pair("File Version", "1.0.0.0")));
  EXPECT_THAT(texts.values, Contains(Pair("Internal Name", GetParam())));
  EXPECT_THAT(texts.values, Contains(Pair("OriginalFilename", GetParam() + ".exe")));
  EXPECT_EQ(texts.values.size(), own.values.size());
  const VS_FIXEDFILEINFO numbers = NumbersOf(GetParam() + ".exe");
  EXPECT_EQ(numbers.dwFileType, static_cast<DWORD>(VFT_APP));
  EXPECT_EQ(numbers.dwFileVersionMS, 0x1'0000U);
}

TEST_P(WindowsPrograms, CarryAnIcon) {
  const Module module = Open(GetParam() + ".exe");
  ASSERT_NE(module, nullptr);
  EXPECT_EQ(CountResources(module.get(), kIconGroup), 1);
}

TEST_P(WindowsPrograms, AskForLongPathsAndControlsOfTheDay) {
  const Module module = Open(GetParam() + ".exe");
  ASSERT_NE(module, nullptr);
  EXPECT_EQ(CountResources(module.get(), kManifest), 1);
  const std::string manifest = FirstResource(module.get(), kManifest);
  EXPECT_THAT(manifest, HasSubstr(">true</longPathAware>"));
  EXPECT_THAT(manifest, HasSubstr("name=\"Microsoft.Windows.Common-Controls\" version=\"6.0.0.0\""));
}

INSTANTIATE_TEST_SUITE_P(, WindowsPrograms, testing::Values(CARVELLO_PROGRAMS));

// ---- the library -----------------------------------------------------------------------------------------------

TEST(WindowsLibrary, HasAVersionRecordOfItsOwnInItsFile) {
  const VersionTexts texts = VersionInfo(BesideTheTest("Vantrel.dll"));
  EXPECT_EQ(texts.strLongTitle, VersionInfo().strLongTitle);
  EXPECT_THAT(texts.values, Contains(Pair("Company Name", "Halvarn")));
  EXPECT_THAT(texts.values, Contains(Pair("File Description", "Downconverter library")));
  EXPECT_THAT(texts.values, Contains(Pair("Internal Name", "Vantrel")));
  EXPECT_THAT(texts.values, Contains(Pair("OriginalFilename", "Vantrel.dll")));
  const VS_FIXEDFILEINFO numbers = NumbersOf("Vantrel.dll");
  EXPECT_EQ(numbers.dwFileType, static_cast<DWORD>(VFT_DLL));
  EXPECT_EQ(numbers.dwFileVersionMS, 0x1'0000U);
}

}  // namespace
}  // namespace carvello
