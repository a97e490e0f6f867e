// The "signalinfo" document of a "meta" chunk.
#pragma once

#include <cstdint>
#include <string>

#include "input/recording_source_info.h"
#include "recording/wave_format.h"

namespace carvello {

// True when the text is such a document. It fills the record when it is about complex samples and gives rate, frequency
// and bandwidth. A signal time that is no calendar date at all leaves the start at day 0 and a note in the
// record; one that is a date which cannot be raises the failure or the invalid-argument error.
bool RecogniseSignalInfo(const std::string& meta, std::int64_t dataBytes, const WAVEFORMATEXTENSIBLE& format,
                         RecordingSourceInfo& source);

}  // namespace carvello
