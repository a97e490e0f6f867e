// CLibraryConverter: converts an entry by the downconverter library at the input's rate.
#pragma once

#include <cstdint>

#include "engine/entry_converter.h"

namespace carvello {

class CLibraryConverter final : public IEntryConverter {
 public:
  explicit CLibraryConverter(const DspBinding& dsp);
  ~CLibraryConverter() override;
  CLibraryConverter(const CLibraryConverter&) = delete;
  CLibraryConverter& operator=(const CLibraryConverter&) = delete;

  std::optional<std::string> Begin(const SConversion& conversion) override;
  std::optional<std::int64_t> Resume(std::int64_t start, std::int64_t firstOutput) override;
  std::uint32_t RateOut() const override { return m_dsp.DownconvertRateOut(m_hDsp); }
  std::optional<std::uint32_t> Delay() const override { return DownconvertDelay(m_dsp, m_hDsp); }
  // A thread for each entry, so every one of them has a place for this output.
  std::int32_t LongestPart() const override { return 16'384; }
  std::span<const SComplex> Convert(const SBlockPart& part, CConverterWork& work) override;
  std::span<const SComplex> ConvertSilence(CConverterWork& work) override;

 private:
  const DspBinding& m_dsp;
  std::uint32_t m_hDsp;
  SConversion m_conversion;
};

}  // namespace carvello
