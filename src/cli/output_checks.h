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

// The files of outputs that exist, and the message that asks what is to become of them.
std::vector<std::string> ExistingFiles(const CEntryList& entries, COutputFolders& folders);
void PrintExisting(const std::vector<std::string>& files);

// Takes the entries whose outputs are to be left from the list and marks them in the report. What an earlier job has
// not finished stays in it; `tells`: which those are, on stderr.
void LeaveFinished(const CRecordingSet& recording, COutputFolders& folders, bool tells, CEntryList& entries,
                   SCutReport& report);

// On stderr, and not more of them than anybody reads: lines below a message, and messages.
void PrintList(const std::vector<std::string>& lines);
void PrintMessages(const std::vector<std::string>& messages, const std::string& kind = {});

}  // namespace carvello
