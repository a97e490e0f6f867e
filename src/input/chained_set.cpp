#include "input/chained_set.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "input/calendar_time.h"
#include "input/format_chunk.h"
#include "input/set_names.h"
#include "input/source_recognition.h"
#include "support/formatting.h"
#include "support/platform.h"
#include "support/text.h"

namespace carvello {

namespace {

constexpr std::int64_t kGap = 6;  // seconds; files closer than that belong together
constexpr const char* kUnknownProgram =
    "no I/Q recording of a known program, and its name does not tell frequency and time";

// By the names that source names begin with. Winradio stands before Winrad, whose name its own begins with.
constexpr std::array<std::string_view, 8> kFamilies = {"SDRSharp", "SpectraVue", "Winradio",   "Winrad",
                                                       "Perseus",  "ELAD",       "go2MONITOR", "UnknownFmt"};

// The index of the family; kFamilies.size() for none.
std::size_t FamilyOf(const RecordingSourceInfo& source) {
  const auto family = std::find_if(kFamilies.begin(), kFamilies.end(),
                                   [&](std::string_view name) { return source.strSourceName.starts_with(name); });
  return static_cast<std::size_t>(family - kFamilies.begin());
}

struct STime {
  std::int64_t nSeconds = 0;        // since 1970 UTC
  std::uint32_t nMilliseconds = 0;  // shown only: files are chained by whole seconds
};

struct SLink {
  std::string strPath;
  SFileFacts facts;
  STime start;
  STime stop;
};

// Of a recording whose source is of no family.
std::string WhyUnknown(const SFileFacts& facts) {
  if (!facts.source.strNote.empty()) return facts.source.strNote;
  return facts.format.Format.nChannels == 2 ? kUnknownProgram : ChannelProblem(facts.format.Format);
}

bool HaveSameSignal(const SFileFacts& a, const SFileFacts& b) {
  return a.source.nCentreFrequency == b.source.nCentreFrequency &&
         a.format.Format.nSamplesPerSec == b.format.Format.nSamplesPerSec &&
         a.format.Format.nChannels == b.format.Format.nChannels &&
         a.format.Format.wBitsPerSample == b.format.Format.wBitsPerSample && a.format.SubFormat == b.format.SubFormat;
}

std::optional<STime> TimeOf(const SYSTEMTIME& time) {
  std::int64_t seconds = 0;
  if (!SystemTimeToSeconds(time, seconds) || seconds < 0 || seconds > std::numeric_limits<std::uint32_t>::max()) {
    return std::nullopt;
  }
  return STime{seconds, time.wMilliseconds};
}

// By what is there and the format's own rate: the bytes per second that a format tells are wrong in some files.
STime EndOfSamples(const SLink& link) {
  const RecordingSourceInfo& source = link.facts.source;
  const double bytesPerSecond = BytesPerSecond(source.format);
  double seconds = 0;
  const double fraction =
      std::modf(bytesPerSecond > 0 ? static_cast<double>(source.nDataBytes) / bytesPerSecond : 0, &seconds);
  const std::uint32_t milliseconds = link.start.nMilliseconds + static_cast<std::uint32_t>(fraction * 1000);
  return {link.start.nSeconds + static_cast<std::int64_t>(seconds) + milliseconds / 1000, milliseconds % 1000};
}

// Takes the times of the source record over. A stop time that was never written, or lies not behind the start as with
// recordings whose format has none, is reckoned from the samples. The text of what cannot be; empty when all is well.
std::string TakeTimes(SLink& link) {
  const RecordingSourceInfo& source = link.facts.source;
  if (source.bNoStart) {
    link.start = {};
    link.stop = EndOfSamples(link);
    return {};
  }
  const std::optional<STime> start = TimeOf(source.start);
  if (!start) return Format("start time %s cannot be", DateText(source.start).c_str());
  const std::optional<STime> stop = TimeOf(source.stop);
  if (!stop) return Format("stop time %s cannot be", DateText(source.stop).c_str());
  link.start = *start;
  const bool told = stop->nSeconds > start->nSeconds;
  link.stop = told ? *stop : EndOfSamples(link);
  return {};
}

class CChainedSet {
 public:
  CChainedSet(const std::string& selectedFile, const SFileFacts& selected, const SGivenFacts& given, CRecordingSet& set,
              CMyStringArray& log)
      : m_given(given), m_set(set), m_log(log) {
    m_selected.strPath = selectedFile;
    m_selected.facts = selected;
  }

  bool Describe();

 private:
  // Why the selected file cannot be described; empty when it can. Takes its times over.
  std::string Hindrance();
  // Both are false when a file that could belong to the set cannot be read.
  bool CollectFolder();
  bool Collect(const std::string& path);
  // Logs the reason. Always false.
  bool FailRead(const std::string& path, const std::string& reason);
  // The first of the collected files that ends where the given one begins, or begins where it ends; nullptr when there
  // is none.
  const SLink* Before(const SLink& link) const;
  const SLink* Behind(const SLink& link) const;
  // The file and all that go on behind it.
  std::vector<const SLink*> From(const SLink& first) const;
  // The files of the set in playing order.
  std::vector<const SLink*> Chain() const;
  void Warn(const std::string& path, const std::string& text) {
    m_log.Add(Printable(Format("[WARNING] %s: %s", path.c_str(), text.c_str())));
  }
  void DescribeBy(const SLink& first);

  const SGivenFacts& m_given;
  CRecordingSet& m_set;
  CMyStringArray& m_log;
  SLink m_selected;
  // Of the same family and signal, the selected one among them, in the order in which they begin; of those that begin
  // together the selected one stands first, then names decide.
  std::vector<SLink> m_links;
};

bool CChainedSet::Describe() {
  const std::string hindrance = Hindrance();
  if (!hindrance.empty()) {
    m_log.Add(Format("[ERROR] %s: %s", m_selected.strPath.c_str(), hindrance.c_str()));
    return false;
  }
  if (!CollectFolder()) return false;
  const std::vector<const SLink*> chain = Chain();
  DescribeBy(*chain.front());
  for (const SLink* link : chain) {
    m_set.AddFile({link->strPath, link->facts.source.nDataBytes, static_cast<std::uint32_t>(link->start.nSeconds),
                   link->facts.nSampleBytes, link->facts.stamp});
    if (!link->facts.source.strNote.empty()) Warn(link->strPath, link->facts.source.strNote);
    for (const std::string& warning : link->facts.warnings) Warn(link->strPath, warning);
  }
  // The end that was written down does not hold for a file cut short.
  const SLink& last = *chain.back();
  const STime end = last.facts.bCutShort ? EndOfSamples(last) : last.stop;
  m_set.tEnd = end.nSeconds;
  m_set.nEndMilliseconds = end.nMilliseconds;
  m_set.dDuration = static_cast<double>(m_set.tEnd - m_set.tStart);
  return true;
}

std::string CChainedSet::Hindrance() {
  const SFileFacts& facts = m_selected.facts;
  if (!facts.strError.empty()) return facts.strError;
  if (FamilyOf(facts.source) == kFamilies.size()) return WhyUnknown(facts);
  if (facts.format.Format.nSamplesPerSec == 0 && !m_given.nSampleRate) {
    m_set.missing.push_back(EFact::SampleRate);
    return "no sample rate in the file's format";
  }
  return TakeTimes(m_selected);
}

bool CChainedSet::CollectFolder() {
  const std::string& selected = m_selected.strPath;
  const std::string selectedName = platform::NameOf(selected);
  const std::string prefix = selected.substr(0, selected.size() - selectedName.size());
  const std::string folder = platform::FolderOf(selected);
  std::optional<std::vector<std::string>> listed = platform::ListFolder(folder);
  if (!listed) return FailRead(folder, "the folder cannot be listed: " + SystemErrorText());
  std::vector<std::string>& names = *listed;
  // Systems list folders in an order of their own; the outcome must not depend on it.
  std::sort(names.begin(), names.end());
  m_links.push_back(m_selected);
  for (const std::string& name : names) {
    if (!platform::FileNamesEqual(name, selectedName) && !Collect(prefix + name)) return false;
  }
  std::stable_sort(m_links.begin(), m_links.end(),
                   [](const SLink& a, const SLink& b) { return a.start.nSeconds < b.start.nSeconds; });
  return true;
}

bool CChainedSet::Collect(const std::string& path) {
  SLink link{path, LookupMetadata(path), {}, {}};
  const SFileFacts& facts = link.facts;
  const RecordingSourceInfo& source = facts.source;
  if (facts.foreign || (facts.bRecording && !facts.strXml.empty())) return true;
  const std::string name = platform::NameOf(path);
  if (IsUnreadable(facts)) {
    // A set without this member would be half a recording. A file that its owner keeps from this user, or a link in a
    // circle, says nothing of the recording as long as its name is not one of the set's.
    const bool couldBelong = AreNamesOfOneSet(name, platform::NameOf(m_selected.strPath)) ||
                             (IsNamedLikeARecording(name) && !platform::MeansRefused(facts.nError));
    if (couldBelong) return FailRead(path, facts.strError + "; it could belong to the set");
  }
  std::string reason = facts.strError;
  if (facts.bRecording && reason.empty()) {
    const std::size_t family = FamilyOf(source);
    const bool isOfSet = family == FamilyOf(m_selected.facts.source) && HaveSameSignal(facts, m_selected.facts);
    reason = isOfSet ? TakeTimes(link) : family == kFamilies.size() ? WhyUnknown(facts) : source.strNote;
    if (isOfSet && reason.empty()) m_links.push_back(std::move(link));
  }
  const bool wantsReason = facts.bRecording || IsNamedLikeARecording(name);
  if (wantsReason && !reason.empty()) Warn(path, reason + "; left out of the set");
  return true;
}

bool CChainedSet::FailRead(const std::string& path, const std::string& reason) {
  m_log.Add(Printable(Format("[ERROR] %s: %s", path.c_str(), reason.c_str())));
  m_set.bReadFailed = true;
  return false;
}

// Time must go on from file to file: with recordings shorter than the gap a chain could otherwise run in circles.
const SLink* CChainedSet::Before(const SLink& link) const {
  const auto found = std::find_if(m_links.begin(), m_links.end(), [&](const SLink& other) {
    return other.start.nSeconds < link.start.nSeconds && std::abs(link.start.nSeconds - other.stop.nSeconds) < kGap;
  });
  return found == m_links.end() ? nullptr : &*found;
}

const SLink* CChainedSet::Behind(const SLink& link) const {
  const auto found = std::find_if(m_links.begin(), m_links.end(), [&](const SLink& other) {
    return other.start.nSeconds > link.start.nSeconds && std::abs(other.start.nSeconds - link.stop.nSeconds) < kGap;
  });
  return found == m_links.end() ? nullptr : &*found;
}

std::vector<const SLink*> CChainedSet::From(const SLink& first) const {
  std::vector<const SLink*> links;
  for (const SLink* link = &first; link != nullptr; link = Behind(*link)) links.push_back(link);
  return links;
}

// Another file may go on where the selected one could. The set then follows the way that led back from the selected
// one: who selects a file wants to have it.
std::vector<const SLink*> CChainedSet::Chain() const {
  std::vector<const SLink*> wayBack = {&m_selected};
  while (const SLink* before = Before(*wayBack.back())) wayBack.push_back(before);
  std::vector<const SLink*> chain = From(*wayBack.back());
  const auto isSelected = [&](const SLink* link) { return link->strPath == m_selected.strPath; };
  if (std::any_of(chain.begin(), chain.end(), isSelected)) return chain;
  chain = From(m_selected);
  chain.insert(chain.begin(), wayBack.rbegin(), wayBack.rend() - 1);
  return chain;
}

void CChainedSet::DescribeBy(const SLink& first) {
  const RecordingSourceInfo& source = first.facts.source;
  const WAVEFORMATEX& format = first.facts.format.Format;
  m_set.bFromSourceRecord = true;
  m_set.strSourceName = source.strSourceName;
  m_set.tStart = first.start.nSeconds;
  m_set.nStartMilliseconds = first.start.nMilliseconds;
  m_set.nStartNanoseconds = first.start.nMilliseconds * 1'000'000U;
  m_set.nStartNanoseconds = first.start.nMilliseconds * 1'000'000;
  m_set.nRadioCenterFreq = source.nCentreFrequency;
  m_set.nSampleRate = format.nSamplesPerSec;
  m_set.nBandwidth = source.nBandwidth;
  m_set.nBytesPerSecond =
      format.nAvgBytesPerSec > 0 ? format.nAvgBytesPerSec : WholeBytesPerSecond(format, format.nSamplesPerSec);
  m_set.nBitsPerSample = format.wBitsPerSample;
  m_set.format = first.facts.format;
  m_set.kind = KindOfWave(m_set.format);
  m_set.bFloat = IsFloat(first.facts.format);
  m_set.bRF64 = first.facts.bRF64;
}

}  // namespace

bool DescribeChainedSet(const std::string& selectedFile, const SFileFacts& selected, const SGivenFacts& given,
                        CRecordingSet& set, CMyStringArray& log) {
  return CChainedSet(selectedFile, selected, given, set, log).Describe();
}

}  // namespace carvello
