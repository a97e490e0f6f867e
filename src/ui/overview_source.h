// The pictures of the spectrum window from a recording's overview, and its signals from a search on a thread of its
// own.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "input/recording_set.h"
#include "ui/spectrum_source.h"

namespace carvello {

// `cacheFolder`: where the overview is kept; empty for nowhere. `changed` is called on any thread.
std::unique_ptr<ISpectrumSource> OpenOverview(const CRecordingSet& recording, const std::string& cacheFolder,
                                              std::function<void()> changed);

}  // namespace carvello
