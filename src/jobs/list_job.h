// Between the list of entries and the job that makes the same outputs again.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "engine/entry_list.h"
#include "input/recording_set.h"
#include "jobs/job_file.h"

namespace carvello {

// The entries of a list that was made for the recording, in its order. `input` is a file of the recording, `output` the
// folder that entries are usually made in; both become absolute. Without one every entry tells its own.
SJobFile JobOfList(const CEntryList& list, const CRecordingSet& recording, const std::string& input,
                   const std::string& output, bool utc);

// Where the job's moments are to lie in another recording than its own.
enum class EMoments {
  AsTheyAre,       // at the same dates and times
  AsFarFromStart,  // as long behind its start
};
// Makes the job one for the recording that begins at `start`. A job that does not tell when its own begins keeps its
// moments as they are.
void MoveJob(SJobFile& job, std::int64_t start, EMoments moments);

// What AddJobToList could not add.
struct SRefusedEntries {
  std::size_t nEntries = 0;
  std::string strFirst;  // the first of them, named, and why
};
// Whether what no output can come of is added, as the list takes it, or refused, as the command line does.
enum class EJobRules { List, CommandLine };
// Adds what the job lists. Relative folders, and an output that the job does not tell, are those of `fields`; so is the
// kind of time. The list is not rebuilt.
SRefusedEntries AddJobToList(const SJobFile& job, const SEntryFields& fields, const CRecordingSet& recording,
                             EJobRules rules, CEntryList& list);
// What the command line would not take of a job for the recording.
SRefusedEntries RefusedByCommandLine(const SJobFile& job, const CRecordingSet& recording);

}  // namespace carvello
