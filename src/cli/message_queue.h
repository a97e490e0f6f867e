// CMessageQueue: what the workers post, kept in order until the program's own thread takes it.
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <string>
#include <vector>

#include "engine/message_target.h"
#include "support/mutex.h"

namespace carvello {

struct SMessage {
  std::uint32_t nMessage = 0;
  std::string strWorker;  // of a log line
  std::string strText;
  std::uint64_t nTotal = 0;  // of progress
  std::uint64_t nDone = 0;
};

class CMessageQueue : public IMessageTarget {
 public:
  void PostTexts(std::uint32_t message, std::string worker, std::string text) override;
  void PostNumbers(std::uint32_t message, std::uint64_t total, std::uint64_t done) override;

  // Takes everything that waits. When nothing does, waits for the first message, but not longer than `timeout`.
  std::vector<SMessage> Take(std::chrono::milliseconds timeout);

 private:
  void Post(SMessage message);

  CMutex m_lock;
  std::condition_variable m_posted;
  std::vector<SMessage> m_messages CARVELLO_GUARDED_BY(m_lock);
};

}  // namespace carvello
