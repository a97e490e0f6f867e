// Progress on the program's taskbar button.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>

class QWidget;

namespace carvello {

class CTaskbarProgress {
 public:
  virtual ~CTaskbarProgress() = default;
  virtual void SetValue(std::uint64_t position, std::uint64_t total) = 0;
};

// The desktop's own, for the taskbar button of `pMainWindow`; nullptr where there is none.
std::unique_ptr<CTaskbarProgress> CreateTaskbarProgress(QWidget* pMainWindow);

// The whole, in the unit of positions.
inline constexpr std::uint64_t kTaskbarTotal = 1000;

// Passes progress on at most once per clock second, and always when done equals total, so that 100 % is never lost.
class CTaskbarUpdates {
 public:
  // `clock`: seconds since 1970; the system's unless given.
  explicit CTaskbarUpdates(std::unique_ptr<CTaskbarProgress> pProgress, std::function<std::int64_t()> clock = {});

  // A job begins: its start is shown whenever it is.
  void Begin();
  // The position shown for `done` of `total`. Nothing happens without a taskbar.
  void Update(std::uint64_t position, std::uint64_t done, std::uint64_t total);

 private:
  std::unique_ptr<CTaskbarProgress> m_pProgress;
  std::function<std::int64_t()> m_clock;
  std::int64_t m_tLastUpdate = -1;
};

}  // namespace carvello
