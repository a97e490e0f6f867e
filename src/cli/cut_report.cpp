#include "cli/cut_report.h"

#include <algorithm>

#include "support/formatting.h"
#include "support/json_text.h"
#include "support/platform.h"
#include "support/readable.h"
#include "support/text.h"

namespace carvello {
namespace {

void AddOutput(CJsonText& json, const SCutOutput& output) {
  const SOutputResult& result = output.result;
  json.BeginObject();
  json.Member("file", result.strFileName);
  json.Member("files", result.files);
  json.Member("frequency", result.nOutputFrequency);
  json.Member("bandwidth", result.nBandwidth);
  json.Member("bits", result.nBitsPerSample);
  json.Member("frames", result.nFrames);
  json.Member("bytes", result.nBytes);
  json.Member("engine", output.bProcessed ? EngineName(result.engine) : "");
  json.Member("ok", result.bOk);
  json.Member("error", result.strError);
  json.EndObject();
}

// Of all outputs together; empty where no job had any.
std::string EngineOf(const SCutReport& report) {
  std::string engine;
  for (const SCutOutput& output : report.outputs) {
    if (!output.bProcessed) continue;
    const std::string name = EngineName(output.result.engine);
    if (!engine.empty() && engine != name) return "mixed";
    engine = name;
  }
  return engine;
}

std::string State(const SCutOutput& output) {
  if (output.bSkipped) return "exists, skipped";
  if (output.result.state == EOutputState::Stopped) return "stopped";
  return output.result.bOk ? "written" : "FAILED";
}

std::string FilesText(const SOutputResult& result) {
  if (result.files.size() < 2) return platform::NameOf(result.strFileName);
  return Format("%s ... (%zu files)", platform::NameOf(result.files.front()).c_str(), result.files.size());
}

}  // namespace

bool SCutReport::AllOk() const {
  return std::all_of(outputs.begin(), outputs.end(), [](const SCutOutput& output) { return output.result.bOk; });
}

std::string CutReportJson(const SCutReport& report) {
  CJsonText json;
  json.BeginObject();
  json.Key("outputs");
  json.BeginArray();
  for (const SCutOutput& output : report.outputs) AddOutput(json, output);
  json.EndArray();
  json.Member("engine", EngineOf(report));
  json.Member("inputBytes", report.nInputBytes);
  json.Member("elapsedSeconds", report.dElapsedSeconds);
  json.Member("cpuSeconds", report.dCpuSeconds);
  json.EndObject();
  return json.Document();
}

std::string CutReportText(const SCutReport& report) {
  std::vector<std::vector<std::string>> rows = {{"Centre", "Bandwidth", "Bits", "Duration", "Size", "State", "File"}};
  for (const SCutOutput& output : report.outputs) {
    const SOutputResult& result = output.result;
    const double seconds =
        result.nSampleRate == 0 ? 0.0 : static_cast<double>(result.nFrames) / static_cast<double>(result.nSampleRate);
    const bool written = !output.bSkipped;
    rows.push_back({FormatFrequency64(result.nOutputFrequency), FormatFrequency(result.nBandwidth),
                    std::to_string(result.nBitsPerSample), written ? FormatDuration(seconds) : "",
                    written ? FormatBytes(static_cast<double>(result.nBytes)) : "", State(output), FilesText(result)});
  }
  const double rate =
      report.dElapsedSeconds > 0.0 ? static_cast<double>(report.nInputBytes) / report.dElapsedSeconds : 0.0;
  return FormatColumns(rows, "rrrrrll") + Format("Read %s in %.1f s (%s/s), CPU %.1f s.\n",
                                                 FormatBytes(static_cast<double>(report.nInputBytes)).c_str(),
                                                 report.dElapsedSeconds, FormatBytes(rate).c_str(), report.dCpuSeconds);
}

}  // namespace carvello
