#include "input/chained_set.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "input/calendar_time.h"
#include "input/format_chunk.h"
#include "input/source_recognition.h"
#include "support/platform.h"
#include "support/text.h"

namespace carvello {

namespace {

constexpr std::int64_t kGap = 6;  // seconds; files closer than that belong together

// By the names that source names begin with. Winradio stands before Winrad, whose name its own begins with.
constexpr std::array<std::string_view, 8> kFamilies = {"SDRSharp", "SpectraVue", "Winradio",   "Winrad",
                                                       "Perseus",  "ELAD",       "go2MONITOR", "UnknownFmt"};

// The index of the family; kFamilies.size() for none.
std::size_t FamilyOf(const RecordingSourceInfo& source) {
  const auto family = std::find_if(kFamilies.begin(), kFamilies.end(),
                                   [&](std::string_view name) { return source.strSourceName.starts_with(name); });
  return static_cast<std::size_t>(family - kFamilies.begin());
}

struct SLink {
  std::string strPath;
  SFileFacts facts;
  std::int64_t tStart = 0;  // seconds since 1970 UTC
  std::int64_t tStop = 0;
};

bool HaveSameSignal(const SFileFacts& a, const SFileFacts& b) {
  return a.source.nCentreFrequency == b.source.nCentreFrequency &&
         a.format.Format.nSamplesPerSec == b.format.Format.nSamplesPerSec &&
         a.format.Format.nChannels == b.format.Format.nChannels &&
         a.format.Format.wBitsPerSample == b.format.Format.wBitsPerSample && a.format.SubFormat == b.format.SubFormat;
}

std::optional<std::int64_t> SecondsOf(const SYSTEMTIME& time) {
  std::int64_t seconds = 0;
  if (!SystemTimeToSeconds(time, seconds) || seconds < 0 || seconds > std::numeric_limits<std::uint32_t>::max()) {
    return std::nullopt;
  }
  return seconds;
}

bool IsUnset(const SYSTEMTIME& time) {
  return time.wYear == 0 && time.wMonth == 0 && time.wDay == 0;
}

// Takes the times of the source record over. A stop time that was never written, or lies not behind the start as with
// recordings whose format has none, is reckoned from the samples. The text of what cannot be; empty when all is well.
std::string TakeTimes(SLink& link) {
  const RecordingSourceInfo& source = link.facts.source;
  const std::optional<std::int64_t> start = SecondsOf(source.start);
  if (!start) return Format("start time %s cannot be", DateText(source.start).c_str());
  const std::optional<std::int64_t> stop = SecondsOf(source.stop);
  if (!stop && !IsUnset(source.stop)) return Format("stop time %s cannot be", DateText(source.stop).c_str());
  link.tStart = *start;
  link.tStop = std::max(stop.value_or(0), *start);
  if (link.tStop == *start) link.tStop += static_cast<std::int64_t>(source.dDuration);
  return {};
}

class CChainedSet {
 public:
  CChainedSet(const std::string& selectedFile, const SFileFacts& selected, CRecordingSet& set, CMyStringArray& log)
      : m_set(set), m_log(log) {
    m_selected.strPath = selectedFile;
    m_selected.facts = selected;
  }

  bool Describe();

 private:
  // Why the selected file cannot be described; empty when it can. Takes its times over.
  std::string Hindrance();
  void CollectFolder();
  void Collect(const std::string& path);
  // The collected file that comes directly before, or behind, the given one; nullptr when there is none.
  const SLink* Before(const SLink& link) const;
  const SLink* Behind(const SLink& link) const;
  const SLink* Nearest(const SLink& link, bool behind) const;
  void DescribeBy(const SLink& first);

  CRecordingSet& m_set;
  CMyStringArray& m_log;
  SLink m_selected;
  std::vector<SLink> m_links;  // of the same family and signal, the selected one among them
};

bool CChainedSet::Describe() {
  const std::string hindrance = Hindrance();
  if (!hindrance.empty()) {
    m_log.Add(Format("[ERROR] %s: %s", m_selected.strPath.c_str(), hindrance.c_str()));
    return false;
  }
  CollectFolder();
  const SLink* link = &m_selected;
  while (const SLink* before = Before(*link)) link = before;
  DescribeBy(*link);
  const SLink* last = link;
  for (; link != nullptr; link = Behind(*link)) {
    m_set.AddFile({link->strPath, link->facts.source.nDataBytes, static_cast<std::uint32_t>(link->tStart)});
    last = link;
  }
  m_set.tEnd = last->tStop;
  // The end that was written down does not hold for a file cut short.
  if (last->facts.bCutShort) m_set.tEnd = last->tStart + static_cast<std::int64_t>(last->facts.source.dDuration);
  m_set.dDuration = static_cast<double>(m_set.tEnd - m_set.tStart);
  return true;
}

std::string CChainedSet::Hindrance() {
  const SFileFacts& facts = m_selected.facts;
  if (!facts.strError.empty()) return facts.strError;
  if (FamilyOf(facts.source) == kFamilies.size()) {
    return "no I/Q recording of a known program, and its name does not tell frequency and time";
  }
  if (facts.format.Format.nSamplesPerSec == 0) return "no sample rate in the file's format";
  return TakeTimes(m_selected);
}

void CChainedSet::CollectFolder() {
  const std::string& selected = m_selected.strPath;
  const std::string selectedName = platform::NameOf(selected);
  const std::string prefix = selected.substr(0, selected.size() - selectedName.size());
  std::vector<std::string> names =
      platform::ListFolder(platform::FolderOf(selected)).value_or(std::vector<std::string>());
  // Systems list folders in an order of their own; the outcome must not depend on it.
  std::sort(names.begin(), names.end());
  m_links.push_back(m_selected);
  for (const std::string& name : names) {
    if (!platform::FileNamesEqual(name, selectedName)) Collect(prefix + name);
  }
}

void CChainedSet::Collect(const std::string& path) {
  SLink link{path, LookupMetadata(path), 0, 0};
  const SFileFacts& facts = link.facts;
  if (!facts.bRecording || !facts.strXml.empty()) return;
  std::string impossible = facts.strError;
  if (impossible.empty()) {
    const bool isOfSet =
        FamilyOf(facts.source) == FamilyOf(m_selected.facts.source) && HaveSameSignal(facts, m_selected.facts);
    if (!isOfSet) return;
    impossible = TakeTimes(link);
  }
  if (!impossible.empty()) {
    m_log.Add(Format("[WARNING] %s: %s; left out of the set", path.c_str(), impossible.c_str()));
    return;
  }
  m_links.push_back(std::move(link));
}

// Time must go on from file to file: with recordings shorter than the gap a chain could otherwise run in circles.
const SLink* CChainedSet::Before(const SLink& link) const {
  return Nearest(link, false);
}
const SLink* CChainedSet::Behind(const SLink& link) const {
  return Nearest(link, true);
}

const SLink* CChainedSet::Nearest(const SLink& link, bool behind) const {
  const SLink* nearest = nullptr;
  std::int64_t smallest = kGap;
  for (const SLink& other : m_links) {
    const bool inOrder = behind ? other.tStart > link.tStart : other.tStart < link.tStart;
    const std::int64_t gap = std::abs(behind ? other.tStart - link.tStop : link.tStart - other.tStop);
    if (!inOrder || gap >= smallest) continue;
    smallest = gap;
    nearest = &other;
  }
  return nearest;
}

void CChainedSet::DescribeBy(const SLink& first) {
  const RecordingSourceInfo& source = first.facts.source;
  const WAVEFORMATEX& format = first.facts.format.Format;
  m_set.bFromSourceRecord = true;
  m_set.strSourceName = source.strSourceName;
  m_set.tStart = first.tStart;
  m_set.nRadioCenterFreq = source.nCentreFrequency;
  m_set.nSampleRate = format.nSamplesPerSec;
  m_set.nBandwidth = source.nBandwidth;
  m_set.nBytesPerSecond =
      format.nAvgBytesPerSec > 0 ? format.nAvgBytesPerSec : WholeBytesPerSecond(format, format.nSamplesPerSec);
  m_set.nBitsPerSample = format.wBitsPerSample;
  m_set.format = first.facts.format;
  m_set.bFloat = IsFloat(first.facts.format);
  m_set.bRF64 = first.facts.bRF64;
}

}  // namespace

bool DescribeChainedSet(const std::string& selectedFile, const SFileFacts& selected, CRecordingSet& set,
                        CMyStringArray& log) {
  return CChainedSet(selectedFile, selected, set, log).Describe();
}

}  // namespace carvello
