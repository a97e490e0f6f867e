#include "cli/synth_settings.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>

namespace carvello::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

SSynthSettings Accepted(const SSynthOptions& options) {
  SSynthSettings settings;
  std::string error;
  EXPECT_TRUE(MakeSynthSettings(options, settings, error)) << error;
  return settings;
}

std::string Refusal(const std::function<void(SSynthOptions&)>& change) {
  SSynthOptions options;
  options.strPath = "out.wav";
  change(options);
  SSynthSettings settings;
  std::string error;
  EXPECT_FALSE(MakeSynthSettings(options, settings, error));
  return error;
}

TEST(SynthSettings, HaveADefaultForEverything) {
  SSynthOptions options;
  options.strPath = "out.wav";
  const SSynthSettings settings = Accepted(options);
  EXPECT_EQ(settings.nSampleRate, 2'000'000U);
  EXPECT_EQ(settings.nCentre, 7'100'000);
  EXPECT_EQ(settings.nFrames, 20'000'000);
  EXPECT_EQ(settings.nFiles, 1U);
  EXPECT_EQ(settings.format, ESynthFormat::Pcm16);
  EXPECT_FALSE(settings.bRf64);
  EXPECT_EQ(settings.tStart, 1'767'225'600);
  ASSERT_EQ(settings.stations.size(), 1U);
  EXPECT_EQ(settings.stations[0].nFrequency, 7'350'000);
  EXPECT_TRUE(settings.stations[0].bAm);
  EXPECT_EQ(settings.noise, -60.0);
}

TEST(SynthSettings, HaveOnlyTheSignalsAskedFor) {
  SSynthOptions options;
  options.strPath = "out.wav";
  options.stations = {"7.1M:-20"};
  EXPECT_FALSE(Accepted(options).noise);
  options.stations.clear();
  options.strNoise = "-30";
  EXPECT_TRUE(Accepted(options).stations.empty());
}

TEST(SynthSettings, ReadStations) {
  SSynthOptions options;
  options.strPath = "out.wav";
  options.stations = {"7.1M:-20", "7.2M:-3.5:tone", "6900k:0:am"};
  const SSynthSettings settings = Accepted(options);
  ASSERT_EQ(settings.stations.size(), 3U);
  EXPECT_EQ(settings.stations[0].nFrequency, 7'100'000);
  EXPECT_EQ(settings.stations[0].dLevel, -20.0);
  EXPECT_FALSE(settings.stations[0].bAm);
  EXPECT_EQ(settings.stations[1].dLevel, -3.5);
  EXPECT_FALSE(settings.stations[1].bAm);
  EXPECT_TRUE(settings.stations[2].bAm);
}

TEST(SynthSettings, ReadEveryFormat) {
  const std::pair<const char*, std::uint32_t> kFormats[] = {
      {"8", 8}, {"16", 16}, {"24", 24}, {"32", 32}, {"float", 32}};
  for (const auto& [name, bits] : kFormats) {
    SSynthOptions options;
    options.strPath = "out.wav";
    options.strBits = name;
    EXPECT_EQ(BitsOf(Accepted(options).format), bits);
  }
}

TEST(SynthSettings, CountFramesExactly) {
  SSynthOptions options;
  options.strPath = "out.wav";
  options.strRate = "44100";
  options.strSeconds = "0.5";
  EXPECT_EQ(Accepted(options).nFrames, 22'050);
  options.strSeconds = "0.1";
  EXPECT_EQ(Accepted(options).nFrames, 4410);
  options.strRate = "500M";
  options.strSeconds = "999999.999999999";
  options.bRf64 = true;
  EXPECT_EQ(Accepted(options).nFrames, 499'999'999'999'999);
}

TEST(SynthSettings, NameTheOptionAndWhatIsAccepted) {
  EXPECT_THAT(Refusal([](SSynthOptions& o) { o.strRate = "0"; }), AllOf(HasSubstr("--rate \"0\""), HasSubstr("500M")));
  EXPECT_THAT(Refusal([](SSynthOptions& o) { o.strRate = "501M"; }), HasSubstr("--rate"));
  EXPECT_THAT(Refusal([](SSynthOptions& o) { o.strCentre = "x"; }), AllOf(HasSubstr("--centre"), HasSubstr("7.1M")));
  EXPECT_THAT(Refusal([](SSynthOptions& o) { o.strSeconds = "1:00"; }),
              AllOf(HasSubstr("--seconds"), HasSubstr("0.5")));
  EXPECT_THAT(Refusal([](SSynthOptions& o) { o.strSeconds = "0"; }), HasSubstr("--seconds"));
  EXPECT_THAT(Refusal([](SSynthOptions& o) { o.strBits = "12"; }), HasSubstr("8, 16, 24, 32 or float"));
  EXPECT_THAT(Refusal([](SSynthOptions& o) { o.strFiles = "0"; }), AllOf(HasSubstr("--files"), HasSubstr("1 to 1000")));
  EXPECT_THAT(Refusal([](SSynthOptions& o) { o.strFiles = "1001"; }), HasSubstr("--files"));
  EXPECT_THAT(Refusal([](SSynthOptions& o) { o.strStart = "2026-01-01"; }),
              AllOf(HasSubstr("--start"), HasSubstr("zone")));
  EXPECT_THAT(Refusal([](SSynthOptions& o) { o.strStart = "1969-01-01T00:00:00Z"; }), HasSubstr("from 1970 to 2106"));
  EXPECT_THAT(Refusal([](SSynthOptions& o) { o.strStart = "2106-02-07T06:28:16Z"; }), HasSubstr("from 1970 to 2106"));
  EXPECT_THAT(Refusal([](SSynthOptions& o) { o.strSeed = "-1"; }), HasSubstr("--seed"));
  EXPECT_THAT(Refusal([](SSynthOptions& o) { o.strNoise = "loud"; }),
              AllOf(HasSubstr("--noise"), HasSubstr("decibels")));
}

TEST(SynthSettings, RefuseStationsThatAreNone) {
  for (const char* text : {"", "7.1M", "7.1M:", ":-20", "7.1M:-20:", "7.1M:-20:fm", "7.1M:-20:am:1", "x:-20"}) {
    EXPECT_THAT(Refusal([text](SSynthOptions& o) { o.stations = {text}; }),
                AllOf(HasSubstr("--station"), HasSubstr("FREQ:DBFS:am")))
        << text;
  }
}

TEST(SynthSettings, RefuseStationsOutsideTheBand) {
  SSynthOptions options;
  options.strPath = "out.wav";
  options.stations = {"6.1M:-20", "8.1M:-20"};  // the edges belong to it
  EXPECT_EQ(Accepted(options).stations.size(), 2U);
  EXPECT_THAT(Refusal([](SSynthOptions& o) { o.stations = {"8100001:-20"}; }), HasSubstr("6100000 to 8100000"));
  EXPECT_THAT(Refusal([](SSynthOptions& o) { o.stations = {"6099999:-20"}; }), HasSubstr("6100000 to 8100000"));
}

TEST(SynthSettings, RefuseMoreThanAWavFileHolds) {
  const auto longOne = [](SSynthOptions& o) { o.strSeconds = "600"; };
  EXPECT_THAT(Refusal(longOne), AllOf(HasSubstr("--files"), HasSubstr("--rf64")));
  SSynthOptions options;
  options.strPath = "out.wav";
  longOne(options);
  options.strFiles = "2";
  EXPECT_EQ(Accepted(options).nFiles, 2U);
  options.strFiles = "1";
  options.bRf64 = true;
  EXPECT_TRUE(Accepted(options).bRf64);
}

TEST(SynthFiles, OneFileKeepsItsName) {
  SSynthSettings settings;
  settings.strPath = "any name";
  EXPECT_THAT(SynthFiles(settings), ElementsAre("any name"));
}

TEST(SynthFiles, SeveralAreNumberedBeforeTheExtension) {
  SSynthSettings settings;
  settings.strPath = "dir.x/re.c.WAV";
  settings.nFiles = 3;
  EXPECT_THAT(SynthFiles(settings), ElementsAre("dir.x/re.c 000.WAV", "dir.x/re.c 001.WAV", "dir.x/re.c 002.WAV"));
}

TEST(SynthFiles, SeveralNeedAWavName) {
  EXPECT_THAT(Refusal([](SSynthOptions& o) {
                o.strPath = "out.dat";
                o.strFiles = "2";
              }),
              AllOf(HasSubstr("OUT \"out.dat\""), HasSubstr(".wav")));
}

TEST(SynthFrames, AreSpreadEvenlyAndAllThere) {
  SSynthSettings settings;
  settings.nFrames = 11;
  settings.nFiles = 3;
  EXPECT_EQ(SynthFrames(settings, 0), 4);
  EXPECT_EQ(SynthFrames(settings, 1), 4);
  EXPECT_EQ(SynthFrames(settings, 2), 3);
}

}  // namespace
}  // namespace carvello::test
