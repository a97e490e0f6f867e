#include "overview/carrier_finder.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <new>

#include "dsp/primitives.h"
#include "spectrum/carrier_search.h"

namespace carvello {

namespace {

constexpr double kSeconds = 8.0;  // no oscillator of a station is steady enough for more to tell more
constexpr std::int64_t kMostFrames = std::int64_t{1} << 27;
constexpr std::int64_t kPortion = 65'536;
constexpr double kSecondReach = 8.0;  // of the first search's resolution

std::optional<double> Search(IFrameSource& source, CCarrierSearch& search, std::int64_t middle, std::int64_t frames,
                             const std::function<bool()>& goesOn) {
  const ComplexBuffer buffer(AllocComplex(kPortion));
  if (!buffer) throw std::bad_alloc();
  const std::int64_t end = middle + frames / 2;
  for (std::int64_t first = middle - frames / 2; first < end; first += kPortion) {
    if (!goesOn()) return std::nullopt;
    const std::int64_t done = source.Read(first, buffer.get(), std::min(kPortion, end - first));
    search.Add(buffer.get(), done);
    if (done < std::min(kPortion, end - first)) break;
  }
  return search.Frequency();
}

}  // namespace

std::optional<double> FindCarrier(IFrameSource& source, double rate, const SCarrierRequest& request,
                                  const std::function<bool()>& goesOn) {
  const auto total = static_cast<double>(source.Frames());
  const double first = std::clamp(request.dFirstFrame, 0.0, total);
  const double end = std::clamp(request.dFirstFrame + request.dFrames, first, total);
  if (!(rate > 0) || !(request.dReach > 0) || !std::isfinite(request.dFrequency) || !(end > first)) return std::nullopt;
  const auto middle = static_cast<std::int64_t>((first + end) / 2);
  const std::int64_t most =
      std::min({static_cast<std::int64_t>(end - first), static_cast<std::int64_t>(kSeconds * rate), kMostFrames});
  CCarrierSearch coarse(rate, request.dFrequency, request.dReach);
  const std::optional<double> found = Search(source, coarse, middle, std::min(most, coarse.MostFrames()), goesOn);
  if (!found || coarse.MostFrames() >= most) return found;
  // All of the span, closer around what the first look found.
  CCarrierSearch fine(rate, *found, kSecondReach * coarse.Resolution());
  const std::optional<double> better = Search(source, fine, middle, std::min(most, fine.MostFrames()), goesOn);
  return better ? better : found;
}

}  // namespace carvello
