// What a "scan" has found, for scripts, for people and for "cut".
#pragma once

#include <string>

#include "cli/time_span.h"
#include "input/recording_set.h"
#include "overview/recording_scan.h"

namespace carvello {

// One JSON object, indented, with a line break at its end.
std::string ScanReportJson(const SSignalScan& result);
std::string ScanReportText(const SSignalScan& result);
// A job file with an entry for each signal, in the present folder, of as many whole seconds as hold the span. `given`:
// of the input.
std::string ScanJobFile(const SSignalScan& result, const std::string& input, const SGivenFacts& given,
                        const CRecordingSet& recording, const SFrameSpan& span);

}  // namespace carvello
