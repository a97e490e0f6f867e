// Any bytes as an input file: the walk over its chunks must end, without touching memory that is not its own, with
// sizes that the file really has and a log that can be shown.
#include "fuzz_checks.h"
#include "input/wave_file_reader.h"
#include "memory_file.h"
#include "recording/metadata_xml.h"

using namespace carvello;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
  static const fuzz::CMemoryFile file;
  file.Fill(fuzz::Text(bytes, count));
  CWaveFileReader reader;
  SScanResult result;
  const bool found = reader.ScanChunks(file.Path(), result);
  fuzz::Require(!reader.IsOpen());
  fuzz::Require(result.nDataBytes >= 0 && result.nDataBytes <= static_cast<std::int64_t>(count));
  fuzz::Require(found || !result.strError.empty());
  for (const std::string& line : reader.Log()) fuzz::RequirePrintable(line);
  SMetadataLists metadata;
  ParseMetadataXml(result.strXml, metadata);
  fuzz::Require(metadata.names.size() == metadata.values.size());
  return 0;
}
