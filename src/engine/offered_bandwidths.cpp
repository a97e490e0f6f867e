#include "engine/offered_bandwidths.h"

#include <algorithm>

namespace carvello {
namespace {

// From `start` down by `step` while at least one step remains above `floor`.
struct SBandwidthRow {
  std::uint32_t nStart;
  std::uint32_t nFloor;
  std::uint32_t nStep;
};
constexpr SBandwidthRow kRows[] = {{kUsualBandwidth, 250'000, 25'000},
                                   {250'000, 20'000, 10'000},
                                   {20'000, 2'000, 1'000},
                                   {2'000, 200, 100},
                                   {200, 0, 10}};

}  // namespace

std::vector<std::uint32_t> OfferedBandwidths(std::uint32_t sampleRate) {
  std::vector<std::uint32_t> offered;
  for (std::uint32_t value = sampleRate; value > kUsualBandwidth; value >>= 1) offered.push_back(value);
  for (const SBandwidthRow& row : kRows) {
    for (std::uint32_t value = row.nStart; value >= row.nFloor + row.nStep; value -= row.nStep) {
      if (value <= sampleRate) offered.push_back(value);
    }
  }
  return offered;
}

std::uint32_t OfferedBandwidthFor(double width, std::uint32_t sampleRate) {
  const std::vector<std::uint32_t> offered = OfferedBandwidths(sampleRate);
  if (offered.empty()) return sampleRate;
  const auto found =
      std::find_if(offered.rbegin(), offered.rend(), [&](std::uint32_t value) { return value >= width; });
  return found == offered.rend() ? offered.front() : *found;
}

std::uint32_t BandwidthForSignal(double width, std::uint32_t sampleRate) {
  return OfferedBandwidthFor(width * 11.0 / 10.0, sampleRate);
}

}  // namespace carvello
