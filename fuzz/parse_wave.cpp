// Any bytes as an input file: the parse before reading, and reading itself, must end with samples that the file has.
#include <algorithm>

#include "fuzz_checks.h"
#include "input/sample_file.h"
#include "memory_file.h"

using namespace carvello;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
  static const fuzz::CMemoryFile file;
  file.Fill(fuzz::Text(bytes, count));
  CSampleFile samples;
  CWaveFileReader& reader = samples.File();
  fuzz::Require(samples.Open(file.Path()));
  WAVEFORMATEXTENSIBLE format;
  std::int64_t dataSize = 0;
  if (reader.ParseWave(format, dataSize)) {
    fuzz::Require(dataSize > 0 && reader.DataStart() + dataSize <= static_cast<std::int64_t>(count));
    fuzz::Require(reader.DataBytesTotal() >= 0 && reader.DataBytesTotal() <= dataSize);
    samples.BeginWave(KindOfWave(format));
    fuzz::Require(samples.Seek(samples.Frames() / 2));
    char buffer[512];
    while (const std::int64_t ahead = samples.Ahead().nFrames) {
      const std::int64_t wanted = std::min<std::int64_t>(ahead, sizeof(buffer) / samples.FrameBytes());
      fuzz::Require(samples.Read(buffer, wanted) == wanted);
    }
    fuzz::Require(samples.Position() == samples.Frames());
  }
  reader.Close();
  for (const std::string& line : reader.Log()) fuzz::RequirePrintable(line);
  return 0;
}
