// The bandwidths of outputs that are offered to choose from, and the one that fits a signal.
#pragma once

#include <cstdint>
#include <vector>

namespace carvello {

// The widest of those that do not depend on the recording, and what is taken where nothing else was chosen.
inline constexpr std::uint32_t kUsualBandwidth = 1'000'000;

// Bandwidths in Hz that a recording of this sample rate can be cut to, from the widest down.
std::vector<std::uint32_t> OfferedBandwidths(std::uint32_t sampleRate);

// The smallest one offered that is at least `width` Hz wide; the widest where none is.
std::uint32_t OfferedBandwidthFor(double width, std::uint32_t sampleRate);

// The same for a signal: an output is flat over the inner nine tenths of its bandwidth, so it is a tenth wider at
// least.
std::uint32_t BandwidthForSignal(double width, std::uint32_t sampleRate);

}  // namespace carvello
