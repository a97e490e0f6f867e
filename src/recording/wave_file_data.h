// CWaveFileData: one recording as the program writes it: its description, and the state of the file being written.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "recording/info_texts.h"
#include "recording/recording_description.h"
#include "recording/wave_format.h"
#include "recording/write_policy.h"
#include "support/file.h"

namespace carvello {

class CSampleFileWriter;

// Belongs to one thread at a time. The caller closes any open file, calls Reset, describes the recording and then
// drives Open, Write..., Close.
class CWaveFileData {
 public:
  CWaveFileData();
  virtual ~CWaveFileData();  // lets go of an open file without finishing it
  CWaveFileData(const CWaveFileData&) = delete;
  CWaveFileData& operator=(const CWaveFileData&) = delete;

  // Clears counters, limits and names, and notes the present time. Radio facts, title, sample format, start time and
  // the RF64 flag of the description stay.
  void Reset();
  void Describe(SRecordingDescription description);
  void SetPolicy(const SWritePolicy& policy) { m_policy = policy; }
  const SWritePolicy& Policy() const { return m_policy; }
  // Names the file (with " %03d" before the extension when the output is split), builds its metadata and writes its
  // header. False when the file cannot be created; LastError() then holds the system's text.
  bool Open(const std::string& basePath, std::uint32_t sequence, const std::string& internalTag);
  // Appends values of `bits` bits, two values a frame, and goes on with the next file when the size limit is reached:
  // unless bMaySplit is false, which says that the values belong to the block before them. False leaves the output
  // closed, the reason in LastError().
  bool Write(const void* block, std::uint32_t valueCount, std::uint32_t bits, bool bMaySplit = true,
             ETell tell = ETell::Now);
  bool IsSplit() const { return m_description.nSplitMB != 0; }
  // Whether SplitBefore can do what it says: not where all parts share one name, for each replaces the one before.
  bool CanSplitBefore() const;
  // The last `bytes`, written with ETell::Later and not told since, are the beginning of a block after all: where a
  // file should have ended in front of them they become the first of the next one. False as Write is.
  bool SplitBefore(std::uint32_t bytes);
  // Appends the INFO trailer, makes the sizes final and closes. True, also when nothing was open; a trailer or size
  // that could not be written is told in LastError(), which is empty when all went well.
  bool Close();

  bool IsOpen() const;
  const SRecordingDescription& Description() const { return m_description; }
  const std::string& FileName() const { return m_strFileName; }  // full path of the file now or last open
  const std::string& LastError() const { return m_strLastError; }
  std::uint32_t LastErrorCode() const { return m_dwLastError; }  // the system's
  const SInfoTexts& InfoTexts() const { return m_infoTexts; }    // of the file now or last open
  // Full paths of all files opened since Reset, in order; meta files behind those that they tell of.
  const std::vector<std::string>& Files() const { return m_files; }
  // Sample bytes in the present file and over all files since Reset, and the same with headers.
  std::int64_t FileDataBytes() const { return m_nFileDataBytes; }
  std::int64_t TotalDataBytes() const { return m_nTotalDataBytes; }
  std::uint64_t FileBytes() const { return m_nFileBytes; }
  std::uint64_t TotalBytes() const { return m_nTotalBytes; }
  double StartOffset() const { return m_dStartOffset; }  // seconds of samples in the files already closed

 protected:
  // Wall-clock seconds since 1970.
  virtual std::int64_t Now() const;

 private:
  bool OpenWriter(const SWritePolicy& policy, std::int64_t now, const std::string& xml, std::int64_t& headerBytes);
  SSigMfFacts MetaFacts() const;
  bool FinishFile(CFile* keep = nullptr);
  bool GoOnWithNextFile();
  void CountDataBytes();
  bool IsSplitDue(std::uint64_t less = 0) const;
  CFile* KeeperOfFirstPart();
  double Seconds(std::int64_t dataBytes) const;
  void FillFormat();
  void FillInfoTexts(std::int64_t now);
  std::string MetadataXml(std::int64_t now, std::int64_t start, const std::string& previousFile) const;

  SRecordingDescription m_description;
  SWritePolicy m_policy;
  std::string m_strFileName;      // full path of the file now open, sequence number included
  std::string m_strBaseFileName;  // the output path before any sequence number
  std::string m_strFirstFile;     // full path of file 0
  std::string m_strInternalTag;   // shared by all files of one output
  std::string m_strLastError;
  std::uint32_t m_dwLastError = 0;
  std::int64_t m_tOpened = 0;  // wall-clock seconds of the last Reset
  std::uint32_t m_nSequence = 0;
  double m_dStartOffset = 0.0;
  std::int64_t m_nFileDataBytes = 0;
  std::int64_t m_nTotalDataBytes = 0;
  std::uint64_t m_nFileBytes = 0;
  std::uint64_t m_nTotalBytes = 0;
  std::vector<std::string> m_files;
  WAVEFORMATEX m_wfx;
  SInfoTexts m_infoTexts;
  std::unique_ptr<CSampleFileWriter> m_pWriter;  // the open file; null when closed
  // Part 0 of a split output, held until the last part is closed: as long as it is locked nobody else can begin an
  // output of this name.
  CFile m_firstPart;
};

}  // namespace carvello
