// CLongestTurn: how long the event loop was busy without a chance for a click, at most. Counted in processor time of
// the whole process, so that other programs on the machine change nothing.
#pragma once

#include <QObject>
#include <QTimer>
#include <algorithm>
#include <cstdint>

#include "support/platform.h"

namespace carvello::test {

class CLongestTurn : public QObject {
 public:
  CLongestTurn() : m_tLast(platform::ProcessCpuMilliseconds()) {
    connect(&m_timer, &QTimer::timeout, this, [this] {
      const std::int64_t now = platform::ProcessCpuMilliseconds();
      m_tLongest = std::max(m_tLongest, now - m_tLast);
      m_tLast = now;
      ++m_nTurns;
    });
    m_timer.start(0);
  }

  std::int64_t Milliseconds() const { return m_tLongest; }
  int Turns() const { return m_nTurns; }

 private:
  QTimer m_timer;
  std::int64_t m_tLast;
  std::int64_t m_tLongest = 0;
  int m_nTurns = 0;
};

}  // namespace carvello::test
