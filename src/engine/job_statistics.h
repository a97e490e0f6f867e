// CJobStatistics: what a job took, as its log tells it.
#pragma once

#include <cstdint>

#include "engine/background_thread_base.h"

namespace carvello {

class CJobStatistics {
 public:
  void Start() noexcept;
  // Processor time and, where any time has passed, the rate at which so many bytes of input were read.
  void Log(CBackgroundThreadBase& worker, std::int64_t bytesRead) const noexcept;

 private:
  std::int64_t m_nCpuStart = 0;   // milliseconds
  std::int64_t m_nWallStart = 0;  // milliseconds
};

void LogSize(CBackgroundThreadBase& worker, std::int64_t bytes) noexcept;

}  // namespace carvello
