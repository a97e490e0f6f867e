// CMyStringArray: a list of text lines with a growth step, for log lines.
#pragma once

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace carvello {

class CMyStringArray {
 public:
  // growBy: lines by which the storage grows when it is full; at least 1.
  explicit CMyStringArray(std::size_t growBy = 100) : m_nGrowBy(growBy == 0 ? 1 : growBy) {}

  void Add(std::string line) {
    if (m_lines.size() == m_lines.capacity()) {
      // Never by less than half of what is there, so that very long logs stay linear in time.
      m_lines.reserve(m_lines.size() + (m_nGrowBy > m_lines.size() / 2 ? m_nGrowBy : m_lines.size() / 2));
    }
    m_lines.push_back(std::move(line));
  }

  // Forgets all lines and sets the growth step for what follows.
  void Clear(std::size_t growBy) {
    m_lines.clear();
    m_nGrowBy = growBy == 0 ? 1 : growBy;
  }

  std::size_t Size() const { return m_lines.size(); }
  bool IsEmpty() const { return m_lines.empty(); }
  const std::string& operator[](std::size_t index) const { return m_lines[index]; }
  auto begin() const { return m_lines.begin(); }
  auto end() const { return m_lines.end(); }

 private:
  std::size_t m_nGrowBy;
  std::vector<std::string> m_lines;
};

}  // namespace carvello
