// A short cut in memory: a carrier out of a band, by the way that every entry of the downconverter library goes. How
// fast it is, and whether what comes out is what must.
#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "dsp/dsp_binding.h"

namespace carvello {

struct STrialCut {
  static constexpr std::uint32_t kInputRate = 2'000'000;
  static constexpr std::uint32_t kOutputRate = 10'000;

  unsigned nThreads = 0;     // that cut at the same time, an entry each
  double fFrameRate = 0;     // frames of the input a second, of all threads together
  std::int64_t nFrames = 0;  // that one entry came to
  std::string strNotTried;   // why it could not be tried; everything else is 0 then
  std::string strWrong;      // what is wrong with the result; empty when it is right
};

// `threads`: at least 1; fewer are used where the system gives no more. The library is bound and started.
STrialCut TryCut(const DspBinding& dsp, unsigned threads);

// What is wrong with the output of a carrier of `level` that was shifted to 0 Hz; empty when nothing is.
std::string CarrierProblem(std::span<const SComplex> output, std::int64_t framesDue, float level);

}  // namespace carvello
