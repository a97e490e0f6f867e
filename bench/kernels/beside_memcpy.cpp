#include "kernels/beside_memcpy.h"

#include <algorithm>
#include <chrono>
#include <cstring>

namespace carvello::bench {
namespace {

template <class TWork>
double SecondsOf(TWork work) {
  const auto tStart = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - tStart).count();
}

double Median(std::vector<double>& values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

}  // namespace

CBuffers::CBuffers(const SWorkingSet& set) {
  const auto nFrames = static_cast<std::size_t>(set.nFrames);
  for (std::size_t i = 0; i < set.nBuffers; ++i) {
    m_Sources.emplace_back(AllocComplex(set.nFrames));
    m_Destinations.emplace_back(AllocComplex(set.nFrames));
    for (std::size_t n = 0; n < nFrames; ++n) {
      // Full scale and both signs, as float and as whatever integers a conversion takes its bytes for.
      m_Sources[i].get()[n] = {static_cast<float>(n * 7919 % 65536) - 32768.0f,
                               static_cast<float>(n * 104729 % 65536) - 32768.0f};
    }
    std::fill_n(m_Destinations[i].get(), nFrames, SComplex{});
  }
}

void CompareWithMemcpy(benchmark::State& state, const SWorkingSet& set, std::size_t bytes, const Kernel& kernel) {
  CBuffers buffers(set);
  std::vector<double> kernelSeconds;
  std::vector<double> memcpySeconds;
  std::size_t i = 0;
  const auto next = [&] { return i = (i + 1) % buffers.Count(); };
  for ([[maybe_unused]] auto _ : state) {
    next();
    kernelSeconds.push_back(SecondsOf([&] { kernel(buffers.Source(i), buffers.Destination(i)); }));
    state.SetIterationTime(kernelSeconds.back());
    next();
    memcpySeconds.push_back(SecondsOf([&] {
      std::memcpy(buffers.Destination(i), buffers.Source(i), bytes);
      benchmark::ClobberMemory();
    }));
  }
  const double fPicoseconds = 1e12 / static_cast<double>(bytes);
  const double fKernel = Median(kernelSeconds);
  const double fMemcpy = Median(memcpySeconds);
  state.counters["ps/byte"] = fKernel * fPicoseconds;
  state.counters["memcpy"] = fMemcpy * fPicoseconds;
  state.counters["ratio"] = fKernel / fMemcpy;
}

}  // namespace carvello::bench
