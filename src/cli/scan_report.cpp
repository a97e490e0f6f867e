#include "cli/scan_report.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "engine/input_frames.h"
#include "engine/offered_bandwidths.h"
#include "jobs/fact_texts.h"
#include "support/formatting.h"
#include "support/json_text.h"
#include "support/platform.h"
#include "support/readable.h"
#include "support/text.h"

namespace carvello {
namespace {

std::string TimeText(double time) {
  const auto nMilliseconds = static_cast<std::int64_t>(std::llround(time * 1'000.0));
  const std::int64_t nRest = (nMilliseconds % 1'000 + 1'000) % 1'000;
  return FormatIsoTime((nMilliseconds - nRest) / 1'000, static_cast<std::uint32_t>(nRest));
}

std::string WidthText(double width) {
  return width < 1'000.0 ? Format("%.0f Hz", width) : Format("%.1f kHz", width / 1'000.0);
}

}  // namespace

std::string ScanReportJson(const SSignalScan& result) {
  CJsonText json;
  json.BeginObject();
  json.Member("noise", result.dNoise);
  json.Key("signals");
  json.BeginArray();
  for (const SSignal& signal : result.found) {
    json.BeginObject();
    json.Member("frequency", signal.dFrequency);
    json.Member("bandwidth", signal.dBandwidth);
    json.Member("level", signal.dLevel);
    json.Member("snr", signal.dSnr);
    json.Member("start", signal.dStart);
    json.Member("end", signal.dEnd);
    json.Member("occupancy", signal.dOccupancy);
    json.EndObject();
  }
  json.EndArray();
  json.EndObject();
  return json.Document();
}

std::string ScanReportText(const SSignalScan& result) {
  std::vector<std::vector<std::string>> rows;
  if (!result.found.empty()) rows.push_back({"Frequency", "Bandwidth", "Level", "SNR", "On", "From", "To"});
  for (const SSignal& signal : result.found) {
    rows.push_back({Format("%.1f kHz", signal.dFrequency / 1'000.0), WidthText(signal.dBandwidth),
                    Format("%.1f dBFS", signal.dLevel), Format("%.1f dB", signal.dSnr),
                    Format("%.1f %%", signal.dOccupancy * 100.0), TimeText(signal.dStart), TimeText(signal.dEnd)});
  }
  const std::size_t nSignals = result.found.size();
  return FormatColumns(rows, "rrrrr") + Format("%zu signal%s, noise %.1f dBFS in 1 Hz, resolution %.0f Hz\n", nSignals,
                                               nSignals == 1 ? "" : "s", result.dNoise, result.dResolution);
}

std::string ScanJobFile(const SSignalScan& result, const std::string& input, const SGivenFacts& given,
                        const CRecordingSet& recording, const SFrameSpan& span) {
  const std::int64_t nRate = recording.nSampleRate;
  const std::int64_t nStart = span.nFirst / nRate;
  const std::int64_t nEnd = (span.nFirst + span.nCount + nRate - 1) / nRate;
  const bool bToTheEnd =
      span.nFirst + span.nCount >= CInputFrames(recording).Total() || nEnd >= recording.tEnd - recording.tStart;
  CJsonText json;
  json.BeginObject();
  json.Member("input", platform::AbsolutePath(input));
  json.Member("output", ".");
  for (const auto& [name, text] : TextsOfFacts(given)) json.Member(name, text);
  json.Key("entries");
  json.BeginArray();
  for (const SSignal& signal : result.found) {
    json.BeginObject();
    json.Member("frequency", static_cast<std::int64_t>(std::llround(signal.dFrequency)));
    json.Member("bandwidth", BandwidthForSignal(signal.dHolding, recording.nSampleRate));
    if (nStart > 0) json.Member("start", nStart);
    if (!bToTheEnd) json.Member("end", nEnd);
    json.EndObject();
  }
  json.EndArray();
  json.EndObject();
  return json.Document();
}

}  // namespace carvello
