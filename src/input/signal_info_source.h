// The "signalinfo" document of a "meta" chunk.
#pragma once

#include <cstdint>
#include <string>

#include "input/recording_source_info.h"
#include "recording/wave_format.h"

namespace carvello {

// True when the text is such a document. It fills the record when it is about complex samples and gives rate, frequency
// and bandwidth. Raises the failure or the invalid-argument error for a signal time that is no date.
bool RecogniseSignalInfo(const std::string& meta, std::int64_t dataBytes, const WAVEFORMATEXTENSIBLE& format,
                         RecordingSourceInfo& source);

}  // namespace carvello
