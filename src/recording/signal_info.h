// The "signalinfo" document of a recording and the "meta" chunk that carries it.
#pragma once

#include <cstdint>
#include <string>

namespace carvello {

struct SSignalFacts {
  std::int64_t tSignal = 0;           // seconds since 1970 UTC
  std::int64_t nCenterFrequency = 0;  // Hz
  std::uint32_t nBandwidth = 0;       // Hz
  std::uint32_t nSampleRate = 0;      // Hz
};

// The document, UTF-8. Raises the invalid-argument error for a time that has no calendar date.
std::string BuildSignalInfoXml(const SSignalFacts& facts);

// The bytes of the chunk: "meta", the size, a multiple of 4, and the document with one to four zero bytes behind it.
std::string BuildMetaChunk(const SSignalFacts& facts);

}  // namespace carvello
