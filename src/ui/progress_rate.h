// CProgressRate: how fast a job reads, and how long it will still take, from the places that it told of. Smoothed over
// the last ten seconds.
#pragma once

#include <cstdint>
#include <deque>
#include <string>

#include "engine/progress_span.h"

namespace carvello {

class CProgressRate {
 public:
  // A job begins that reads this stretch. Times are in milliseconds of any clock that only goes on.
  void Begin(const SProgressSpan& span, std::int64_t now);
  // The job has come to this share of the whole input, 0 to 1.
  void Update(double share, std::int64_t now);
  // "85.3 MB/s, 1:02:33 left"; empty until two seconds of the job have told something, or while nothing moves.
  std::string Text(std::int64_t now) const;

 private:
  struct SPoint {
    std::int64_t tTime;
    double dPlace;  // bytes from the input's first sample
  };

  SProgressSpan m_span;
  std::deque<SPoint> m_points;
};

}  // namespace carvello
