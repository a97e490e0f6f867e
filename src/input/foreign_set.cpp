#include "input/foreign_set.h"

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <optional>
#include <utility>
#include <vector>

#include "input/container_kiwi.h"
#include "input/format_chunk.h"
#include "input/set_names.h"
#include "support/formatting.h"
#include "support/platform.h"
#include "support/text.h"

namespace carvello {

namespace {

constexpr std::int64_t kSecond = 1'000'000'000;  // in nanoseconds, as all times here
constexpr std::int64_t kGap = 6 * kSecond;       // files closer than that belong together
constexpr std::int64_t kMostSeconds = std::numeric_limits<std::uint32_t>::max();

// One file with all that is told or given of it.
struct SForeignLink {
  std::string strPath;
  SFileFacts facts;
  SSampleKind kind;  // unknown when nobody tells
  std::uint32_t nRate = 0;
  std::optional<std::int64_t> nCentre;
  std::optional<std::int64_t> start;  // since 1970 UTC
  bool bBadStart = false;             // it tells one that cannot be
  std::int64_t nFrames = 0;

  const SForeignFile& Foreign() const { return *facts.foreign; }
  bool IsWave() const { return Foreign().strContainer.empty(); }
  // Of a complete link.
  std::int64_t End() const { return *start + nFrames / nRate * kSecond + nFrames % nRate * kSecond / nRate; }
  void TakeStart(const std::optional<SExactTime>& time) {
    bBadStart = time && (time->nSeconds < 0 || time->nSeconds > kMostSeconds);
    start.reset();
    if (time && !bBadStart) start = time->nSeconds * kSecond + time->nNanoseconds;
  }
};

bool Before(const SForeignLink& a, const SForeignLink& b) {
  return *a.start < *b.start;
}

const char* FactText(EFact fact) {
  switch (fact) {
    case EFact::SampleType:
      return "what its samples are";
    case EFact::SampleRate:
      return "its sample rate";
    case EFact::Centre:
      return "its centre frequency";
    case EFact::Start:
      return "when it begins";
  }
  return "";
}

std::optional<SExactTime> StartOf(const SForeignFile& foreign, const SGivenFacts& given) {
  if (foreign.start) return foreign.start;
  if (!foreign.zonedStart) return std::nullopt;
  const STimeZone zone = given.zone.value_or(STimeZone{foreign.zone != ENameTime::Utc, 0});
  const std::int64_t seconds = SecondsIn(foreign.zonedStart->fields, zone);
  if (foreign.gpsStart) {
    if (const std::optional<SExactTime> exact = KiwiStart(seconds, *foreign.gpsStart)) return exact;
  }
  return SExactTime{seconds, foreign.zonedStart->nNanoseconds};
}

SForeignLink LinkOf(const std::string& path, SFileFacts facts, const SGivenFacts& given) {
  SForeignLink link;
  link.strPath = path;
  link.facts = std::move(facts);
  const SForeignFile& foreign = link.Foreign();
  link.kind = foreign.kind.value_or(SSampleKind{});
  if (given.kind) link.kind = GivenKind(*given.kind, link.kind);
  link.nRate = given.nSampleRate.value_or(foreign.nSampleRate.value_or(0));
  link.nCentre = given.nCentre ? given.nCentre : foreign.nCentre;
  link.TakeStart(StartOf(foreign, given));
  const std::int64_t frameBytes = link.kind.FrameBytes();
  if (frameBytes == 0) return link;
  const std::int64_t bytes = link.IsWave() ? link.facts.nSampleBytes : foreign.nDataBytes;
  link.nFrames = foreign.layout ? foreign.layout->Frames() : bytes / frameBytes;
  return link;
}

class CForeignSet {
 public:
  CForeignSet(const SGivenFacts& given, CRecordingSet& set, CMyStringArray& log)
      : m_given(given), m_set(set), m_log(log) {}

  bool Describe(const std::string& path, const SFileFacts& facts);

 private:
  bool IsComplete(const SForeignLink& link);
  bool CollectFolder(const SForeignLink& selected);
  // The files from the first to the last that go on where another one ends, the selected one among them.
  std::vector<const SForeignLink*> Chain() const;
  void DescribeBy(const SForeignLink& first);
  void Add(const SForeignLink& link, std::int64_t shift);
  bool Fail(const std::string& path, const std::string& reason) {
    m_log.Add(Printable(Format("[ERROR] %s: %s", path.c_str(), reason.c_str())));
    return false;
  }
  void Warn(const std::string& path, const std::string& text) {
    m_log.Add(Printable(Format("[WARNING] %s: %s", path.c_str(), text.c_str())));
  }

  const SGivenFacts& m_given;
  CRecordingSet& m_set;
  CMyStringArray& m_log;
  std::vector<SForeignLink> m_links;  // in the order in which they begin
  std::string m_strSelected;
};

bool CForeignSet::Describe(const std::string& path, const SFileFacts& facts) {
  m_strSelected = path;
  SForeignLink selected = LinkOf(path, facts, m_given);
  // Without times of their own nothing tells that files belong together.
  const bool isAlone = !selected.start;
  if (isAlone) selected.TakeStart(m_given.start);
  if (!IsComplete(selected)) return false;
  if (!isAlone && !CollectFolder(selected)) return false;
  m_links.push_back(std::move(selected));
  std::stable_sort(m_links.begin(), m_links.end(), Before);

  const std::vector<const SForeignLink*> chain = Chain();
  SForeignLink first = *chain.front();
  if (m_given.start) first.TakeStart(m_given.start);
  if (!IsComplete(first)) return false;
  const std::int64_t shift = *first.start - *chain.front()->start;
  DescribeBy(first);
  for (const SForeignLink* link : chain) Add(*link, shift);
  const std::int64_t end = chain.back()->End() + shift;
  m_set.tEnd = end / kSecond;
  m_set.nEndMilliseconds = static_cast<std::uint32_t>(end % kSecond / 1'000'000);
  m_set.dDuration = static_cast<double>(end - *first.start) / static_cast<double>(kSecond);
  return true;
}

bool CForeignSet::IsComplete(const SForeignLink& link) {
  if (!link.kind.IsKnown() && link.Foreign().kind && !m_given.kind) {
    return Fail(link.strPath, ChannelProblem(link.facts.format.Format));
  }
  if (!link.kind.IsKnown()) m_set.missing.push_back(EFact::SampleType);
  if (link.nRate == 0) m_set.missing.push_back(EFact::SampleRate);
  if (!link.nCentre) m_set.missing.push_back(EFact::Centre);
  if (!link.start && !link.bBadStart) m_set.missing.push_back(EFact::Start);
  if (!m_set.missing.empty()) {
    std::string text = "it does not tell ";
    for (std::size_t i = 0; i < m_set.missing.size(); ++i) {
      if (i > 0) text += i + 1 < m_set.missing.size() ? ", " : " and ";
      text += FactText(m_set.missing[i]);
    }
    if (link.kind.IsKnown()) m_set.known.kind = link.kind;
    if (link.nRate != 0) m_set.known.nSampleRate = link.nRate;
    m_set.known.nCentre = link.nCentre;
    if (link.start) {
      m_set.known.start = SExactTime{*link.start / kSecond, static_cast<std::uint32_t>(*link.start % kSecond)};
    }
    return Fail(link.strPath, text);
  }
  if (link.IsWave() && link.kind.FrameBytes() != FrameBytes(link.facts.format.Format)) {
    return Fail(link.strPath,
                Format("its frames have %u bytes, those of %s have %u", FrameBytes(link.facts.format.Format),
                       SampleKindName(link.kind).c_str(), link.kind.FrameBytes()));
  }
  if (link.nFrames == 0) return Fail(link.strPath, "no samples could be found in it");
  if (link.nRate == 0 || link.nFrames / link.nRate > kMostSeconds) {
    return Fail(link.strPath, Format("at %u Hz it would be longer than a century", link.nRate));
  }
  return !link.bBadStart || Fail(link.strPath, "the time at which it begins cannot be");
}

bool CForeignSet::CollectFolder(const SForeignLink& selected) {
  const std::string selectedName = platform::NameOf(selected.strPath);
  const std::string prefix = selected.strPath.substr(0, selected.strPath.size() - selectedName.size());
  const std::string folder = platform::FolderOf(selected.strPath);
  std::optional<std::vector<std::string>> names = platform::ListFolder(folder);
  if (!names) {
    m_set.bReadFailed = true;
    return Fail(folder, "the folder cannot be listed: " + SystemErrorText());
  }
  std::sort(names->begin(), names->end());
  for (const std::string& name : *names) {
    if (platform::FileNamesEqual(name, selectedName) || !AreNamesOfOneSet(name, selectedName)) continue;
    const std::string path = prefix + name;
    SFileFacts facts = LookupMetadata(path);
    if (IsUnreadable(facts)) {
      m_set.bReadFailed = true;
      return Fail(path, facts.strError + "; it could belong to the set");
    }
    if (!facts.foreign) continue;
    SForeignLink link = LinkOf(path, std::move(facts), m_given);
    const bool isOfSet = link.Foreign().strSource == selected.Foreign().strSource &&
                         link.IsWave() == selected.IsWave() && link.kind == selected.kind &&
                         link.nRate == selected.nRate && link.nCentre == selected.nCentre && link.start &&
                         link.nFrames > 0 && link.nFrames / link.nRate <= kMostSeconds;
    if (isOfSet) m_links.push_back(std::move(link));
  }
  return true;
}

std::vector<const SForeignLink*> CForeignSet::Chain() const {
  const auto follows = [](const SForeignLink& a, const SForeignLink& b) {
    return Before(a, b) && std::abs(*b.start - a.End()) < kGap;
  };
  const auto selected = std::find_if(m_links.begin(), m_links.end(),
                                     [this](const SForeignLink& link) { return link.strPath == m_strSelected; });
  std::vector<const SForeignLink*> chain = {&*selected};
  for (auto link = selected; link != m_links.begin();) {
    --link;
    if (follows(*link, *chain.front())) chain.insert(chain.begin(), &*link);
  }
  for (auto link = selected; link != m_links.end(); ++link) {
    if (follows(*chain.back(), *link)) chain.push_back(&*link);
  }
  return chain;
}

void CForeignSet::DescribeBy(const SForeignLink& first) {
  m_set.bFromSourceRecord = true;
  m_set.strSourceName = first.Foreign().strSource;
  m_set.strContainer = first.Foreign().strContainer;
  m_set.kind = first.kind;
  m_set.format = first.IsWave() ? first.facts.format : WaveFormatOf(first.kind, first.nRate);
  m_set.bFloat = first.kind.number == ENumber::Float;
  m_set.bRF64 = first.facts.bRF64;
  m_set.nBitsPerSample = first.kind.nBits;
  m_set.nSampleRate = first.nRate;
  m_set.nBandwidth = first.nRate;
  m_set.nBytesPerSecond = WholeBytesPerSecond(m_set.format.Format, first.nRate);
  m_set.nRadioCenterFreq = *first.nCentre;
  m_set.tStart = *first.start / kSecond;
  m_set.nStartNanoseconds = static_cast<std::uint32_t>(*first.start % kSecond);
  m_set.nStartMilliseconds = m_set.nStartNanoseconds / 1'000'000;
}

void CForeignSet::Add(const SForeignLink& link, std::int64_t shift) {
  const SForeignFile& foreign = link.Foreign();
  const std::int64_t frameBytes = link.kind.FrameBytes();
  SRecordingFile file;
  file.strPath = link.strPath;
  file.stamp = link.facts.stamp;
  file.tStart = static_cast<std::uint32_t>((*link.start + shift) / kSecond);
  file.nDataBytes = file.nSampleBytes = link.nFrames * frameBytes;
  if (link.IsWave()) {
    file.nSampleBytes = link.facts.nSampleBytes;
  } else {
    file.container = EContainer::Described;
    file.layout = foreign.layout.value_or(SSampleLayout(foreign.nDataOffset, link.nFrames));
  }
  m_set.AddFile(std::move(file));
  for (const std::string& warning : foreign.warnings) Warn(link.strPath, warning);
  // A walk over chunks complains of what it cannot know about many data chunks.
  if (!foreign.layout) {
    for (const std::string& warning : link.facts.warnings) Warn(link.strPath, warning);
  }
  if (link.IsWave()) return;
  if (const std::int64_t rest = foreign.nDataBytes % frameBytes; rest != 0 && !foreign.layout) {
    Warn(link.strPath, Format("the last %lld bytes are no whole frame and are left out", static_cast<long long>(rest)));
  }
}

}  // namespace

bool DescribeForeignSet(const std::string& selectedFile, const SFileFacts& selected, const SGivenFacts& given,
                        CRecordingSet& set, CMyStringArray& log) {
  return CForeignSet(given, set, log).Describe(selectedFile, selected);
}

}  // namespace carvello
