#include "input/sample_file.h"

#include <algorithm>
#include <cstring>

namespace carvello {

bool CSampleFile::Open(const std::string& fileName) {
  Begin({}, {});
  return m_file.Open(fileName);
}

void CSampleFile::Close() {
  m_file.Close();
  Begin({}, {});
}

void CSampleFile::Begin(const SSampleKind& kind, const SSampleLayout& layout) {
  m_kind = kind;
  m_runs.clear();
  m_begins.clear();
  m_nFrames = 0;
  m_nRun = 0;
  m_nPosition = 0;
  for (const SSampleRun& run : layout.runs) {
    if (run.nFrames <= 0 || FrameBytes() == 0) continue;
    m_begins.push_back(m_nFrames);
    m_runs.push_back(run);
    m_nFrames += run.nFrames;
  }
}

void CSampleFile::BeginWave(const SSampleKind& kind) {
  const std::int64_t frameBytes = kind.FrameBytes();
  Begin(kind, {m_file.DataStart(), frameBytes == 0 ? 0 : m_file.DataBytesTotal() / frameBytes});
}

bool CSampleFile::Seek(std::int64_t frame) {
  if (frame < 0 || frame > m_nFrames) return false;
  m_nPosition = frame;
  FindRun();
  return true;
}

// Behind the last frame it stays the last run.
void CSampleFile::FindRun() {
  if (m_runs.empty()) return;
  const auto behind = std::upper_bound(m_begins.begin(), m_begins.end(), m_nPosition);
  m_nRun = static_cast<std::size_t>(behind - m_begins.begin()) - 1;
}

CSampleFile::SAhead CSampleFile::Ahead() const {
  if (m_nPosition >= m_nFrames) return {};
  return {m_begins[m_nRun] + m_runs[m_nRun].nFrames - m_nPosition, m_runs[m_nRun].IsSilence()};
}

void CSampleFile::Pass(std::int64_t frames) {
  m_nPosition += frames;
  if (m_nRun + 1 < m_runs.size() && m_nPosition >= m_begins[m_nRun + 1]) FindRun();
}

std::int64_t CSampleFile::Read(void* buffer, std::int64_t frames) {
  auto* const bytes = static_cast<std::uint8_t*>(buffer);
  std::int64_t done = 0;
  while (done < frames) {
    const SSampleRun& run = m_runs[m_nRun];
    const std::int64_t inRun = m_nPosition + done - m_begins[m_nRun];
    const SStretch stretch = StretchAt(run, inRun, frames - done);
    std::uint8_t* const place = bytes + done * FrameBytes();
    const auto read =
        static_cast<std::int64_t>(m_file.ReadAt(stretch.nPosition, place, static_cast<std::size_t>(stretch.nBytes)));
    done += TakeOut(run, inRun % run.nPieceFrames, place, read);
    if (read < stretch.nBytes) break;
  }
  Pass(done);
  return done;
}

// Small pieces are read together with what stands between them, as much as the place of the wanted frames can hold: a
// call for each would take longer than their bytes do. Ends with a wanted frame at the latest.
CSampleFile::SStretch CSampleFile::StretchAt(const SSampleRun& run, std::int64_t frame, std::int64_t wanted) const {
  const std::int64_t frameBytes = FrameBytes();
  const auto positionOf = [&run, frameBytes](std::int64_t inRun) {
    return run.nOffset + inRun / run.nPieceFrames * run.nStride + inRun % run.nPieceFrames * frameBytes;
  };
  const std::int64_t inPiece = std::min(wanted, run.nPieceFrames - frame % run.nPieceFrames);
  const std::int64_t position = positionOf(frame);
  const bool isClose = inPiece < wanted && run.nStride / 2 <= run.nPieceFrames * frameBytes;
  if (!isClose) return {position, inPiece * frameBytes};
  return {position, std::min(wanted * frameBytes, positionOf(frame + wanted - 1) + frameBytes - position)};
}

// Moves the frames together that begin so many frames behind the begin of a piece. How many whole ones there are.
std::int64_t CSampleFile::TakeOut(const SSampleRun& run, std::int64_t inPiece, std::uint8_t* bytes,
                                  std::int64_t count) const {
  const std::int64_t frameBytes = FrameBytes();
  std::int64_t frames = std::min(count / frameBytes, run.nPieceFrames - inPiece);
  for (std::int64_t from = run.nStride - inPiece * frameBytes; run.nStride > 0 && from < count; from += run.nStride) {
    const std::int64_t more = std::min((count - from) / frameBytes, run.nPieceFrames);
    std::memmove(bytes + frames * frameBytes, bytes + from, static_cast<std::size_t>(more * frameBytes));
    frames += more;
  }
  return frames;
}

}  // namespace carvello
