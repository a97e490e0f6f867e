// How large an output will be: by the samples that it owes, as its account counts them.
#pragma once

#include <cstdint>

#include "engine/input_frames.h"
#include "engine/output_entry.h"

namespace carvello {

// Bytes of samples that a job writes for the entry; headers and metadata, a few kilobytes a file, not counted. 0 for an
// entry that nothing can be made of.
std::int64_t ExpectedBytes(const OutputEntry& entry, const CInputFrames& input);
// Seconds of the input that it takes.
double ExpectedSeconds(const OutputEntry& entry, const CInputFrames& input);

}  // namespace carvello
