#include "cli/message_queue.h"

#include <utility>

namespace carvello {

void CMessageQueue::PostTexts(std::uint32_t message, std::string worker, std::string text) {
  Post({message, std::move(worker), std::move(text), 0, 0});
}

void CMessageQueue::PostNumbers(std::uint32_t message, std::uint64_t total, std::uint64_t done) {
  Post({message, {}, {}, total, done});
}

std::vector<SMessage> CMessageQueue::Take(std::chrono::milliseconds timeout) {
  const auto end = std::chrono::steady_clock::now() + timeout;
  CLockGuard guard(m_lock);
  while (m_messages.empty() && guard.WaitUntil(m_posted, end)) continue;
  return std::exchange(m_messages, {});
}

void CMessageQueue::Post(SMessage message) {
  {
    const CLockGuard guard(m_lock);
    m_messages.push_back(std::move(message));
  }
  m_posted.notify_one();
}

}  // namespace carvello
