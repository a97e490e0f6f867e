// Recordings of other programs, laid out byte by byte from what those programs write.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "input/input_fixture.h"

namespace carvello::test {

struct SDate {
  std::uint32_t nYear = 2023;
  std::uint32_t nMonth = 4;
  std::uint32_t nDay = 15;
  std::uint32_t nHour = 12;
  std::uint32_t nMinute = 0;
  std::uint32_t nSecond = 0;
  std::uint32_t nMilliseconds = 0;
};

// The 16 bytes of a calendar record; the day of the week is 0.
std::string SystemTimeBytes(const SDate& date);

struct SAuxi {
  SDate start{};
  SDate stop{};
  std::uint32_t nCentreFrequency = 7'050'000;
  std::uint32_t nADFrequency = 122'880'000;
  std::uint32_t nIFFrequency = 0;
  std::uint32_t nBandwidth = 0;
  std::uint32_t nIQOffset = 0;
  std::uint32_t nSpare = 0;
};
// The 28-byte block: start, centre, clock.
std::string ShortAuxiBody(const SAuxi& auxi);
// A block of 44, 68, 72 or 164 bytes: start, stop, then frequencies as far as they fit, zeros behind.
std::string AuxiBody(std::size_t size, const SAuxi& auxi);

// 34 bytes: centre, index of the rate, start in seconds since 1970, zeros.
std::string RcvrBody(std::uint32_t centreFrequency, std::uint32_t rateIndex, std::int64_t start);

// A document with its elements directly below the root.
std::string SignalInfoBody(std::string_view dataType, std::string_view signalTime);

// A file of `seconds` seconds of 16-bit stereo at 1000 frames a second, with further chunks before the data.
std::string SecondsOfWave(double seconds, std::string_view chunks = {});

}  // namespace carvello::test
