// Binary "auxi" blocks. Their size tells which program, and which version of it, wrote them.
#pragma once

#include <string_view>

#include "input/recording_source_info.h"

namespace carvello {

// Name, times and frequencies from a block of 28, 44, 68, 72 or 164 bytes; the record's format and data size are set
// already. False for any other size. Raises the failure or the invalid-argument error for a local time that cannot be.
bool ReadAuxiBlock(std::string_view auxi, bool elad, RecordingSourceInfo& source);

}  // namespace carvello
