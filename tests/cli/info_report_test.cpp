#include "cli/info_report.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

namespace carvello::test {
namespace {

using nlohmann::json;
using testing::HasSubstr;

CRecordingSet Recording() {
  CRecordingSet recording;
  recording.strSourceName = "Halvarn (V3)";
  recording.files = {{"in 000.wav", 800, 0}, {"in 001.wav", 5'000'000'000, 0}};
  recording.nTotalMillions = 5000;
  recording.nTotalRemainder = 800;
  recording.tStart = 1'795'262'400;
  recording.tEnd = 1'795'262'410;
  recording.nEndMilliseconds = 250;
  recording.dDuration = 10.25;
  recording.nRadioCenterFreq = 7'100'000;
  recording.nSampleRate = 2'000'000;
  recording.nBandwidth = 1'800'000;
  recording.nBitsPerSample = 32;
  recording.bFloat = true;
  recording.kind = MakeSampleKind(ENumber::Float, 32);
  recording.bRF64 = true;
  recording.metadata.names = {"SampleRate", "RadioModel", "SampleRate"};
  recording.metadata.values = {"2000000", "Model Ω", "1"};
  return recording;
}

const SInfoTexts kTexts{"product", "artist", "comment", "rights", "name"};

TEST(InfoJson, HasTheKeysThatScriptsRelyOn) {
  EXPECT_EQ(
      json::parse(InfoJson(Recording(), kTexts)),
      json({{"source", "Halvarn (V3)"},
            {"files", {"in 000.wav", "in 001.wav"}},
            {"fileCount", 2},
            {"dataBytes", {800, 5'000'000'000}},
            {"totalBytes", 5'000'000'800},
            {"sampleRate", 2'000'000},
            {"centreFrequency", 7'100'000},
            {"bandwidth", 1'800'000},
            {"bitsPerSample", 32},
            {"sampleFormat", "float"},
            {"sampleType", "cf32_le"},
            {"container", "RF64"},
            {"startUtc", 1'795'262'400},
            {"endUtc", 1'795'262'410},
            {"startMilliseconds", 0},
            {"startNanoseconds", 0},
            {"endMilliseconds", 250},
            {"seconds", 10.25},
            {"rf64", true},
            {"unfinishedFiles", json::array()},
            {"infoTexts",
             {{"IPRD", "product"}, {"IART", "artist"}, {"ICMT", "comment"}, {"ICOP", "rights"}, {"INAM", "name"}}},
            {"metadata", {{"SampleRate", "2000000"}, {"RadioModel", "Model Ω"}}}}));
}

TEST(InfoJson, HasAnEmptyObjectWithoutMetadata) {
  CRecordingSet recording = Recording();
  recording.metadata = {};
  recording.bFloat = false;
  const json object = json::parse(InfoJson(recording, {}));
  EXPECT_EQ(object["metadata"], json::object());
  EXPECT_EQ(object["sampleFormat"], "pcm");
  EXPECT_EQ(object["infoTexts"]["INAM"], "");
}

TEST(InfoText, ShowsTheSameForAPerson) {
  const std::string text = InfoText(Recording(), kTexts);
  for (const char* part : {"Halvarn (V3)", "7.100 MHz", "2 MHz", "1.800 MHz", "32 bit float, RF64",
                           "2026-11-21T12:00:00Z", "2026-11-21T12:00:10.250Z", "0:10", "5.00 GB", "Total files     2",
                           "in 000.wav (800 B)", "in 001.wav", "artist", "Model Ω"}) {
    EXPECT_THAT(text, HasSubstr(part));
  }
}

TEST(InfoText, CannotMoveATerminalsCursor) {
  CRecordingSet recording = Recording();
  recording.metadata.values[0] = "a\x1B[2J\nb";
  recording.files[0].strPath = "in\x1B.wav";
  SInfoTexts texts;
  texts.strIART = "artist\r";
  const std::string text = InfoText(recording, texts);
  EXPECT_THAT(text, HasSubstr("a\\x1B[2J\\nb"));
  EXPECT_THAT(text, HasSubstr("in\\x1B.wav"));
  EXPECT_THAT(text, HasSubstr("artist\\r"));
}

}  // namespace
}  // namespace carvello::test
