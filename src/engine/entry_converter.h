// IEntryConverter: what turns an entry's stretch of the input into its output samples. Trimming, storing, files and
// accounts know nothing else of how that is done.
#pragma once

#include <cstdint>
#include <limits>
#include <memory>
#include <optional>
#include <span>
#include <string>

#include "dsp/dsp_binding.h"
#include "engine/converter_work.h"
#include "engine/engine_kind.h"
#include "engine/output_entry.h"
#include "engine/spectrum_block.h"

namespace carvello {

// A block as the reader gives it out, in the order of the recording and without a gap.
struct SInputBlock {
  const SComplex* pSamples = nullptr;   // with a spectrum, kHistoryFrames more stand in front of them, see below
  std::int32_t nCount = 0;              // at most kBlockFrames
  std::int64_t llPosition = 0;          // of the first sample, counted from the first frame of the recording
  bool bStretchEnds = false;            // see kStretchFrames
  CSpectrumBlock* pSpectrum = nullptr;  // nothing in a job whose entries all go by the library
};
// The samples in front of a block are those before it in the recording, and zero where the job has read none: in front
// of the recording, and before the first frame that any entry wants.

// What lies within an entry's span of a block, or a piece of it.
struct SBlockPart {
  const SInputBlock& block;
  std::int32_t nOffset;  // of its first sample in the block
  std::int32_t nCount;   // at least 1
  bool bSpanEnds;        // the entry's span ends with it: Complete follows, and the block is still there then
  std::int64_t Position() const { return block.llPosition + nOffset; }
  const SComplex* Samples() const { return block.pSamples + nOffset; }
};

struct SConversion {
  std::uint32_t nInputRate = 0;
  std::uint32_t nOutputRate = 0;  // as the entry asks for it; above 1 MHz see DecimatesByWholeNumber
  std::int64_t llShift = 0;       // Hz, output less input
};

SConversion ConversionOf(const OutputEntry& entry);

// Used by one thread at a time. Samples that it gives stand in the thread's work memory, until that is used again.
// Exhausted memory raises std::bad_alloc.
class IEntryConverter {
 public:
  // Silence that one call of ConvertSilence stands for, at least.
  static constexpr std::int32_t kSilenceFrames = 4'096;
  // Input frames whose output samples may come with a later part, beside those that Delay tells of.
  static constexpr std::int32_t kHeldBackFrames = 2 * kFrameSize;

  virtual ~IEntryConverter() = default;

  // Once, before all else. Why it cannot be done; nothing when it can.
  virtual std::optional<std::string> Begin(const SConversion& conversion) = 0;
  // Behind Begin, for an entry of which some samples are wanted only: it begins with frame `start` of the recording,
  // and the next sample to come is its number `firstOutput`. The frame that the first part has to begin with, `start`
  // or one behind it: from there on all samples are those of the whole entry. Nothing when it cannot be done.
  virtual std::optional<std::int64_t> Resume(std::int64_t /*start*/, std::int64_t /*firstOutput*/) {
    return std::nullopt;
  }
  // The rate that the samples really have, rounded to whole Hz.
  virtual std::uint32_t RateOut() const = 0;
  // How many output samples, rounded up, wait for input that lies ahead; nothing when that is not known.
  virtual std::optional<std::uint32_t> Delay() const = 0;

  // Frames that a part may have at most; no part has more than a block.
  virtual std::int32_t LongestPart() const { return std::numeric_limits<std::int32_t>::max(); }
  // The parts follow one another without a gap; unless it resumes, the entry begins with the first
  // sample of the first. Never gives more
  // samples than it takes, but for those that were held back before.
  virtual std::span<const SComplex> Convert(const SBlockPart& part, CConverterWork& work) = 0;
  // Behind the last part: the samples that are held back come as if silence followed, some with every call.
  virtual std::span<const SComplex> ConvertSilence(CConverterWork& work) = 0;
};

std::unique_ptr<IEntryConverter> MakeConverter(EEngine engine, const DspBinding& dsp);
using ConverterMaker = std::unique_ptr<IEntryConverter> (*)(EEngine engine, const DspBinding& dsp);

}  // namespace carvello
