#include "input/numbered_set.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <optional>
#include <string_view>
#include <utility>

#include "input/format_chunk.h"
#include "input/member_memory.h"
#include "input/source_recognition.h"
#include "support/formatting.h"
#include "support/platform.h"
#include "support/text.h"
#include "support/version.h"

namespace carvello {

namespace {

constexpr std::uint32_t kUsualBits = 16;
constexpr std::int64_t kMaxBits = 64;
constexpr std::int64_t kMax32 = std::numeric_limits<std::uint32_t>::max();

// Members' names by number, made from the name of the first one.
class CMemberNames {
 public:
  explicit CMemberNames(std::string firstName) : m_strFirst(std::move(firstName)) {
    for (const std::string_view ending : {" 000.wav", " 000.WAV"}) {
      m_nEnding = m_strFirst.find(ending);
      m_strEnding = ending;
      if (IsNumbered()) break;
    }
  }

  bool IsNumbered() const { return m_nEnding != std::string::npos; }
  bool IsUpper() const { return m_strEnding == " 000.WAV"; }
  const std::string& First() const { return m_strFirst; }
  std::string Lower(unsigned number) const { return ReplaceAll(m_strFirst, m_strEnding, Format(" %03d.wav", number)); }
  // Where case matters, the members of a set in upper case have only this name.
  std::string Upper(unsigned number) const { return ReplaceAll(m_strFirst, m_strEnding, Format(" %03d.WAV", number)); }

  // The number in a member's name; nothing for any other name.
  std::optional<unsigned> NumberOf(const std::string& name) const {
    if (!IsNumbered() || name.size() <= m_nEnding) return std::nullopt;
    unsigned number = 0;
    std::from_chars(name.data() + m_nEnding + 1, name.data() + name.size(), number);
    if (!EqualsNoCaseAscii(Lower(number), name)) return std::nullopt;
    return number;
  }

 private:
  std::string m_strFirst;
  std::string m_strEnding;
  std::size_t m_nEnding = std::string::npos;
};

bool IsWholeNumber(const std::string& text) {
  std::string_view digits = text;
  digits.remove_prefix(std::min(digits.find_first_not_of(' '), digits.size()));
  if (digits.starts_with('+') || digits.starts_with('-')) digits.remove_prefix(1);
  return !digits.empty() && digits.find_first_not_of("0123456789") == std::string_view::npos;
}

class CNumberedSet {
 public:
  CNumberedSet(const std::string& selectedFile, const SFileFacts& selected, CRecordingSet& set, CMyStringArray& log)
      : m_strSelected(selectedFile),
        m_strName(platform::NameOf(selectedFile)),
        m_selected(selected),
        m_set(set),
        m_log(log) {}

  bool Describe();

 private:
  // The first member and, in `next`, the number behind it.
  bool AddFirst(const CMemberNames& names, unsigned& next);
  // False when there is no such member, or it cannot go on from the one before: the set ends before it. Also when it
  // cannot be read.
  bool AddNext(const CMemberNames& names, unsigned number);
  std::string FirstName(const std::string& told) const;
  bool DescribeBy(const std::string& path, const SFileFacts& first);
  // False when the file's data size cannot be had.
  bool Add(const std::string& path, const SFileFacts& facts, const SMetadataLists& metadata);
  void Add(const SRecordingFile& file);
  // Logs the reason; what is read so far is no whole set. Always false.
  bool FailRead(const std::string& path, const std::string& reason);
  // The number under the key of the first member's metadata, where it can be one; otherwise `instead`, with a warning
  // that calls it by its name.
  std::uint32_t Number(const std::string& path, const char* key, std::uint32_t instead);
  // False, with a line, for a start time in the metadata that cannot be. A missing one is 0, with a warning.
  bool TakeStartTime(const std::string& path);
  void TakeCentreFrequency(const std::string& path);
  void WarnIfUnequal(const std::string& path, const char* key, std::uint32_t told, std::uint32_t format);
  std::string PathOf(const std::string& name) const {
    return m_strSelected.substr(0, m_strSelected.size() - m_strName.size()) + name;
  }
  void Warn(const std::string& path, const std::string& text) {
    m_log.Add(Printable(Format("[WARNING] %s: %s", path.c_str(), text.c_str())));
  }

  const std::string& m_strSelected;
  const std::string m_strName;
  const SFileFacts& m_selected;  // or of the member that the selected file was described like
  CRecordingSet& m_set;
  CMyStringArray& m_log;
  std::int64_t m_nPreviousSize = -1;
  std::string m_strRead;  // the last member that was not just taken for one like its predecessor
};

bool CNumberedSet::Describe() {
  SMetadataLists metadata;
  ParseMetadataXml(m_selected.strXml, metadata);
  const CMemberNames names(FirstName(metadata.Find("FirstFile")));
  if (names.First().empty()) {
    const std::string problem = MetadataXmlProblem(m_selected.strXml);
    m_log.Add(Format("[ERROR] %s: %s", m_strSelected.c_str(),
                     problem.empty() ? "the XML metadata names no first file (attribute FirstFile)" : problem.c_str()));
    return false;
  }
  unsigned next = 1;
  if (!AddFirst(names, next)) return false;
  while (names.IsNumbered() && AddNext(names, next)) ++next;
  if (m_set.bReadFailed) return false;

  m_set.dDuration = static_cast<double>(m_set.TotalBytes()) / m_set.nBytesPerSecond;
  double seconds = 0;
  m_set.nEndMilliseconds = static_cast<std::uint32_t>(std::modf(m_set.dDuration, &seconds) * 1000);
  m_set.tEnd = m_set.tStart + static_cast<std::int64_t>(seconds);
  const auto isSelected = [&](const SRecordingFile& file) {
    return EqualsNoCaseAscii(platform::NameOf(file.strPath), m_strName);
  };
  if (std::none_of(m_set.files.begin(), m_set.files.end(), isSelected)) {
    Warn(m_strSelected, Format("not part of the set, which ends with %s", m_set.files.back().strPath.c_str()));
  }
  return true;
}

// The first member's name out of the metadata. Recordings of ours tell names without what stands before a ":", which is
// a letter like any other where drives have no letters; the selected file then lends it to all members.
std::string CNumberedSet::FirstName(const std::string& told) const {
  std::string name = told.substr(told.find_last_of("/\\") + 1);
  const std::string selected = FileNameOnly(m_strName);
  if (selected != m_strName && !name.empty() && name == FileNameOnly(name)) {
    name.insert(0, m_strName, 0, m_strName.size() - selected.size());
  }
  return name;
}

bool CNumberedSet::AddFirst(const CMemberNames& names, unsigned& next) {
  const std::string path = PathOf(names.First());
  const SFileFacts first = LookupMetadata(path);
  if (IsUnreadable(first)) return FailRead(path, first.strError);
  if (first.bRecording && !first.strXml.empty()) return DescribeBy(path, first);
  Warn(path, Format("%s; the selected file takes the place of the first one",
                    first.strError.empty() ? "no XML metadata" : first.strError.c_str()));
  // The set goes on behind the number of the selected file: from 1 it would run through its files out of order.
  next = names.NumberOf(m_strName).value_or(0) + 1;
  // The facts of a selected file that was never read itself are those of another member, whose times are not its own.
  const SFileFacts selected = LookupMetadata(m_strSelected);
  if (selected.bRecording && !selected.strXml.empty()) return DescribeBy(m_strSelected, selected);
  if (selected.nError != 0) return FailRead(m_strSelected, selected.strError);
  m_log.Add(Format("[ERROR] %s: %s", m_strSelected.c_str(),
                   selected.strError.empty() ? "no XML metadata" : selected.strError.c_str()));
  return false;
}

bool CNumberedSet::AddNext(const CMemberNames& names, unsigned number) {
  std::string path = PathOf(names.Lower(number));
  SFileLook look = LookAtFile(path);
  if (platform::MeansMissing(look.nError) && names.IsUpper()) {
    path = PathOf(names.Upper(number));
    look = LookAtFile(path);
  }
  if (platform::MeansMissing(look.nError)) return false;
  if (look.nError != 0) return FailRead(path, look.strHindrance);
  if (!look.strHindrance.empty()) {
    Warn(path, look.strHindrance + "; the set ends before it");
    return false;
  }
  if (look.status->nSize == m_nPreviousSize) {
    RememberMember(path, SFileStamp(*look.status), m_strRead);
    const SRecordingFile& previous = m_set.files.back();
    Add({path, previous.nDataBytes, 0, previous.nSampleBytes, SFileStamp(*look.status)});
    return true;
  }
  const SFileFacts facts = LookupMetadata(path);
  // Also of a file that was there a moment ago.
  if (facts.nError != 0) return FailRead(path, facts.strError);
  if (!facts.bRecording) {
    Warn(path, facts.strError + "; the set ends before it");
    return false;
  }
  if (facts.format.Format.nSamplesPerSec != m_set.format.Format.nSamplesPerSec ||
      facts.format.Format.wBitsPerSample != m_set.format.Format.wBitsPerSample ||
      facts.format.SubFormat != m_set.format.SubFormat) {
    Warn(path, "its sample format differs from that of the first file; the set ends before it");
    return false;
  }
  SMetadataLists metadata;
  ParseMetadataXml(facts.strXml, metadata);
  m_strRead = path;
  return Add(path, facts, metadata);
}

bool CNumberedSet::DescribeBy(const std::string& path, const SFileFacts& first) {
  m_strRead = path;
  m_set.format = first.format;
  m_set.bRF64 = first.bRF64;
  m_set.bFloat = IsFloat(first.format);
  m_set.strMetadata = first.strXml;
  ParseMetadataXml(first.strXml, m_set.metadata);
  const std::string problem = MetadataXmlProblem(first.strXml);
  if (!problem.empty()) Warn(path, problem);

  const WAVEFORMATEX& format = first.format.Format;
  m_set.nSampleRate = Number(path, "SampleRate", format.nSamplesPerSec);
  if (m_set.nSampleRate == 0) {
    m_log.Add(Format("[ERROR] %s: no sample rate, neither in the XML metadata (attribute SampleRate) nor in the format",
                     path.c_str()));
    return false;
  }
  WarnIfUnequal(path, "SampleRate", m_set.nSampleRate, format.nSamplesPerSec);
  m_set.nBandwidth = m_set.nSampleRate;
  const std::uint32_t bytesPerSecond = WholeBytesPerSecond(format, m_set.nSampleRate);
  m_set.nBytesPerSecond = Number(path, "BytesPerSecond", bytesPerSecond);
  WarnIfUnequal(path, "BytesPerSecond", m_set.nBytesPerSecond, bytesPerSecond);
  const std::int64_t bits = m_set.metadata.FindNumber("BitsPerSample");
  m_set.nBitsPerSample = bits >= 1 && bits <= kMaxBits ? static_cast<std::uint32_t>(bits) : kUsualBits;
  WarnIfUnequal(path, "BitsPerSample", m_set.nBitsPerSample, format.wBitsPerSample);
  if (!TakeStartTime(path)) return false;
  TakeCentreFrequency(path);

  const std::string& level = m_set.metadata.Find("XMLLevel");
  m_set.strSourceName = kSourceHalvarn;
  if (level == "XMLLevel003") m_set.strSourceName = kSourceHalvarn3;
  if (level == "XMLLevel002") m_set.strSourceName = kSourceHalvarn2;
  // Floats that this program wrote stand at 16-bit full scale already.
  m_set.kind = KindOfWave(m_set.format, m_set.metadata.Find("SoftwareName") == VersionValue("ProductName"));
  return Add(path, first, m_set.metadata);
}

void CNumberedSet::Add(const SRecordingFile& file) {
  m_set.AddFile(file);
  m_nPreviousSize = file.stamp.nSize;
}

bool CNumberedSet::Add(const std::string& path, const SFileFacts& facts, const SMetadataLists& metadata) {
  std::int64_t dataBytes = metadata.FindNumber("SizeInBytes");
  if (dataBytes <= 0 || dataBytes > facts.nFileSize) {
    if (dataBytes != 0) {
      Warn(path, Format("SizeInBytes \"%s\" cannot be, the size of its data chunk is taken",
                        metadata.Find("SizeInBytes").c_str()));
    }
    std::uint32_t error = 0;
    dataBytes = LookupDataSize(path, &error);
    if (error != 0) return FailRead(path, "cannot be read again: " + SystemErrorText(error));
  } else if (dataBytes > facts.nSampleBytes) {
    Warn(path, Format("SizeInBytes is %lld, but its data chunk holds %lld bytes", static_cast<long long>(dataBytes),
                      static_cast<long long>(facts.nSampleBytes)));
  }
  for (const std::string& warning : facts.warnings) Warn(path, warning);
  Add({path, dataBytes, 0, facts.nSampleBytes, facts.stamp});
  return true;
}

bool CNumberedSet::FailRead(const std::string& path, const std::string& reason) {
  m_log.Add(Printable(Format("[ERROR] %s: %s", path.c_str(), reason.c_str())));
  m_set.bReadFailed = true;
  return false;
}

std::uint32_t CNumberedSet::Number(const std::string& path, const char* key, std::uint32_t instead) {
  const std::int64_t number = m_set.metadata.FindNumber(key);
  if (number >= 1 && number <= kMax32) return static_cast<std::uint32_t>(number);
  Warn(path, Format("no usable %s in the XML metadata, %u taken", key, instead));
  return instead;
}

bool CNumberedSet::TakeStartTime(const std::string& path) {
  const std::string& told = m_set.metadata.Find("UTCSeconds");
  m_set.tStart = m_set.metadata.FindNumber("UTCSeconds");
  if (m_set.tStart < 0 || m_set.tStart > kMax32) {
    m_log.Add(Format("[ERROR] %s: start time UTCSeconds \"%s\" of the XML metadata is no time from 1970 to 2106",
                     path.c_str(), Printable(told).c_str()));
    return false;
  }
  if (told.find_first_of("0123456789") == std::string::npos) {
    Warn(path, "no usable UTCSeconds in the XML metadata, 0 taken");
  }
  return true;
}

void CNumberedSet::TakeCentreFrequency(const std::string& path) {
  const char* const key = m_set.metadata.Find("RadioCenterFreq").empty() ? "CenterFrequency" : "RadioCenterFreq";
  const std::string& told = m_set.metadata.Find(key);
  m_set.nRadioCenterFreq = m_set.metadata.FindNumber(key);
  if (told.empty()) {
    Warn(path, "no centre frequency in the XML metadata (attribute RadioCenterFreq), 0 Hz taken");
  } else if (!IsWholeNumber(told)) {
    Warn(path, Format("%s \"%s\" is no whole number, %lld Hz taken", key, told.c_str(),
                      static_cast<long long>(m_set.nRadioCenterFreq)));
  }
}

void CNumberedSet::WarnIfUnequal(const std::string& path, const char* key, std::uint32_t told, std::uint32_t format) {
  if (told != format) {
    Warn(path, Format("%s is %u, but the file's format says %u", key, told, format));
  }
}

}  // namespace

bool DescribeNumberedSet(const std::string& selectedFile, const SFileFacts& selected, CRecordingSet& set,
                         CMyStringArray& log) {
  return CNumberedSet(selectedFile, selected, set, log).Describe();
}

}  // namespace carvello
