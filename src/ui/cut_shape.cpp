#include "ui/cut_shape.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "engine/offered_bandwidths.h"

namespace carvello {

namespace {

std::int64_t OnRaster(double frequency, std::uint32_t raster) {
  if (raster == 0) return std::llround(frequency);
  return std::llround(frequency / raster) * static_cast<std::int64_t>(raster);
}

// The fields of the dialog know no frequency below zero.
std::int64_t MiddleFor(double frequency, std::uint32_t raster) {
  return std::max<std::int64_t>(OnRaster(frequency, raster), 0);
}

void SetTimes(SCut& cut, double firstFrame, double lastFrame, const SCutRules& rules) {
  const double rate = std::max<double>(rules.nSampleRate, 1.0);
  std::int64_t start = rules.tStart + static_cast<std::int64_t>(std::floor(firstFrame / rate));
  std::int64_t end = rules.tStart + static_cast<std::int64_t>(std::ceil(lastFrame / rate));
  start = std::clamp(start, rules.tStart, std::max(rules.tEnd - 1, rules.tStart));
  end = std::max(end, start + 1);
  cut.tStart = start > rules.tStart ? std::optional(start) : std::nullopt;
  cut.tEnd = end < rules.tEnd ? std::optional(end) : std::nullopt;
}

}  // namespace

SCut CutOf(const SDragged& dragged, const SCutRules& rules, std::optional<double> centre) {
  SCut cut;
  cut.nFrequency = centre ? MiddleFor(*centre, 0) : MiddleFor(dragged.frequency.Middle(), rules.nRaster);
  const auto middle = static_cast<double>(cut.nFrequency);
  double width = 2.0 * std::max(dragged.frequency.dTo - middle, middle - dragged.frequency.dFrom);
  // Half a hertz that the middle was rounded by is no reason for the next wider band.
  if (!centre && rules.nRaster == 0 && cut.nFrequency > 0) width = dragged.frequency.Length();
  cut.nBandwidth = OfferedBandwidthFor(width, rules.nSampleRate);
  if (dragged.frames) SetTimes(cut, dragged.frames->dFrom, dragged.frames->dTo, rules);
  return cut;
}

SCut WithEdgeAt(const SCut& cut, ECutEdge edge, double place, const SCutRules& rules) {
  SCut changed = cut;
  const SSpan frequencies = FrequenciesOf(cut);
  const SSpan frames = FramesOf(cut, rules);
  const double second = rules.nSampleRate;
  switch (edge) {
    case ECutEdge::None:
      break;
    case ECutEdge::Low:
    case ECutEdge::High: {
      const bool low = edge == ECutEdge::Low;
      // On a raster the middle is what counts.
      const double held = rules.nRaster != 0 ? frequencies.Middle() : low ? frequencies.dTo : frequencies.dFrom;
      const double room = std::max(low ? held - place : place - held, 0.0);
      changed.nBandwidth = OfferedBandwidthFor(rules.nRaster != 0 ? 2.0 * room : room, rules.nSampleRate);
      if (rules.nRaster != 0) break;
      changed.nFrequency = MiddleFor(held + (low ? -0.5 : 0.5) * changed.nBandwidth, 0);
      break;
    }
    case ECutEdge::Start: {
      // The edge comes to the second that is next to its place, and stays in front of the end.
      const double at = std::min(std::round(place / second) * second, frames.dTo - second);
      SetTimes(changed, at, frames.dTo, rules);
      if (!cut.tEnd) changed.tEnd.reset();
      break;
    }
    case ECutEdge::End: {
      const double at = std::max(std::round(place / second) * second, frames.dFrom + second);
      SetTimes(changed, frames.dFrom, at, rules);
      break;
    }
  }
  return changed;
}

SCut WithEdgeMoved(const SCut& cut, ECutEdge edge, int steps, const SCutRules& rules) {
  const SSpan frequencies = FrequenciesOf(cut);
  const SSpan frames = FramesOf(cut, rules);
  const double second = rules.nSampleRate;
  if (edge == ECutEdge::Start) return WithEdgeAt(cut, edge, frames.dFrom + steps * second, rules);
  if (edge == ECutEdge::End) return WithEdgeAt(cut, edge, frames.dTo + steps * second, rules);
  const std::vector<std::uint32_t> offered = OfferedBandwidths(rules.nSampleRate);  // from the widest down
  if (edge == ECutEdge::None || offered.empty()) return cut;
  const auto at =
      std::find_if(offered.begin(), offered.end(), [&](std::uint32_t one) { return one <= cut.nBandwidth; });
  const auto last = static_cast<std::ptrdiff_t>(offered.size()) - 1;
  // Away from the middle is wider, whichever edge it is.
  const int wider = edge == ECutEdge::High ? steps : -steps;
  const auto next = std::clamp<std::ptrdiff_t>(at - offered.begin() - wider, 0, last);
  const double width = offered[static_cast<std::size_t>(next)];
  const double held = edge == ECutEdge::High ? frequencies.dFrom : frequencies.dTo;
  const double far = rules.nRaster != 0 ? frequencies.Middle() + (edge == ECutEdge::High ? 0.5 : -0.5) * width
                                        : held + (edge == ECutEdge::High ? width : -width);
  return WithEdgeAt(cut, edge, far, rules);
}

SSpan FrequenciesOf(const SCut& cut) {
  const auto middle = static_cast<double>(cut.nFrequency);
  return {middle - cut.nBandwidth / 2.0, middle + cut.nBandwidth / 2.0};
}

SSpan FramesOf(const SCut& cut, const SCutRules& rules) {
  const auto frame = [&](std::int64_t moment) {
    return static_cast<double>(moment - rules.tStart) * rules.nSampleRate;
  };
  return {cut.tStart ? frame(*cut.tStart) : 0.0, cut.tEnd ? frame(*cut.tEnd) : static_cast<double>(rules.nFrames)};
}

}  // namespace carvello
