// CInputFile: the file of a recording that a job reads at the moment, held against what the analysis found.
#pragma once

#include <cstdint>
#include <string>

#include "dsp/primitives.h"
#include "engine/block_reader.h"
#include "input/recording_set.h"
#include "input/wave_file_reader.h"

namespace carvello {

// Every step tells whether the file is still the one that was described: the same file of the same size, untouched
// since, with the same format and as many sample bytes. Where it is not, Problem() names the file and what is wrong,
// and the samples are not to be used. Used on the reader's thread.
class CInputFile {
 public:
  // `format`: that of the set. `floatScale`: see CWaveFileReader::FloatScale.
  void Describe(const WAVEFORMATEXTENSIBLE& format, bool floatScale);

  // Opens the file and stands at its first sample. On false it is closed again.
  bool Open(const SRecordingFile& file);
  void Close();
  bool SkipFrames(std::int64_t frames);
  // Reads at most kBlockFrames frames; fewer at the end of the file, and before a place that cannot be read: Problem()
  // tells the two apart. 0 when the file has changed.
  std::uint32_t ReadBlock(SComplex* destination);

  std::int64_t Frames() const { return BytesPerFrame() == 0 ? 0 : m_file.DataBytesTotal() / BytesPerFrame(); }
  std::uint32_t BytesPerFrame() const { return m_file.BytesPerFrame(); }
  // Whether less than a frame is left to read.
  bool AtEnd() const;
  // Empty while the file is what it should be.
  const std::string& Problem() const { return m_strProblem; }
  CMyStringArray& Log() { return m_file.Log(); }

 private:
  bool CheckStamp();
  bool CheckContents(const WAVEFORMATEXTENSIBLE& format, std::int64_t dataBytes);
  bool Fail(const std::string& text);

  CWaveFileReader m_file;
  CBlockReader m_blockReader;
  WAVEFORMATEXTENSIBLE m_format;
  SRecordingFile m_expected;
  std::string m_strProblem;
};

}  // namespace carvello
