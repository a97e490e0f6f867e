// Members of numbered sets that were described without being read, because each is of the size of the member before it.
// Whoever selects one of them later still finds its set without reading anything.
#pragma once

#include <optional>
#include <string>

#include "input/file_stamp.h"

namespace carvello {

// `member`, as it is now, was described like the file `read` of the same set. Kept for the life of the process; may be
// called on any thread.
void RememberMember(const std::string& member, const SFileStamp& stamp, const std::string& read);

// The file that the member was described like; nothing for a file not remembered, changed since, or not readable now.
std::optional<std::string> FileReadFor(const std::string& member);

}  // namespace carvello
