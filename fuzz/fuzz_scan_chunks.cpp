// Any bytes as an input file: the walk, the streaming parse and reading of samples must end, without touching memory
// that is not theirs, with sizes that the file really has.
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "input/wave_file_reader.h"
#include "recording/metadata_xml.h"

namespace {

using carvello::CWaveFileReader;

void Require(bool condition) {
  if (!condition) std::abort();
}

// The input as a file in memory, under a path that can be opened.
class CMemoryFile {
 public:
  CMemoryFile() : m_nDescriptor(memfd_create("carvello-fuzz", MFD_CLOEXEC)) { Require(m_nDescriptor >= 0); }
  ~CMemoryFile() { close(m_nDescriptor); }
  CMemoryFile(const CMemoryFile&) = delete;
  CMemoryFile& operator=(const CMemoryFile&) = delete;

  void Fill(const std::uint8_t* bytes, std::size_t count) const {
    Require(ftruncate(m_nDescriptor, 0) == 0);
    Require(pwrite(m_nDescriptor, bytes, count, 0) == static_cast<ssize_t>(count));
  }
  std::string Path() const { return "/proc/self/fd/" + std::to_string(m_nDescriptor); }

 private:
  int m_nDescriptor;
};

void Walk(const std::string& path, std::int64_t fileSize) {
  CWaveFileReader reader;
  carvello::SScanResult result;
  const bool found = reader.ScanChunks(path, result);
  Require(!reader.IsOpen());
  Require(result.nDataBytes >= 0 && result.nDataBytes <= fileSize);
  Require(found || !result.strError.empty());
  carvello::SMetadataLists metadata;
  carvello::ParseMetadataXml(result.strXml, metadata);
  Require(metadata.names.size() == metadata.values.size());
}

void Parse(const std::string& path, std::int64_t fileSize) {
  CWaveFileReader reader;
  Require(reader.Open(path));
  carvello::WAVEFORMATEXTENSIBLE format;
  std::int64_t dataSize = 0;
  if (reader.ParseWave(format, dataSize)) {
    Require(dataSize > 0 && reader.DataStart() + dataSize <= fileSize);
    Require(reader.DataBytesTotal() >= 0 && reader.DataBytesTotal() <= dataSize);
    reader.SkipFrames(dataSize / std::max<std::int64_t>(reader.BytesPerFrame(), 1) / 2);
    char buffer[512];
    std::int64_t total = reader.DataBytesRead();
    while (const std::size_t count = reader.ReadData(buffer, sizeof(buffer))) total += static_cast<std::int64_t>(count);
    Require(total == reader.DataBytesTotal());
  }
  reader.Close();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
  static const CMemoryFile file;
  file.Fill(bytes, count);
  const std::string path = file.Path();
  Walk(path, static_cast<std::int64_t>(count));
  Parse(path, static_cast<std::int64_t>(count));
  return 0;
}
