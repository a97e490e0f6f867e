// How a file of an output comes into being, and goes again where that fails.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "recording/write_policy.h"
#include "support/file.h"

namespace carvello {

// Opens the file for writing; on false `code`, the system's, and `reason` tell why it could not be.
bool OpenNewFile(CFile& file, const std::string& path, const SWritePolicy& policy, std::uint32_t& code,
                 std::string& reason);

// Closes the file and removes it: a stump is of use to nobody, and would stand in the way of the next attempt. What the
// name leads to by way of a link, and what is no ordinary file, is not ours to remove.
void RemoveNewFile(CFile& file, const std::string& path);

// Opens what the name leads to by now for reading. Whether it is the file that was written; nothing when that cannot be
// told, for a reason that the system has.
std::optional<bool> OpenByName(const CFile& written, const std::string& path, CFile& named);

}  // namespace carvello
