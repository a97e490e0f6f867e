#include "support/version.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "support/platform.h"

namespace carvello {
namespace {

using testing::Contains;
using testing::Pair;

TEST(BuildNumber, CountsDaysFromAugust2009PlusFour) {
  EXPECT_EQ(BuildNumberOf("Sep  5 2022"), 4787U);
  EXPECT_EQ(BuildNumberOf("Aug  1 2009"), 4U);
  EXPECT_EQ(BuildNumberOf("Mar  1 2012"), 947U);  // across a leap day
}

TEST(BuildNumber, IsZeroForATextThatIsNoDate) {
  EXPECT_EQ(BuildNumberOf(""), 0U);
  EXPECT_EQ(BuildNumberOf("Foo  5 2022"), 0U);
  EXPECT_EQ(BuildNumberOf("Feb 30 2022"), 0U);
  EXPECT_EQ(BuildNumberOf("Sep 257 2022"), 0U);
  EXPECT_EQ(BuildNumberOf("Sep x"), 0U);
}

TEST(VersionInfo, TextsAreMadeFromTheRecord) {
  const VersionTexts texts = VersionInfo();
  const std::string build = std::to_string(texts.nBuildNumber);
  EXPECT_GT(texts.nBuildNumber, 6000U);
  EXPECT_EQ(texts.strVersionText, "Version 1.0 build " + build);
  EXPECT_EQ(texts.strShortTitle, "Carvello 1.0 build " + build);
  EXPECT_EQ(texts.strLongTitle, "Carvello version 1.0 build " + build);
  EXPECT_EQ(texts.strModulePath, platform::ProgramPath());
  EXPECT_THAT(texts.strBuildDate, testing::MatchesRegex("... .. .... at ..:..:.."));
}

TEST(VersionInfo, ListsThePairsThatExist) {
  const VersionTexts texts = VersionInfo();
  EXPECT_THAT(texts.values, Contains(Pair("Company Name", "Halvarn")));
  EXPECT_THAT(texts.values, Contains(Pair("Product Name", "Carvello")));
  EXPECT_THAT(texts.values, Contains(Pair("File Version", "1.0.0.0")));
  EXPECT_EQ(texts.values.size(), 8U);  // all but the special build, which the program is not
}

TEST(VersionInfo, AModuleWithoutRecordKeepsItsBuildTexts) {
  const VersionTexts texts = VersionInfo("no such module");
  EXPECT_EQ(texts.strModulePath, "no such module");
  EXPECT_EQ(texts.strBuildDate, VersionInfo().strBuildDate);
  EXPECT_EQ(texts.strVersionText, "Version  build " + std::to_string(texts.nBuildNumber));
  EXPECT_TRUE(texts.values.empty());
}

TEST(Release, IsAVersionOfThreeNumbers) {
  const std::string release = Release();
  EXPECT_EQ(release + ".0", VersionValue("FileVersion"));
  EXPECT_EQ(release.find_first_not_of("0123456789."), std::string::npos) << release;
  EXPECT_EQ(std::ranges::count(release, '.'), 2) << release;
  EXPECT_EQ(("." + release + ".").find(".."), std::string::npos) << "a number is missing: " << release;
}

TEST(VersionValue, FindsByExactKey) {
  EXPECT_EQ(VersionValue("ProductName"), "Carvello");
  EXPECT_EQ(VersionValue("LegalCopyright"), "Copyright (C) 2026 the Carvello developers");
  EXPECT_EQ(VersionValue("productname"), "");
  EXPECT_EQ(VersionValue("SpecialBuild"), "");
}

}  // namespace
}  // namespace carvello
