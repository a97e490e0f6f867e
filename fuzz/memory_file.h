// CMemoryFile: a file without a disk, under a path that can be opened.
#pragma once

#include <sys/mman.h>
#include <unistd.h>

#include <string>
#include <string_view>

#include "fuzz_checks.h"

namespace carvello::fuzz {

class CMemoryFile {
 public:
  CMemoryFile() : m_nDescriptor(memfd_create("carvello-fuzz", MFD_CLOEXEC)) { Require(m_nDescriptor >= 0); }
  ~CMemoryFile() { close(m_nDescriptor); }
  CMemoryFile(const CMemoryFile&) = delete;
  CMemoryFile& operator=(const CMemoryFile&) = delete;

  void Fill(std::string_view bytes) const {
    Require(ftruncate(m_nDescriptor, 0) == 0);
    Require(pwrite(m_nDescriptor, bytes.data(), bytes.size(), 0) == static_cast<ssize_t>(bytes.size()));
  }
  std::string Path() const { return "/proc/self/fd/" + std::to_string(m_nDescriptor); }

 private:
  int m_nDescriptor;
};

}  // namespace carvello::fuzz
