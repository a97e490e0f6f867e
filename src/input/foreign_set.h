// Recordings that no chunk describes: by the heads and names of their files, and by what the user gives.
#pragma once

#include <string>

#include "input/given_facts.h"
#include "input/lookup_cache.h"
#include "input/recording_set.h"
#include "support/my_string_array.h"

namespace carvello {

// `selected` must have something foreign. Files of the folder that tell the same of themselves and begin where another
// one ends belong to the set. False as AnalyseRecordingSet; set.missing then tells what must be given.
bool DescribeForeignSet(const std::string& selectedFile, const SFileFacts& selected, const SGivenFacts& given,
                        CRecordingSet& set, CMyStringArray& log);

}  // namespace carvello
