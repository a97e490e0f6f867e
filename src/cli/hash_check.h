// Whether the samples of a recording are those whose hash it tells.
#pragma once

#include <string>

#include "input/recording_set.h"

namespace carvello {

enum class EVerified {
  NotAsked,
  NoHash,  // the recording tells none
  Right,
  Wrong,
  Unread,
};

// Reads all of it. `error` says why it is not right; a recording without a hash is no error.
EVerified VerifyHash(const SDataHash& hash, std::string& error);

}  // namespace carvello
