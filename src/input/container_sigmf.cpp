#include "input/container_sigmf.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>
#include <limits>
#include <optional>
#include <utility>
#include <vector>

#include "input/sigmf_files.h"
#include "input/sigmf_timeline.h"
#include "recording/sigmf_writer.h"
#include "support/formatting.h"
#include "support/platform.h"
#include "support/text.h"

namespace carvello {

namespace {

constexpr double kHighestFrequency = 1e12;  // Hz, either way
// Times that outputs can tell.
constexpr std::int64_t kLatestSecond = std::numeric_limits<std::uint32_t>::max();

bool IsRadioFrequency(double frequency) {
  return std::abs(frequency) <= kHighestFrequency;
}

// What nobody reads; empty when the recording can be read.
std::string Refusal(const SSigMfMeta& meta, SSampleKind& kind) {
  if (!meta.required.empty()) {
    return Format("it cannot be read without the extension \"%s\", which is not known",
                  Printable(meta.required.front()).c_str());
  }
  if (meta.nChannels != 1) {
    return Format("its %lld channels cannot be read. Accepted: one", static_cast<long long>(meta.nChannels));
  }
  if (meta.strDataType.starts_with('r')) {
    return Format("its samples are real (%s). Accepted: complex ones", Printable(meta.strDataType).c_str());
  }
  const std::optional<SSampleKind> parsed = ParseSampleKind(meta.strDataType);
  if (!parsed) return Format("its samples are of no known type, %s", Printable(meta.strDataType).c_str());
  kind = *parsed;
  if (meta.fullScale.value_or(0.0) > 0.0) kind.dFullScale = *meta.fullScale;
  // That program stores 24 bits in 32.
  if (meta.bSdrangel && kind.number == ENumber::Signed && kind.nBits == 32) kind.dFullScale = 8'388'608.0;
  return {};
}

SRecordingPart Summary(const SSigMfPart& part) {
  SRecordingPart summary;
  summary.strName = part.pFiles->strName;
  if (part.frequency && IsRadioFrequency(*part.frequency)) summary.nFrequency = std::llround(*part.frequency);
  summary.nSampleRate = WholeRate(part.dSampleRate);
  if (part.start) summary.tStart = part.start->nSeconds;
  if (summary.nSampleRate > 0) summary.dSeconds = static_cast<double>(part.nFrames) / part.dSampleRate;
  return summary;
}

// In frames of the part; those of other parts are left out.
void AddAnnotations(const SSigMfPart& part, CRecordingSet& set) {
  const SSigMfMeta& meta = part.pFiles->meta;
  for (const SSigMfAnnotation& annotation : meta.annotations) {
    const std::int64_t first = std::max<std::int64_t>(annotation.nSampleStart - meta.nOffset, 0);
    const auto behind =
        std::upper_bound(part.stretches.begin(), part.stretches.end(), first,
                         [](std::int64_t frame, const SSigMfStretch& each) { return frame < each.nFirst; });
    if (behind == part.stretches.begin()) continue;
    const SSigMfStretch& stretch = *std::prev(behind);
    if (first - stretch.nFirst >= stretch.nFrames) continue;
    SRecordingAnnotation told;
    told.nFirstFrame = stretch.nBegin + first - stretch.nFirst;
    told.nFrames = std::min(annotation.sampleCount.value_or(std::numeric_limits<std::int64_t>::max()),
                            part.nFrames - told.nFirstFrame);
    told.lowerEdge = annotation.lowerEdge;
    told.upperEdge = annotation.upperEdge;
    told.strLabel = annotation.strLabel;
    told.strComment = annotation.strComment;
    set.annotations.push_back(std::move(told));
  }
}

// What is given goes before what the part tells. False, with the reason, where it cannot be so.
bool TakeGiven(const SGivenFacts& given, SSigMfPart& part, std::string& error) {
  if (given.kind && given.kind->FrameBytes() != part.kind.FrameBytes()) {
    error = Format("its frames have %u bytes, those of %s have %u", part.kind.FrameBytes(),
                   SampleKindName(*given.kind).c_str(), given.kind->FrameBytes());
    return false;
  }
  if (given.kind) part.kind = GivenKind(*given.kind, part.kind);
  if (given.nCentre) part.frequency = static_cast<double>(*given.nCentre);
  if (part.start && given.zone) part.start->nSeconds = MovedToZone(part.start->nSeconds, {}, *given.zone);
  if (given.start) part.start = SSigMfTime{given.start->nSeconds, given.start->nNanoseconds};
  return true;
}

// What must be known and is not told; empty when all is there.
std::string Missing(const SSigMfPart& part, std::vector<EFact>& missing) {
  std::string text;
  const auto look = [&](bool lacks, EFact fact, const char* what) {
    if (!lacks) return;
    missing.push_back(fact);
    text += (text.empty() ? "" : ", ") + std::string(what);
  };
  const bool isTime = part.start && part.start->nSeconds >= 0 && part.start->nSeconds <= kLatestSecond;
  look(WholeRate(part.dSampleRate) == 0, EFact::SampleRate, "its sample rate");
  look(!part.frequency || !IsRadioFrequency(*part.frequency), EFact::Centre, "its centre frequency");
  look(!isTime, EFact::Start, part.start ? "a time at which it can begin" : "when it begins");
  return text;
}

SGivenFacts Known(const SSigMfPart& part) {
  SGivenFacts known;
  known.kind = part.kind;
  if (const std::uint32_t rate = WholeRate(part.dSampleRate); rate != 0) known.nSampleRate = rate;
  if (part.frequency && std::abs(*part.frequency) <= kHighestFrequency) known.nCentre = std::llround(*part.frequency);
  if (part.start) known.start = SExactTime{part.start->nSeconds, part.start->nNanoseconds};
  return known;
}

void Fill(const SSigMfPart& part, CRecordingSet& set, CMyStringArray& log) {
  const SSigMfFiles& files = *part.pFiles;
  const std::int64_t frameBytes = part.kind.FrameBytes();
  const std::int64_t frames = part.nFrames;
  SRecordingFile file;
  file.strPath = files.strPath;
  file.stamp = files.stamp;
  file.container = EContainer::Described;
  file.describedBy = files.describedBy;
  std::int64_t lost = 0;
  file.layout.runs.clear();
  for (const SSigMfStretch& stretch : part.stretches) {
    if (stretch.nLost > 0) file.layout.runs.push_back({.nOffset = SSampleRun::kSilence, .nFrames = stretch.nLost});
    file.layout.runs.push_back({.nOffset = files.nOffset + stretch.nByte, .nFrames = stretch.nFrames});
    lost += stretch.nLost;
  }
  file.nDataBytes = file.nSampleBytes = frames * frameBytes;
  if (lost > 0) {
    log.Add(Format("[WARNING] %s: %lld samples were lost while it was recorded, silence stands for them",
                   Printable(files.strName).c_str(), static_cast<long long>(lost)));
  }
  if (part.nOverlap > 0) {
    log.Add(Format("[WARNING] %s: up to %lld samples come twice by its captures; times behind them are late by as much",
                   Printable(files.strName).c_str(), static_cast<long long>(part.nOverlap)));
  }
  const std::uint32_t rate = WholeRate(part.dSampleRate);
  if (rate != part.dSampleRate && rate != 0) {
    log.Add(Format("[WARNING] %s: its sample rate, %.6f Hz, is taken as %u Hz", Printable(files.strName).c_str(),
                   part.dSampleRate, rate));
  }
  const double frequency = part.frequency.value_or(0.0);
  if (frequency != std::round(frequency)) {
    log.Add(Format("[WARNING] %s: its centre frequency, %.6f Hz, is taken as %.0f Hz", Printable(files.strName).c_str(),
                   frequency, std::round(frequency)));
  }
  set.AddFile(std::move(file));
  set.kind = part.kind;
  set.format = WaveFormatOf(part.kind, rate);
  set.bFloat = part.kind.number == ENumber::Float;
  set.nBitsPerSample = part.kind.nBits;
  set.strContainer = "SigMF";
  set.strSourceName = files.meta.strRecorder.empty() ? "SigMF" : Printable(files.meta.strRecorder);
  set.nSampleRate = set.nBandwidth = rate;
  set.nBytesPerSecond = set.format.Format.nAvgBytesPerSec;
  set.nRadioCenterFreq = std::llround(frequency);
  if (part.start) {
    set.tStart = part.start->nSeconds;
    set.nStartMilliseconds = part.start->nNanoseconds / 1'000'000;
    set.nStartNanoseconds = part.start->nNanoseconds;
  }
  if (rate > 0) {
    set.dDuration = static_cast<double>(frames) / rate;
    const SSigMfTime start = part.start.value_or(SSigMfTime());
    const SSigMfTime end = Later(start, frames, rate);
    set.tEnd = end.nSeconds;
    set.nEndMilliseconds = end.nNanoseconds / 1'000'000;
  }
  set.metadata = files.meta.global;
  set.dataHash = {files.strPath, files.nOffset, files.nBytes, ToLowerAscii(files.meta.strSha512)};
  AddAnnotations(part, set);
}

}  // namespace

bool IsSigMfName(const std::string& path) {
  constexpr std::array<std::string_view, 4> kEndings = {".sigmf-meta", ".sigmf-data", ".sigmf", ".sigmf-collection"};
  const std::string lower = ToLowerAscii(platform::NameOf(path));
  return std::any_of(kEndings.begin(), kEndings.end(), [&](const auto ending) { return lower.ends_with(ending); });
}

bool DescribeSigMf(const std::string& selectedFile, const SGivenFacts& given, CRecordingSet& set, CMyStringArray& log) {
  const std::uint32_t part = given.nPart;
  std::vector<SSigMfFiles> found;
  std::vector<std::string> warnings;
  std::string error;
  if (IsLoneSigMfData(selectedFile)) {
    set.missing = {EFact::SampleType, EFact::SampleRate, EFact::Centre, EFact::Start};
    log.Add(Format("[ERROR] %s: the meta file that describes it, %s, is not beside it", Printable(selectedFile).c_str(),
                   Printable(platform::NameOf(SigMfMetaPath(selectedFile))).c_str()));
    return false;
  }
  if (SSigMfProblem problem; !FindSigMfFiles(selectedFile, found, warnings, problem)) {
    set.bReadFailed = problem.bUnread;
    log.Add("[ERROR] " + problem.strText);
    return false;
  }
  std::vector<SSigMfPart> parts;
  for (const SSigMfFiles& files : found) {
    SSampleKind kind;
    std::string refusal = Refusal(files.meta, kind);
    const std::size_t before = parts.size();
    if (refusal.empty()) {
      AddSigMfParts(files, kind, given, parts, warnings);
      if (parts.size() == before) refusal = "it holds no samples";
    }
    if (!refusal.empty()) warnings.push_back(Printable(files.strName) + ": " + refusal);
  }
  if (parts.empty()) {
    log.Add("[ERROR] " + warnings.back());
    return false;
  }
  for (const std::string& warning : warnings) log.Add("[WARNING] " + warning);
  if (part > parts.size()) {
    log.Add(Format("[ERROR] %s: there is no part %u. Accepted: --part 1 to %zu", Printable(selectedFile).c_str(), part,
                   parts.size()));
    return false;
  }
  if (part == 0 && parts.size() > 1) {
    log.Add(Format("[WARNING] %s: the first of %zu parts is taken; --part chooses another",
                   Printable(selectedFile).c_str(), parts.size()));
  }
  SSigMfPart& chosen = parts[part == 0 ? 0 : part - 1];
  if (!TakeGiven(given, chosen, error)) {
    log.Add(Format("[ERROR] %s: %s", Printable(chosen.pFiles->strName).c_str(), error.c_str()));
    return false;
  }
  if (const std::string missing = Missing(chosen, set.missing); !missing.empty()) {
    set.known = Known(chosen);
    log.Add(Format("[ERROR] %s: it does not tell %s", Printable(chosen.pFiles->strName).c_str(), missing.c_str()));
    return false;
  }
  for (const SSigMfPart& each : parts) set.parts.push_back(Summary(each));
  set.nPart = part == 0 ? 1 : part;
  Fill(chosen, set, log);
  return true;
}

}  // namespace carvello
