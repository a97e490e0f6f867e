// The files in a tar archive (POSIX.1-2001), and where their bytes lie.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "support/file.h"

namespace carvello {

struct STarEntry {
  std::string strName;  // with its folders, separated by "/"
  std::int64_t nOffset = 0;
  std::int64_t nBytes = 0;
  std::int64_t nMissing = 0;  // bytes behind the archive's end
  bool bSparse = false;       // its holes are left out: the bytes are not those of the file
};

// Walks from head to head and reads nothing else. Ordinary files only, in the order of the archive; one that the
// archive ends within has the bytes that are there. False when the file is no such archive or cannot be read, which
// `error` tells.
bool WalkTar(CFile& file, std::vector<STarEntry>& entries, std::string& error);

}  // namespace carvello
