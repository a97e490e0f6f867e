// Recordings without metadata of their own: what their names and file times tell.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "input/recording_source_info.h"

namespace carvello {

// Name, times and centre frequency; the record's format and data size are set already. False when the name does not
// tell, or the file is no I/Q pair with samples. `created`: when the file came into being, where the caller knows.
// Raises the failure or the invalid-argument error for a date in the name that cannot be.
bool ReadFileName(const std::string& fileName, std::optional<std::int64_t> created, RecordingSourceInfo& source);

}  // namespace carvello
