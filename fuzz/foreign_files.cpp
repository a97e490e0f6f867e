// Any bytes as a file of another program; the first one says of which kind. What is found must lie within the file.
#include "container_checks.h"
#include "input/container_kiwi.h"
#include "input/container_sdriq.h"
#include "memory_file.h"
#include "support/file.h"

using namespace carvello;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
  if (count == 0) return 0;
  static const fuzz::CMemoryFile memory;
  memory.Fill(fuzz::Text(bytes + 1, count - 1));
  const auto length = static_cast<std::int64_t>(count - 1);
  CFile file;
  fuzz::Require(file.Open(memory.Path(), platform::EOpenMode::ReadShared));
  SForeignFile found;
  const std::uint32_t frameBytes = 2 + bytes[0] % 15;
  const bool isKiwi = bytes[0] % 2 != 0;
  if (!(isKiwi ? ReadKiwi(file, frameBytes, found) : ReadSdriq(file, found))) return 0;
  if (isKiwi) {
    fuzz::RequireWithin(*found.layout, frameBytes, length);
  } else {
    fuzz::Require(found.nDataOffset > 0 && found.nDataBytes > 0 && found.nDataOffset + found.nDataBytes == length);
    fuzz::Require(found.kind && found.kind->IsKnown());
  }
  for (const std::string& warning : found.warnings) fuzz::RequirePrintable(warning);
  return 0;
}
