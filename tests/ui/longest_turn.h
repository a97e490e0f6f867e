// CLongestTurn: how long the event loop was busy without a chance for a click, at most. Counted in processor time, so
// that other programs on the machine change nothing.
#pragma once

#include <QObject>
#include <QTimer>
#include <algorithm>
#include <ctime>

namespace carvello::test {

class CLongestTurn : public QObject {
 public:
  CLongestTurn() : m_tLast(std::clock()) {
    connect(&m_timer, &QTimer::timeout, this, [this] {
      const std::clock_t now = std::clock();
      m_tLongest = std::max(m_tLongest, now - m_tLast);
      m_tLast = now;
      ++m_nTurns;
    });
    m_timer.start(0);
  }

  double Milliseconds() const { return 1000.0 * static_cast<double>(m_tLongest) / CLOCKS_PER_SEC; }
  int Turns() const { return m_nTurns; }

 private:
  QTimer m_timer;
  std::clock_t m_tLast;
  std::clock_t m_tLongest = 0;
  int m_nTurns = 0;
};

}  // namespace carvello::test
