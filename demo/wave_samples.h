// The samples of an IQ recording, read straight from the file.
#pragma once

#include <complex>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace carvello::demo {

struct WaveSamples {
  unsigned nSampleRate = 0;                   // frames/s
  std::size_t nFrames = 0;                    // in the whole file
  std::vector<std::complex<double>> samples;  // I and Q of the first ones; 1.0 is full scale

  double Seconds() const { return static_cast<double>(nFrames) / nSampleRate; }
};

// At most `maxFrames` from the start of a recording as Carvello writes it: WAV or RF64, two channels of 16-bit
// integers, or of 32-bit floats whose full scale is 32768. Nothing when it is no such file.
std::optional<WaveSamples> ReadWaveSamples(const std::string& path, std::size_t maxFrames);

}  // namespace carvello::demo
