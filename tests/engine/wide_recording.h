// A recording that entries are planned for, without a file: twenty minutes around 7.1 MHz, 2 MHz wide.
#pragma once

#include <cstdint>
#include <string>

#include "input/recording_set.h"

namespace carvello::test {

inline constexpr std::int64_t kWideStart = 1'795'262'400;  // 2026-11-21T12:00:00Z

// `files`: so many of the same length, "in 000.wav" and so on.
inline CRecordingSet WideRecording(int files = 1) {
  CRecordingSet recording;
  for (int i = 0; i < files; ++i) {
    recording.files.push_back({"in 00" + std::to_string(i) + ".wav", 0, 0, 9'600'000'000 / files, {}});
  }
  recording.format.Format.nChannels = 2;
  recording.format.Format.wBitsPerSample = 16;
  recording.tStart = kWideStart;
  recording.tEnd = kWideStart + 1200;
  recording.nRadioCenterFreq = 7'100'000;
  recording.nSampleRate = 2'000'000;
  return recording;
}

}  // namespace carvello::test
