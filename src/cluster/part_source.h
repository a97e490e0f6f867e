// CPartSource: the samples of an output, read from its parts one after the other.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "cluster/part_manifest.h"
#include "engine/joined_entry.h"
#include "support/file.h"
#include "support/sha2.h"

namespace carvello {

struct SReadyPart {
  std::string strPath;
  SPartManifest manifest;
};

// Throws std::runtime_error, with the reason, for a part that cannot be read or holds other samples than its manifest
// tells.
class CPartSource final : public ISampleSource {
 public:
  // In the order of their samples, without a gap.
  explicit CPartSource(std::vector<SReadyPart> parts);

  void Read(SComplex* destination, std::size_t count) override;
  std::int64_t GivenBy(std::int64_t frame) const override;
  std::int64_t BytesRead() const { return m_nBytesRead; }  // of samples

 private:
  void Open();
  void CheckEnd();

  std::vector<SReadyPart> m_parts;
  std::vector<SStretchMark> m_marks;  // of all parts, by their frames and then by their samples
  std::size_t m_nPart = 0;
  CFile m_file;
  CSha256 m_hash;
  std::uint32_t m_nBits = 0;
  std::int64_t m_nLeft = 0;  // frames of the open part
  std::int64_t m_nBytesRead = 0;
  std::vector<std::uint8_t> m_bytes;
};

}  // namespace carvello
