#include "spectrum/road_benchmarks.h"

#include <benchmark/benchmark.h>
#include <time.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "dsp/dsp_binding.h"
#include "engine/entry_converter.h"
#include "engine/spectrum_converter.h"
#include "spectrum/band_extractor.h"

namespace carvello::bench {
namespace {

constexpr std::uint32_t kRate = 10'000'000;

const DspBinding& Dsp() {
  static DspBinding s_binding;
  if (s_binding.bLoaded == 0 && BindDsp(s_binding) == 0) throw std::runtime_error(DspLibraryPath());
  return s_binding;
}

// Processor time of this thread: what else the machine does is not in it.
double Nanoseconds() {
  timespec now{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return 1e9 * static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec);
}

// Of all that was measured the least: the rest is what others did to the caches.
class CLeast {
 public:
  void Take(benchmark::State& state, double nanoseconds, double samples) {
    state.SetIterationTime(nanoseconds * 1e-9);
    m_fLeast = std::min(m_fLeast, nanoseconds / samples);
    state.counters["ns/sample"] = m_fLeast;
  }

 private:
  double m_fLeast = 1e9;
};

ComplexBuffer Noise(std::int64_t count) {
  ComplexBuffer samples(AllocComplex(count));
  std::uint32_t seed = 1;
  const auto next = [&seed] {
    seed = seed * 1'664'525u + 1'013'904'223u;
    return static_cast<float>(static_cast<std::int16_t>(seed >> 16));
  };
  std::generate_n(samples.get(), count, [&] { return SComplex{next(), next()}; });
  return samples;
}

void Copy(benchmark::State& state) {
  const ComplexBuffer from = Noise(kBlockFrames);
  const ComplexBuffer to = Noise(kBlockFrames);
  CLeast least;
  for ([[maybe_unused]] auto _ : state) {
    const double fStart = Nanoseconds();
    std::memcpy(to.get(), from.get(), kBlockFrames * sizeof(SComplex));
    benchmark::ClobberMemory();
    least.Take(state, Nanoseconds() - fStart, kBlockFrames);
  }
}

// What all entries share: the frames of a block.
void Frames(benchmark::State& state) {
  const CBlockTransform transform(kFrameSize);
  const ComplexBuffer samples = Noise(kBlockFrames + kFrameSize);
  const ComplexBuffer bins = Noise(kFrameSize * 22);
  const ComplexBuffer frame = Noise(kFrameSize);
  const ComplexBuffer work = Noise(static_cast<std::int64_t>(transform.WorkSize()));
  CLeast least;
  for ([[maybe_unused]] auto _ : state) {
    const double fStart = Nanoseconds();
    for (std::int64_t i = 0; i < 21; ++i) {
      std::copy_n(samples.get() + i * kFrameHop, kFrameSize, frame.get());
      transform.Forward(frame.get(), bins.get() + i * kFrameSize, work.get());
    }
    least.Take(state, Nanoseconds() - fStart, 21 * kFrameHop);
  }
}

// The widest output rate that the decimation leaves room for.
std::uint32_t RateFor(std::int64_t decimation) {
  auto nRate = static_cast<std::uint32_t>(0.9 * kRate / static_cast<double>(decimation));
  const auto found = [&] { return PlanBand({kRate, 0, kRate, nRate, 0})->nDecimation; };
  while (found() < decimation) nRate = nRate * 9 / 10;
  return nRate;
}

void Extract(benchmark::State& state, std::int64_t decimation) {
  std::vector<std::unique_ptr<CBandExtractor>> extractors;
  for (std::int64_t i = 0; i < 50; ++i) {
    const auto plan = PlanBand({kRate, -4'000'000 + 160'000 * i, kRate, RateFor(decimation), 0});
    extractors.push_back(std::make_unique<CBandExtractor>(*plan));
  }
  const ComplexBuffer bins = Noise(kFrameSize * 22);
  const ComplexBuffer work = Noise(static_cast<std::int64_t>(extractors[0]->WorkSize()));
  const ComplexBuffer samples = Noise(kFrameHop);
  CLeast least;
  for ([[maybe_unused]] auto _ : state) {
    const double fStart = Nanoseconds();
    for (const auto& pExtractor : extractors) {
      for (std::int64_t i = 0; i < 22; ++i) pExtractor->Extract(bins.get() + i * kFrameSize, samples.get(), work.get());
    }
    least.Take(state, Nanoseconds() - fStart, static_cast<double>(extractors.size()) * 22 * kFrameHop);
  }
}

// One more entry of many, as it comes in turn with them to each block, the frames of which are there.
void Entry(benchmark::State& state, EEngine engine, std::uint32_t inputRate, std::uint32_t outputRate, int entries) {
  const CBlockTransform transform(kFrameSize);
  CSpectrumPool spectra(transform);
  CConverterWork work;
  std::vector<std::unique_ptr<IEntryConverter>> converters;
  for (int i = 0; i < entries; ++i) {
    converters.push_back(MakeConverter(engine, Dsp()));
    const std::int64_t llShift = (2 * i - entries) * std::int64_t{inputRate} / (2 * entries) + 123;
    if (converters.back()->Begin({inputRate, outputRate, llShift})) throw std::runtime_error("no such entry");
  }
  const std::shared_ptr<SComplex[]> place(Noise(kHistoryFrames + kBlockFrames).release(), SFreeAligned());
  const SharedBlock samples(place, place.get() + kHistoryFrames);
  std::int64_t llPosition = 0;
  const auto runBlock = [&] {
    const auto spectrum = spectra.Take(samples, llPosition, kBlockFrames);
    const SInputBlock block{samples.get(), kBlockFrames, llPosition, false, spectrum.get()};
    const SBlockPart part{block, 0, kBlockFrames, false};
    llPosition += kBlockFrames;
    if (engine == EEngine::Spectrum) spectrum->Frame(spectrum->FirstFrame(), work);
    const double fStart = Nanoseconds();
    for (const auto& pConverter : converters) benchmark::DoNotOptimize(pConverter->Convert(part, work).data());
    return Nanoseconds() - fStart;
  };
  runBlock();  // designs the filters
  CLeast least;
  for ([[maybe_unused]] auto _ : state) {
    least.Take(state, runBlock(), static_cast<double>(entries) * kBlockFrames);
  }
}

void Register(const std::string& name, const std::function<void(benchmark::State&)>& body) {
  benchmark::RegisterBenchmark(name.c_str(), body)->UseManualTime()->Iterations(40);
}

}  // namespace

void RegisterRoads() {
  Register("Road/Memcpy", Copy);
  Register("Road/Frames", Frames);
  for (const std::int64_t nDecimation : {2, 4, 8, 16, 32, 64, 128, 256}) {
    Register("Road/Extract/" + std::to_string(nDecimation),
             [=](benchmark::State& state) { Extract(state, nDecimation); });
  }
  // Whole ratios and such of prime numbers, whose channel filters take longer.
  for (const double fRatio : {2.25, 3.0, 4.0, 6.0, 10.0, 20.0, 40.0, 100.0, 250.0, 1e3, 1e4, 1e5}) {
    for (const bool bPrime : {false, true}) {
      // Outputs above 1 MHz are made by whole numbers alone.
      std::uint32_t nInput = fRatio < 10.0 ? 900'000 : kRate;
      if (bPrime) nInput -= fRatio < 10.0 ? 17 : 9;
      const auto nOutput = static_cast<std::uint32_t>(nInput / fRatio);
      const std::string strRates = std::to_string(nInput) + "to" + std::to_string(nOutput);
      Register("Road/Library/" + strRates,
               [=](benchmark::State& state) { Entry(state, EEngine::Library, nInput, nOutput, 4); });
      const int nEntries = fRatio < 100.0 ? 8 : 50;
      Register("Road/Spectrum/" + strRates,
               [=](benchmark::State& state) { Entry(state, EEngine::Spectrum, nInput, nOutput, nEntries); });
    }
  }
}

}  // namespace carvello::bench
