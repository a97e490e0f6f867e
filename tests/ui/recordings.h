// Input recordings for tests of the dialog, laid out by hand.
#pragma once

#include <cstdint>
#include <string>

namespace carvello::test {

inline constexpr std::int64_t kRecordingStart = 1'604'275'140;  // 2020-11-01 23:59:00 UTC

struct SRecordingSpec {
  std::uint32_t nSampleRate = 96'000;
  std::int64_t nCentre = 7'100'000;  // Hz
  std::int64_t tStart = kRecordingStart;
  std::int64_t nSeconds = 3600;
  std::uint32_t nBitsPerSample = 16;
  std::string strFirstFile{};  // of the set that it is a later file of; empty for a first one
};

// A WAV file with XML metadata and zeros for samples, which takes hardly any disk.
void WriteRecording(const std::string& path, const SRecordingSpec& spec);

}  // namespace carvello::test
