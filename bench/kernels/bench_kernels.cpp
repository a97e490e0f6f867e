// What the inner loops cost beside a memcpy of the same bytes, for every instruction set that this processor has: those
// of the downconverter through the library's entry points, those of the conversions directly.
//
// Bytes are those of the samples that go in; for conversions, whose two sides differ in size, half of all that are
// moved, so that the memcpy moves as many.
#include <benchmark/benchmark.h>

#include <string>

#include "dsp/primitive_kernels.h"
#include "kernels/beside_memcpy.h"
#include "kernels/library_variants.h"

namespace carvello::bench {
namespace {

constexpr std::uint32_t kInputRate = 10'000'000;

// An instance of one of the libraries. Its filters and its oscillator go on from call to call, as in a writer.
class CInstance {
 public:
  explicit CInstance(const DspBinding& dsp) : m_Dsp(dsp), m_hInstance(dsp.AllocInstance(L"bench_kernels")) {}
  ~CInstance() { m_Dsp.ReleaseInstance(m_hInstance); }
  CInstance(const CInstance&) = delete;
  CInstance& operator=(const CInstance&) = delete;

  const DspBinding& Dsp() const { return m_Dsp; }
  std::uint32_t Handle() const { return m_hInstance; }

 private:
  const DspBinding& m_Dsp;
  std::uint32_t m_hInstance;
};

// Registers what `makeKernel` makes for each working set.
template <class TMakeKernel>
void Register(const std::string& name, const std::string& variant, std::size_t bytesPerFrame, TMakeKernel makeKernel) {
  for (const SWorkingSet& set : kWorkingSets) {
    const auto run = [=](benchmark::State& state) {
      CompareWithMemcpy(state, set, bytesPerFrame * static_cast<std::size_t>(set.nFrames), makeKernel(set.nFrames));
    };
    benchmark::RegisterBenchmark((name + "/" + variant + "/" + set.pszName).c_str(), run)->UseManualTime();
  }
}

// In place, as a writer does it.
void RegisterOscillator(const std::string& name, const SLibraryVariant& variant, std::int64_t shift) {
  Register(name, variant.strName, sizeof(SComplex), [&dsp = *variant.pDsp, shift](std::int32_t frames) {
    auto pInstance = std::make_shared<CInstance>(dsp);
    return [pInstance, shift, nFrames = static_cast<std::uint32_t>(frames)](SComplex* source, SComplex*) {
      pInstance->Dsp().NCO(pInstance->Handle(), shift, kInputRate, source, nFrames, source);
    };
  });
}

void RegisterDecimation(const std::string& name, const SLibraryVariant& variant, std::uint32_t outputRate,
                        bool firstStageOnly) {
  const std::string strName = name + "/to" + std::to_string(outputRate);
  Register(strName, variant.strName, sizeof(SComplex), [=, &dsp = *variant.pDsp](std::int32_t frames) {
    auto pInstance = std::make_shared<CInstance>(dsp);
    dsp.DownconvertInit(pInstance->Handle(), kInputRate, outputRate);
    if (firstStageOnly) dsp.FirstStageOnly(pInstance->Handle(), 1);
    return [pInstance, nFrames = static_cast<std::uint32_t>(frames)](SComplex* source, SComplex* destination) {
      std::uint32_t nGiven = 0;
      pInstance->Dsp().DownconvertRun(pInstance->Handle(), source, nFrames, destination, &nGiven);
    };
  });
}

// The last stage alone, by a small ratio with a row of taps for each phase and by one with cubic polynomials.
void RegisterChannelFilter(const SLibraryVariant& variant, std::uint32_t rateIn, std::uint32_t rateOut) {
  const std::string strName = "ChannelFilter/" + std::to_string(rateIn) + "to" + std::to_string(rateOut);
  Register(strName, variant.strName, sizeof(SComplex), [=, &dsp = *variant.pDsp](std::int32_t frames) {
    auto pInstance = std::make_shared<CInstance>(dsp);
    dsp.FractionalInit(pInstance->Handle(), rateIn, rateOut);
    return [pInstance, nFrames = static_cast<std::uint32_t>(frames)](SComplex* source, SComplex* destination) {
      std::uint32_t nGiven = 0;
      pInstance->Dsp().FractionalProcess(pInstance->Handle(), source, nFrames, destination, &nGiven);
    };
  });
}

template <class TInteger>
void RegisterToFloat(const std::string& name, const SPrimitiveKernels& kernels, std::size_t bytesPerValue,
                     void (*convert)(const TInteger*, float*, std::size_t)) {
  // Two values a frame, half of the bytes read and written.
  Register(name, kernels.pszName, bytesPerValue + sizeof(float), [convert](std::int32_t frames) {
    return [convert, nValues = 2 * static_cast<std::size_t>(frames)](SComplex* source, SComplex* destination) {
      convert(reinterpret_cast<const TInteger*>(source), &destination->re, nValues);
    };
  });
}

void RegisterConversions(const SPrimitiveKernels& kernels) {
  RegisterToFloat("Int8ToFloat", kernels, 1, kernels.Int8ToFloat);
  RegisterToFloat("Int16ToFloat", kernels, 2, kernels.Int16ToFloat);
  RegisterToFloat("Int24ToFloat", kernels, 3, kernels.Int24ToFloat);
  RegisterToFloat("Int32ToFloat", kernels, 4, kernels.Int32ToFloat);
  Register("FloatToInt16", kernels.pszName, sizeof(float) + sizeof(std::int16_t),
           [convert = kernels.FloatToInt16](std::int32_t frames) {
             return [convert, nValues = 2 * static_cast<std::size_t>(frames)](SComplex* source, SComplex* destination) {
               convert(&source->re, reinterpret_cast<std::int16_t*>(destination), nValues, ERounding::HalfAway, 1.0f);
             };
           });
  Register("Multiply", kernels.pszName, sizeof(SComplex), [multiply = kernels.Multiply](std::int32_t frames) {
    return [multiply, nValues = 2 * static_cast<std::size_t>(frames)](SComplex* source, SComplex*) {
      multiply(-1.0f, &source->re, nValues);
    };
  });
}

void RegisterAll(const std::vector<SLibraryVariant>& variants) {
  // A shift whose turns repeat soon, as on a raster of channels, and one whose turns do not.
  for (const SLibraryVariant& variant : variants) RegisterOscillator("Oscillator/raster", variant, -1'225'000);
  for (const SLibraryVariant& variant : variants) RegisterOscillator("Oscillator/any", variant, -1'234'567);
  for (const std::uint32_t nOutputRate : {10'000u, 100'000u, 192'000u, 1'000'000u}) {
    for (const SLibraryVariant& variant : variants) RegisterDecimation("FirstStage", variant, nOutputRate, true);
  }
  for (const std::uint32_t nOutputRate : {10'000u, 1'000'000u}) {
    for (const SLibraryVariant& variant : variants) RegisterDecimation("AllStages", variant, nOutputRate, false);
  }
  for (const SLibraryVariant& variant : variants) RegisterChannelFilter(variant, 25'000, 16'000);
  for (const SLibraryVariant& variant : variants) RegisterChannelFilter(variant, 100'000, 71'271);
  for (const EInstructionSet set : InstructionSets()) RegisterConversions(PrimitiveKernels(set));
}

}  // namespace
}  // namespace carvello::bench

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  const std::vector<carvello::bench::SLibraryVariant> variants = carvello::bench::LoadLibraryVariants();
  carvello::bench::RegisterAll(variants);
  benchmark::RunSpecifiedBenchmarks();
  benchmark::ClearRegisteredBenchmarks();  // some hold what is about to go
  benchmark::Shutdown();
  return 0;
}
