// Files of samples and nothing else: their kind by the ending of the name, the rest by the name, or a text beside it.
#pragma once

#include <string>

#include "input/foreign_file.h"
#include "support/file.h"

namespace carvello {

// `isGiven`: the user says that it is one, whatever its name. False for a file whose name has no such ending.
bool ReadRaw(CFile& file, const std::string& path, bool isGiven, SForeignFile& found);

}  // namespace carvello
