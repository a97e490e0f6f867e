// From what the user asked for to the entry list of a recording.
#pragma once

#include <string>
#include <vector>

#include "cli/cut_request.h"
#include "engine/entry_list.h"
#include "input/recording_set.h"

namespace carvello {

struct SPlanNotes {
  std::vector<std::string> outsideBand;  // entries whose band is not wholly recorded
  std::vector<std::string> surprises;    // entries whose output is not what their words suggest
  std::size_t nDuplicates = 0;           // entries left out because an earlier one is the same
};

// Checks every entry and fills the list, rebuilt. False when one is refused; `error` then names it and says what is
// accepted.
bool BuildEntryList(const SCutRequest& request, const CRecordingSet& recording, CEntryList& list, SPlanNotes& notes,
                    std::string& error);

// What is odd about the entries of a list.
void TakeNotes(const CEntryList& list, const CRecordingSet& recording, SPlanNotes& notes);

}  // namespace carvello
