#include "engine/library_converter.h"

#include <algorithm>

#include "engine/output_rate.h"
#include "support/formatting.h"
#include "support/text.h"

namespace carvello {

namespace {

// Samples that are shifted and decimated at a time: few enough to stay in the processor's cache in between.
constexpr std::int32_t kPieceFrames = 4'096;

const wchar_t* const kApplicationName = L"Carvello";

}  // namespace

CLibraryConverter::CLibraryConverter(const DspBinding& dsp) : m_dsp(dsp), m_hDsp(dsp.AllocInstance(kApplicationName)) {}

CLibraryConverter::~CLibraryConverter() {
  m_dsp.ReleaseInstance(m_hDsp);
}

// The library tells of no failure; whether it can do what it was asked for shows in the rate that it gives.
std::optional<std::string> CLibraryConverter::Begin(const SConversion& conversion) {
  m_conversion = conversion;
  if (m_hDsp == 0) return "The downconverter library has no memory for it";
  m_dsp.DownconvertInit(m_hDsp, conversion.nInputRate, conversion.nOutputRate);
  if (DecimatesByWholeNumber(conversion.nOutputRate)) m_dsp.DisableFractionalResampler(m_hDsp);
  if (RateOut() != 0) return std::nullopt;
  return Format("The downconverter library does not bring %u to %u samples per second", conversion.nInputRate,
                conversion.nOutputRate);
}

std::optional<std::int64_t> CLibraryConverter::Resume(std::int64_t start, std::int64_t firstOutput) {
  const std::optional<std::int64_t> input = ResumeDownconverter(m_dsp, m_hDsp, firstOutput);
  return input ? std::optional(start + *input) : std::nullopt;
}

std::span<const SComplex> CLibraryConverter::Convert(const SBlockPart& part, CConverterWork& work) {
  SComplex* const output = work.Room(CConverterWork::kOutput, part.nCount);
  SComplex* const piece = work.Room(CConverterWork::kPiece, kPieceFrames);
  std::size_t count = 0;
  for (std::int32_t done = 0; done < part.nCount; done += kPieceFrames) {
    const auto pieceCount = static_cast<std::uint32_t>(std::min(kPieceFrames, part.nCount - done));
    std::uint32_t produced = 0;
    // Into a place of this thread's own: the block belongs to all of them.
    m_dsp.NCO(m_hDsp, m_conversion.llShift, m_conversion.nInputRate, part.Samples() + done, pieceCount, piece);
    m_dsp.DownconvertRun(m_hDsp, piece, pieceCount, output + count, &produced);
    count += produced;
  }
  return {output, count};
}

std::span<const SComplex> CLibraryConverter::ConvertSilence(CConverterWork& work) {
  SComplex* const output = work.Room(CConverterWork::kOutput, kSilenceFrames);
  SComplex* const silence = work.Room(CConverterWork::kPiece, kSilenceFrames);
  std::fill_n(silence, kSilenceFrames, SComplex{});
  std::uint32_t produced = 0;
  m_dsp.DownconvertRun(m_hDsp, silence, kSilenceFrames, output, &produced);
  return {output, produced};
}

}  // namespace carvello
