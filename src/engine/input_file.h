// CInputFile: the file of a recording that is read at the moment, held against what the analysis found.
#pragma once

#include <cstdint>
#include <string>

#include "dsp/primitives.h"
#include "engine/block_reader.h"
#include "input/recording_set.h"
#include "input/sample_file.h"
#include "recording/sample_kind.h"

namespace carvello {

// Every step tells whether the file is still the one that was described: the same file of the same size, untouched
// since, with the same format and as many sample bytes. Where it is not, Problem() names the file and what is wrong,
// and the samples are not to be used. Used by one thread at a time.
class CInputFile {
 public:
  // Kind of the samples and format of the set.
  void Describe(const SSampleKind& kind, const WAVEFORMATEXTENSIBLE& format);

  // Opens the file and stands at its first sample. On false it is closed again.
  bool Open(const SRecordingFile& file);
  void Close();
  // Closes it, and nothing is wrong with it any more.
  void Forget();
  bool IsOpen() const { return m_file.IsOpen(); }
  // Stands so many frames behind the first sample then.
  bool SkipFrames(std::int64_t frames);
  // Reads so many frames, kBlockFrames at most; fewer at the end of the file, and before a place that cannot be read:
  // Problem() tells the two apart. 0 when the file has changed.
  std::uint32_t ReadBlock(SComplex* destination, std::uint32_t frames = kBlockFrames);

  std::int64_t Frames() const { return m_file.Frames(); }
  std::uint32_t BytesPerFrame() const { return m_file.FrameBytes(); }
  // Frames in front of the next one that is read.
  std::int64_t Position() const { return m_file.Position(); }
  bool AtEnd() const { return m_file.Position() == m_file.Frames(); }
  // See CBlockReader::TakeSilenced.
  std::int64_t TakeSilenced() { return m_blockReader.TakeSilenced(); }
  // Empty while the file is what it should be.
  const std::string& Problem() const { return m_strProblem; }
  CMyStringArray& Log() { return m_file.File().Log(); }

 private:
  // Each tells whether the file is what was described.
  bool CheckStamp();
  bool CheckDescribing();
  bool FindInWave();
  bool FindByLayout();
  bool Fail(const std::string& text);

  CSampleFile m_file;
  CBlockReader m_blockReader;
  SSampleKind m_kind;
  WAVEFORMATEXTENSIBLE m_format;
  SRecordingFile m_expected;
  std::string m_strProblem;
};

}  // namespace carvello
