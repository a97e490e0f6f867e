#include "cluster/part_manifest.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace carvello::test {
namespace {

const SPartOrigin kOrigin{
    .strVersion = "1.0.0", .strLibrary = "1.0.1", .strInput = "/r/a.wav", .strStamp = "cd", .strEntries = "ef"};

TEST(PartManifest, ReadsWhatItWrites) {
  const SPartManifest manifest{.origin = kOrigin,
                               .strKey = "ab",
                               .strEntry = "f=7.1 MHz",
                               .nFirst = 60'000,
                               .nFrames = 12'000,
                               .strSha256 = "0123",
                               .marks = {{2'097'152, 50}, {std::int64_t{1} << 50, 99}}};
  const std::string text = PartManifestText(manifest);
  EXPECT_THAT(text, testing::HasSubstr("\"input\": \"/r/a.wav\""));
  EXPECT_THAT(text, testing::HasSubstr("\"version\": \"1.0.0\""));
  EXPECT_THAT(text, testing::HasSubstr("\"library\": \"1.0.1\""));
  const std::optional<SPartManifest> again = ParseManifest(text);
  ASSERT_TRUE(again);
  EXPECT_EQ(again->strKey, "ab");
  EXPECT_EQ(again->strEntry, "f=7.1 MHz");
  EXPECT_EQ(again->nFirst, 60'000);
  EXPECT_EQ(again->nFrames, 12'000);
  EXPECT_EQ(again->strSha256, "0123");
  ASSERT_EQ(again->marks.size(), 2U);
  EXPECT_EQ(again->marks[1].llFrame, std::int64_t{1} << 50);
  EXPECT_EQ(again->marks[1].nOutput, 99);
}

// The check is the SHA-256 of "ab", "x", "01", "0", "5", "1" and "2", with a zero byte behind each.
TEST(PartManifest, IsNoneWithAnythingElseInIt) {
  const std::string good = R"({"carvello_part": 1, "key": "ab", "output": "x", "first_frame": 0, "frames": 5,
    "sha256": "01", "marks": [[1, 2]], "check": "d414aa916c433fc9e4f826b42ea224a36a125d0fba478decc28d39fc90005cd9"})";
  ASSERT_TRUE(ParseManifest(good));
  for (const auto& [what, with] : std::vector<std::pair<std::string, std::string>>{{"_part\": 1", "_part\": 2"},
                                                                                   {"frames\": 5", "frames\": -5"},
                                                                                   {"frames\": 5", "frames\": 5.5"},
                                                                                   {"frames\": 5", "frames\": 1e99"},
                                                                                   {"frames\": 5", "frames\": 6"},
                                                                                   {"frame\": 0", "frame\": 1"},
                                                                                   {"[1, 2]", "[1]"},
                                                                                   {"[1, 2]", "[1, -2]"},
                                                                                   {"[1, 2]", "[1, 3]"},
                                                                                   {"[1, 2]", "[2, 2]"},
                                                                                   {"[[1, 2]]", "[]"},
                                                                                   {"[[1, 2]]", "7"},
                                                                                   {"\"ab\"", "7"},
                                                                                   {"\"ab\"", "\"ac\""},
                                                                                   {"\"x\"", "\"y\""},
                                                                                   {"\"01\"", "\"02\""},
                                                                                   {"\"check\"", "\"chick\""},
                                                                                   {"}", ""}}) {
    std::string text = good;
    text.replace(text.find(what), what.size(), with);
    EXPECT_NE(text, good);
    EXPECT_FALSE(ParseManifest(text)) << text;
  }
  EXPECT_FALSE(ParseManifest(std::string(1'000'000, '[')));
}

TEST(PartManifest, KeyIsAnotherForEveryThingThatDecidesAboutSamples) {
  const STaskPart part{.nEntry = 1, .range = {10, 20}, .strPath = "/p/x.wav", .strManifest = "/p/x.json"};
  const std::string key = PartKey(kOrigin, part);
  STaskPart elsewhere = part;
  elsewhere.strPath = "/q/x.wav";
  EXPECT_EQ(PartKey(kOrigin, elsewhere), key);
  const auto otherOrigin = [&](std::string SPartOrigin::*field) {
    SPartOrigin origin = kOrigin;
    origin.*field += "x";
    return PartKey(origin, part);
  };
  const auto otherPart = [&](std::size_t entry, SOutputRange range) {
    STaskPart other = part;
    other.nEntry = entry;
    other.range = range;
    return PartKey(kOrigin, other);
  };
  for (const std::string& other : {otherOrigin(&SPartOrigin::strVersion), otherOrigin(&SPartOrigin::strLibrary),
                                   otherOrigin(&SPartOrigin::strStamp), otherOrigin(&SPartOrigin::strEntries),
                                   otherPart(2, {10, 20}), otherPart(1, {9, 20}), otherPart(1, {10, 21})}) {
    EXPECT_NE(other, key);
  }
}

TEST(PartManifest, StampIsAnotherForOtherFiles) {
  SWorkPlan plan;
  plan.strVersion = "1.0.0";
  const auto stamp = [&plan](std::vector<SPlannedFile> files) {
    SPlannedRecording recording;
    recording.files = std::move(files);
    return OriginOf(plan, recording).strStamp;
  };
  const std::string one = stamp({{"/r/a.wav", 10, 5}});
  EXPECT_EQ(stamp({{"/r/a.wav", 10, 5}}), one);
  EXPECT_NE(stamp({{"/r/b.wav", 10, 5}}), one);
  EXPECT_NE(stamp({{"/r/a.wav", 11, 5}}), one);
  EXPECT_NE(stamp({{"/r/a.wav", 10, 6}}), one);
  EXPECT_NE(stamp({{"/r/a.wav", 10, 5}, {"/r/b.wav", 10, 5}}), one);
  EXPECT_NE(stamp({{"/r/a.wav", 1, 5}}), stamp({{"/r/a.wav", 15, 5}}));
}

}  // namespace
}  // namespace carvello::test
