// Writes a made-up recording: its files, with metadata that describes them.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "cli/synth_settings.h"

namespace carvello {

struct SSynthResult {
  std::vector<std::string> files;  // those finished
  std::int64_t nClipped = 0;       // values cut to full scale
  bool bStopped = false;           // by Ctrl-C; the last file is shorter then, but valid
  std::string strError;            // names the file that could not be written; empty when all went well
};

// Creates the files, replacing what is there.
SSynthResult WriteSynthRecording(const SSynthSettings& settings);

}  // namespace carvello
