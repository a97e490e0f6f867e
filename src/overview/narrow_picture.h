// Pictures of a narrow part of a recording's band. Transforms of the whole band that are long enough to tell its
// columns apart would throw nearly all of their bins away; so the part is taken out of short ones first, as samples of
// a lower rate, and those are transformed.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "engine/frame_source.h"
#include "overview/ordered_work.h"
#include "overview/picture_rows.h"
#include "spectrum/band_plan.h"
#include "spectrum/picture_plan.h"

namespace carvello {

struct SNarrowBand {
  SBandPlan plan;
  double dCentre = 0.0;         // Hz from the recording's centre: where the samples' 0 Hz is
  std::int64_t nOldFrames = 0;  // of the recording itself
  SPictureSpan span;            // of the samples, frequencies from dCentre
};

// Nothing where the picture shows too much of the band, or too short rows, for the detour to be worth it.
std::optional<SNarrowBand> NarrowBandOf(const SPictureSpan& span);

// Fills `rows`, which are of `plan` and `line`, those of band.span. As MakeRecordingPicture.
bool MakeNarrowPicture(IFrameSource& source, const SNarrowBand& band, const CPicturePlan& plan,
                       const CTransformLine& line, EPictureLevels levels, CPictureRows& rows, unsigned threads,
                       const GoesOn& goesOn, std::string& error);

}  // namespace carvello
