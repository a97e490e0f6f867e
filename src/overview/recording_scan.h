// What is on the air in a recording: signals that stand out of its noise.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "engine/frame_source.h"
#include "input/recording_set.h"
#include "overview/ordered_work.h"

namespace carvello {

struct SScanRequest {
  std::int64_t nFirstFrame = 0;
  std::int64_t nFrames = 0;
  double dAbove = 10.0;    // dB above the noise
  double dMinWidth = 0.0;  // Hz: what is narrower is left out
  double dRaster = 0.0;    // Hz: frequencies are its multiples; 0 for none
  bool bCentre = false;    // also a bare line at the recording's very centre, where receivers leave one
};

struct SSignal {
  double dFrequency = 0.0;  // Hz, absolute: of the carrier, where there is one, or else of the middle
  double dBandwidth = 0.0;  // Hz
  double dLevel = 0.0;      // dBFS in its band, without the noise, while it is on
  double dSnr = 0.0;        // dB, in its bandwidth
  double dStart = 0.0;      // seconds since 1970 UTC
  double dEnd = 0.0;
  double dOccupancy = 0.0;  // 0 to 1: of the time that was looked at
  // Hz that a cut around its frequency needs so as to hold it. More than its bandwidth where the frequency is not the
  // middle: on a raster, or of a carrier at one side.
  double dHolding = 0.0;

  bool operator==(const SSignal&) const = default;
};

struct SSignalScan {
  double dNoise = 0.0;       // dBFS per Hz, in the middle of all bins
  double dResolution = 0.0;  // Hz
  bool bCentreLeftOut = false;
  std::vector<SSignal> found;  // from the lowest frequency up
};

// Looks at every frame of the span. False when it was ended by `goesOn`, `error` being empty then, or could not be
// read. Throws std::bad_alloc.
bool ScanRecording(const CRecordingSet& recording, IFrameSource& source, const SScanRequest& request,
                   const GoesOn& goesOn, SSignalScan& result, std::string& error);

}  // namespace carvello
