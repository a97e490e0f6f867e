// Times a loop beside a memcpy, in turn, so that what else the machine does touches both.
#pragma once

#include <benchmark/benchmark.h>

#include <cstddef>
#include <functional>
#include <memory>
#include <vector>

#include "dsp/primitives.h"
#include "fourier/complex_sample.h"

namespace carvello::bench {

// What is worked on: pieces that stay in the processor's cache from one stage of the work to the next, or blocks that
// come from memory, several in turn so that none is in the cache when its turn comes.
struct SWorkingSet {
  const char* pszName;
  std::int32_t nFrames;
  std::size_t nBuffers;
};
inline constexpr SWorkingSet kWorkingSets[] = {{"cache", 16'384, 1}, {"memory", 2'097'152, 6}};

// Source and destination buffers of a working set, each with room for its frames as complex floats.
class CBuffers {
 public:
  explicit CBuffers(const SWorkingSet& set);

  std::size_t Count() const { return m_Sources.size(); }
  SComplex* Source(std::size_t i) { return m_Sources[i].get(); }
  SComplex* Destination(std::size_t i) { return m_Destinations[i].get(); }

 private:
  struct SFree {
    void operator()(SComplex* buffer) const { FreeAligned(buffer); }
  };
  using Buffer = std::unique_ptr<SComplex, SFree>;
  std::vector<Buffer> m_Sources;
  std::vector<Buffer> m_Destinations;
};

using Kernel = std::function<void(SComplex* source, SComplex* destination)>;

// Runs the kernel and a memcpy of `bytes` bytes in turn. The counters: picoseconds per byte of both, and how many times
// the memcpy's time the kernel takes, by the medians.
void CompareWithMemcpy(benchmark::State& state, const SWorkingSet& set, std::size_t bytes, const Kernel& kernel);

}  // namespace carvello::bench
