#include "support/sparse_file.h"

#include <unistd.h>

#include <stdexcept>

namespace carvello::test {

void ExtendFile(const std::string& path, std::uint64_t length) {
  if (truncate(path.c_str(), static_cast<off_t>(length)) != 0) throw std::runtime_error("cannot extend " + path);
}

}  // namespace carvello::test
