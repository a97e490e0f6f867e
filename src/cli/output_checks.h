// What is looked at before outputs are made: where they go, and what stands there already.
#pragma once

#include <cstddef>
#include <set>
#include <string>
#include <vector>

#include "cli/cut_report.h"
#include "cli/cut_request.h"
#include "cli/exit_codes.h"
#include "engine/entry_list.h"
#include "engine/output_files.h"
#include "input/recording_set.h"

namespace carvello {

// What keeps a command from its outputs.
struct SRefusal {
  EExit exit = EExit::Ok;
  std::string strText{};  // of the message
};

// Whether an entry would replace an input file, or the system does not let that be known.
SRefusal CheckReplacedInput(const CEntryList& entries, const CRecordingSet& recording, COutputFolders& folders);

// Whether another file that a command writes may have this name. The message begins with `what` where it may not: it is
// an input file, or it exists and nothing is to be replaced, or the system does not tell.
SRefusal CheckNewFile(const std::string& what, const std::string& path, const CRecordingSet& recording, bool overwrite);

// The first folder of the entries that nothing can be created in, and why; empty when there is none.
std::string UnwritableFolder(const SCutRequest& request, std::string& problem);

// Every entry of the list with `error` until something better is known.
SCutReport PlannedReport(const CEntryList& entries, const std::string& error);

// Adds the files of outputs that exist; or says that the system does not tell. The message asks what is to become of
// them.
SRefusal FindExisting(const CEntryList& entries, COutputFolders& folders, std::vector<std::string>& existing);
void PrintExisting(const std::vector<std::string>& files);

// Takes the entries whose outputs are to be left from the list and marks them in the report. What an earlier job has
// not finished stays in it and is to be replaced: gives the places that those had. `tells`: which they are, on stderr.
std::set<std::size_t> LeaveFinished(const CRecordingSet& recording, COutputFolders& folders, bool tells,
                                    CEntryList& entries, SCutReport& report);

// On stderr, and not more of them than anybody reads: lines below a message, and messages.
void PrintList(const std::vector<std::string>& lines);
void PrintMessages(const std::vector<std::string>& messages, const std::string& kind = {});

}  // namespace carvello
