// The frames of an input as a job counts them: what starts, lengths and all that is due are reckoned by.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "engine/output_entry.h"
#include "input/recording_set.h"

namespace carvello {

// By the bytes of the data chunks: the metadata of a set can tell other sizes. Every file brings its whole frames only.
class CInputFrames {
 public:
  CInputFrames(const std::vector<SRecordingFile>& files, const WAVEFORMATEX& format);
  explicit CInputFrames(const CRecordingSet& recording) : CInputFrames(recording.files, recording.format.Format) {}

  std::int64_t Total() const { return m_nTotal; }
  std::uint32_t BytesPerFrame() const { return m_nFrameBytes; }
  // The file that a frame of the input stands in, and the frame that a file begins with.
  std::size_t FileOf(std::int64_t frame) const;
  std::int64_t Begin(std::size_t file) const { return m_begins[file]; }
  std::int64_t End(std::size_t file) const { return file + 1 < m_begins.size() ? m_begins[file + 1] : m_nTotal; }
  // The file, none but the first, whose first frame this is; -1 when there is none.
  int FileBegunBy(std::int64_t frame) const;
  // Frames by which all entries of a job begin behind their start when this is the first frame that any of them wants.
  // Where a file begins with it, nothing is sought in that file and the writers are not told of those before: they skip
  // as much once more.
  std::int64_t Late(std::int64_t firstFrame) const { return FileBegunBy(firstFrame) < 0 ? 0 : firstFrame; }
  // Input frames that are due to an entry in a job that begins late by so many. 0 when it has no samples at all.
  std::int64_t Due(const OutputEntry& entry, std::int64_t late) const;

 private:
  std::uint32_t m_nFrameBytes = 0;
  std::int64_t m_nTotal = 0;
  std::vector<std::int64_t> m_begins;  // of the files
};

// The first frame that any of the entries wants, which is where their job begins to read.
std::int64_t FirstFrame(const std::vector<const OutputEntry*>& entries);

}  // namespace carvello
