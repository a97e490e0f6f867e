// The recording that a job works on, read with the reasons that a user needs when it cannot be.
#pragma once

#include <string>
#include <vector>

#include "input/recording_set.h"
#include "recording/info_texts.h"

namespace carvello {

struct SRecordingInput {
  CRecordingSet recording;
  SInfoTexts infoTexts;               // of the first file
  std::vector<std::string> warnings;  // what the analysis found odd, for the user to know
  bool bUnread = false;               // there may be one, and the system did not let it be read
};

// Describes the set that the file belongs to. False when that cannot be done; `error` then names the file and why.
bool ReadRecordingInput(const std::string& path, SRecordingInput& input, std::string& error,
                        const SGivenFacts& given = {});

// Why the file cannot be opened at all; empty when it can.
std::string OpenProblem(const std::string& path);
// What stands behind that problem when the file is there and this user may not read it; empty else.
std::string RightsHint(const std::string& path);
// The last "[ERROR]" line of a reader's log, or the last "[WARNING]" one; empty when it has neither.
std::string LastProblem(const CMyStringArray& log);

}  // namespace carvello
