#include "input/sigmf_timeline.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "support/formatting.h"
#include "support/text.h"

namespace carvello {

namespace {

constexpr std::int64_t kNanoseconds = 1'000'000'000;
// Where no index of samples tells of lost ones, times do; clocks are read no better than this.
constexpr double kClockSeconds = 0.01;
// A longer stretch without samples is no loss, and neither is one that makes a part longer than anybody can count. What
// goes back further than this is no error of a clock. Either begins another part.
constexpr double kLongestLoss = 30.0 * 86'400.0;
constexpr double kFurthestBack = 1.0;
constexpr std::int64_t kMostFrames = 1'000'000'000'000'000;

double SecondsBetween(const SSigMfTime& from, const SSigMfTime& to) {
  return static_cast<double>(to.nSeconds - from.nSeconds) +
         (static_cast<double>(to.nNanoseconds) - static_cast<double>(from.nNanoseconds)) /
             static_cast<double>(kNanoseconds);
}

// Where the captures lie in the dataset; those behind its end, and what stands in front of the first one, are not
// there.
std::vector<SSigMfStretch> StretchesOf(const SSigMfFiles& files, std::int64_t frameBytes,
                                       std::vector<std::string>& warnings) {
  const auto warn = [&](std::int64_t count, const char* what) {
    warnings.push_back(Format("%s: %lld %s", Printable(files.strName).c_str(), static_cast<long long>(count), what));
  };
  static const SSigMfCapture kAll;
  std::vector<const SSigMfCapture*> captures;
  for (const SSigMfCapture& capture : files.meta.captures) captures.push_back(&capture);
  std::stable_sort(captures.begin(), captures.end(),
                   [](const auto* a, const auto* b) { return a->nSampleStart < b->nSampleStart; });
  if (captures.empty()) captures.push_back(&kAll);
  const std::int64_t bytes = files.nBytes - std::min(files.nBytes, files.meta.nTrailingBytes);
  std::vector<SSigMfStretch> stretches;
  std::int64_t headers = 0;
  std::int64_t behind = 0;  // captures that hold nothing of the file
  std::int64_t end = 0;     // frames up to here are of a capture
  for (std::size_t i = 0; i < captures.size(); ++i) {
    const std::int64_t offset = captures[i] == &kAll ? 0 : files.meta.nOffset;
    const std::int64_t first = std::max<std::int64_t>(captures[i]->nSampleStart - offset, 0);
    if (behind > 0 || captures[i]->nHeaderBytes > bytes - headers || first > bytes / frameBytes) {
      ++behind;
      continue;
    }
    headers += captures[i]->nHeaderBytes;
    const std::int64_t there = (bytes - headers) / frameBytes - first;  // from here to the end
    behind += there < 0 ? 1 : 0;
    std::int64_t frames = there;
    if (i + 1 < captures.size()) {
      frames = std::min(there, std::max<std::int64_t>(captures[i + 1]->nSampleStart - offset, 0) - first);
    }
    if (frames <= 0) continue;
    if (stretches.empty() && first > 0) warn(first, "samples in front of its first capture are left out");
    end = first + frames;
    stretches.push_back({.pCapture = captures[i],
                         .time = ParseSigMfTime(captures[i]->strDateTime),
                         .nFirst = first,
                         .nFrames = frames,
                         .nByte = headers + first * frameBytes});
  }
  if (stretches.empty()) return stretches;
  if (behind > 0) warn(behind, "captures lie behind the end of its samples, which may have been cut short");
  const std::int64_t rest = bytes - headers - end * frameBytes;
  if (behind == 0 && rest > 0) warn(rest, "bytes at its end are no whole frame and are left out");
  const std::int64_t there = end - stretches.front().nFirst;
  if (const std::int64_t told = files.meta.sampleCount.value_or(there); told != there) {
    warn(told, Format("samples were written, %lld are there", static_cast<long long>(there)).c_str());
  }
  return stretches;
}

// Frames between the end of a part and the next capture, by the indices of samples or else by times: lost ones, or
// below 0 when the capture begins before that end. Nothing where it can be no stretch of the same timeline.
std::optional<std::int64_t> FramesBetween(const SSigMfPart& part, const SSigMfStretch& next) {
  const double rate = part.dSampleRate;
  if (WholeRate(rate) == 0) return 0;
  std::int64_t between = 0;
  if (part.indexed && next.pCapture->globalIndex) {
    const SSigMfStretch& last = part.stretches[*part.indexed];
    const std::int64_t ahead = *next.pCapture->globalIndex - *last.pCapture->globalIndex;
    if (ahead > kMostFrames || ahead < -kMostFrames) return std::nullopt;
    between = ahead - (part.nFrames - last.nBegin);
  } else if (part.timed && next.time) {
    const SSigMfStretch& last = part.stretches[*part.timed];
    const double seconds =
        SecondsBetween(*last.time, *next.time) - static_cast<double>(part.nFrames - last.nBegin) / rate;
    if (std::abs(seconds) > kLongestLoss) return std::nullopt;
    if (std::abs(seconds) >= kClockSeconds) between = std::llround(seconds * rate);
  }
  const double seconds = static_cast<double>(between) / rate;
  if (seconds > kLongestLoss || seconds < -kFurthestBack || part.nFrames + between > kMostFrames) return std::nullopt;
  return between;
}

// By the first capture that tells a time.
SSigMfTime StartBy(const SSigMfStretch& stretch, double rate) {
  SSigMfTime start = *stretch.time;
  const auto seconds = static_cast<std::int64_t>(std::ceil(static_cast<double>(stretch.nBegin) / rate));
  start.nSeconds -= seconds;
  return Later(start, std::llround(static_cast<double>(seconds) * rate) - stretch.nBegin, rate);
}

// A capture that tells no frequency goes on with the one before.
bool GoesOn(const SSigMfPart& part, const SSigMfStretch& next, double rate) {
  const std::optional<double>& frequency = next.pCapture->frequency;
  return part.dToldRate == rate && (!frequency || !part.frequency || *frequency == *part.frequency);
}

// The next capture is another part. Where it tells no time, it begins where the one before ends, if that is known.
SSigMfPart NextPart(const SSigMfFiles& files, const SSampleKind& kind, const SSigMfPart* before, double rate) {
  SSigMfPart part;
  part.pFiles = &files;
  part.kind = kind;
  part.dToldRate = part.dSampleRate = rate;
  if (before != nullptr && before->start && WholeRate(before->dSampleRate) != 0) {
    part.start = Later(*before->start, before->nFrames, before->dSampleRate);
  }
  return part;
}

void Append(SSigMfPart& part, SSigMfStretch stretch) {
  stretch.nBegin = part.nFrames + stretch.nLost;
  part.nFrames = stretch.nBegin + stretch.nFrames;
  if (!part.frequency) part.frequency = stretch.pCapture->frequency;
  if (!part.start && stretch.time && WholeRate(part.dSampleRate) != 0) part.start = StartBy(stretch, part.dSampleRate);
  if (stretch.pCapture->globalIndex) part.indexed = part.stretches.size();
  if (stretch.time) part.timed = part.stretches.size();
  part.stretches.push_back(stretch);
}

}  // namespace

SSigMfTime Later(const SSigMfTime& time, std::int64_t frames, double rate) {
  const double seconds = std::floor(static_cast<double>(frames) / rate);
  const double rest = static_cast<double>(frames) - seconds * rate;
  const std::int64_t nanoseconds = time.nNanoseconds + std::llround(rest / rate * static_cast<double>(kNanoseconds));
  return {time.nSeconds + static_cast<std::int64_t>(seconds) + nanoseconds / kNanoseconds,
          static_cast<std::uint32_t>(nanoseconds % kNanoseconds)};
}

std::uint32_t WholeRate(double rate) {
  return rate >= 0.5 && rate < 4'294'967'295.0 ? static_cast<std::uint32_t>(std::llround(rate)) : 0;
}

void AddSigMfParts(const SSigMfFiles& files, const SSampleKind& kind, const SGivenFacts& given,
                   std::vector<SSigMfPart>& parts, std::vector<std::string>& warnings) {
  const std::size_t first = parts.size();
  for (SSigMfStretch stretch : StretchesOf(files, kind.FrameBytes(), warnings)) {
    const double rate = stretch.pCapture->sampleRate.value_or(files.meta.sampleRate.value_or(0.0));
    const SSigMfPart* const before = parts.size() > first ? &parts.back() : nullptr;
    const bool goesOn = before != nullptr && GoesOn(*before, stretch, rate);
    const std::optional<std::int64_t> between = goesOn ? FramesBetween(*before, stretch) : std::nullopt;
    if (!between) {
      // When it begins is not known by what contradicts it.
      SSigMfPart part = NextPart(files, kind, goesOn ? nullptr : before, rate);
      if (stretch.time) part.start.reset();
      // Lost samples are counted by the rate, so a given one holds from here on.
      const bool isChosen = parts.size() + 1 == std::max<std::size_t>(given.nPart, 1);
      if (given.nSampleRate && isChosen) part.dSampleRate = *given.nSampleRate;
      parts.push_back(std::move(part));
    }
    SSigMfPart& part = parts.back();
    stretch.nLost = std::max<std::int64_t>(between.value_or(0), 0);
    part.nOverlap = std::max(part.nOverlap, -between.value_or(0));
    Append(part, stretch);
  }
}

}  // namespace carvello
