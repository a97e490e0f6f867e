// How far work on a span of a recording is, on stderr, and whether the user has had enough of it.
#pragma once

#include <cstdint>
#include <functional>

#include "cli/progress_display.h"

namespace carvello {

class CSpanProgress {
 public:
  // `bytes`: of the span's samples.
  CSpanProgress(bool quiet, std::int64_t bytes);

  // To be asked regularly with the share that is done, 0 to 1; false once the user has asked to stop.
  std::function<bool(double)> GoesOn();
  void End(bool complete);

 private:
  CProgressDisplay m_display;
};

}  // namespace carvello
