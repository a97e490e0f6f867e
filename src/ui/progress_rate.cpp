#include "ui/progress_rate.h"

#include <algorithm>

#include "support/formatting.h"
#include "support/text.h"

namespace carvello {

namespace {

constexpr std::int64_t kWindow = 10'000;   // ms that the speed is taken over
constexpr std::int64_t kFirst = 2'000;     // ms until there is enough to tell
constexpr std::int64_t kPatience = 5'000;  // ms without progress that are taken for a pause between two steps of it
constexpr std::int64_t kStalled = 60'000;  // ms without progress after which nothing is known any more

}  // namespace

void CProgressRate::Begin(const SProgressSpan& span, std::int64_t now) {
  m_span = span;
  m_points.assign(1, {now, span.dBegin});
}

void CProgressRate::Update(double share, std::int64_t now) {
  const double place = std::min(m_span.PlaceOf(share), m_span.dEnd);
  // Progress is told in steps, and a step of a large input can take long: what is before the window stays until there
  // is another point to reckon from.
  if (m_points.empty() || place <= m_points.back().dPlace) return;
  m_points.push_back({now, place});
  while (m_points.size() > 2 && m_points[1].tTime <= now - kWindow) m_points.pop_front();
}

std::string CProgressRate::Text(std::int64_t now) const {
  if (m_points.size() < 2) return {};
  const SPoint& first = m_points.front();
  const SPoint& last = m_points.back();
  const std::int64_t still = now - last.tTime;
  const std::int64_t elapsed = (still > kPatience ? now : last.tTime) - first.tTime;
  if (elapsed < kFirst || still > kStalled) return {};
  const double bytesPerSecond = (last.dPlace - first.dPlace) / static_cast<double>(elapsed) * 1000.0;
  const double left = (m_span.dEnd - last.dPlace) / bytesPerSecond - static_cast<double>(still) / 1000.0;
  return Format("%.1f MB/s, %s left", bytesPerSecond / 1e6, FormatDuration(left).c_str());
}

}  // namespace carvello
