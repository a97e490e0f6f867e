// CRiffFileWriter: one output recording being written, RIFF WAVE or RF64 (EBU Tech 3306).
//
// The header is complete from the start and its sizes follow the samples while the file grows, so that a file whose
// program was killed can still be read. The samples stand on the medium before the sizes that tell of them, so that a
// power cut leaves such a file too. From Open to Finish the file is locked against other writers.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "recording/info_texts.h"
#include "recording/signal_info.h"
#include "recording/wave_format.h"
#include "recording/write_policy.h"
#include "support/file.h"

namespace carvello {

class CRiffFileWriter {
 public:
  // Before Open: how the file is created and kept safe.
  void SetPolicy(const SWritePolicy& policy) { m_policy = policy; }

  // Creates the file and writes the header through the head of the "data" chunk; `xml` is UTF-8. Gives the header's
  // size, which is the offset of the first sample; 0 on failure, ErrorText() then tells why. A file that could not even
  // take its header is removed again.
  std::int64_t Open(const std::string& path, const WAVEFORMATEX& format, std::string_view xml, const SInfoTexts& texts,
                    bool rf64, const SSignalFacts& signal);

  // Appends a block of samples as it stands. `now`, in seconds since 1970, is the clock by which RF64 sizes are
  // rewritten. On failure the file keeps the whole frames that it took, its sizes are made to fit and it is closed.
  bool Write(const void* block, std::uint32_t bytes, std::int64_t now);

  // Appends the trailer, makes the sizes final, holds what stands under the file's name against what was written, and
  // closes. False when some of that failed; the sizes then cover the samples alone. True when nothing is open. With
  // `keep` a finished file is not closed but handed over, still locked.
  bool Finish(CFile* keep = nullptr);

  // Asks for a "meta" chunk in the file now open. Open clears this for every file.
  void SetSignalDescription(bool wanted) { m_bSignalDescription = wanted; }

  bool IsOpen() const { return m_file.IsOpen(); }
  // Whether Open ever succeeded, even if the file is closed again.
  bool HasOpened() const { return m_bHasOpened; }
  // Sample bytes that the sizes tell of, or will at the next time they are written; also when the file is closed.
  std::int64_t DataBytes() const { return m_nDataBytes; }
  // Of the last failure; the code is the system's, 0 for what no call has refused.
  std::uint32_t ErrorCode() const { return m_nErrorCode; }
  const std::string& ErrorText() const { return m_strError; }

 private:
  bool WriteAll(std::string_view bytes) { return m_file.Write(bytes.data(), bytes.size()) == bytes.size(); }
  bool Patch(std::int64_t offset, std::string_view bytes) { return m_file.Seek(offset) && WriteAll(bytes); }
  bool BringSizesUpToDate(std::int64_t fileSize);
  bool PatchSizes(std::int64_t fileSize);
  bool WriteEnd();
  bool StandsUnderItsName();
  std::int64_t DataEnd() const { return m_nDataOffset + m_nDataBytes; }
  void KeepWholeFrames();
  void RemoveUnlessReplaced();
  bool Fails();
  bool Fails(const std::string& reason);

  CFile m_file;
  std::string m_strPath;
  SWritePolicy m_policy;
  bool m_bHasOpened = false;
  bool m_bRF64 = false;
  bool m_bSignalDescription = false;
  bool m_bDataLost = false;  // the system could not bring samples to the medium
  std::uint32_t m_nErrorCode = 0;
  std::string m_strError;
  std::uint32_t m_nBytesPerValue = 0;
  std::uint32_t m_nBytesPerFrame = 1;
  std::int64_t m_nDataOffset = 0;  // of the first sample
  std::int64_t m_nDataBytes = 0;
  std::int64_t m_nToldBytes = 0;  // sample bytes that the sizes in the file tell of
  std::int64_t m_nPatchTick = 0;  // seconds since 1970 of the last rewritten RF64 sizes, in steps of 16
  SInfoTexts m_texts;
  SSignalFacts m_signal;
};

}  // namespace carvello
