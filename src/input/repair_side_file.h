// CRepairSideFile: keeps the bytes that a repair changes, beside the file, until all of them are changed.
//
// It is complete, on the disk, before the first byte of the file changes. Whoever finds it there knows from it how the
// file was, and can tell from the file how far the repair came: all bytes old, all new, or something between.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "support/file.h"

namespace carvello {

struct SByteChange {
  std::int64_t nOffset = 0;
  std::string strOld;
  std::string strNew;  // as long as the old ones
};

struct SKeptBytes {
  std::int64_t nModified = 0;  // when the file was changed last, in nanoseconds since 1970
  std::int64_t nLength = 0;    // of the file
  std::vector<SByteChange> changes;
};

enum class ESideFile {
  None,
  Unfinished,  // nothing was changed by then
  Complete,
  Foreign,  // of somebody else
  Unreadable,
};

// On Unreadable `error` tells why.
ESideFile ReadSideFile(const std::string& path, SKeptBytes& kept, std::string& error);
// False when there is one, or it cannot be written; `error` names it and says why, and nothing is left.
bool WriteSideFile(const std::string& path, const SKeptBytes& kept, std::string& error);
bool RemoveSideFile(const std::string& path, std::string& error);

}  // namespace carvello
