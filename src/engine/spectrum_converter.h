// CSpectrumConverter: converts an entry from the spectrum that all entries of a job share. A band is taken out of every
// frame, at a middle rate; the downconverter library does the rest from there: what is left of the shift, the channel
// filter, and the rest of the ratio. The samples are those that the library gives at the input's rate, within -110 dB.
#pragma once

#include <cstdint>
#include <optional>

#include "engine/entry_converter.h"
#include "spectrum/band_extractor.h"
#include "spectrum/band_plan.h"

namespace carvello {

class CSpectrumConverter final : public IEntryConverter {
 public:
  // What is asked of the spectrum for an entry that begins with the sample `start` of the recording. Neither rate is 0.
  static SBandWish Wish(const SConversion& conversion, std::int64_t start);
  // Whether there is a middle rate for these rates. Where there is none, only the library is left.
  static bool CanConvert(const SConversion& conversion);

  explicit CSpectrumConverter(const DspBinding& dsp);
  ~CSpectrumConverter() override;
  CSpectrumConverter(const CSpectrumConverter&) = delete;
  CSpectrumConverter& operator=(const CSpectrumConverter&) = delete;

  std::optional<std::string> Begin(const SConversion& conversion) override;
  std::optional<std::int64_t> Resume(std::int64_t start, std::int64_t firstOutput) override;
  std::uint32_t RateOut() const override;
  std::optional<std::uint32_t> Delay() const override { return DownconvertDelay(m_dsp, m_hDsp); }
  // The blocks have a spectrum.
  std::span<const SComplex> Convert(const SBlockPart& part, CConverterWork& work) override;
  std::span<const SComplex> ConvertSilence(CConverterWork& work) override;

 private:
  void Place(std::int64_t start);
  void GoToMiddleSample(std::int64_t number);
  void ExtractFrame(const SBlockPart& part, SComplex* samples, CConverterWork& work);
  std::int64_t RunSecondStage(const SComplex* middle, std::uint32_t count, SComplex* output);

  const DspBinding& m_dsp;
  std::uint32_t m_hDsp;
  SConversion m_conversion;
  std::int64_t m_llStart = 0;  // the entry's first sample in the recording
  SBandPlan m_plan;
  std::optional<CBandExtractor> m_extractor;  // once the entry has its place
  std::int64_t m_nNextFrame = 0;
  std::int64_t m_nSkip = 0;   // middle samples of the next frame that stand before the first one
  std::int64_t m_nLead = 0;   // output samples that stand before the entry's start and are still to come
  std::int64_t m_nGiven = 0;  // of the entry's samples, those that were not asked for among them
};

}  // namespace carvello
