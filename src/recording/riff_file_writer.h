// CRiffFileWriter: one output recording being written, RIFF WAVE or RF64 (EBU Tech 3306).
//
// The header is complete from the start and its sizes follow the samples while the file grows, so that a file whose
// program was killed can still be read.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "recording/info_texts.h"
#include "recording/signal_info.h"
#include "recording/wave_format.h"
#include "support/file.h"

namespace carvello {

class CRiffFileWriter {
 public:
  // Creates the file and writes the header through the head of the "data" chunk; `xml` is UTF-8. Gives the header's
  // size, which is the offset of the first sample; 0 on failure, ErrorCode() then tells why.
  std::int64_t Open(const std::string& path, const WAVEFORMATEX& format, std::string_view xml, const SInfoTexts& texts,
                    bool rf64, const SSignalFacts& signal);

  // Appends a block of samples as it stands. `now`, in seconds since 1970, is the clock by which RF64 sizes are
  // rewritten. On failure the file is cut back to its last whole block, its sizes are made to fit and it is closed.
  bool Write(const void* block, std::uint32_t bytes, std::int64_t now);

  // Appends the trailer, makes the sizes final and closes. False when some of that failed; the sizes then cover the
  // samples alone. True when nothing is open.
  bool Finish();

  // Asks for a "meta" chunk in the file now open. Open clears this for every file.
  void SetSignalDescription(bool wanted) { m_bSignalDescription = wanted; }

  bool IsOpen() const { return m_file.IsOpen(); }
  // Whether Open ever succeeded, even if the file is closed again.
  bool HasOpened() const { return m_bHasOpened; }
  std::uint32_t ErrorCode() const { return m_nErrorCode; }  // the system's, of the last failure

 private:
  bool WriteAll(std::string_view bytes) { return m_file.Write(bytes.data(), bytes.size()) == bytes.size(); }
  bool Patch(std::int64_t offset, std::string_view bytes) { return m_file.Seek(offset) && WriteAll(bytes); }
  bool PatchSizes(std::int64_t fileSize);
  std::int64_t DataEnd() const { return m_nDataOffset + m_nDataBytes; }
  void CutToWholeBlocks();
  void NoteError();

  CFile m_file;
  bool m_bHasOpened = false;
  bool m_bRF64 = false;
  bool m_bSignalDescription = false;
  std::uint32_t m_nErrorCode = 0;
  std::uint32_t m_nBytesPerValue = 0;
  std::int64_t m_nDataOffset = 0;  // of the first sample
  std::int64_t m_nDataBytes = 0;   // in whole blocks
  std::int64_t m_nPatchTick = 0;   // seconds since 1970 of the last rewritten RF64 sizes, in steps of 16
  SInfoTexts m_texts;
  SSignalFacts m_signal;
};

}  // namespace carvello
