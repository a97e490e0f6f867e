// Any bytes as an archive: the walk ends, and tells of no byte that is not in the file.
#include "input/tar_walk.h"

#include "fuzz_checks.h"
#include "memory_file.h"

using namespace carvello;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
  static const fuzz::CMemoryFile file;
  file.Fill(fuzz::Text(bytes, count));
  CFile archive;
  fuzz::Require(archive.Open(file.Path(), platform::EOpenMode::ReadShared));
  std::vector<STarEntry> entries;
  std::string error;
  const bool walked = WalkTar(archive, entries, error);
  fuzz::Require(walked ? !entries.empty() : !error.empty());
  for (const STarEntry& entry : entries) {
    fuzz::Require(entry.nOffset >= 512 && entry.nBytes >= 0);
    fuzz::Require(entry.nBytes == 0 || entry.nOffset + entry.nBytes <= static_cast<std::int64_t>(count));
  }
  return 0;
}
