#include "jobs/entry_spec.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace carvello::test {
namespace {

using testing::HasSubstr;

std::string Refusal(const std::string& text) {
  SEntrySpec spec;
  std::string error;
  EXPECT_FALSE(ParseEntry(text, spec, error)) << text;
  return error;
}

TEST(ParseEntry, ReadsEveryKey) {
  SEntrySpec spec;
  std::string error;
  ASSERT_TRUE(ParseEntry("f=7.1M,bw=10k,bits=32,size=1GB,start=+60,end=2026-11-21T12:00:00Z", spec, error)) << error;
  EXPECT_EQ(spec.frequency, 7'100'000);
  EXPECT_EQ(spec.bandwidth, 10'000);
  EXPECT_TRUE(spec.b32Bit);
  EXPECT_EQ(spec.nFileSizeMB, 1000U);
  EXPECT_EQ(spec.start->Resolve(1000), 1060);
  EXPECT_EQ(spec.end->Resolve(1000), 1'795'262'400);
  EXPECT_FALSE(spec.duration);
  EXPECT_FALSE(spec.range);
}

TEST(ParseEntry, HasDefaults) {
  SEntrySpec spec;
  std::string error;
  ASSERT_TRUE(ParseEntry("bw=10k,f=7.1M", spec, error)) << error;
  EXPECT_FALSE(spec.b32Bit);
  EXPECT_EQ(spec.nFileSizeMB, 100U);
  EXPECT_FALSE(spec.start);
  EXPECT_FALSE(spec.end);
  EXPECT_FALSE(spec.duration);
}

TEST(ParseEntry, ReadsADuration) {
  SEntrySpec spec;
  std::string error;
  ASSERT_TRUE(ParseEntry("f=7.1M,bw=10k,duration=0:10", spec, error)) << error;
  EXPECT_EQ(spec.duration, 600U);
}

TEST(ParseEntry, NamesTheKeyAndWhatIsAccepted) {
  EXPECT_THAT(Refusal("f=abc,bw=10k"), AllOf(HasSubstr("f \"abc\""), HasSubstr("7.1M")));
  EXPECT_THAT(Refusal("f=7.1M,bw=0.5"), AllOf(HasSubstr("bw \"0.5\""), HasSubstr("whole Hz")));
  EXPECT_THAT(Refusal("f=7.1M,bw=10k,bits=24"), AllOf(HasSubstr("bits \"24\""), HasSubstr("16 or 32")));
  EXPECT_THAT(Refusal("f=7.1M,bw=10k,size=2GB"), AllOf(HasSubstr("size \"2GB\""), HasSubstr("100MB, 1GB or RF64")));
  EXPECT_THAT(Refusal("f=7.1M,bw=10k,start=2026-11-21"), AllOf(HasSubstr("start"), HasSubstr("zone")));
  EXPECT_THAT(Refusal("f=7.1M,bw=10k,end=90"), AllOf(HasSubstr("end"), HasSubstr("+SECONDS")));
  EXPECT_THAT(Refusal("f=7.1M,bw=10k,duration=1h"), AllOf(HasSubstr("duration"), HasSubstr("H:MM:SS")));
}

TEST(ParseEntry, RefusesUnknownKeysAndListsTheKnown) {
  EXPECT_THAT(Refusal("f=7.1M,bw=10k,colour=red"),
              AllOf(HasSubstr("\"colour\""), HasSubstr("f, bw, bits, size, format, start, end, duration")));
  EXPECT_THAT(Refusal("F=7.1M,bw=10k"), HasSubstr("\"F\""));
  EXPECT_THAT(Refusal("frequency=7.1M,bw=10k"), HasSubstr("\"frequency\""));
}

TEST(ParseEntry, RefusesAKeyThatComesTwice) {
  EXPECT_THAT(Refusal("f=7.1M,bw=10k,f=7.2M"), HasSubstr("\"f\" is given twice"));
}

TEST(ParseEntry, RefusesWhatIsNoKeyAndValue) {
  for (const char* text : {"", "f", "f=7.1M,bw=10k,", ",f=7.1M,bw=10k", "f=7.1M,,bw=10k", "7.1M"}) {
    EXPECT_THAT(Refusal(text), HasSubstr("key=value")) << text;
  }
  EXPECT_THAT(Refusal("f=,bw=10k"), HasSubstr("f \"\""));
  EXPECT_THAT(Refusal("=7.1M,bw=10k"), HasSubstr("unknown key \"\""));
  EXPECT_THAT(Refusal("f=7.1M,bw=10k,output=x"), HasSubstr("unknown key \"output\""));
}

TEST(ParseEntry, NeedsACentreAndABandwidth) {
  EXPECT_THAT(Refusal("f=7.1M"), HasSubstr("bw is missing"));
  EXPECT_THAT(Refusal("bw=10k"), HasSubstr("f is missing"));
}

TEST(ParseEntry, EndAndDurationExcludeEachOther) {
  EXPECT_THAT(Refusal("f=7.1M,bw=10k,end=+5,duration=5"), HasSubstr("exclude each other"));
}

TEST(ParseFrequencyRange, ReadsThreeFrequencies) {
  SFrequencyRange range;
  std::string error;
  ASSERT_TRUE(ParseFrequencyRange("900k:920k:10k", range, error)) << error;
  EXPECT_EQ(range.nFrom, 900'000);
  EXPECT_EQ(range.nTo, 920'000);
  EXPECT_EQ(range.nStep, 10'000);
  EXPECT_EQ(range.Count(), 3);
}

TEST(ParseFrequencyRange, CountsTheSameTheOtherWayRound) {
  SFrequencyRange range;
  std::string error;
  ASSERT_TRUE(ParseFrequencyRange("925k:900k:10k", range, error)) << error;
  EXPECT_EQ(range.Count(), 3);
  ASSERT_TRUE(ParseFrequencyRange("-10k:10k:5k", range, error)) << error;
  EXPECT_EQ(range.Count(), 5);
  ASSERT_TRUE(ParseFrequencyRange("5k:5k:1", range, error)) << error;
  EXPECT_EQ(range.Count(), 1);
}

TEST(ParseFrequencyRange, RefusesOtherForms) {
  for (const char* text : {"", "900k", "900k:920k", "900k:920k:", "900k::10k", ":920k:10k", "900k:920k:10k:1", "a:b:c",
                           "900k:920k:0", "900k:920k:-10k", "900k:920k:0.5"}) {
    SFrequencyRange range;
    std::string error;
    EXPECT_FALSE(ParseFrequencyRange(text, range, error)) << text;
    EXPECT_THAT(error, HasSubstr("FROM:TO:STEP"));
  }
}

TEST(ParseFrequencyRange, RefusesAbsurdCounts) {
  SFrequencyRange range;
  std::string error;
  EXPECT_TRUE(ParseFrequencyRange("0:99999:1", range, error));
  EXPECT_FALSE(ParseFrequencyRange("0:100000:1", range, error));
  EXPECT_THAT(error, HasSubstr("100001 entries"));
  EXPECT_FALSE(ParseFrequencyRange("-1000G:1000G:1", range, error));
}

}  // namespace
}  // namespace carvello::test
