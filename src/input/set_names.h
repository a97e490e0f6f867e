// What the names of files tell of their belonging together, where their contents cannot be asked.
#pragma once

#include <string>

namespace carvello {

// Whether a program can have given both names to files of one recording: they are alike but for their digits (numbers,
// dates, frequencies), letters' case and the "-^001" of a continuation file.
bool AreNamesOfOneSet(const std::string& a, const std::string& b);

// Whether somebody could take a file of that name for a recording.
bool IsNamedLikeARecording(const std::string& name);

}  // namespace carvello
