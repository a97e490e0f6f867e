// CBackgroundRequest: what a worker is asked to do. Recycled by the worker it was posted to.
#pragma once

#include <cstdint>
#include <string>

#include "engine/block_pool.h"
#include "engine/output_entry.h"

namespace carvello {

class CBackgroundThreadBase;

// Request codes. The reader and the writers use the same numbers for requests of their own.
namespace request {
// Every worker.
inline constexpr std::uint32_t kSynchronise = 101;  // nothing is done; marks a place in the queue
inline constexpr std::uint32_t kSetPriority = 102;  // nParam1: priority
// The reader.
inline constexpr std::uint32_t kStartJob = 201;  // strParam: first file, llParam1: frames to skip, llParam2: bytes
inline constexpr std::uint32_t kStopJob = 202;
inline constexpr std::uint32_t kReadBlock = 203;
inline constexpr std::uint32_t kHandOnBlock = 204;    // nParam1: frames in the block buffer
inline constexpr std::uint32_t kCreateWriters = 205;  // nParam1: how many
inline constexpr std::uint32_t kGiveEntry = 206;      // nParam1: writer, pEntry
inline constexpr std::uint32_t kWriterFinished = 207;
// A writer.
inline constexpr std::uint32_t kStartEntry = 201;  // pEntry
inline constexpr std::uint32_t kDataBlock = 202;   // block, nParam2: frames in it
inline constexpr std::uint32_t kCloseOutput = 203;
inline constexpr std::uint32_t kInputSkipped = 204;  // llParam1: frames skipped
}  // namespace request

class CBackgroundRequest {
 public:
  // Back to an empty request for its next use; a block still held is freed.
  void Reset();

  CBackgroundThreadBase* pOwner = nullptr;
  bool bCancelled = false;  // taken off the queue without being handled
  std::uint32_t nCode = 0;
  std::int32_t nParam1 = 0;
  std::int32_t nParam2 = 0;
  std::int64_t llParam1 = 0;
  std::int64_t llParam2 = 0;
  std::string strParam;
  const OutputEntry* pEntry = nullptr;  // not owned
  SharedBlock block;
};

}  // namespace carvello
