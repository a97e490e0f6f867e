// What a block's transform costs beside FFTW's and a memcpy of the block, for every instruction set that this processor
// has, and what entries cost on either road.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstring>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "dsp/primitives.h"
#include "fourier/block_transform.h"
#include "spectrum/fftw_peer.h"
#include "spectrum/road_benchmarks.h"

namespace carvello::bench {
namespace {

using Work = std::function<void()>;

constexpr std::size_t kPointsATime = CBlockTransform::kLargestSize;  // so many transforms in a row as have these

double NanosecondsAPoint(const Work& work, std::size_t size) {
  const std::size_t nTimes = kPointsATime / size;
  const auto tStart = std::chrono::steady_clock::now();
  for (std::size_t i = 0; i < nTimes; ++i) work();
  const std::chrono::duration<double, std::nano> elapsed = std::chrono::steady_clock::now() - tStart;
  return elapsed.count() / static_cast<double>(kPointsATime);
}

double Median(std::vector<double>& values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

struct SBlocks {
  explicit SBlocks(std::size_t size) {
    const auto nSize = static_cast<std::int64_t>(size);
    for (ComplexBuffer* pBuffer : {&pIn, &pOut, &pWork}) pBuffer->reset(AllocComplex(nSize));
    for (std::size_t i = 0; i < size; ++i) {
      pIn[i] = {static_cast<float>(i * 7919 % 65'536) - 32'768.0f,
                static_cast<float>(i * 104'729 % 65'536) - 32'768.0f};
    }
    std::fill_n(pOut.get(), size, SComplex{});
    std::fill_n(pWork.get(), size, SComplex{});
  }

  ComplexBuffer pIn;
  ComplexBuffer pOut;
  ComplexBuffer pWork;
};

// The transform, FFTW's and the memcpy in turn, so that what else the machine does touches all. The counters are
// nanoseconds a point by the medians, and how many times FFTW's time the transform takes.
void Compare(benchmark::State& state, std::size_t size, EInstructionSet set, bool inverse) {
  const SBlocks blocks(size);
  const CBlockTransform transform(size, set);
  const std::unique_ptr<CFftwPeer> pFftw = CFftwPeer::Make(size, inverse, blocks.pIn.get(), blocks.pOut.get());
  const auto transformOnce = inverse ? &CBlockTransform::Inverse : &CBlockTransform::Forward;
  const Work ours = [&] { (transform.*transformOnce)(blocks.pIn.get(), blocks.pOut.get(), blocks.pWork.get()); };
  const Work fftw = [&] { pFftw->Execute(); };
  const Work copy = [&] {
    std::memcpy(blocks.pOut.get(), blocks.pIn.get(), size * sizeof(SComplex));
    benchmark::ClobberMemory();
  };
  std::vector<double> oursTimes;
  std::vector<double> fftwTimes;
  std::vector<double> copyTimes;
  for ([[maybe_unused]] auto _ : state) {
    oursTimes.push_back(NanosecondsAPoint(ours, size));
    state.SetIterationTime(oursTimes.back() * static_cast<double>(kPointsATime) * 1e-9);
    if (pFftw != nullptr) fftwTimes.push_back(NanosecondsAPoint(fftw, size));
    copyTimes.push_back(NanosecondsAPoint(copy, size));
  }
  const double fOurs = Median(oursTimes);
  state.counters["ns/point"] = fOurs;
  state.counters["memcpy"] = Median(copyTimes);
  if (pFftw == nullptr) return;
  const double fFftw = Median(fftwTimes);
  state.counters["fftw"] = fFftw;
  state.counters["ratio"] = fOurs / fFftw;
}

void RegisterAll() {
  for (const bool bInverse : {false, true}) {
    for (std::size_t nSize = CBlockTransform::kSmallestSize; nSize <= CBlockTransform::kLargestSize; nSize *= 2) {
      for (const EInstructionSet set : InstructionSets()) {
        const std::string strName =
            std::string(bInverse ? "Inverse/" : "Forward/") + std::to_string(nSize) + "/" + NameOf(set);
        benchmark::RegisterBenchmark(strName.c_str(), [=](benchmark::State& state) {
          Compare(state, nSize, set, bInverse);
        })->UseManualTime();
      }
    }
  }
}

}  // namespace
}  // namespace carvello::bench

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  carvello::bench::RegisterAll();
  carvello::bench::RegisterRoads();
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
