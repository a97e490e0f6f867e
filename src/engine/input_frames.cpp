#include "engine/input_frames.h"

#include <algorithm>

#include "input/format_chunk.h"

namespace carvello {

CInputFrames::CInputFrames(const std::vector<SRecordingFile>& files, const WAVEFORMATEX& format)
    : m_nFrameBytes(FrameBytes(format)) {
  m_begins.reserve(files.size());
  for (const SRecordingFile& file : files) {
    m_begins.push_back(m_nTotal);
    if (m_nFrameBytes > 0) m_nTotal += file.nSampleBytes / m_nFrameBytes;
  }
}

// Of files that begin at one frame all but the last are empty.
std::size_t CInputFrames::FileOf(std::int64_t frame) const {
  return static_cast<std::size_t>(std::upper_bound(m_begins.begin(), m_begins.end(), frame) - m_begins.begin()) - 1;
}

int CInputFrames::FileBegunBy(std::int64_t frame) const {
  if (frame <= 0) return -1;
  const auto found = std::lower_bound(m_begins.begin(), m_begins.end(), frame);
  return found == m_begins.end() || *found != frame ? -1 : static_cast<int>(found - m_begins.begin());
}

std::int64_t CInputFrames::Due(const OutputEntry& entry, std::int64_t late) const {
  const std::int64_t left = m_nTotal - entry.nStartSample;
  // A late start leaves less to an entry without an end; one with an end is owed all of it.
  const std::int64_t due = entry.nTotalSamples == 0 ? left - late : std::min(entry.nTotalSamples, left);
  return left - late <= 0 ? 0 : std::max<std::int64_t>(due, 0);
}

std::int64_t FirstFrame(const std::vector<const OutputEntry*>& entries) {
  const auto readFrom = [](const OutputEntry* entry) {
    return entry->stretch ? entry->stretch->llReadFrom : entry->nStartSample;
  };
  const auto first = std::min_element(entries.begin(), entries.end(),
                                      [&](const auto* a, const auto* b) { return readFrom(a) < readFrom(b); });
  return first == entries.end() ? 0 : readFrom(*first);
}

}  // namespace carvello
