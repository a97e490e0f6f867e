// What is looked at before outputs are made: where they go, and what stands there already.
#pragma once

#include <string>
#include <vector>

#include "cli/cut_report.h"
#include "cli/cut_request.h"
#include "engine/entry_list.h"
#include "engine/output_files.h"
#include "input/recording_set.h"

namespace carvello {

// The input file that an entry would replace, as a message; empty when there is none.
std::string ReplacedInput(const CEntryList& entries, const CRecordingSet& recording, COutputFolders& folders);

// The first folder of the entries that nothing can be created in, and why; empty when there is none.
std::string UnwritableFolder(const SCutRequest& request, std::string& problem);

// Every entry of the list with `error` until something better is known.
SCutReport PlannedReport(const CEntryList& entries, const std::string& error);

struct SExistingRule {
  bool bOverwrite = false;
  bool bSkip = false;
  bool bTells = true;  // on stderr, which ones are done again
};
// Decides what becomes of outputs that exist. Entries to be left out are taken from the list and marked in the
// report; what an earlier job has not finished stays in it. False when nobody decided; they are listed on stderr
// then.
bool SettleExisting(const SExistingRule& rule, const CRecordingSet& recording, COutputFolders& folders,
                    CEntryList& entries, SCutReport& report);

// On stderr, and not more of them than anybody reads: lines below a message, and messages.
void PrintList(const std::vector<std::string>& lines);
void PrintMessages(const std::vector<std::string>& messages, const std::string& kind = {});

}  // namespace carvello
