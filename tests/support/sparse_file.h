// Files of a size that the disk of a test machine need not have.
#pragma once

#include <cstdint>
#include <string>

namespace carvello::test {

// Makes the file that long with zeros that take no room on the disk, where the file system can do that. Throws a
// std::runtime_error when it cannot be made so long.
void ExtendFile(const std::string& path, std::uint64_t length);

}  // namespace carvello::test
