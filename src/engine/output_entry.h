// OutputEntry: one narrow-band recording that a job cuts out of the input. Plain data: made by the entry list, read and
// never changed by the workers, and alive until the job has ended.
#pragma once

#include <cstdint>
#include <string>

namespace carvello {

struct OutputEntry {
  std::uint32_t nFlags = 0;           // 1 when no bandwidth was chosen; read by nothing
  std::uint32_t nBitsPerSample = 16;  // 16 integer, 32 float; anything else writes nothing
  std::uint32_t nFileSizeMB = 0;      // size limit of one part in 1,000,000 bytes; 0 or above 2000: one RF64 file
  std::int64_t tReserved = 0;
  std::int64_t tStart = 0;  // seconds since 1970 UTC
  std::int64_t tEnd = 0;    // shown only
  std::int64_t nReserved = 0;
  std::string strDisplayName;  // file name alone
  std::string strFileName;     // full path
  std::uint32_t nReserved2 = 0;
  std::string strMetadata;                             // the input's XML metadata text
  std::string strInfo1, strInfo2, strInfo3, strInfo4;  // description texts of the input; read by nothing
  std::string strTitle;                                // "%s, BW %s"
  std::int64_t nStartSample = 0;                       // input frames from the first sample of the first file
  std::int64_t nTotalSamples = 0;                      // input frames covered; 0 means to the end of the input
  std::int64_t nInputFrequency = 0;                    // Hz
  std::uint32_t nInputSampleRate = 0;
  std::int64_t nOutputFrequency = 0;  // Hz
  std::uint32_t nOutputSampleRate = 0;
};

}  // namespace carvello
