// Sets with the maker's XML metadata: files of one recording, numbered " 000.wav", " 001.wav", ...
#pragma once

#include <string>

#include "input/lookup_cache.h"
#include "input/recording_set.h"
#include "support/my_string_array.h"

namespace carvello {

// Describes the set of the selected file from its first member to the first number that is missing. `selected` holds
// the XML metadata of the file, or of the member that it was described like before. False when the metadata names no
// first file, its start time cannot be, or no rate can be had; the log then says so.
bool DescribeNumberedSet(const std::string& selectedFile, const SFileFacts& selected, CRecordingSet& set,
                         CMyStringArray& log);

}  // namespace carvello
