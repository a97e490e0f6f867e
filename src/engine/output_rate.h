// What the downconverter makes of an input rate and the rate asked for: the rate that an output really has, and how
// many samples it owes for its stretch of the input.
#pragma once

#include <cstdint>

namespace carvello {

// Above this output rate the downconverter is made to decimate by whole numbers only.
inline constexpr std::uint32_t kMaxFractionalRate = 1'000'000;

inline bool DecimatesByWholeNumber(std::uint32_t outputRate) {
  return outputRate > kMaxFractionalRate;
}

// The whole number nearest to the ratio of the rates, by which it then decimates. Neither rate is 0.
std::uint32_t WholeNumberDecimation(std::uint32_t inputRate, std::uint32_t outputRate);

// The rate that the samples really have, rounded to whole Hz: with whole-number decimation it can differ from the one
// asked for (1.5 MHz out of 2.4 MHz gives 1.2 MHz). 0 where the downconverter has none: it does not raise a rate, and
// there is no rate of 0.
std::uint32_t TrueOutputRate(std::uint32_t inputRate, std::uint32_t outputRate);

// Output frames whose time lies within the first `inputFrames` of a stretch of the input. `outputRate` is the one asked
// for. 0 where there is no true rate.
std::int64_t OutputFramesDue(std::int64_t inputFrames, std::uint32_t inputRate, std::uint32_t outputRate);

}  // namespace carvello
