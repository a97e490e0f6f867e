// SRecordingDescription: what an output recording is, as its writer describes it.
#pragma once

#include <cstdint>
#include <string>

#include "recording/output_format.h"
#include "recording/sigmf_writer.h"

namespace carvello {

struct SRecordingDescription {
  std::string strTitle;
  std::string strRadioModel;
  std::string strRadioSerial;
  std::uint32_t nADFrequency = 0;     // Hz
  std::int64_t nRadioCenterFreq = 0;  // Hz
  std::uint32_t nSampleRate = 0;      // frames/s
  std::uint32_t nBitsPerSample = 16;  // 16 integer, 32 float
  std::int32_t nDualMode = 0;
  std::int64_t tStart = 0;            // seconds since 1970 UTC of the first sample
  bool bStartValid = false;           // else the moment of opening stands for it
  std::int32_t nBackdateSeconds = 0;  // subtracted once from the start at the next Open
  EOutputFormat format = EOutputFormat::Wave;
  // What meta files tell besides:
  std::uint32_t nStartNanoseconds = 0;  // behind tStart
  std::uint32_t nBandwidth = 0;         // Hz
  std::int64_t nGlobalIndex = 0;        // of the first sample, counted at nSampleRate
  SCutOrigin origin;
  bool bRF64 = false;
  std::uint32_t nSplitMB = 0;     // size limit of a file in units of 1,000,000 bytes; 0 means one file
  std::uint32_t nMaxSeconds = 0;  // wall-clock limit; 0 means none
};

}  // namespace carvello
