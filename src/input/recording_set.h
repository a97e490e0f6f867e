// A recording as one timeline: the files of the set that a selected file belongs to, in playing order.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "input/file_stamp.h"
#include "input/given_facts.h"
#include "input/sample_layout.h"
#include "recording/metadata_xml.h"
#include "recording/sample_kind.h"
#include "recording/wave_format.h"
#include "support/my_string_array.h"

namespace carvello {

// What kind of file samples lie in, for whoever must find them there again.
enum class EContainer {
  Wave,       // RIFF and RF64: the chunks of the file tell where its samples lie
  Described,  // the layout was told from elsewhere; see SRecordingFile
};

// What must be known of every recording.
enum class EFact { SampleType, SampleRate, Centre, Start };

// A file that tells of another one: its samples are what was described while both stay as they were.
struct SDescribingFile {
  std::string strPath;
  SFileStamp stamp;
};

struct SRecordingFile {
  std::string strPath;
  std::int64_t nDataBytes = 0;
  std::uint32_t tStart = 0;  // seconds since 1970; 0 for recordings with XML metadata
  // What a job must find again, or it does not read what was described here. The sample format is that of the set.
  std::int64_t nSampleBytes = 0;  // of its data chunk; nDataBytes can be what its metadata tells instead
  SFileStamp stamp{};
  EContainer container = EContainer::Wave;
  SSampleLayout layout{};  // of every container but Wave. Lost frames count as sample bytes too
  std::vector<SDescribingFile> describedBy{};
};

// A stretch of a recording that is read by itself, since centre frequency or sample rate are others there.
struct SRecordingPart {
  std::string strName;          // of the file that tells of it
  std::int64_t nFrequency = 0;  // Hz
  std::uint32_t nSampleRate = 0;
  std::int64_t tStart = 0;  // seconds since 1970 UTC
  double dSeconds = 0.0;
};

// What somebody noted of a stretch, in frames of the recording.
struct SRecordingAnnotation {
  std::int64_t nFirstFrame = 0;
  std::int64_t nFrames = 0;
  std::optional<double> lowerEdge;  // Hz
  std::optional<double> upperEdge;
  std::string strLabel;
  std::string strComment;
};

// Bytes of which somebody has told the hash.
struct SDataHash {
  std::string strPath;
  std::int64_t nOffset = 0;
  std::int64_t nBytes = 0;
  std::string strSha512;  // 128 hexadecimal digits; empty when nobody has
};

struct CRecordingSet {
  std::string strSelected;    // the file that was described with all that belongs to it
  std::string strSourceName;  // "Halvarn (V3)", "Halvarn (V2)", "Halvarn", or another program's name
  std::string strContainer;   // the kind of file, for the user; empty for WAV and RF64
  std::vector<SRecordingFile> files;
  // Total data bytes are nTotalMillions x 1,000,000 + nTotalRemainder, the remainder below 1,000,000.
  std::int64_t nTotalMillions = 0;
  std::int64_t nTotalRemainder = 0;
  std::int64_t tStart = 0;  // seconds since 1970 UTC
  std::int64_t tEnd = 0;
  // What the whole seconds of start and end leave out, where it is known. Shown only; nothing is cut by it.
  std::uint32_t nStartMilliseconds = 0;
  std::uint32_t nEndMilliseconds = 0;
  std::uint32_t nStartNanoseconds = 0;  // the whole fraction of the start's second, its milliseconds among it
  double dDuration = 0.0;               // seconds
  std::int64_t nRadioCenterFreq = 0;    // Hz
  std::uint32_t nSampleRate = 0;        // frames/s
  std::uint32_t nBandwidth = 0;         // Hz
  std::uint32_t nBytesPerSecond = 0;
  std::uint32_t nBitsPerSample = 0;
  // Of the first file. The samples are read by the kind; the format is the wave format that describes them, as outputs
  // and tables tell it, with frames as large as those of the kind.
  SSampleKind kind;
  WAVEFORMATEXTENSIBLE format;
  bool bFloat = false;                // IEEE float samples
  bool bRF64 = false;                 // the first file
  bool bFromSourceRecord = false;     // described by source recognition, not by XML metadata
  std::string strMetadata;            // the first file's XML text; empty when it has none
  SMetadataLists metadata;            // its name/value lists
  std::vector<SRecordingPart> parts;  // of a recording that can have several, all of them
  std::uint32_t nPart = 0;            // the one described here, from 1; 0 for other recordings
  std::vector<SRecordingAnnotation> annotations;
  SDataHash dataHash;
  // Nothing is described, because the system does not let a file or folder be read that belongs, or could belong, to
  // the set. What would be described without it could be another recording, or half of this one.
  bool bReadFailed = false;
  // Nothing is described, because the files do not tell these; SGivenFacts can.
  std::vector<EFact> missing;
  SGivenFacts known;  // what they do tell then

  // Appends a file and counts its data bytes.
  void AddFile(SRecordingFile file);
  std::int64_t TotalBytes() const { return nTotalMillions * 1'000'000 + nTotalRemainder; }
  // Files of samples, and files that describe them: what no output may replace.
  std::vector<std::string> AllFiles() const;
  // The sizes of the files themselves, headers and all.
  std::int64_t FileBytes() const;
};

// The same samples at the same times, as far as their files tell: what was made for the one is right for the other.
bool IsSameRecording(const CRecordingSet& a, const CRecordingSet& b);

// Whether the path, from the root on, is one of its files, by name: of samples, one that tells of them, or the
// selected.
bool IsFileOf(const CRecordingSet& set, const std::string& path);

// Finds the whole set that the file belongs to and describes it. False when the file is no recording, or the set cannot
// be read (bReadFailed); the last "[ERROR]" line of `log` then names the file and says why. The set is reset first.
// "[WARNING]" lines tell what had to be assumed. Nothing is thrown.
// What is given holds, whatever the files tell.
bool AnalyseRecordingSet(const std::string& selectedFile, CRecordingSet& set, CMyStringArray& log,
                         const SGivenFacts& given = {});

}  // namespace carvello
