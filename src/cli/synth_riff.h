// The heads of the WAV files that receivers' programs write, byte by byte.
#pragma once

#include <cstdint>
#include <string>

#include "recording/sample_kind.h"

namespace carvello {

// What a recording is to tell of itself.
struct SSynthFacts {
  std::string strFileName;  // without folders
  SSampleKind kind;
  std::uint32_t nSampleRate = 0;
  std::int64_t nCentre = 0;
  std::int64_t tStart = 0;
  std::int64_t nFirstFrame = 0;  // first sample, counted from tStart; of SigMF alone
  std::int64_t nFrames = 0;
};

// The chunks by which programs tell when and where a recording was made.
std::string HalvarnChunk(const SSynthFacts& facts);
std::string Halvarn2Chunk(const SSynthFacts& facts);
std::string Halvarn3Chunk(const SSynthFacts& facts);
std::string Auxi28(const SSynthFacts& facts);
std::string Auxi44(const SSynthFacts& facts);
std::string Auxi68(const SSynthFacts& facts);  // in local time
std::string Auxi72(const SSynthFacts& facts);
std::string Auxi164(const SSynthFacts& facts);
std::string LocalAuxi164(const SSynthFacts& facts);
std::string EladChunks(const SSynthFacts& facts);
std::string RcvrChunk(const SSynthFacts& facts);
std::string SignalInfoChunk(const SSynthFacts& facts);

// Everything in front of the samples of a WAV file with these chunks.
std::string WaveHead(const SSynthFacts& facts, const std::string& chunks);

// A WAV file with a "kiwi" and a "data" chunk for every so many frames.
inline constexpr std::int64_t kKiwiFrames = 512;
std::string KiwiHead(const SSynthFacts& facts);
std::string KiwiBlockHead(const SSynthFacts& facts, std::int64_t first, std::int64_t frames);

}  // namespace carvello
