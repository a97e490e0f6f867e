// OutputEntry: one narrow-band recording that a job cuts out of the input. Plain data: made by the entry list, read and
// never changed by the workers, and alive until the job has ended.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <tuple>

#include "engine/engine_kind.h"
#include "engine/shared_texts.h"
#include "recording/output_format.h"

namespace carvello {

// Of an entry that computes some of the samples of another one only, the whole entry. See StretchOf.
struct SOutputStretch {
  std::int64_t llOrigin = 0;  // the whole entry's first frame in the recording
  std::int64_t nFirst = 0;    // output samples of the whole entry, [nFirst, nEnd)
  std::int64_t nEnd = 0;
  std::int64_t llReadFrom = 0;        // where reading begins for it
  bool bEndsEntry = false;            // its input ends where that of the whole entry does: silence follows
  EEngine engine = EEngine::Library;  // the road that the whole entry takes

  std::int64_t Samples() const { return nEnd - nFirst; }
};

struct OutputEntry {
  std::uint32_t nFlags = 0;           // 1 when no bandwidth was chosen; read by nothing
  std::uint32_t nBitsPerSample = 16;  // 16 integer, 32 float; anything else writes nothing
  std::uint32_t nFileSizeMB = 0;      // size limit of one part in 1,000,000 bytes; 0 or above 2000: one RF64 file
  EOutputFormat format = EOutputFormat::Wave;
  std::int64_t tReserved = 0;
  std::int64_t tStart = 0;              // seconds since 1970 UTC
  std::int64_t tEnd = 0;                // shown only
  std::uint32_t nStartNanoseconds = 0;  // what tStart leaves out of the time of the first sample
  std::int64_t nReserved = 0;
  std::string strDisplayName;  // file name alone
  std::string strFileName;     // full path
  std::uint32_t nReserved2 = 0;
  CSharedMetadata strMetadata;                         // the input's XML metadata text
  CSharedText strInfo1, strInfo2, strInfo3, strInfo4;  // description texts of the input; read by nothing
  CSharedText strInputName;                            // of the input's first file, without its folder
  std::string strTitle;                                // "%s, BW %s"
  std::int64_t nStartSample = 0;                       // input frames from the first sample of the first file
  std::int64_t nTotalSamples = 0;                      // input frames covered; 0 means to the end of the input
  std::int64_t nInputFrequency = 0;                    // Hz
  std::uint32_t nInputSampleRate = 0;
  std::int64_t nOutputFrequency = 0;  // Hz
  std::uint32_t nOutputSampleRate = 0;
  std::optional<SOutputStretch> stretch;  // nothing: all of its samples
};

// What makes an output's samples what they are. Two entries with the same are one output: sample size and file size do
// not count, so that a list never cuts one stretch of one channel twice.
using OutputKey = std::tuple<std::int64_t, std::uint32_t, std::int64_t, std::int64_t>;

inline OutputKey KeyOf(const OutputEntry& entry) {
  return {entry.nOutputFrequency, entry.nOutputSampleRate, entry.nStartSample, entry.nTotalSamples};
}

// Above this part size an output is one RF64 file: a WAV file's 32-bit sizes would come close to their end.
inline constexpr std::uint32_t kMaxWavSplitMB = 2000;

// Whether the output is one RF64 file, unless it is SigMF.
inline bool IsSingleRf64(const OutputEntry& entry) {
  return entry.nFileSizeMB == 0 || entry.nFileSizeMB > kMaxWavSplitMB;
}

// Whether the samples go into one file; those of every other output are split into numbered WAV files.
inline bool IsOneFile(const OutputEntry& entry) {
  return entry.format == EOutputFormat::SigMf || IsSingleRf64(entry);
}

inline bool HasMeta(const OutputEntry& entry) {
  return entry.format != EOutputFormat::Wave;
}

}  // namespace carvello
