// The commit of the sources that a program is made of. Only what carvello_build_commit (src/CMakeLists.txt) was called
// for has it: a new commit makes nothing but the programs be linked anew.
#pragma once

namespace carvello {

// In full; with ", modified" behind it when the sources were not as committed; empty when nothing told it.
extern const char* const kBuildCommit;

}  // namespace carvello
