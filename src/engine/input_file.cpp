#include "engine/input_file.h"

#include "support/formatting.h"
#include "support/text.h"

namespace carvello {

namespace {

bool SameSamples(const WAVEFORMATEXTENSIBLE& a, const WAVEFORMATEXTENSIBLE& b) {
  return a.Format.nChannels == b.Format.nChannels && a.Format.nSamplesPerSec == b.Format.nSamplesPerSec &&
         a.Format.wBitsPerSample == b.Format.wBitsPerSample && a.SubFormat == b.SubFormat;
}

std::string FormatText(const WAVEFORMATEXTENSIBLE& format) {
  const bool isFloat = format.SubFormat == KSDATAFORMAT_SUBTYPE_IEEE_FLOAT;
  return Format("%u-bit %s at %u Hz", static_cast<unsigned>(format.Format.wBitsPerSample), isFloat ? "float" : "PCM",
                format.Format.nSamplesPerSec);
}

}  // namespace

void CInputFile::Describe(const SSampleKind& kind, const WAVEFORMATEXTENSIBLE& format) {
  m_kind = kind;
  m_format = format;
  m_strProblem.clear();
}

bool CInputFile::Open(const SRecordingFile& file) {
  m_strProblem.clear();
  m_expected = file;
  if (!m_file.Open(file.strPath)) {
    return Fail(Format("cannot be opened - %s", SystemErrorText(m_file.File().ErrorCode()).c_str()));
  }
  const bool good = CheckStamp() && (file.container == EContainer::Wave ? FindInWave() : FindByLayout());
  if (!good) m_file.Close();
  return good;
}

bool CInputFile::FindInWave() {
  WAVEFORMATEXTENSIBLE format;
  std::int64_t dataBytes = 0;
  if (!m_file.File().ParseWave(format, dataBytes)) {
    const std::uint32_t error = m_file.File().ErrorCode();
    return Fail(error != 0 ? Format("cannot be read - %s", SystemErrorText(error).c_str())
                           : "no samples could be found in it");
  }
  if (!KindOfWave(format).IsKnown()) return Fail(UnsupportedFormatText(format));
  if (!SameSamples(format, m_format)) {
    return Fail(Format("its samples are %s, those of the recording %s", FormatText(format).c_str(),
                       FormatText(m_format).c_str()));
  }
  if (dataBytes != m_expected.nSampleBytes) {
    return Fail(Format("it holds %lld sample bytes, the recording has %lld there", static_cast<long long>(dataBytes),
                       static_cast<long long>(m_expected.nSampleBytes)));
  }
  m_file.BeginWave(m_kind);
  return true;
}

// The file is as large and as old as it was: its samples lie where they lay then.
bool CInputFile::FindByLayout() {
  if (!CheckDescribing()) return false;
  m_file.Begin(m_kind, m_expected.layout);
  return true;
}

bool CInputFile::CheckDescribing() {
  for (const SDescribingFile& file : m_expected.describedBy) {
    const auto status = platform::GetFileStatus(file.strPath);
    if (!status) return Fail(Format("%s, which describes it, cannot be had any more", file.strPath.c_str()));
    const SFileStamp found(*status);
    if (found.nSize != file.stamp.nSize || found.nModified != file.stamp.nModified) {
      return Fail(Format("%s, which describes it, has changed since it was analysed", file.strPath.c_str()));
    }
  }
  return true;
}

void CInputFile::Close() {
  m_file.Close();
}

void CInputFile::Forget() {
  m_file.Close();
  m_strProblem.clear();
}

bool CInputFile::SkipFrames(std::int64_t frames) {
  if (m_file.Seek(frames)) return true;
  return Fail(Format("frame %lld cannot be reached", static_cast<long long>(frames)));
}

std::uint32_t CInputFile::ReadBlock(SComplex* destination, std::uint32_t frames) {
  const std::uint32_t done = m_blockReader.ReadBlock(m_file, destination, frames);
  // What was read counts only if the file is still the same behind it.
  if (!CheckStamp() || !CheckDescribing()) return 0;
  const std::uint32_t error = m_file.File().ErrorCode();
  if (error != 0 || (done < frames && !AtEnd())) {
    const std::string reason = error != 0 ? SystemErrorText(error) : "the file ends too early";
    const long long position = Position() * BytesPerFrame();
    const long long bytes = Frames() * BytesPerFrame();
    Fail(Format("reading stopped at byte %lld of its %lld sample bytes - %s", position, bytes, reason.c_str()));
  }
  return done;
}

bool CInputFile::CheckStamp() {
  const auto status = m_file.File().Status();
  if (!status) return Fail("its status cannot be had any more");
  const SFileStamp found(*status);
  if (found == m_expected.stamp) return true;
  if (found.nSize != m_expected.stamp.nSize) {
    return Fail(Format("it has changed since it was analysed: %lld bytes instead of %lld",
                       static_cast<long long>(found.nSize), static_cast<long long>(m_expected.stamp.nSize)));
  }
  if (found.nModified != m_expected.stamp.nModified) {
    return Fail("it has changed since it was analysed: it was written to");
  }
  // In a job of hours the system forgets files that nobody reads, and with them numbers that it made up.
  if (found.nVolume == m_expected.stamp.nVolume && !platform::KeepsFileNumbers(m_expected.strPath)) return true;
  return Fail("it has changed since it was analysed: another file has its name");
}

// The first problem is kept. Always false.
bool CInputFile::Fail(const std::string& text) {
  if (m_strProblem.empty()) m_strProblem = m_expected.strPath + ": " + text;
  return false;
}

}  // namespace carvello
