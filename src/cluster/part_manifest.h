// SPartManifest: what stands beside a complete part of an output, and tells that it is one.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "cluster/task_parts.h"
#include "cluster/work_plan.h"
#include "engine/output_result.h"

namespace carvello {

// What all parts of a recording come from.
struct SPartOrigin {
  std::string strVersion;  // release of the program
  std::string strLibrary;  // version of the downconverter library
  std::string strInput;    // as in the plan
  std::string strStamp;    // hash of the paths, sizes and times of its files
  std::string strEntries;  // as in the plan
};
SPartOrigin OriginOf(const SWorkPlan& plan, const SPlannedRecording& recording);

struct SPartManifest {
  SPartOrigin origin{};     // told for people; what a part is checked by is its key
  std::string strKey;       // of all that decides about its samples: see PartKey
  std::string strEntry;     // name of the output
  std::int64_t nFirst = 0;  // of the output's samples
  std::int64_t nFrames = 0;
  std::string strSha256;  // of the sample bytes
  std::vector<SStretchMark> marks{};
};

// Two parts with the same key hold the same samples.
std::string PartKey(const SPartOrigin& origin, const STaskPart& part);

std::string PartManifestText(const SPartManifest& manifest);
// Nothing when the text is none. Numbers are whole and not negative.
std::optional<SPartManifest> ParseManifest(std::string_view text);
// Nothing when there is none of this key, with a part of its size beside it. What cannot be read counts as not there,
// and is made again; `problem` names it then, with the system's reason.
std::optional<SPartManifest> FindManifest(const STaskPart& part, const std::string& key,
                                          std::string* problem = nullptr);
// Whether there is one, and the part's samples are those that it tells of: reads them.
bool IsPartWhole(const STaskPart& part, const std::string& key);

// The sample bytes of a part: where they stand in its file, and how many there are. False with `error`.
struct SPartSamples {
  std::int64_t nOffset = 0;
  std::int64_t nBytes = 0;
  std::uint32_t nBitsPerSample = 0;
  std::int64_t FrameBytes() const { return std::int64_t{nBitsPerSample} / 4; }  // of two values
};
bool FindPartSamples(const std::string& path, SPartSamples& samples, std::string& error);

// Reads a part once for its hash. False with `error`.
bool HashPart(const std::string& path, std::string& sha256, std::int64_t& frames, std::string& error);

}  // namespace carvello
