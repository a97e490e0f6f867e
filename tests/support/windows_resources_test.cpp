// What the programs carry in their files besides code.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

// clang-format off
#include <windows.h>
// clang-format on

#include "support/platform.h"
#include "support/platform_windows_text.h"
#include "support/version.h"

namespace carvello {
namespace {

using platform::Wide;

TEST(WindowsModules, TheVersionRecordOfTheProgramIsInItsFile) {
  const std::string program = platform::JoinPath(platform::FolderOf(platform::ProgramPath()), "carvello-cli.exe");
  const VersionTexts own = VersionInfo();
  const VersionTexts texts = VersionInfo(program);
  EXPECT_EQ(texts.strLongTitle, own.strLongTitle);
  EXPECT_EQ(texts.strModulePath, program);
  EXPECT_THAT(texts.values, testing::Contains(testing::Pair("Company Name", "Halvarn")));
  EXPECT_THAT(texts.values, testing::Contains(testing::Pair("File Version", "1.0.0.0")));
  EXPECT_THAT(texts.values, testing::Contains(testing::Pair("OriginalFilename", "carvello-cli.exe")));
  EXPECT_EQ(texts.values.size(), own.values.size());
}

TEST(WindowsModules, ProgramsCarryAnIcon) {
  const std::string program = platform::JoinPath(platform::FolderOf(platform::ProgramPath()), "carvello-cli.exe");
  HMODULE module = LoadLibraryExW(Wide(program).c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE);
  ASSERT_NE(module, nullptr);
  int groups = 0;
  EnumResourceNamesW(
      module, MAKEINTRESOURCEW(14),  // RT_GROUP_ICON
      [](HMODULE, LPCWSTR, LPWSTR, LONG_PTR count) -> BOOL { return ++*reinterpret_cast<int*>(count) > 0; },
      reinterpret_cast<LONG_PTR>(&groups));
  EXPECT_EQ(groups, 1);
  FreeLibrary(module);
}

}  // namespace
}  // namespace carvello
