#include "engine/job_statistics.h"

#include <chrono>

#include "support/platform.h"

namespace carvello {

namespace {

constexpr double kMega = 1 << 20;
constexpr double kGiga = 1 << 30;

std::int64_t WallMilliseconds() {
  return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now().time_since_epoch())
      .count();
}

}  // namespace

void CJobStatistics::Start() noexcept {
  m_nCpuStart = platform::ProcessCpuMilliseconds();
  m_nWallStart = WallMilliseconds();
}

void CJobStatistics::Log(CBackgroundThreadBase& worker, std::int64_t bytesRead) const noexcept {
  const auto cpu = static_cast<long long>(platform::ProcessCpuMilliseconds() - m_nCpuStart);
  worker.Log("CPU = %lld.%03lld seconds", cpu / 1000, cpu % 1000);
  worker.Log("%s", "");
  const std::int64_t elapsed = WallMilliseconds() - m_nWallStart;
  if (elapsed <= 0) return;
  const double rate = static_cast<double>(bytesRead) / static_cast<double>(elapsed) * 1000.0;
  if (rate < kGiga) {
    worker.Log("Input data rate = %.2f MB", rate / kMega);
  } else {
    worker.Log("Input data rate = %.2f GB", rate / kGiga);
  }
  worker.Log("Elapsed         = %d.%03d seconds", static_cast<int>(elapsed / 1000), static_cast<int>(elapsed % 1000));
  worker.Log("%s", "");
}

void LogSize(CBackgroundThreadBase& worker, std::int64_t bytes) noexcept {
  const auto size = static_cast<double>(bytes);
  if (size < kGiga) {
    worker.Log("Size = %.1f MB", size / kMega);
  } else {
    worker.Log("Size = %.2f GB", size / kGiga);
  }
}

}  // namespace carvello
