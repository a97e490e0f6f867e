#include "input/data_size.h"

#include <algorithm>

#include "input/riff_layout.h"
#include "support/platform.h"
#include "support/text.h"

namespace carvello {

namespace {

// What stands behind the file's position.
SDataSize HeldBytes(const CFile& file) {
  const std::int64_t length = file.Length();
  if (length < 0) return {0, {}, platform::LastError()};
  return {std::max<std::int64_t>(length - file.Position(), 0), {}, 0};
}

SDataSize Limited(SDataSize held, std::uint64_t claimed, bool toFileEnd) {
  if (held.nError != 0) return held;
  if (claimed > static_cast<std::uint64_t>(held.nBytes)) {
    held.strWarning =
        Format("[WARNING] Data size %llu exceeds the %lld bytes that the file holds, the samples end there",
               static_cast<unsigned long long>(claimed), static_cast<long long>(held.nBytes));
  } else if (!toFileEnd) {
    held.nBytes = static_cast<std::int64_t>(claimed);
  }
  return held;
}

}  // namespace

SDataSize RiffDataSize(const CFile& file, std::uint32_t claimed, bool elad) {
  if (claimed != kSizeInDs64) return Limited(HeldBytes(file), claimed, elad);
  SDataSize held = HeldBytes(file);
  held.strWarning =
      Format("[WARNING] Data size %u was never made final, the samples are read to the file's end", claimed);
  return held;
}

SDataSize Rf64DataSize(const CFile& file, std::int64_t claimed) {
  return Limited(HeldBytes(file), static_cast<std::uint64_t>(claimed), false);
}

}  // namespace carvello
