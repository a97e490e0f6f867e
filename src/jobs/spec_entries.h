// From an entry as the user asked for it to entries of the list.
#pragma once

#include <optional>
#include <string>

#include "engine/entry_list.h"
#include "input/recording_set.h"
#include "jobs/entry_spec.h"

namespace carvello {

// Fills all fields but the frequency and the kind of time, which are left as they are, as is the output folder when the
// entry has none of its own. The bandwidth must fit 32 bits. False when a time is beyond all range; `error` then says
// what is accepted.
bool FillFields(const SEntrySpec& spec, const CRecordingSet& recording, SEntryFields& fields, std::string& error);

// Adds the entry with its frequency, or all of a sequence. The list is not rebuilt. Returns why the first entry that
// was refused is not there; of a sequence the others are.
std::optional<SEntryProblem> AddToList(const SEntrySpec& spec, SEntryFields fields, CEntryList& list);

// The same for fields that FillFields has still to fill, with the rules of the command line: an entry that no output
// can come of is not added, though the list would take it. Returns why nothing was added; of a sequence everything
// counts.
std::optional<std::string> AddByCommandLine(const SEntrySpec& spec, SEntryFields fields, const CRecordingSet& recording,
                                            CEntryList& list);

}  // namespace carvello
