// Which files on disk an entry would write, and which of them exist already.
#pragma once

#include <string>
#include <vector>

#include "engine/output_entry.h"

namespace carvello {

// Full paths of the numbered parts ("name 000.wav", ...) of an earlier output of this name; none for an entry that is
// not split.
std::vector<std::string> ExistingParts(const OutputEntry& entry);
// Full paths of existing files that writing this entry would replace or stand beside as parts of one output: the file
// itself, and for a split output every "name NNN.wav" of its folder.
std::vector<std::string> ExistingOutputFiles(const OutputEntry& entry);
// The input files that writing this entry would replace, by name or by being the same file under another name.
std::vector<std::string> InputFilesReplaced(const OutputEntry& entry, const std::vector<std::string>& inputFiles);

}  // namespace carvello
