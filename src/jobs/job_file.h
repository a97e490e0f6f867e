// The job file: what to cut, as JSON.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "input/given_facts.h"
#include "jobs/entry_spec.h"

namespace carvello {

struct SJobFile {
  std::string strInput;     // empty when the file names none
  std::string strOutput;    // empty when the file names none
  bool bLocalTime = false;  // in the names of outputs; UTC otherwise
  // When the recording that it was made for begins, in seconds since 1970 UTC.
  std::optional<std::int64_t> recorded;
  SGivenFacts given{};  // of the input
  std::vector<SEntrySpec> entries;
};

// Reads the JSON text. `name` is how messages name the file. False when anything in it is not understood, holds a text
// or number of more than 65,536 bytes or lists more than kMostEntries entries; `error` then names the file, the place
// and what is accepted, printable on one line. However large, deep or repetitive the text is, reading it takes little
// more memory than the entries that it lists.
bool ParseJobFile(std::string_view text, const std::string& name, SJobFile& job, std::string& error);

// The text of a file, which must be below 64 MiB; on false `error` names the file and what is wrong with it.
bool ReadJobText(const std::string& path, std::string& text, std::string& error);

// Both together.
bool ReadJobFile(const std::string& path, SJobFile& job, std::string& error);

// The job as a text that reads as the same job. It must not have sequences.
std::string JobFileText(const SJobFile& job);

}  // namespace carvello
