#include "recording/wave_file_data.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "recording/metadata_xml.h"
#include "recording/riff_file_writer.h"
#include "recording/sigmf_data_writer.h"
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

  SWritePolicy policy = m_policy;
  // All files of an output whose name takes no number share one name, and each replaces the one before.
  if (split) policy.bReplace = sequence > 0 && m_strFileName == m_strFirstFile;
  std::int64_t headerBytes = 0;
  if (!OpenWriter(policy, now, xml, headerBytes)) {
    m_dwLastError = m_pWriter->ErrorCode();
    m_strLastError = m_pWriter->ErrorText();
    return false;
  }
  m_nFileBytes = static_cast<std::uint64_t>(headerBytes);
  m_nFileDataBytes = 0;
  m_nTotalBytes += m_nFileBytes;
  m_files.push_back(m_strFileName);
  if (const std::string meta = m_pWriter->MetaPath(); !meta.empty()) m_files.push_back(meta);
  return true;
}

// Makes a writer for the form of the output and opens the file.
bool CWaveFileData::OpenWriter(const SWritePolicy& policy, std::int64_t now, const std::string& xml,
                               std::int64_t& headerBytes) {
  if (m_description.format == EOutputFormat::SigMf) {
    auto pWriter = std::make_unique<CSigMfDataWriter>();
    CSigMfDataWriter& writer = *pWriter;
    m_pWriter = std::move(pWriter);
    writer.SetPolicy(policy);
    writer.SetMeta(MetaFacts());
    return writer.Open(m_strFileName, m_wfx.nBlockAlign);
  }
  auto pWriter = std::make_unique<CRiffFileWriter>();
  CRiffFileWriter& writer = *pWriter;
  m_pWriter = std::move(pWriter);
  writer.SetPolicy(policy);
  if (m_description.format == EOutputFormat::WaveAndMeta) writer.SetMeta(MetaFacts());
  const SSignalFacts signal{now, m_description.nRadioCenterFreq, m_description.nSampleRate, m_description.nSampleRate};
  headerBytes = writer.Open(m_strFileName, m_wfx, xml, m_infoTexts, m_description.bRF64, signal);
  return headerBytes != 0;
}

// Of the file that begins behind all samples written so far.
SSigMfFacts CWaveFileData::MetaFacts() const {
  constexpr std::int64_t kNanoseconds = 1'000'000'000;
  const std::int64_t frames = m_wfx.nBlockAlign == 0 ? 0 : m_nTotalDataBytes / m_wfx.nBlockAlign;
  const std::int64_t rate = std::max<std::int64_t>(m_description.nSampleRate, 1);
  const std::int64_t nanoseconds = m_description.nStartNanoseconds + frames % rate * kNanoseconds / rate;
  SSigMfFacts facts;
  if (m_description.format != EOutputFormat::SigMf) facts.strDataset = platform::NameOf(m_strFileName);
  facts.nBitsPerSample = m_description.nBitsPerSample;
  facts.nSampleRate = m_description.nSampleRate;
  facts.nFrequency = m_description.nRadioCenterFreq;
  facts.nBandwidth = m_description.nBandwidth;
  facts.tStart = m_description.tStart + frames / rate + nanoseconds / kNanoseconds;
  facts.nStartNanoseconds = static_cast<std::uint32_t>(nanoseconds % kNanoseconds);
  facts.nGlobalIndex = m_description.nGlobalIndex + frames;
  facts.strTitle = m_description.strTitle;
  facts.strHardware = Trim(m_description.strRadioModel + " " + m_description.strRadioSerial);
  facts.origin = m_description.origin;
  return facts;
}

bool CWaveFileData::Write(const void* block, std::uint32_t valueCount, std::uint32_t bits, bool bMaySplit, ETell tell) {
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
  if (!knownWidth || !m_pWriter->Write(block, bytes, now, tell)) {
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
  if (FinishFile(KeeperOfFirstPart()) && Open(m_strBaseFileName, m_nSequence + 1, m_strInternalTag)) {
    return true;
  }
  m_pWriter.reset();
  m_firstPart.Close();
  return false;
}

// Where the present file goes when it is finished, if it has to stay locked.
CFile* CWaveFileData::KeeperOfFirstPart() {
  return m_nSequence == 0 && CanSplitBefore() ? &m_firstPart : nullptr;
}

bool CWaveFileData::CanSplitBefore() const {
  return m_strFileName != m_strBaseFileName;
}

// The next file takes the bytes before the one that they leave is finished: until then no size there tells of them, so
// that whatever ends the program in between leaves two files that can be read, and no sample twice.
bool CWaveFileData::SplitBefore(std::uint32_t bytes) {
  if (!m_pWriter) {
    m_strLastError = "File not open";
    return false;
  }
  if (!IsSplitDue(bytes)) return true;
  m_pWriter->LeaveOut(bytes);
  CountDataBytes();
  m_dStartOffset += Seconds(m_nFileDataBytes);
  CFile* const keeper = KeeperOfFirstPart();
  const std::unique_ptr<CSampleFileWriter> pFull = std::move(m_pWriter);
  const bool opened = Open(m_strBaseFileName, m_nSequence + 1, m_strInternalTag);
  const bool moved = opened && pFull->MoveLeftOut(*m_pWriter, Now());
  if (opened) CountDataBytes();
  if (opened && !moved) {
    m_dwLastError = m_pWriter->ErrorCode();
    m_strLastError = Format("Error writing %d bytes - %s", static_cast<int>(bytes), m_pWriter->ErrorText().c_str());
  }
  const std::int64_t held = pFull->DataBytes();
  const bool finished = pFull->Finish(keeper);
  m_nTotalDataBytes += pFull->DataBytes() - held;
  m_nTotalBytes += static_cast<std::uint64_t>(pFull->DataBytes() - held);
  if (!finished) {
    m_dwLastError = pFull->ErrorCode();
    m_strLastError = Format("Error writing the end of the file - %s", pFull->ErrorText().c_str());
  }
  if (moved && finished) return true;
  if (m_pWriter->HasOpened()) m_pWriter->Finish();
  if (opened) CountDataBytes();
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
  // A writer that never got its file open has nothing to count, although the bytes of the file before still stand here.
  if (m_pWriter->HasOpened()) m_dStartOffset += Seconds(m_nFileDataBytes);
  if (!finished) {
    m_dwLastError = m_pWriter->ErrorCode();
    m_strLastError = Format("Error writing the end of the file - %s", m_pWriter->ErrorText().c_str());
  }
  m_pWriter.reset();
  return finished;
}

// Tested before a block is written: a file ends at the first block border at or beyond the limit, and an output that
// ends there gets no empty file behind it.
bool CWaveFileData::IsSplitDue(std::uint64_t less) const {
  return IsSplit() && (m_nFileBytes - less + 999) / 1000 >= std::uint64_t{m_description.nSplitMB} * 1000;
}

double CWaveFileData::Seconds(std::int64_t dataBytes) const {
  const double bytesPerSecond = m_description.nBitsPerSample * 2.0 / 8.0 * m_description.nSampleRate;
  return bytesPerSecond > 0 ? static_cast<double>(dataBytes) / bytesPerSecond : 0.0;
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
