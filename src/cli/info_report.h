// The description of a recording, for scripts and for people.
#pragma once

#include <string>

#include "cli/hash_check.h"
#include "input/recording_set.h"
#include "recording/info_texts.h"

namespace carvello {

// One JSON object, indented, with a line break at its end. Bytes that are no UTF-8 become U+FFFD.
std::string InfoJson(const CRecordingSet& recording, const SInfoTexts& texts, EVerified verified = EVerified::NotAsked);
std::string InfoText(const CRecordingSet& recording, const SInfoTexts& texts, EVerified verified = EVerified::NotAsked);

}  // namespace carvello
