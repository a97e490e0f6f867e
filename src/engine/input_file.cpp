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

void CInputFile::Describe(const WAVEFORMATEXTENSIBLE& format, bool floatScale) {
  m_format = format;
  m_file.SetFloatScale(floatScale);
  m_strProblem.clear();
}

bool CInputFile::Open(const SRecordingFile& file) {
  m_strProblem.clear();
  m_expected = file;
  WAVEFORMATEXTENSIBLE format;
  std::int64_t dataBytes = 0;
  if (!m_file.Open(file.strPath)) {
    return Fail(Format("cannot be opened - %s", SystemErrorText(m_file.ErrorCode()).c_str()));
  }
  bool good = CheckStamp();
  if (good && !m_file.ParseWave(format, dataBytes)) {
    const std::uint32_t error = m_file.ErrorCode();
    good = Fail(error != 0 ? Format("cannot be read - %s", SystemErrorText(error).c_str())
                           : "no samples could be found in it");
  }
  if (good && !CanConvert(format)) good = Fail(UnsupportedFormatText(format));
  if (good) good = CheckContents(format, dataBytes);
  if (!good) m_file.Close();
  return good;
}

void CInputFile::Close() {
  m_file.Close();
}

bool CInputFile::SkipFrames(std::int64_t frames) {
  if (m_file.SkipFrames(frames)) return true;
  return Fail(Format("frame %lld cannot be reached", static_cast<long long>(frames)));
}

std::uint32_t CInputFile::ReadBlock(SComplex* destination) {
  const std::uint32_t frames = m_blockReader.ReadBlock(m_file, destination);
  // What was read counts only if the file is still the same behind it.
  if (!CheckStamp()) return 0;
  if (m_file.ErrorCode() != 0 || (frames < kBlockFrames && !AtEnd())) {
    const std::string reason =
        m_file.ErrorCode() != 0 ? SystemErrorText(m_file.ErrorCode()) : "the file ends too early";
    Fail(Format("reading stopped at byte %lld of its %lld sample bytes - %s",
                static_cast<long long>(m_file.DataBytesRead()), static_cast<long long>(m_file.DataBytesTotal()),
                reason.c_str()));
  }
  return frames;
}

bool CInputFile::AtEnd() const {
  return m_file.DataBytesTotal() - m_file.DataBytesRead() < std::int64_t{BytesPerFrame()};
}

bool CInputFile::CheckStamp() {
  const auto status = m_file.Status();
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

bool CInputFile::CheckContents(const WAVEFORMATEXTENSIBLE& format, std::int64_t dataBytes) {
  if (!SameSamples(format, m_format)) {
    return Fail(Format("its samples are %s, those of the recording %s", FormatText(format).c_str(),
                       FormatText(m_format).c_str()));
  }
  if (dataBytes != m_expected.nSampleBytes) {
    return Fail(Format("it holds %lld sample bytes, the recording has %lld there", static_cast<long long>(dataBytes),
                       static_cast<long long>(m_expected.nSampleBytes)));
  }
  return true;
}

// The first problem is kept. Always false.
bool CInputFile::Fail(const std::string& text) {
  if (m_strProblem.empty()) m_strProblem = m_expected.strPath + ": " + text;
  return false;
}

}  // namespace carvello
