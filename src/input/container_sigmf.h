// SigMF recordings: a meta file, its file of samples, an archive of both, or a collection selected.
#pragma once

#include <string>

#include "input/given_facts.h"
#include "input/recording_set.h"
#include "support/my_string_array.h"

namespace carvello {

// By the ending of its name.
bool IsSigMfName(const std::string& path);

// Describes one part of the recording: stretches of other centre frequencies are parts of their own, and so is every
// recording of a collection or archive. Without a choice the first is taken, with a warning when there are more. What
// is given goes before what the part tells. False as AnalyseRecordingSet; set.missing then tells what must be given.
bool DescribeSigMf(const std::string& selectedFile, const SGivenFacts& given, CRecordingSet& set, CMyStringArray& log);

}  // namespace carvello
