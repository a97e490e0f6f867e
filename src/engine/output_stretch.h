// A part of an entry's samples, computed by itself: the same bits as in a job that computes them all.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "dsp/dsp_binding.h"
#include "engine/engine_kind.h"
#include "engine/input_frames.h"
#include "engine/output_entry.h"

namespace carvello {

// The job of the whole entries.
struct SWholeJob {
  std::int64_t llReadFrom = 0;  // the frame where it begins to read: the first that any of its entries wants
  std::int64_t llLate = 0;      // frames by which all of them begin late, see CInputFrames::Late
};

// Output samples that are due to an entry which is given so many frames of input.
std::int64_t OutputFramesOf(const OutputEntry& entry, std::int64_t inputFrames);

// The entry that computes the samples [first, end) of a whole one only, which goes by this road: its span is the
// stretch of the input that they need. Nothing when there is no such entry; `problem` tells why. Exhausted memory
// raises std::bad_alloc.
std::optional<OutputEntry> StretchOf(const OutputEntry& whole, EEngine engine, const SWholeJob& job, std::int64_t first,
                                     std::int64_t end, const CInputFrames& frames, const DspBinding& dsp,
                                     std::string& problem);

}  // namespace carvello
