// Finds the strongest carrier in a piece of a recording.
#pragma once

#include <complex>
#include <vector>

namespace carvello::demo {

struct Signal {
  double dFrequency = 0;  // Hz; relative to the recording's centre
  double dLevel = 0;      // dBFS: 0 is a carrier whose I and Q just reach full scale
};

// Looks at the first samples, as many as the largest power of two that is there; at least two. The carrier's frequency
// is found to a small fraction of sampleRate / samples.size() when no other signal of like strength is that near.
Signal FindStrongestSignal(const std::vector<std::complex<double>>& samples, double sampleRate);

}  // namespace carvello::demo
