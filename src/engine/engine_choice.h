// Which road each entry of a job takes, and why.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "engine/engine_kind.h"
#include "engine/output_entry.h"

namespace carvello {

struct SEngineChoice {
  std::vector<EEngine> engines;  // of each entry, in their order
  std::string strReason;         // what was chosen and why, for the log
};

// `entries`: those of one job, all of the same recording, which has `inputFrames` frames. Depends on nothing but what
// they ask for: never on the machine. An entry that leaves the spectrum no middle rate goes by the library in any case,
// and a stretch of an entry by the road of that one.
//
// By itself (EEngineSetting::Auto) an entry shares the spectrum when it is cheaper there, as long as what all save
// that share a stretch of the input makes up for that stretch's transforms.
SEngineChoice ChooseEngines(const std::vector<const OutputEntry*>& entries, EEngineSetting setting,
                            std::int64_t inputFrames);

}  // namespace carvello
