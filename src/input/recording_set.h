// A recording as one timeline: the files of the set that a selected file belongs to, in playing order.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "input/file_stamp.h"
#include "recording/metadata_xml.h"
#include "recording/wave_format.h"
#include "support/my_string_array.h"

namespace carvello {

struct SRecordingFile {
  std::string strPath;
  std::int64_t nDataBytes = 0;
  std::uint32_t tStart = 0;  // seconds since 1970; 0 for recordings with XML metadata
  // What a job must find again, or it does not read what was described here. The sample format is that of the set.
  std::int64_t nSampleBytes = 0;  // of its data chunk; nDataBytes can be what its metadata tells instead
  SFileStamp stamp{};
};

struct CRecordingSet {
  std::string strSourceName;  // "Halvarn (V3)", "Halvarn (V2)", "Halvarn", or another program's name
  std::vector<SRecordingFile> files;
  // Total data bytes are nTotalMillions x 1,000,000 + nTotalRemainder, the remainder below 1,000,000.
  std::int64_t nTotalMillions = 0;
  std::int64_t nTotalRemainder = 0;
  std::int64_t tStart = 0;  // seconds since 1970 UTC
  std::int64_t tEnd = 0;
  // What the whole seconds of start and end leave out, where it is known. Shown only; nothing is cut by it.
  std::uint32_t nStartMilliseconds = 0;
  std::uint32_t nEndMilliseconds = 0;
  double dDuration = 0.0;             // seconds
  std::int64_t nRadioCenterFreq = 0;  // Hz
  std::uint32_t nSampleRate = 0;      // frames/s
  std::uint32_t nBandwidth = 0;       // Hz
  std::uint32_t nBytesPerSecond = 0;
  std::uint32_t nBitsPerSample = 0;
  WAVEFORMATEXTENSIBLE format;     // of the first file
  bool bFloat = false;             // IEEE float samples
  bool bRF64 = false;              // the first file
  bool bFromSourceRecord = false;  // described by source recognition, not by XML metadata
  // 32-bit float samples that stand at 16-bit full scale already, as this program writes them; see
  // CWaveFileReader::FloatScale.
  bool bFloatScale = false;
  std::string strMetadata;  // the first file's XML text; empty when it has none
  SMetadataLists metadata;  // its name/value lists
  // Nothing is described, because the system does not let a file or folder be read that belongs, or could belong, to
  // the set. What would be described without it could be another recording, or half of this one.
  bool bReadFailed = false;

  // Appends a file and counts its data bytes.
  void AddFile(SRecordingFile file);
  std::int64_t TotalBytes() const { return nTotalMillions * 1'000'000 + nTotalRemainder; }
  // The sizes of the files themselves, headers and all.
  std::int64_t FileBytes() const;
};

// Finds the whole set that the file belongs to and describes it. False when the file is no recording, or the set cannot
// be read (bReadFailed); the last "[ERROR]" line of `log` then names the file and says why. The set is reset first.
// "[WARNING]" lines tell what had to be assumed. Nothing is thrown.
bool AnalyseRecordingSet(const std::string& selectedFile, CRecordingSet& set, CMyStringArray& log);

}  // namespace carvello
