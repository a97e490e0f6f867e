// CRecordingStream: the files of a recording as one stream of frames, each held against what the analysis found.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "engine/frame_source.h"
#include "engine/input_file.h"
#include "engine/input_frames.h"
#include "input/recording_set.h"

namespace carvello {

// One file is open at a time, so the length of a set costs nothing. Read goes anywhere; a job, which tells its user of
// every file, goes from file to file itself. Used by one thread at a time.
class CRecordingStream final : public IFrameSource {
 public:
  CRecordingStream() = default;
  explicit CRecordingStream(const CRecordingSet& recording);
  // The files of a set, the kind of their samples and their format.
  void Describe(std::vector<SRecordingFile> files, const SSampleKind& kind, const WAVEFORMATEXTENSIBLE& format);

  std::int64_t Frames() const override { return m_frames.Total(); }
  std::int64_t Read(std::int64_t first, SComplex* destination, std::int64_t count) override;
  // Also of the last step by file.
  const std::string& Problem() const override { return m_file.Problem(); }

  const CInputFrames& InputFrames() const { return m_frames; }
  std::size_t Files() const { return m_files.size(); }
  // Opens a file in the place of the one that is open and stands at its first sample. On false none is open.
  bool OpenFile(std::size_t file);
  void CloseFile() { m_file.Close(); }
  // Of the open file, or the one that was open last.
  const SRecordingFile& File() const { return m_files[m_nFile]; }
  const SRecordingFile& File(std::size_t file) const { return m_files[file]; }
  std::size_t FileIndex() const { return m_nFile; }
  // Its samples; see CInputFile.
  CInputFile& Samples() { return m_file; }

 private:
  bool GoTo(std::int64_t frame);

  std::vector<SRecordingFile> m_files;
  CInputFrames m_frames{{}, {}};
  CInputFile m_file;
  std::size_t m_nFile = 0;
};

}  // namespace carvello
