// SideBySide: steps that mostly wait for a disk, several at a time.
#pragma once

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <exception>
#include <thread>
#include <vector>

namespace carvello {

// Files that a job brings to the medium at a time. A disk takes many together in hardly more time than one.
inline constexpr std::size_t kFilesSideBySide = 32;

// Calls step(0) to step(count - 1), at most `most` at a time, and returns when all are done. The threads for it last no
// longer; where the system gives none, the caller's does all there is. No step raises an exception.
template <typename TStep>
void SideBySide(std::size_t count, std::size_t most, const TStep& step) noexcept {
  std::atomic<std::size_t> next = 0;
  const auto work = [&]() noexcept {
    for (std::size_t i = next++; i < count; i = next++) step(i);
  };
  std::vector<std::thread> helpers;
  try {
    const std::size_t threads = std::min(count, most);
    helpers.reserve(threads);
    while (helpers.size() + 1 < threads) helpers.emplace_back(work);
  } catch (const std::exception&) {
    // With those that there are.
  }
  work();
  for (std::thread& helper : helpers) helper.join();
}

}  // namespace carvello
