#include "engine/spectrum_converter.h"

#include <algorithm>

#include "engine/converter_work.h"
#include "engine/output_rate.h"
#include "engine/spectrum_block.h"
#include "spectrum/frame_samples.h"
#include "support/formatting.h"
#include "support/text.h"

namespace carvello {

namespace {

// Middle samples that are gathered before the library is called: few enough to stay in the processor's cache.
constexpr std::int64_t kGathered = 4'096;
// Middle samples of silence in one call, each of which stands for two input samples at least.
constexpr std::int32_t kSilence = IEntryConverter::kSilenceFrames / 2;

const wchar_t* const kApplicationName = L"Carvello";

}  // namespace

SBandWish CSpectrumConverter::Wish(const SConversion& conversion, std::int64_t start) {
  SBandWish wish{.nInputRate = conversion.nInputRate,
                 .llShift = conversion.llShift,
                 .nStep = conversion.nInputRate,
                 .nPhases = conversion.nOutputRate,
                 .llStart = start};
  if (DecimatesByWholeNumber(conversion.nOutputRate)) {
    wish.nStep = WholeNumberDecimation(conversion.nInputRate, conversion.nOutputRate);
    wish.nPhases = 1;
  }
  return wish;
}

bool CSpectrumConverter::CanConvert(const SConversion& conversion) {
  return conversion.nOutputRate != 0 && PlanBand(Wish(conversion, 0)).has_value();
}

CSpectrumConverter::CSpectrumConverter(const DspBinding& dsp)
    : m_dsp(dsp), m_hDsp(dsp.AllocInstance(kApplicationName)) {}

CSpectrumConverter::~CSpectrumConverter() {
  m_dsp.ReleaseInstance(m_hDsp);
}

std::optional<std::string> CSpectrumConverter::Begin(const SConversion& conversion) {
  m_conversion = conversion;
  if (m_hDsp == 0) return "The downconverter library has no memory for it";
  if (CanConvert(conversion)) {
    const SRateRatio ratio = SecondStageRatio(*PlanBand(Wish(conversion, 0)));
    m_dsp.DownconvertInit(m_hDsp, ratio.nInput, ratio.nOutput);
    if (m_dsp.DownconvertRateOut(m_hDsp) != 0) return std::nullopt;
    return Format("The downconverter library has no memory, or no way, for a ratio of %u to %u", ratio.nInput,
                  ratio.nOutput);
  }
  return Format("The shared spectrum does not bring %u to %u samples per second", conversion.nInputRate,
                conversion.nOutputRate);
}

std::uint32_t CSpectrumConverter::RateOut() const {
  return TrueOutputRate(m_conversion.nInputRate, m_conversion.nOutputRate);
}

void CSpectrumConverter::Place(std::int64_t start) {
  m_llStart = start;
  m_plan = *PlanBand(Wish(m_conversion, start));
  m_extractor.emplace(m_plan);
  m_nLead = m_plan.nLead;
  GoToMiddleSample(0);
}

void CSpectrumConverter::GoToMiddleSample(std::int64_t number) {
  const std::int64_t llPlace = m_plan.llFirst + number;
  m_nNextFrame = FloorDivide(llPlace, m_plan.SamplesPerFrame());
  m_nSkip = llPlace - m_nNextFrame * m_plan.SamplesPerFrame();
}

// The second stage counts the samples before the entry's start too.
std::optional<std::int64_t> CSpectrumConverter::Resume(std::int64_t start, std::int64_t firstOutput) {
  Place(start);
  const auto middle = ResumeDownconverter(m_dsp, m_hDsp, firstOutput + m_plan.nLead);
  if (!middle) return std::nullopt;
  m_nLead = 0;
  m_nGiven = firstOutput;
  GoToMiddleSample(*middle);
  return std::max(start, FrameFirst(m_nNextFrame));
}

// Frames count as soon as they are complete, and at the span's end also those that reach beyond it.
std::span<const SComplex> CSpectrumConverter::Convert(const SBlockPart& part, CConverterWork& work) {
  if (!m_extractor) Place(part.Position());
  const std::int64_t nEnd = part.Position() + part.nCount;
  const std::int64_t nEndFrame = part.bSpanEnds ? LastFrameWith(nEnd - 1) + 1 : FirstIncompleteFrame(nEnd);
  const std::int64_t nPerFrame = m_plan.SamplesPerFrame();
  // The span's last frame answers for times behind it too. Where it resumes, the first parts lie before what is wanted.
  const std::int64_t nWanted = std::max<std::int64_t>(
      OutputFramesDue(nEnd - m_llStart, m_conversion.nInputRate, m_conversion.nOutputRate) - m_nGiven, 0);
  SComplex* const middle = work.Room(CConverterWork::kMiddle, kGathered + nPerFrame);
  SComplex* const output = work.Room(CConverterWork::kOutput, nWanted + kGathered + nPerFrame);
  std::int64_t nGathered = 0;
  std::int64_t nOutput = 0;
  for (; m_nNextFrame < nEndFrame; ++m_nNextFrame) {
    SComplex* const samples = middle + nGathered;
    ExtractFrame(part, samples, work);
    if (m_nSkip > 0) std::copy(samples + m_nSkip, samples + nPerFrame, samples);
    nGathered += nPerFrame - m_nSkip;
    m_nSkip = 0;
    if (nGathered < kGathered && m_nNextFrame + 1 < nEndFrame) continue;
    const auto nCount = static_cast<std::uint32_t>(nGathered);
    m_dsp.NCO(m_hDsp, m_plan.nMiddleShift, m_plan.nInputRate, middle, nCount, middle);
    nOutput = std::min(nOutput + RunSecondStage(middle, nCount, output + nOutput), nWanted);
    nGathered = 0;
  }
  m_nGiven += nOutput;
  return {output, static_cast<std::size_t>(nOutput)};
}

std::span<const SComplex> CSpectrumConverter::ConvertSilence(CConverterWork& work) {
  SComplex* const silence = work.Room(CConverterWork::kMiddle, kSilence);
  SComplex* const output = work.Room(CConverterWork::kOutput, kSilence);
  std::fill_n(silence, kSilence, SComplex{});
  return {output, static_cast<std::size_t>(RunSecondStage(silence, kSilence, output))};
}

// The next frame's middle samples. Samples outside the entry's span count as zero.
void CSpectrumConverter::ExtractFrame(const SBlockPart& part, SComplex* samples, CConverterWork& work) {
  const std::int64_t nFrame = m_nNextFrame;
  const std::int64_t nEnd = part.Position() + part.nCount;
  if (FrameEnd(nFrame) <= m_llStart) {
    std::fill_n(samples, m_plan.SamplesPerFrame(), SComplex{});
    return;
  }
  CSpectrumBlock& spectrum = *part.block.pSpectrum;
  const SComplex* bins = nullptr;
  if (FrameFirst(nFrame) >= m_llStart && FrameEnd(nFrame) <= nEnd) {
    bins = spectrum.Frame(nFrame, work);
  } else {
    const SSampleStretch stretch{.nFirst = part.block.llPosition - kHistoryFrames,
                                 .nCount = kHistoryFrames + part.block.nCount,
                                 .pSamples = part.block.pSamples - kHistoryFrames};
    bins = work.ClippedFrame(spectrum.Transform()).Spectrum(nFrame, m_llStart, nEnd, {&stretch, 1});
  }
  const auto nWorkSize = static_cast<std::int64_t>(m_extractor->WorkSize());
  m_extractor->Extract(bins, samples, work.Room(CConverterWork::kBand, nWorkSize));
}

// Returns how many output samples it gave; those before the entry's start are left out.
std::int64_t CSpectrumConverter::RunSecondStage(const SComplex* middle, std::uint32_t count, SComplex* output) {
  std::uint32_t produced = 0;
  m_dsp.DownconvertRun(m_hDsp, middle, count, output, &produced);
  const std::int64_t nDropped = std::min<std::int64_t>(m_nLead, produced);
  m_nLead -= nDropped;
  if (nDropped > 0) std::copy(output + nDropped, output + produced, output);
  return produced - nDropped;
}

}  // namespace carvello
