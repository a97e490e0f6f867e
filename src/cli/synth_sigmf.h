// Test recordings as SigMF: a pair of files, an archive, or a collection of pairs.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "cli/synth_file.h"
#include "cli/synth_riff.h"

namespace carvello {

enum class ESynthSigMf { Pair, Archive, Collection };

// By the ending of the path: .sigmf-data or .sigmf-meta, .sigmf, .sigmf-collection.
std::optional<ESynthSigMf> SynthSigMfOf(const std::string& path);
// Whether the name of the path fits the places that an archive has for it.
bool FitsArchive(const std::string& path);

struct SSynthCaptures {
  std::uint32_t nCount = 1;  // the samples are spread evenly over them
  std::int64_t nLost = 0;    // samples that are missing between two of them
};

// The files of one recording, the meta file among what describes the samples. `facts.nFrames` are written; those that
// are lost come on top of them.
SSynthFile LayOutSigMf(const SSynthFacts& facts, const SSynthCaptures& captures, const std::string& path);
// The collection at `path` over these recordings.
SSynthText LayOutCollection(const std::string& path, const std::vector<SSynthFile>& files);

}  // namespace carvello
