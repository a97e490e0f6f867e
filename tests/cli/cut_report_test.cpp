#include "cli/cut_report.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

namespace carvello::test {
namespace {

using nlohmann::json;
using testing::ElementsAre;
using testing::HasSubstr;

SCutOutput Output(const std::string& name, bool ok) {
  SCutOutput output;
  output.result.strFileName = "out/" + name + ".wav";
  output.result.files = {"out/" + name + " 000.wav", "out/" + name + " 001.wav"};
  output.result.nOutputFrequency = 7'100'000;
  output.result.nBandwidth = 10'000;
  output.result.nSampleRate = 10'000;
  output.result.nBitsPerSample = 16;
  output.result.nFrames = 200'000;
  output.result.nBytes = 800'000;
  output.result.bOk = ok;
  output.bProcessed = true;
  if (!ok) output.result.strError = "Error writing 65536 bytes - No space left on device";
  return output;
}

SCutReport Report() {
  SCutReport report;
  report.outputs = {Output("a", true), Output("b", false)};
  report.nInputBytes = 160'000'000;
  report.dElapsedSeconds = 2.0;
  report.dCpuSeconds = 1.5;
  return report;
}

TEST(CutReportJson, HasTheKeysThatScriptsRelyOn) {
  const json object = json::parse(CutReportJson(Report()));
  EXPECT_EQ(object.size(), 5U);
  EXPECT_EQ(object["engine"], "library");
  EXPECT_EQ(object["inputBytes"], 160'000'000);
  EXPECT_EQ(object["elapsedSeconds"], 2.0);
  EXPECT_EQ(object["cpuSeconds"], 1.5);
  ASSERT_EQ(object["outputs"].size(), 2U);
  EXPECT_EQ(object["outputs"][0], json({{"file", "out/a.wav"},
                                        {"files", {"out/a 000.wav", "out/a 001.wav"}},
                                        {"frequency", 7'100'000},
                                        {"bandwidth", 10'000},
                                        {"bits", 16},
                                        {"frames", 200'000},
                                        {"bytes", 800'000},
                                        {"engine", "library"},
                                        {"ok", true},
                                        {"error", ""}}));
  EXPECT_EQ(object["outputs"][1]["ok"], false);
  EXPECT_EQ(object["outputs"][1]["error"], "Error writing 65536 bytes - No space left on device");
}

TEST(CutReportJson, TellsTheEngineOfEveryOutputAndOfAllTogether) {
  SCutReport report = Report();
  report.outputs.push_back(Output("c", true));
  report.outputs[2].bProcessed = false;  // existed, or was never begun
  const auto engines = [&report] {
    const json object = json::parse(CutReportJson(report));
    std::vector<std::string> names = {object["engine"]};
    for (const json& output : object["outputs"]) names.push_back(output["engine"]);
    return names;
  };
  report.outputs[0].result.engine = report.outputs[1].result.engine = EEngine::Spectrum;
  EXPECT_THAT(engines(), ElementsAre("spectrum", "spectrum", "spectrum", ""));
  report.outputs[1].result.engine = EEngine::Library;
  EXPECT_THAT(engines(), ElementsAre("mixed", "spectrum", "library", ""));
  report.outputs[0].bProcessed = report.outputs[1].bProcessed = false;
  EXPECT_THAT(engines(), ElementsAre("", "", "", ""));
}

TEST(CutReportJson, HasAListAlsoWithoutOutputsAndFiles) {
  EXPECT_EQ(json::parse(CutReportJson({}))["outputs"], json::array());
  SCutReport report;
  report.outputs.emplace_back();
  EXPECT_EQ(json::parse(CutReportJson(report))["outputs"][0]["files"], json::array());
}

TEST(CutReportJson, SurvivesTextsThatAreNoUtf8) {
  SCutReport report;
  report.outputs.push_back(Output("\xff\xfe", true));
  EXPECT_THAT(json::parse(CutReportJson(report))["outputs"][0]["file"].get<std::string>(), HasSubstr("\xEF\xBF\xBD"));
}

TEST(CutReportText, ShowsWhatBecameOfEveryOutput) {
  SCutReport report = Report();
  report.outputs.push_back(Output("c", true));
  report.outputs.back().bSkipped = true;
  report.outputs.push_back(Output("d", false));
  report.outputs.back().result.state = EOutputState::Stopped;
  const std::string text = CutReportText(report);
  EXPECT_THAT(text,
              HasSubstr("7.100 MHz     10 kHz    16      0:20  800.0 kB  written          a 000.wav ... (2 files)"));
  EXPECT_THAT(text, HasSubstr("FAILED           b 000.wav"));
  EXPECT_THAT(text, HasSubstr("exists, skipped  c 000.wav"));
  EXPECT_THAT(text, HasSubstr("stopped          d 000.wav"));
  EXPECT_THAT(text, HasSubstr("Read 160.0 MB in 2.0 s (80.0 MB/s), CPU 1.5 s."));
}

TEST(CutReport, IsOkWhenEveryOutputIs) {
  SCutReport report = Report();
  EXPECT_FALSE(report.AllOk());
  report.outputs.pop_back();
  EXPECT_TRUE(report.AllOk());
}

}  // namespace
}  // namespace carvello::test
