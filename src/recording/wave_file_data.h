// CWaveFileData: the description of one recording as the program writes it, and the state of the file being written.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "recording/info_texts.h"
#include "recording/wave_format.h"

namespace carvello {

class CRiffFileWriter;

// Belongs to one thread at a time. The caller closes any open file, calls Reset, sets the description and then drives
// Open, Write..., Close.
class CWaveFileData {
 public:
  CWaveFileData();
  virtual ~CWaveFileData();  // lets go of an open file without finishing it
  CWaveFileData(const CWaveFileData&) = delete;
  CWaveFileData& operator=(const CWaveFileData&) = delete;

  // Clears counters, limits, names and the tag, and notes the present time. Radio facts, title, sample format, start
  // time and the RF64 flag stay.
  void Reset();
  // Names the file (with " %03d" before the extension when the output is split), builds its metadata and writes its
  // header. False when the file cannot be created; m_strLastError then holds the system's text.
  bool Open(const std::string& basePath, std::uint32_t sequence, const std::string& internalTag);
  // Appends values of `bits` bits, two values a frame, and goes on with the next file when the size limit is reached:
  // unless bMaySplit is false, which says that the values belong to the block before them. False leaves the output
  // closed, the reason in m_strLastError.
  bool Write(const void* block, std::uint32_t valueCount, std::uint32_t bits, bool bMaySplit = true);
  // Appends the INFO trailer, makes the sizes final and closes. True, also when nothing was open; a trailer or size
  // that could not be written is told in m_strLastError.
  bool Close();

  // Full paths of all files opened since Reset, in order.
  const std::vector<std::string>& Files() const { return m_files; }
  // Sample bytes over all files since Reset.
  std::int64_t TotalDataBytes() const { return m_nTotalDataBytes; }

  std::string m_strFileName;      // full path of the file now open, sequence number included
  std::string m_strBaseFileName;  // the output path before any sequence number
  std::string m_strLastError;
  std::string m_strRadioModel;
  std::string m_strRadioSerial;
  std::string m_strFirstFile;    // full path of file 0
  std::string m_strInternalTag;  // shared by all files of one output
  std::string m_strTitle;
  std::int64_t m_tOpened = 0;  // wall-clock seconds of the last Reset
  std::uint32_t m_dwLastError = 0;
  std::uint32_t m_nADFrequency = 0;   // Hz
  std::int64_t m_nFileDataBytes = 0;  // sample bytes in the current file
  std::uint64_t m_nFileBytes = 0;     // bytes in the current file, header included
  std::uint64_t m_nTotalBytes = 0;    // bytes over all files, headers included
  bool m_bRF64 = false;
  std::int32_t m_nDualMode = 0;
  std::int64_t m_nRadioCenterFreq = 0;  // Hz
  std::uint32_t m_nSplitMB = 0;         // units of 1,000,000 bytes; 0 means one file
  std::uint32_t m_nMaxSeconds = 0;      // wall-clock limit; 0 means none
  std::uint32_t m_nSampleRate = 0;      // frames/s
  std::int64_t m_tStart = 0;            // seconds since 1970 UTC of the first sample
  bool m_bStartValid = false;
  double m_dStartOffset = 0.0;  // seconds of samples in the files already closed
  WAVEFORMATEX m_wfx;
  std::uint32_t m_nBitsPerSample = 16;  // 16 integer, 32 float
  std::uint32_t m_nSequence = 0;
  std::int32_t m_nBackdateSeconds = 0;  // subtracted once from the start at the next Open
  SInfoTexts m_infoTexts;
  std::unique_ptr<CRiffFileWriter> m_pWriter;  // the open file; null when closed

 private:
  bool FinishFile();
  bool IsSplitDue() const;
  void FillFormat();
  void FillInfoTexts(std::int64_t now);
  std::string MetadataXml(std::int64_t now, std::int64_t start, const std::string& previousFile) const;

  std::vector<std::string> m_files;
  std::int64_t m_nTotalDataBytes = 0;
};

}  // namespace carvello
