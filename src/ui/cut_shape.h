// What is to be cut, as the spectrum window and the dialog tell each other; and how a dragged rectangle becomes that:
// a bandwidth that is offered, whole hertz, whole seconds.
#pragma once

#include <cstdint>
#include <optional>

#include "ui/view_span.h"

namespace carvello {

struct SCut {
  std::int64_t nFrequency = 0;   // Hz, the middle
  std::uint32_t nBandwidth = 0;  // Hz
  // Seconds since 1970 UTC; nothing stands for the start or the end of the recording.
  std::optional<std::int64_t> tStart;
  std::optional<std::int64_t> tEnd;
  bool operator==(const SCut&) const = default;
};

struct SDragged {
  SSpan frequency;              // Hz
  std::optional<SSpan> frames;  // of the recording; nothing stands for all of it
};

enum class ECutEdge { None, Low, High, Start, End };

// What a recording allows, and what the user wants frequencies to be multiples of.
struct SCutRules {
  std::int64_t tStart = 0;  // seconds since 1970 UTC
  std::int64_t tEnd = 0;
  std::int64_t nFrames = 0;
  std::uint32_t nSampleRate = 0;
  std::uint32_t nRaster = 0;  // Hz; 0 for none
};

// The smallest offered band that holds the dragged one, around its middle, the raster's place next to that, or `centre`
// where one is given.
SCut CutOf(const SDragged& dragged, const SCutRules& rules, std::optional<double> centre = std::nullopt);
// The same with an edge at another place, Hz or a frame. The opposite edge stays; with a raster the middle does.
SCut WithEdgeAt(const SCut& cut, ECutEdge edge, double place, const SCutRules& rules);
// The edge one step on: the next offered bandwidth, or a second.
SCut WithEdgeMoved(const SCut& cut, ECutEdge edge, int steps, const SCutRules& rules);

// Where a cut lies.
SSpan FrequenciesOf(const SCut& cut);
SSpan FramesOf(const SCut& cut, const SCutRules& rules);

}  // namespace carvello
