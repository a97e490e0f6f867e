// SDRangel's .sdriq files: a head of 24 or 32 bytes, then samples to the file's end.
#pragma once

#include "input/foreign_file.h"
#include "support/file.h"

namespace carvello {

// Nothing but the ending of the name tells such a file, so it must have been looked at. False when there are not even
// samples behind a head.
bool ReadSdriq(CFile& file, SForeignFile& found);

}  // namespace carvello
