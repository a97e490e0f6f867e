#include "engine/output_stretch.h"

#include <algorithm>
#include <memory>

#include "engine/block_reader.h"
#include "engine/entry_converter.h"
#include "engine/output_rate.h"
#include "support/formatting.h"
#include "support/text.h"

namespace carvello {

namespace {

// Output samples that the converter may give out later than it tells: what rounding in the stages adds, and one that
// shows that all before it have come.
constexpr std::int64_t kSpareSamples = 3;

// The first input frame, counted from the entry's first one, at or behind which so many output samples stand. Fits 64
// bits where the product of number and rate does not.
std::int64_t FramesOf(std::int64_t samples, const OutputEntry& entry) {
  std::int64_t step = entry.nInputSampleRate;
  std::int64_t phases = entry.nOutputSampleRate;
  if (DecimatesByWholeNumber(entry.nOutputSampleRate)) {
    step = WholeNumberDecimation(entry.nInputSampleRate, entry.nOutputSampleRate);
    phases = 1;
  }
  return samples / phases * step + (samples % phases * step + phases - 1) / phases;
}

// The last place at or before the frame where the job of the whole entries ends a stretch, so that this one's stretches
// end where those do. Not the first frame of a later file: all entries of a job that begins to read there begin late.
std::int64_t ReadFrom(std::int64_t frame, const SWholeJob& job, const CInputFrames& frames) {
  for (;;) {
    const std::size_t file = frames.FileOf(frame);
    const bool beginsWithin = frame >= job.llReadFrom && file == frames.FileOf(job.llReadFrom);
    const std::int64_t begin = beginsWithin ? job.llReadFrom : frames.Begin(file);
    const std::int64_t place = begin + (frame - begin) / kStretchFrames * kStretchFrames;
    if (frames.FileBegunBy(place) < 0) return place;
    frame = place - 1;
  }
}

}  // namespace

std::int64_t OutputFramesOf(const OutputEntry& entry, std::int64_t inputFrames) {
  return entry.stretch ? entry.stretch->Samples()
                       : OutputFramesDue(inputFrames, entry.nInputSampleRate, entry.nOutputSampleRate);
}

std::optional<OutputEntry> StretchOf(const OutputEntry& whole, EEngine engine, const SWholeJob& job, std::int64_t first,
                                     std::int64_t end, const CInputFrames& frames, const DspBinding& dsp,
                                     std::string& problem) {
  const std::int64_t due = frames.Due(whole, job.llLate);
  const std::int64_t samples = OutputFramesDue(due, whole.nInputSampleRate, whole.nOutputSampleRate);
  if (first < 0 || first >= end || end > samples) {
    problem = Format("Samples %lld to %lld are none of the %lld that the entry has", static_cast<long long>(first),
                     static_cast<long long>(end), static_cast<long long>(samples));
    return std::nullopt;
  }
  SOutputStretch stretch{.llOrigin = whole.nStartSample + job.llLate, .nFirst = first, .nEnd = end, .engine = engine};
  const std::int64_t spanEnd = stretch.llOrigin + due;
  if (spanEnd > frames.Total()) {
    problem = "The entry ends behind the input, because all of its job begin late";
    return std::nullopt;
  }

  const std::unique_ptr<IEntryConverter> converter = MakeConverter(engine, dsp);
  if (const auto reason = converter->Begin(ConversionOf(whole))) {
    problem = *reason;
    return std::nullopt;
  }
  const std::optional<std::int64_t> start = converter->Resume(stretch.llOrigin, first);
  const std::optional<std::uint32_t> delay = converter->Delay();
  if (!start || !delay) {
    problem = "The downconverter library cannot begin within an entry";
    return std::nullopt;
  }

  const std::int64_t inputEnd = stretch.llOrigin + FramesOf(end, whole) +
                                FramesOf(std::int64_t{*delay} + kSpareSamples, whole) +
                                IEntryConverter::kHeldBackFrames;
  stretch.bEndsEntry = inputEnd >= spanEnd;
  stretch.llReadFrom = ReadFrom(*start, job, frames);
  OutputEntry entry = whole;
  entry.nStartSample = *start;
  entry.nTotalSamples = std::min(inputEnd, spanEnd) - *start;
  entry.stretch = stretch;
  return entry;
}

}  // namespace carvello
