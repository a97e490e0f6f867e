// CChangeHistory: the states that a list was in, to go back to and forth again.
#pragma once

#include <cstddef>
#include <optional>
#include <utility>
#include <vector>

namespace carvello {

template <class TState>
class CChangeHistory {
 public:
  // The state is about to be left by a change of the user's.
  void Leave(TState state) {
    m_later.clear();
    if (m_earlier.size() >= kMostSteps) m_earlier.erase(m_earlier.begin());
    m_earlier.push_back(std::move(state));
  }
  // The state to go to from `present`; nothing when there is none.
  std::optional<TState> Undo(TState present) { return Step(m_earlier, m_later, std::move(present)); }
  std::optional<TState> Redo(TState present) { return Step(m_later, m_earlier, std::move(present)); }

  void Clear() {
    m_earlier.clear();
    m_later.clear();
  }

 private:
  static constexpr std::size_t kMostSteps = 500;

  static std::optional<TState> Step(std::vector<TState>& from, std::vector<TState>& to, TState present) {
    if (from.empty()) return std::nullopt;
    to.push_back(std::move(present));
    std::optional<TState> state = std::move(from.back());
    from.pop_back();
    return state;
  }

  std::vector<TState> m_earlier;
  std::vector<TState> m_later;
};

}  // namespace carvello
