// The texts of meta files and collections, read by the JSON library.
#include "recording/sigmf_writer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <nlohmann/json.hpp>
#include <string>

namespace carvello::test {
namespace {

using nlohmann::json;

SSigMfFacts Facts() {
  SSigMfFacts facts;
  facts.nSampleRate = 12'000;
  facts.nFrequency = 7'100'000;
  facts.nBandwidth = 12'000;
  facts.tStart = 1'711'800'001;
  facts.nStartNanoseconds = 250'000'000;
  facts.nGlobalIndex = 77;
  facts.strTitle = "7.100 MHz";
  facts.strHardware = "Radio";
  facts.origin = {"rec 000.wav", 2'000'000, 7'000'000, 123, 1'711'800'001};
  return facts;
}

json Meta(const SSigMfFacts& facts) {
  return json::parse(BuildSigMfMeta(facts).strText);
}

TEST(SigMfWriter, TellsRateFrequencyStartAndOrigin) {
  const json meta = Meta(Facts());
  const json& global = meta["global"];
  EXPECT_EQ(global["core:datatype"], "ci16_le");
  EXPECT_EQ(global["core:version"], "1.2.5");
  EXPECT_EQ(global["core:sample_rate"], 12'000);
  EXPECT_EQ(global["core:hw"], "Radio");
  EXPECT_EQ(global["core:description"], "7.100 MHz, cut from rec 000.wav");
  EXPECT_FALSE(global.contains("core:dataset"));
  EXPECT_EQ(global["carvello:source"], json::parse(R"({"file": "rec 000.wav", "sample_rate": 2000000,
      "frequency": 7000000, "sample_start": 123, "asked_start": 1711800001})"));
  EXPECT_EQ(global["core:extensions"], json::parse(R"([{"name": "carvello", "version": "1.0.0", "optional": true}])"));
  EXPECT_EQ(meta["captures"], json::parse(R"([{"core:sample_start": 0, "core:frequency": 7100000,
      "core:datetime": "2024-03-30T12:00:01.25Z", "core:global_index": 77}])"));
  ASSERT_EQ(meta["annotations"].size(), 1U);
  EXPECT_EQ(meta["annotations"][0]["core:freq_lower_edge"], 7'094'000.0);
  EXPECT_EQ(meta["annotations"][0]["core:freq_upper_edge"], 7'106'000.0);
  EXPECT_FALSE(meta["annotations"][0].contains("core:sample_count"));
}

TEST(SigMfWriter, TellsFloatsHeadsAndWhatIsNotKnown) {
  SSigMfFacts facts = Facts();
  facts.nBitsPerSample = 32;
  facts.strDataset = "a.wav";
  facts.nHeaderBytes = 5000;
  facts.strHardware.clear();
  facts.origin.strFile.clear();
  facts.nFrequency = -5;
  facts.nBandwidth = 11;
  const json meta = Meta(facts);
  EXPECT_EQ(meta["global"]["core:datatype"], "cf32_le");
  EXPECT_EQ(meta["global"]["core:dataset"], "a.wav");
  EXPECT_EQ(meta["global"]["core:description"], "7.100 MHz");
  EXPECT_FALSE(meta["global"].contains("core:hw"));
  EXPECT_FALSE(meta["global"]["carvello:source"].contains("file"));
  EXPECT_EQ(meta["captures"][0]["core:header_bytes"], 5000);
  EXPECT_EQ(meta["captures"][0]["core:frequency"], -5);
  EXPECT_EQ(meta["annotations"][0]["core:freq_lower_edge"], -10.5);
}

TEST(SigMfWriter, SecondsHaveTheDigitsThatTheyNeed) {
  for (const auto& [nanoseconds, text] : {std::pair(0U, "2024-03-30T12:00:01Z"),
                                          {1U, "2024-03-30T12:00:01.000000001Z"},
                                          {500'000'000U, "2024-03-30T12:00:01.5Z"},
                                          {999'999'999U, "2024-03-30T12:00:01.999999999Z"}}) {
    SSigMfFacts facts = Facts();
    facts.nStartNanoseconds = nanoseconds;
    EXPECT_EQ(Meta(facts)["captures"][0]["core:datetime"], text);
  }
}

TEST(SigMfWriter, TextsOfAnyBytesAreJson) {
  SSigMfFacts facts = Facts();
  facts.strHardware = "a\"\\\n\x01\xFF\xC3\xA4";
  facts.origin.strFile = "\"},{\xE2\x80\xAE.wav";
  EXPECT_EQ(Meta(facts)["global"]["core:hw"], "a\"\\\n\x01\xEF\xBF\xBD\xC3\xA4");
  EXPECT_EQ(Meta(facts)["global"]["carvello:source"]["file"], facts.origin.strFile);
}

TEST(SigMfWriter, EndFitsItsPlaceInTheFirst512BytesWhateverItTells) {
  const SSigMfText built = BuildSigMfMeta(Facts());
  EXPECT_LE(built.nEndPlace + kSigMfEndLength, 512U);
  EXPECT_EQ(built.strText.substr(built.nEndPlace, kSigMfEndLength), std::string(kSigMfEndLength, ' '));
  const std::string hash(128, 'f');
  const auto most = std::numeric_limits<std::int64_t>::max();
  for (const std::string& end :
       {SigMfEndText(0, "", 0), SigMfEndText(most, hash, std::numeric_limits<std::uint64_t>::max()),
        SigMfEndText(5, hash, 0), SigMfEndText(5, "", 6)}) {
    ASSERT_EQ(end.size(), kSigMfEndLength);
    std::string text = built.strText;
    text.replace(built.nEndPlace, end.size(), end);
    EXPECT_TRUE(json::parse(text)["global"].contains("carvello:sample_count"));
    EXPECT_EQ(json::parse(text)["global"]["core:datatype"], "ci16_le");
  }
  std::string text = built.strText;
  text.replace(built.nEndPlace, kSigMfEndLength, SigMfEndText(most, hash, std::numeric_limits<std::uint64_t>::max()));
  const json global = json::parse(text)["global"];
  EXPECT_EQ(global["carvello:sample_count"], most);
  EXPECT_EQ(global["core:sha512"], hash);
  EXPECT_EQ(global["core:trailing_bytes"], std::numeric_limits<std::uint64_t>::max());
}

TEST(SigMfWriter, MetaFileStandsBesideWithItsEnding) {
  EXPECT_EQ(SigMfMetaPath("dir.x/name.wav"), "dir.x/name.sigmf-meta");
  EXPECT_EQ(SigMfMetaPath("dir.x/name.sigmf-data"), "dir.x/name.sigmf-meta");
  EXPECT_EQ(SigMfMetaPath("dir.x/name"), "dir.x/name.sigmf-meta");
  EXPECT_EQ(SigMfMetaPath("dir/.name"), "dir/.name.sigmf-meta");
  EXPECT_EQ(SigMfMetaPath("a.b.c"), "a.b.sigmf-meta");
}

TEST(SigMfWriter, CollectionNamesItsStreamsInOrder) {
  const json collection = json::parse(BuildSigMfCollection("about", {{"b \"x\"", "12"}, {"a", "34"}}))["collection"];
  EXPECT_EQ(collection["core:version"], "1.2.5");
  EXPECT_EQ(collection["core:description"], "about");
  EXPECT_EQ(collection["core:streams"], json::parse(R"([["b \"x\"", "12"], ["a", "34"]])"));
}

}  // namespace
}  // namespace carvello::test
