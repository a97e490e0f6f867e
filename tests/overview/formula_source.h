// A recording whose frames a formula tells.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "engine/frame_source.h"

namespace carvello::test {

class CFormulaSource : public IFrameSource {
 public:
  // Gives the frame of that number.
  using Signal = std::function<SComplex(std::int64_t)>;

  CFormulaSource(std::int64_t frames, Signal signal) : m_nFrames(frames), m_signal(std::move(signal)) {}
  // From this frame on nothing can be read.
  void FailFrom(std::int64_t frame) { m_nBroken = frame; }

  std::int64_t Frames() const override { return m_nFrames; }
  std::int64_t Read(std::int64_t first, SComplex* destination, std::int64_t count) override;
  const std::string& Problem() const override { return m_strProblem; }

 private:
  std::int64_t m_nFrames;
  Signal m_signal;
  std::int64_t m_nBroken = -1;
  std::string m_strProblem;
};

// `frequency` in turns a frame, `level` in dBFS.
SComplex ToneFrame(std::int64_t frame, double frequency, double level);
// Complex noise of that power in all of the band, dBFS; the same for a frame's number whenever it is asked for.
SComplex NoiseFrame(std::int64_t frame, double level, std::uint64_t seed = 1);
SComplex operator+(const SComplex& a, const SComplex& b);

}  // namespace carvello::test
