// The description of a recording, for scripts and for people.
#pragma once

#include <string>

#include "input/recording_set.h"
#include "recording/info_texts.h"

namespace carvello {

// One JSON object, indented, with a line break at its end. Bytes that are no UTF-8 become U+FFFD.
std::string InfoJson(const CRecordingSet& recording, const SInfoTexts& texts);
std::string InfoText(const CRecordingSet& recording, const SInfoTexts& texts);

}  // namespace carvello
