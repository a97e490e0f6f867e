// SSampleLayout: where the samples lie in a file.
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

namespace carvello {

// Frames that follow each other at one distance: all in one piece, or in pieces of the same size with something else
// between them. Or frames that were lost: they are read as zeros, so that what follows keeps its time.
struct SSampleRun {
  static constexpr std::int64_t kSilence = -1;
  static constexpr std::int64_t kOnePiece = std::numeric_limits<std::int64_t>::max();

  std::int64_t nOffset = 0;  // byte at which the first frame begins; kSilence for frames that were lost
  std::int64_t nFrames = 0;  // of all pieces; the last of them may be shorter
  std::int64_t nPieceFrames = kOnePiece;
  std::int64_t nStride = 0;  // bytes from piece to piece

  bool IsSilence() const { return nOffset == kSilence; }
  bool operator==(const SSampleRun&) const = default;
};

// In the order of their time.
struct SSampleLayout {
  std::vector<SSampleRun> runs;

  SSampleLayout() = default;
  // All samples of a file in one piece.
  SSampleLayout(std::int64_t offset, std::int64_t frames) : runs{{offset, frames}} {}

  std::int64_t Frames() const {
    std::int64_t frames = 0;
    for (const SSampleRun& run : runs) frames += run.nFrames;
    return frames;
  }
  bool operator==(const SSampleLayout&) const = default;
};

}  // namespace carvello
