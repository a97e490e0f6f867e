// What must hold of samples that were found in a file, whatever it says.
#pragma once

#include "fuzz_checks.h"
#include "input/sample_layout.h"

namespace carvello::fuzz {

// All frames lie within the file, and no byte is in two of them.
inline void RequireWithin(const SSampleLayout& layout, std::int64_t frameBytes, std::int64_t length) {
  std::int64_t end = 0;
  Require(!layout.runs.empty());
  for (const SSampleRun& run : layout.runs) {
    Require(run.nFrames > 0);
    if (run.IsSilence()) continue;
    Require(run.nOffset >= end && run.nPieceFrames > 0);
    const std::int64_t piecesBefore = (run.nFrames - 1) / run.nPieceFrames;
    Require(piecesBefore == 0 || run.nStride >= run.nPieceFrames * frameBytes);
    end = run.nOffset + piecesBefore * run.nStride + (run.nFrames - piecesBefore * run.nPieceFrames) * frameBytes;
    Require(end <= length);
  }
}

}  // namespace carvello::fuzz
