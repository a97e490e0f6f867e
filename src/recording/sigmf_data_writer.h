// CSigMfDataWriter: one output recording being written as SigMF: a file of samples and nothing else, and the meta file
// beside it.
#pragma once

#include <cstdint>
#include <string>

#include "recording/sample_file_writer.h"

namespace carvello {

class CSigMfDataWriter : public CSampleFileWriter {
 public:
  // Creates both files; what the meta file tells has been set before. False on failure, ErrorText() then tells why.
  bool Open(const std::string& path, std::uint32_t bytesPerFrame) {
    return Create(path, {}, bytesPerFrame).has_value();
  }

 private:
  bool AreSizesDue(std::int64_t /*now*/) override { return true; }
  bool PatchSizes(std::int64_t /*fileSize*/) override { return true; }
  bool EndsWithSamples() const override { return true; }
  bool IsWhole(CFile& named, bool& readable) const override {
    const std::int64_t length = named.Length();
    readable = length >= 0;
    return length == DataBytes();
  }
};

}  // namespace carvello
