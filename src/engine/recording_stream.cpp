#include "engine/recording_stream.h"

#include <algorithm>
#include <utility>

namespace carvello {

namespace {

constexpr std::size_t kLogGrowth = 100;

}  // namespace

CRecordingStream::CRecordingStream(const CRecordingSet& recording) {
  Describe(recording.files, recording.kind, recording.format);
}

void CRecordingStream::Describe(std::vector<SRecordingFile> files, const SSampleKind& kind,
                                const WAVEFORMATEXTENSIBLE& format) {
  m_file.Close();
  m_files = std::move(files);
  m_frames = CInputFrames(m_files, format.Format);
  m_file.Describe(kind, format);
  m_nFile = 0;
}

bool CRecordingStream::OpenFile(std::size_t file) {
  m_file.Close();
  m_nFile = file;
  return m_file.Open(m_files[file]);
}

std::int64_t CRecordingStream::Read(std::int64_t first, SComplex* destination, std::int64_t count) {
  // What could not be read is looked at anew: the reason may be gone.
  if (!Problem().empty()) m_file.Forget();
  std::int64_t done = 0;
  const std::int64_t wanted = first < 0 ? 0 : std::min(count, Frames() - first);
  while (done < wanted && GoTo(first + done)) {
    const std::int64_t left = std::min(wanted - done, m_file.Frames() - m_file.Position());
    done +=
        m_file.ReadBlock(destination + done, static_cast<std::uint32_t>(std::min<std::int64_t>(left, kBlockFrames)));
    if (!Problem().empty()) break;
  }
  return done;
}

bool CRecordingStream::GoTo(std::int64_t frame) {
  const std::size_t file = m_frames.FileOf(frame);
  if (!m_file.IsOpen() || file != m_nFile) {
    m_file.Log().Clear(kLogGrowth);  // who reads anywhere does not ask for the lines that the files leave
    if (!OpenFile(file)) return false;
  }
  const std::int64_t position = frame - m_frames.Begin(file);
  return position == m_file.Position() || m_file.SkipFrames(position);
}

}  // namespace carvello
