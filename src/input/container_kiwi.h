// KiwiSDR's WAV files with GPS times: the samples stand in many data chunks, a "kiwi" chunk in front of each.
#pragma once

#include <cstdint>

#include "input/foreign_file.h"
#include "support/file.h"

namespace carvello {

// `frameBytes`: of the file's format. Reads the head of every chunk, no samples. False when there is no "kiwi" chunk,
// or no samples, or when the file cannot be read: file.FirstError() tells that.
bool ReadKiwi(CFile& file, std::uint32_t frameBytes, SForeignFile& found);

// The stamp of the first sample in seconds of the GPS week brings the whole seconds of a name to the fraction of a
// second. Nothing when both do not belong to one moment.
std::optional<SExactTime> KiwiStart(std::int64_t nameSeconds, const SGpsTime& gps);

}  // namespace carvello
