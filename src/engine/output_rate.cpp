#include "engine/output_rate.h"

namespace carvello {

std::uint32_t WholeNumberDecimation(std::uint32_t inputRate, std::uint32_t outputRate) {
  return static_cast<std::uint32_t>((std::uint64_t{inputRate} + outputRate / 2) / outputRate);
}

std::uint32_t TrueOutputRate(std::uint32_t inputRate, std::uint32_t outputRate) {
  if (outputRate == 0 || outputRate > inputRate) return 0;
  if (!DecimatesByWholeNumber(outputRate)) return outputRate;
  const std::uint64_t decimation = WholeNumberDecimation(inputRate, outputRate);
  return static_cast<std::uint32_t>((inputRate + decimation / 2) / decimation);
}

std::int64_t OutputFramesDue(std::int64_t inputFrames, std::uint32_t inputRate, std::uint32_t outputRate) {
  if (inputFrames <= 0 || outputRate == 0 || outputRate > inputRate) return 0;
  const auto input = static_cast<std::uint64_t>(inputFrames);
  if (DecimatesByWholeNumber(outputRate)) {
    // By the number itself: the true rate is rounded, and would lead away from it in time.
    const std::uint64_t decimation = WholeNumberDecimation(inputRate, outputRate);
    return static_cast<std::int64_t>(input / decimation + (input % decimation != 0 ? 1 : 0));
  }
  // Seconds and rest apart: the product of all frames and a rate could pass 64 bits.
  const std::uint64_t rest = input % inputRate;
  return static_cast<std::int64_t>(input / inputRate * outputRate + (rest * outputRate + inputRate - 1) / inputRate);
}

}  // namespace carvello
