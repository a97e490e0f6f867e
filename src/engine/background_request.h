// CBackgroundRequest: what a worker is asked to do. Recycled by the worker it was posted to.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "engine/block_pool.h"
#include "engine/output_entry.h"

namespace carvello {

class CBackgroundThreadBase;
class CEntryWriter;
class CSpectrumBlock;

// Request codes. The reader and the writers use the same numbers for requests of their own.
namespace request {
// Every worker.
inline constexpr std::uint32_t kSynchronise = 101;  // nothing is done; marks a place in the queue
inline constexpr std::uint32_t kSetPriority = 102;  // nParam1: priority
// The reader.
inline constexpr std::uint32_t kStartJob = 201;  // strParam: first file, llParam1: frames to skip, llParam2: bytes
inline constexpr std::uint32_t kStopJob = 202;   // nParam1: 1 when the job ends by itself, 0 for the user's wish
inline constexpr std::uint32_t kReadBlock = 203;
inline constexpr std::uint32_t kHandOnBlock = 204;    // nParam1: frames in the block buffer
inline constexpr std::uint32_t kCreateWriters = 205;  // nParam1: how many
inline constexpr std::uint32_t kGiveEntry = 206;      // nParam1: writer, pEntry
inline constexpr std::uint32_t kWriterFinished = 207;
// A writer.
inline constexpr std::uint32_t kStartEntry = 201;  // pWriter
// block, pSpectrum, nParam1: 1 when a stretch ends with it, nParam2: frames in it, llParam1: position of the first
inline constexpr std::uint32_t kDataBlock = 202;
inline constexpr std::uint32_t kCloseOutput = 203;
inline constexpr std::uint32_t kInputSkipped = 204;  // llParam1: frames skipped
}  // namespace request

class CBackgroundRequest {
 public:
  // Back to an empty request for its next use; blocks still held are let go.
  void Reset() noexcept;

  CBackgroundThreadBase* pOwner = nullptr;
  bool bCancelled = false;  // taken off the queue without being handled
  std::uint32_t nCode = 0;
  std::int32_t nParam1 = 0;
  std::int32_t nParam2 = 0;
  std::int64_t llParam1 = 0;
  std::int64_t llParam2 = 0;
  std::string strParam;
  const OutputEntry* pEntry = nullptr;  // not owned
  CEntryWriter* pWriter = nullptr;      // not owned
  SharedBlock block;
  std::shared_ptr<CSpectrumBlock> pSpectrum;  // of the block

 private:
  friend class CRequestQueue;
  CBackgroundRequest* m_pNext = nullptr;
};

// Requests one after the other. They are linked through themselves, so that a queue never needs memory of its own.
class CRequestQueue {
 public:
  using RequestPtr = std::unique_ptr<CBackgroundRequest>;

  CRequestQueue() = default;
  ~CRequestQueue() { Clear(); }
  CRequestQueue(const CRequestQueue&) = delete;
  CRequestQueue& operator=(const CRequestQueue&) = delete;

  std::uint32_t Size() const noexcept { return m_nSize; }
  void Push(RequestPtr request) noexcept;  // at the end
  RequestPtr Pop() noexcept;               // the first; nothing when the queue is empty
  void Clear() noexcept;
  void Swap(CRequestQueue& other) noexcept;

 private:
  CBackgroundRequest* m_pFirst = nullptr;
  CBackgroundRequest* m_pLast = nullptr;
  std::uint32_t m_nSize = 0;
};

}  // namespace carvello
