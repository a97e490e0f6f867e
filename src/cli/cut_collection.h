// The SigMF collection over the outputs of a job.
#pragma once

#include <string>

#include "cli/cut_report.h"
#include "input/recording_set.h"

namespace carvello {

// Whether the file is a collection that this program has written.
bool IsOwnCollection(const std::string& path);

// Names every output that is whole, with the hash of its meta file; nothing is written when there is none. On false
// nothing is left, and `error` tells why.
bool WriteSigMfCollection(const std::string& path, const CRecordingSet& recording, const SCutReport& report,
                          bool replace, std::string& error);

}  // namespace carvello
