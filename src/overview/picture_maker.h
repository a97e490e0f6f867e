// MakePicture: a view's picture from what is known at the moment.
#pragma once

#include <memory>

#include "overview/base_levels.h"
#include "overview/detail_rows.h"
#include "overview/spectrum_view.h"
#include "overview/view_plan.h"

namespace carvello {

// Cells are brought to pixels by their place in the recording alone, so that a picture does not depend on the order
// in which they became known, nor on what else was looked at.
std::shared_ptr<const SSpectrumPicture> MakePicture(const SSpectrumView& view, const SViewPlan& plan, double rate,
                                                    CBaseLevels& base, CDetailRows& details);

}  // namespace carvello
