// The files of a recording that "synth" lays out itself, without the writer of outputs: samples of any kind and nothing
// else, the files of other programs, SigMF.
#pragma once

#include <string>
#include <vector>

#include "cli/synth_file.h"
#include "cli/synth_settings.h"

namespace carvello {

struct SSynthLayout {
  std::vector<SSynthFile> files;  // that one recording is spread over, in order
  std::vector<SSynthText> over;   // what stands over them all
};

// Of settings that name a kind of samples.
SSynthLayout LayOutSynth(const SSynthSettings& settings);

// Every file that the settings make.
std::vector<std::string> SynthPaths(const SSynthSettings& settings);

}  // namespace carvello
