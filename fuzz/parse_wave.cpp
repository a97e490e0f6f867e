// Any bytes as an input file: the parse before reading, and reading itself, must end with samples that the file has.
#include <algorithm>

#include "fuzz_checks.h"
#include "input/wave_file_reader.h"
#include "memory_file.h"

using namespace carvello;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
  static const fuzz::CMemoryFile file;
  file.Fill(fuzz::Text(bytes, count));
  CWaveFileReader reader;
  fuzz::Require(reader.Open(file.Path()));
  WAVEFORMATEXTENSIBLE format;
  std::int64_t dataSize = 0;
  if (reader.ParseWave(format, dataSize)) {
    fuzz::Require(dataSize > 0 && reader.DataStart() + dataSize <= static_cast<std::int64_t>(count));
    fuzz::Require(reader.DataBytesTotal() >= 0 && reader.DataBytesTotal() <= dataSize);
    reader.SkipFrames(dataSize / std::max<std::int64_t>(reader.BytesPerFrame(), 1) / 2);
    char buffer[512];
    std::int64_t total = reader.DataBytesRead();
    while (const std::size_t read = reader.ReadData(buffer, sizeof(buffer))) total += static_cast<std::int64_t>(read);
    fuzz::Require(total == reader.DataBytesTotal());
  }
  reader.Close();
  for (const std::string& line : reader.Log()) fuzz::RequirePrintable(line);
  return 0;
}
