// The job file of "cut --jobs": what to cut, as JSON.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "cli/entry_spec.h"

namespace carvello {

struct SJobFile {
  std::string strInput;   // empty when the file names none
  std::string strOutput;  // empty when the file names none
  std::vector<SEntrySpec> entries;
};

// Reads the JSON text. `name` is how messages name the file. False when anything in it is not understood, holds a text
// or number of more than 65,536 bytes or lists more than kMostEntries entries; `error` then names the file, the place
// and what is accepted, printable on one line. However large, deep or repetitive the text is, reading it takes little
// more memory than the entries that it lists.
bool ParseJobFile(std::string_view text, const std::string& name, SJobFile& job, std::string& error);

// The same from a file, which must be below 64 MiB.
bool ReadJobFile(const std::string& path, SJobFile& job, std::string& error);

}  // namespace carvello
