// Makes an entry's output of samples that were computed before, in pieces, so that it is what a job would have written.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>

#include "engine/output_entry.h"
#include "engine/output_result.h"
#include "engine/output_stretch.h"
#include "fourier/complex_sample.h"
#include "input/recording_set.h"
#include "recording/write_policy.h"

namespace carvello {

class ISampleSource {
 public:
  virtual ~ISampleSource() = default;
  // The next samples of the output, at 16-bit full scale (32768). Raises an exception when they cannot be had, whose
  // text is the reason.
  virtual void Read(SComplex* destination, std::size_t count) = 0;
  // How many samples of the output were there when the recording had been read up to this frame: by that a split output
  // ends its parts. Known of every end of a stretch, and of the end of the entry's span.
  virtual std::int64_t GivenBy(std::int64_t frame) const = 0;
};

// `job`: where the job over the whole recording, of which the entry is one, would begin to read. Names, parts and
// metadata of the output are that job's; nothing of the recording's samples is read. Once `isStopped` tells so, the
// output ends with what it has, as one of a stopped job. How it ended.
SOutputResult JoinEntry(
    const OutputEntry& entry, const CRecordingSet& recording, const SWholeJob& job, const SWritePolicy& policy,
    ISampleSource& source, const std::function<bool()>& isStopped = [] { return false; });

}  // namespace carvello
