#include "input/data_size.h"

#include <algorithm>

#include "support/text.h"

namespace carvello {

SDataSize HeldDataSize(const CFile& file, std::uint64_t claimed, bool toFileEnd) {
  const std::int64_t held = std::max<std::int64_t>(file.Length() - file.Position(), 0);
  if (claimed > static_cast<std::uint64_t>(held)) {
    return {held, Format("[WARNING] Data size %llu exceeds the %lld bytes that the file holds, the samples end there",
                         static_cast<unsigned long long>(claimed), static_cast<long long>(held))};
  }
  return {toFileEnd ? held : static_cast<std::int64_t>(claimed), {}};
}

}  // namespace carvello
