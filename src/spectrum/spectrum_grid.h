// The grid on which the frames of spectrum stand. Positions are in samples of the recording, counted from its first
// one.
//
// Frame j is the transform of the kFrameSize samples from FrameFirst(j) on and answers for the times from j * kFrameHop
// to (j + 1) * kFrameHop; kFrameMargin more samples on either side are there for filters. The grid belongs to the
// recording: where a job begins, how its input is cut into blocks and which entries there are changes no frame.
#pragma once

#include <cstdint>

namespace carvello {

inline constexpr std::int64_t kFrameSize = 16'384;                     // samples of a frame, and bins of its spectrum
inline constexpr std::int64_t kFrameOverlap = 4'096;                   // samples that a frame shares with the next one
inline constexpr std::int64_t kFrameHop = kFrameSize - kFrameOverlap;  // from a frame to the next one
inline constexpr std::int64_t kFrameMargin = kFrameOverlap / 2;

// Decimations that leave a frame's hop and margin whole: powers of two up to this one.
inline constexpr std::int64_t kLargestBandDecimation = 256;
static_assert(kFrameHop % kLargestBandDecimation == 0 && kFrameMargin % kLargestBandDecimation == 0);

// The quotient rounded down, also below 0; the divisor is positive.
constexpr std::int64_t FloorDivide(std::int64_t dividend, std::int64_t divisor) {
  return dividend / divisor - (dividend % divisor < 0 ? 1 : 0);
}

// The first of the frame's samples; in front of the recording for frame 0 and those before it.
constexpr std::int64_t FrameFirst(std::int64_t frame) {
  return frame * kFrameHop - kFrameMargin;
}
// Behind the last of the frame's samples.
constexpr std::int64_t FrameEnd(std::int64_t frame) {
  return FrameFirst(frame) + kFrameSize;
}
// The frame that answers for the time.
constexpr std::int64_t FrameOfTime(std::int64_t time) {
  return FloorDivide(time, kFrameHop);
}
// The first and the last frame that have the sample among theirs.
constexpr std::int64_t FirstFrameWith(std::int64_t sample) {
  return FloorDivide(sample + kFrameMargin - kFrameSize, kFrameHop) + 1;
}
constexpr std::int64_t LastFrameWith(std::int64_t sample) {
  return FloorDivide(sample + kFrameMargin, kFrameHop);
}
// The first frame that is not complete when all samples before `end` are there.
constexpr std::int64_t FirstIncompleteFrame(std::int64_t end) {
  return FloorDivide(end + kFrameMargin - kFrameSize, kFrameHop) + 1;
}

}  // namespace carvello
