// CRiffFileWriter: one output recording being written, RIFF WAVE or RF64 (EBU Tech 3306).
//
// The header is complete from the start and its sizes follow the samples while the file grows.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "recording/info_texts.h"
#include "recording/sample_file_writer.h"
#include "recording/signal_info.h"
#include "recording/wave_format.h"

namespace carvello {

class CRiffFileWriter : public CSampleFileWriter {
 public:
  // Creates the file and writes the header through the head of the "data" chunk; `xml` is UTF-8. Gives the header's
  // size, which is the offset of the first sample; 0 on failure, ErrorText() then tells why.
  std::int64_t Open(const std::string& path, const WAVEFORMATEX& format, std::string_view xml, const SInfoTexts& texts,
                    bool rf64, const SSignalFacts& signal);

  // Asks for a "meta" chunk in the file now open. Open clears this for every file.
  void SetSignalDescription(bool wanted) { m_bSignalDescription = wanted; }

 private:
  std::string Tail() const override;
  bool AreSizesDue(std::int64_t now) override;
  bool PatchSizes(std::int64_t fileSize) override;
  bool EndsWithSamples() const override { return false; }
  bool IsWhole(CFile& named, bool& readable) const override;

  bool m_bRF64 = false;
  bool m_bSignalDescription = false;
  std::uint32_t m_nBytesPerValue = 0;
  std::int64_t m_nPatchTick = 0;  // seconds since 1970 of the last rewritten RF64 sizes, in steps of 16
  SInfoTexts m_texts;
  SSignalFacts m_signal;
};

}  // namespace carvello
