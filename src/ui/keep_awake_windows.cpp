// clang-format off
#include <windows.h>
// clang-format on

#include "ui/keep_awake.h"

namespace carvello {

namespace {

// Holds for the thread that calls, which is the one of the windows and lives as long as the program.
class CExecutionState : public CStayAwake {
 public:
  CExecutionState() { SetThreadExecutionState(ES_CONTINUOUS | ES_SYSTEM_REQUIRED); }
  ~CExecutionState() override { SetThreadExecutionState(ES_CONTINUOUS); }
  CExecutionState(const CExecutionState&) = delete;
  CExecutionState& operator=(const CExecutionState&) = delete;
};

}  // namespace

std::unique_ptr<CStayAwake> StayAwake(const QString& /*reason*/) {
  return std::make_unique<CExecutionState>();
}

}  // namespace carvello
