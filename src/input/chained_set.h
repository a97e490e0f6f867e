// Sets of other programs: files in one folder, chained by the times at which they begin and end.
#pragma once

#include <string>

#include "input/lookup_cache.h"
#include "input/recording_set.h"
#include "support/my_string_array.h"

namespace carvello {

// Describes the set of the selected file, whose facts hold no XML metadata: files of the same program, centre frequency
// and format, each of which begins where the one before ends, less than 6 seconds either way. False when the program
// stayed unknown or the selected file's date cannot be; the log then says so.
bool DescribeChainedSet(const std::string& selectedFile, const SFileFacts& selected, const SGivenFacts& given,
                        CRecordingSet& set, CMyStringArray& log);

}  // namespace carvello
