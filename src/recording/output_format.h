// EOutputFormat: in what files an output recording is stored.
#pragma once

namespace carvello {

enum class EOutputFormat {
  Wave,         // WAV or RF64
  WaveAndMeta,  // the same, with a SigMF meta file beside each
  SigMf,        // samples alone in a ".sigmf-data" file, all else in a ".sigmf-meta" file
};

}  // namespace carvello
