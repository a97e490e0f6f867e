// What is known of the files walked so far, for the life of the process: selecting another file of a set already seen
// walks nothing.
//
// An entry holds while the file's size, modification time and identity stay as they were, so that a recording that is
// still growing is described as it is now.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "input/file_stamp.h"
#include "input/foreign_file.h"
#include "input/recording_source_info.h"
#include "recording/wave_format.h"
#include "support/platform.h"

namespace carvello {

// The walk's result without the texts that only the file's own reader asks for.
struct SFileFacts {
  bool bRecording = false;     // the file has samples and a format
  std::string strXml;          // UTF-8; empty for a file without XML metadata
  RecordingSourceInfo source;  // of a file without XML metadata
  // What a file tells that no chunk describes; such a file is described by this alone.
  std::optional<SForeignFile> foreign;
  WAVEFORMATEXTENSIBLE format;
  bool bRF64 = false;
  bool bCutShort = false;             // the data chunk claims more than the file holds
  std::int64_t nFileSize = 0;         // bytes on disk
  std::int64_t nSampleBytes = 0;      // of the data chunk, as far as the file holds it
  SFileStamp stamp;                   // of the file when it was walked
  std::string strError;               // why it is no recording, or why its source stayed unknown
  std::uint32_t nError = 0;           // the system's code when it could not be opened or read; strError tells why then
  std::vector<std::string> warnings;  // what is odd about a recording
};

// Whether there is a file that the system does not let be read. What it is then nobody knows, other than of a file that
// is missing or of one that was read and is none of ours.
inline bool IsUnreadable(const SFileFacts& facts) {
  return facts.nError != 0 && !platform::MeansMissing(facts.nError);
}

// Both may be called on any thread. On a miss the file is walked outside any lock, and the result answers both lookups
// from then on, unless the system did not let the file be read.
SFileFacts LookupMetadata(const std::string& fileName);
// 0 for a file that is no recording. error: as nError of the facts.
std::int64_t LookupDataSize(const std::string& fileName, std::uint32_t* error = nullptr);
// Whether LookupMetadata would answer without a walk. No lookup: nothing is counted or traced.
bool IsMetadataKnown(const std::string& fileName);

// What can be said of a file without walking it.
struct SFileLook {
  std::optional<platform::FileStatus> status;
  std::string strHindrance;  // why it cannot be walked at all; empty when it can
  std::uint32_t nError = 0;  // as in SFileFacts
};
// Opens the file too, for rights on paper do not tell whether it can be read.
SFileLook LookAtFile(const std::string& fileName);

// For files that were changed in a way that does not show: all are walked anew from here on.
void ForgetLookups();

struct SLookupStatistics {
  std::uint64_t nHits = 0;
  std::uint64_t nWalks = 0;
};
// Since the process began.
SLookupStatistics LookupCacheStatistics();

// Receives "Lookup status %s, filename %s" ("OK" for a hit, "FAIL" for a miss) and, at the end of the process, "Reset
// cache" for each map. Called on the thread of the lookup. Nullptr, as at the start, for no trace.
using LookupTrace = void (*)(const std::string& line);
void SetLookupTrace(LookupTrace trace);

}  // namespace carvello
