// The text of a SigMF meta file (SigMF 1.2.5) for an output, and of a collection of such files.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace carvello {

inline constexpr const char* kSigMfDataExtension = ".sigmf-data";
inline constexpr const char* kSigMfMetaExtension = ".sigmf-meta";
inline constexpr const char* kSigMfCollectionExtension = ".sigmf-collection";

// What an output was cut from.
struct SCutOrigin {
  std::string strFile;            // name alone, of the recording's first file; empty when it is not known
  std::uint32_t nSampleRate = 0;  // Hz
  std::int64_t nFrequency = 0;    // centre, Hz
  std::int64_t nFirstFrame = 0;   // of the recording, that the output begins with
  std::int64_t tAsked = 0;        // seconds since 1970 UTC, from which on it was asked for
};

struct SSigMfFacts {
  std::string strDataset;          // name of the file that holds the samples when that is no ".sigmf-data"
  std::uint64_t nHeaderBytes = 0;  // in front of its samples
  std::uint32_t nBitsPerSample = 16;
  std::uint32_t nSampleRate = 0;
  std::int64_t nFrequency = 0;          // centre, Hz
  std::uint32_t nBandwidth = 0;         // Hz
  std::int64_t tStart = 0;              // seconds since 1970 UTC of the first sample,
  std::uint32_t nStartNanoseconds = 0;  // and what they leave out
  std::int64_t nGlobalIndex = 0;  // of the first sample, counted at the output's rate from the recording's beginning
  std::string strTitle;
  std::string strHardware;
  SCutOrigin origin;
};

// A meta file is right from the moment that it is created, whatever is written to the file of samples later: the end of
// that file is where samples end. What is known only then has a place kept free for it, in the first 512 bytes, which a
// disk writes as a whole: whatever ends the program, the text before or the text after stands there.
struct SSigMfText {
  std::string strText;
  std::size_t nEndPlace = 0;  // where EndText comes
};
inline constexpr std::size_t kSigMfEndLength = 272;

SSigMfText BuildSigMfMeta(const SSigMfFacts& facts);

// How an output ended: exactly kSigMfEndLength bytes. `sha512` is empty where the meta file tells no hash.
std::string SigMfEndText(std::int64_t frames, const std::string& sha512, std::uint64_t trailingBytes);

// "dir/name.sigmf-meta" for "dir/name.wav" and "dir/name.sigmf-data".
std::string SigMfMetaPath(const std::string& path);

// A collection: names of recordings without extension, each with the SHA-512 of its meta file.
std::string BuildSigMfCollection(const std::string& description,
                                 const std::vector<std::pair<std::string, std::string>>& streams);

}  // namespace carvello
