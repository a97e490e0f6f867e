// From what a scan kept of the spectra to a list of signals.
#pragma once

#include "overview/recording_scan.h"
#include "overview/scan_statistics.h"

namespace carvello {

// `least`: noise power of a bin that no recording falls below.
void DescribeSignals(const SScanGrid& grid, const SScanStatistics& statistics, const SScanThresholds& thresholds,
                     const SScanRequest& request, const CRecordingSet& recording, double least, SSignalScan& result);

}  // namespace carvello
