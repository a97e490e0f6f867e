// SSigMfPart: the captures of a SigMF recording put together as timelines, each of one frequency and rate.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "input/given_facts.h"
#include "input/sigmf_files.h"
#include "input/sigmf_meta.h"
#include "recording/sample_kind.h"

namespace carvello {

// A capture with the frames that it has in the file.
struct SSigMfStretch {
  const SSigMfCapture* pCapture = nullptr;
  std::optional<SSigMfTime> time;
  std::int64_t nFirst = 0;  // frame of the file
  std::int64_t nFrames = 0;
  std::int64_t nByte = 0;   // of its first frame in the dataset
  std::int64_t nLost = 0;   // frames that were lost before it
  std::int64_t nBegin = 0;  // its first frame, within the part
};

struct SSigMfPart {
  const SSigMfFiles* pFiles = nullptr;
  SSampleKind kind;
  double dToldRate = 0.0;    // 0 when it is not told
  double dSampleRate = 0.0;  // the same, unless another one is given
  std::optional<double> frequency;
  std::optional<SSigMfTime> start;
  std::vector<SSigMfStretch> stretches;  // the first has lost nothing
  std::int64_t nFrames = 0;              // lost ones among them
  std::int64_t nOverlap = 0;             // frames by which captures begin before the ones in front of them end, at most
  // The last stretches that tell an index of samples or a time, by their places above.
  std::optional<std::size_t> indexed;
  std::optional<std::size_t> timed;
};

// The moment so many frames behind another one.
SSigMfTime Later(const SSigMfTime& time, std::int64_t frames, double rate);
// The rate as files tell it; 0 for what is none.
std::uint32_t WholeRate(double rate);

// Adds the parts of one recording behind those of others. `warnings` tell what of its samples is left out.
void AddSigMfParts(const SSigMfFiles& files, const SSampleKind& kind, const SGivenFacts& given,
                   std::vector<SSigMfPart>& parts, std::vector<std::string>& warnings);

}  // namespace carvello
