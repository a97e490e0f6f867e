#include "recording/wave_file_data.h"

#include <cstddef>
#include <utility>

#include "recording/metadata_xml.h"
#include "recording/riff_file_writer.h"
#include "support/formatting.h"
#include "support/platform.h"
#include "support/system_time.h"
#include "support/text.h"
#include "support/version.h"

namespace carvello {

namespace {

constexpr std::uint16_t kChannels = 2;  // I and Q

// Radio models may carry pictographs (a padlock and the like), most of which UTF-16 writes with the surrogate D83D in
// front. Players show INFO texts in fonts without them, so they go, each as a whole: half a pair would be no character.
std::string WithoutPictographs(const std::string& text) {
  constexpr char16_t kPictographs = 0xD83D;
  const std::u16string wide = Utf8ToUtf16(text);
  std::u16string kept;
  for (std::size_t index = 0; index < wide.size(); ++index) {
    if (wide[index] == kPictographs) {
      ++index;  // its partner
    } else {
      kept.push_back(wide[index]);
    }
  }
  return Trim(Utf16ToUtf8(kept));
}

// " 000" and so on before the extension's dot. A path without one, or with its only one in front, stays as it is, and
// all files of the output share it.
std::string WithSequence(const std::string& basePath, std::uint32_t sequence) {
  const std::size_t dot = basePath.rfind('.');
  if (dot == std::string::npos || dot == 0) return basePath;
  return std::string(basePath).insert(dot, Format(" %03d", static_cast<int>(sequence)));
}

}  // namespace

CWaveFileData::CWaveFileData() : m_tOpened(CurrentTime()) {}

CWaveFileData::~CWaveFileData() = default;

void CWaveFileData::Reset() {
  m_description.nDualMode = 0;
  m_dwLastError = 0;
  m_nFileDataBytes = 0;
  m_nFileBytes = 0;
  m_nTotalBytes = 0;
  m_nTotalDataBytes = 0;
  m_description.nSplitMB = 0;
  m_description.nMaxSeconds = 0;
  m_nSequence = 0;
  m_tOpened = Now();
  m_strFirstFile.clear();
  m_strFileName.clear();
  m_strBaseFileName.clear();
  m_strInternalTag.clear();
  m_strLastError.clear();
  m_files.clear();
}

void CWaveFileData::Describe(SRecordingDescription description) {
  m_description = std::move(description);
}

bool CWaveFileData::IsOpen() const {
  return m_pWriter && m_pWriter->IsOpen();
}

std::int64_t CWaveFileData::Now() const {
  return CurrentTime();
}

bool CWaveFileData::Open(const std::string& basePath, std::uint32_t sequence, const std::string& internalTag) {
  const std::int64_t now = Now();
  m_strBaseFileName = basePath;
  m_strInternalTag = internalTag;
  m_nSequence = sequence;

  const bool split = m_description.nSplitMB != 0;
  const std::string previousFile = split && sequence != 0 ? m_strFileName : "";
  m_strFileName = split ? WithSequence(m_strBaseFileName, sequence) : m_strBaseFileName;
  if (sequence == 0) m_strFirstFile = m_strFileName;

  std::int64_t start =
      m_description.bStartValid ? m_description.tStart + static_cast<std::int64_t>(m_dStartOffset) : now;
  start -= m_description.nBackdateSeconds;
  m_description.nBackdateSeconds = 0;

  FillFormat();
  const std::string xml = MetadataXml(now, start, previousFile);
  FillInfoTexts(now);

  if (!m_pWriter) m_pWriter = std::make_unique<CRiffFileWriter>();
  SWritePolicy policy = m_policy;
  // All files of an output whose name takes no number share one name, and each replaces the one before.
  if (split) policy.bReplace = sequence > 0 && m_strFileName == m_strFirstFile;
  m_pWriter->SetPolicy(policy);
  const SSignalFacts signal{now, m_description.nRadioCenterFreq, m_description.nSampleRate, m_description.nSampleRate};
  const std::int64_t headerBytes = m_pWriter->Open(m_strFileName, m_wfx, xml, m_infoTexts, m_description.bRF64, signal);
  if (headerBytes == 0) {
    m_dwLastError = m_pWriter->ErrorCode();
    m_strLastError = m_pWriter->ErrorText();
    return false;
  }
  m_nFileBytes = static_cast<std::uint64_t>(headerBytes);
  m_nFileDataBytes = 0;
  m_nTotalBytes += m_nFileBytes;
  m_files.push_back(m_strFileName);
  return true;
}

bool CWaveFileData::Write(const void* block, std::uint32_t valueCount, std::uint32_t bits, bool bMaySplit) {
  if (!m_pWriter) {
    m_strLastError = "File not open";
    return false;
  }
  const std::uint32_t bytes = bits / 8 * valueCount;
  const std::int64_t now = Now();
  if (m_description.nMaxSeconds != 0 && now - m_tOpened > std::int64_t{m_description.nMaxSeconds}) {
    // The limit ends the recording without a fault, so the block goes without a message.
    return Close();
  }
  m_description.nBackdateSeconds = 0;
  if (bMaySplit && IsSplitDue() && !GoOnWithNextFile()) return false;

  const bool knownWidth = m_wfx.wBitsPerSample == 16 || m_wfx.wBitsPerSample == 24 || m_wfx.wBitsPerSample == 32;
  if (!knownWidth || !m_pWriter->Write(block, bytes, now)) {
    m_dwLastError = knownWidth ? m_pWriter->ErrorCode() : platform::LastError();
    const std::string reason = knownWidth ? m_pWriter->ErrorText() : SystemErrorText(m_dwLastError);
    FinishFile();
    m_strLastError = Format("Error writing %d bytes - %s", static_cast<int>(bytes), reason.c_str());
    return false;
  }
  CountDataBytes();
  return true;
}

// Closed for good when that fails: a full disk must not pass for a finished part, and a later file would leave a gap
// that no start time tells of.
bool CWaveFileData::GoOnWithNextFile() {
  const bool named = m_nSequence == 0 && m_strFileName != m_strBaseFileName;
  if (FinishFile(named ? &m_firstPart : nullptr) && Open(m_strBaseFileName, m_nSequence + 1, m_strInternalTag)) {
    return true;
  }
  m_pWriter.reset();
  m_firstPart.Close();
  return false;
}

// What the file holds, which after a failure is less than what was given to it.
void CWaveFileData::CountDataBytes() {
  const std::int64_t change = m_pWriter->DataBytes() - m_nFileDataBytes;
  m_nFileDataBytes += change;
  m_nTotalDataBytes += change;
  m_nFileBytes += static_cast<std::uint64_t>(change);
  m_nTotalBytes += static_cast<std::uint64_t>(change);
}

bool CWaveFileData::Close() {
  if (m_pWriter) m_strLastError.clear();
  if (FinishFile() && !m_firstPart.Close()) {
    m_dwLastError = platform::LastError();
    m_strLastError = Format("Error writing the first file - %s", SystemErrorText(m_dwLastError).c_str());
  }
  m_firstPart.Close();
  return true;
}

bool CWaveFileData::FinishFile(CFile* keep) {
  if (!m_pWriter) return true;
  const bool finished = m_pWriter->Finish(keep);
  if (m_pWriter->HasOpened()) CountDataBytes();
  const double bytesPerSecond = m_description.nBitsPerSample * 2.0 / 8.0 * m_description.nSampleRate;
  // A writer that never got its file open has nothing to count, although the bytes of the file before still stand here.
  if (m_pWriter->HasOpened() && bytesPerSecond > 0) {
    m_dStartOffset += static_cast<double>(m_nFileDataBytes) / bytesPerSecond;
  }
  if (!finished) {
    m_dwLastError = m_pWriter->ErrorCode();
    m_strLastError = Format("Error writing the end of the file - %s", m_pWriter->ErrorText().c_str());
  }
  m_pWriter.reset();
  return finished;
}

// Tested before a block is written: a file ends at the first block border at or beyond the limit, and an output that
// ends there gets no empty file behind it.
bool CWaveFileData::IsSplitDue() const {
  return m_description.nSplitMB != 0 && (m_nFileBytes + 999) / 1000 >= std::uint64_t{m_description.nSplitMB} * 1000;
}

void CWaveFileData::FillFormat() {
  m_wfx.wFormatTag = m_description.nBitsPerSample == 32 ? kFormatTagFloat : kFormatTagPcm;
  m_wfx.nChannels = kChannels;
  m_wfx.nSamplesPerSec = m_description.nSampleRate;
  m_wfx.nBlockAlign = static_cast<std::uint16_t>(m_description.nBitsPerSample / 8 * kChannels);
  m_wfx.nAvgBytesPerSec = m_wfx.nBlockAlign * m_description.nSampleRate;
  m_wfx.wBitsPerSample = static_cast<std::uint16_t>(m_description.nBitsPerSample);
  m_wfx.cbSize = 0;
}

std::string CWaveFileData::MetadataXml(std::int64_t now, std::int64_t start, const std::string& previousFile) const {
  SMetadataFacts facts;
  facts.tCreated = now;
  facts.tStart = start;
  facts.strFileName = m_strFileName;
  facts.strFirstFile = m_strFirstFile;
  facts.strPreviousFile = previousFile;
  facts.strInternalTag = m_strInternalTag;
  facts.strRadioModel = m_description.strRadioModel;
  facts.strRadioSerial = m_description.strRadioSerial;
  facts.nDualMode = m_description.nDualMode;
  facts.nSequence = static_cast<std::int32_t>(m_nSequence);
  facts.nADFrequency = m_description.nADFrequency;
  facts.nBitsPerSample = m_wfx.wBitsPerSample;
  facts.nBytesPerSecond = m_wfx.nAvgBytesPerSec;
  facts.nRadioCenterFreq = m_description.nRadioCenterFreq;
  facts.nSampleRate = m_description.nSampleRate;
  return BuildMetadataXml(facts);
}

void CWaveFileData::FillInfoTexts(std::int64_t now) {
  m_infoTexts.strINAM = Format("%s, %s", m_description.strTitle.c_str(), FormatLocal("%Y-%m-%d %H:%M", now).c_str());
  m_infoTexts.strIPRD = Format("SDR Data (IQ) Recordings, %s", m_description.bRF64 ? "WAV RF64" : "WAV");
  m_infoTexts.strIART = Format("Halvarn, %s", WithoutPictographs(m_description.strRadioModel).c_str());
  m_infoTexts.strICOP = Format("Software %s", VersionValue("LegalCopyright").c_str());
  m_infoTexts.strICMT =
      Format("Created by %s\\%s on %s, filename %s", platform::ComputerName().c_str(), platform::UserName().c_str(),
             FormatLocal("%Y-%m-%d %H:%M:%S", now).c_str(), m_strFileName.c_str());
}

}  // namespace carvello
