#include "cluster/part_source.h"

#include <algorithm>
#include <cstring>
#include <stdexcept>
#include <utility>

#include "support/formatting.h"
#include "support/text.h"

namespace carvello {

CPartSource::CPartSource(std::vector<SReadyPart> parts) : m_parts(std::move(parts)) {
  for (SReadyPart& part : m_parts) {
    m_marks.insert(m_marks.end(), part.manifest.marks.begin(), part.manifest.marks.end());
    part.manifest.marks = {};
  }
  std::sort(m_marks.begin(), m_marks.end(), [](const SStretchMark& one, const SStretchMark& other) {
    return std::pair(one.llFrame, one.nOutput) < std::pair(other.llFrame, other.nOutput);
  });
}

void CPartSource::Open() {
  if (m_nPart == m_parts.size()) throw std::runtime_error("the parts hold fewer samples than are due");
  const std::string& path = m_parts[m_nPart].strPath;
  SPartSamples samples;
  std::string error;
  if (!FindPartSamples(path, samples, error)) throw std::runtime_error(error);
  m_nBits = samples.nBitsPerSample;
  m_nLeft = samples.nBytes / samples.FrameBytes();
  if (m_nLeft != m_parts[m_nPart].manifest.nFrames) {
    throw std::runtime_error(path + ": it has not the samples that its manifest tells of");
  }
  m_hash = {};
  if (!m_file.Open(path, platform::EOpenMode::ReadShared) || !m_file.Seek(samples.nOffset)) {
    throw std::runtime_error(path + ": cannot be read: " + SystemErrorText());
  }
}

void CPartSource::CheckEnd() {
  const SReadyPart& part = m_parts[m_nPart++];
  m_file.Close();
  if (m_hash.Hex() != part.manifest.strSha256) {
    throw std::runtime_error(part.strPath +
                             ": its samples are not those that were written. Remove it, and do its task "
                             "again");
  }
}

void CPartSource::Read(SComplex* destination, std::size_t count) {
  while (count > 0) {
    if (!m_file.IsOpen()) Open();
    const auto frames = static_cast<std::size_t>(std::min<std::int64_t>(m_nLeft, static_cast<std::int64_t>(count)));
    m_bytes.resize(frames * 2 * (m_nBits / 8));
    if (!m_file.ReadExactly(m_bytes.data(), m_bytes.size())) {
      throw std::runtime_error(m_parts[m_nPart].strPath + ": cannot be read: " +
                               (m_file.ReadError() == 0 ? "the file ends early" : SystemErrorText(m_file.ReadError())));
    }
    m_nBytesRead += static_cast<std::int64_t>(m_bytes.size());
    m_hash.Add(m_bytes.data(), m_bytes.size());
    if (m_nBits == 32) {
      std::memcpy(destination, m_bytes.data(), m_bytes.size());
    } else {
      for (std::size_t i = 0; i < frames; ++i) {
        std::int16_t values[2];
        std::memcpy(values, m_bytes.data() + i * sizeof(values), sizeof(values));
        destination[i] = {static_cast<float>(values[0]), static_cast<float>(values[1])};
      }
    }
    destination += frames;
    count -= frames;
    m_nLeft -= static_cast<std::int64_t>(frames);
    if (m_nLeft == 0) CheckEnd();
  }
}

// What one part does not know yet another one does, and none knows more than there is.
std::int64_t CPartSource::GivenBy(std::int64_t frame) const {
  const auto behind = std::upper_bound(m_marks.begin(), m_marks.end(), frame,
                                       [](std::int64_t at, const SStretchMark& mark) { return at < mark.llFrame; });
  return behind != m_marks.begin() && behind[-1].llFrame == frame ? behind[-1].nOutput : 0;
}

}  // namespace carvello
