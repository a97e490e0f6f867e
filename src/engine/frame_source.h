// IFrameSource: the frames of a recording, by their numbers, wherever they come from.
#pragma once

#include <cstdint>
#include <string>

#include "fourier/complex_sample.h"

namespace carvello {

// Used by one thread at a time; whoever reads on several has a source on each.
class IFrameSource {
 public:
  virtual ~IFrameSource() = default;

  virtual std::int64_t Frames() const = 0;
  // Reads `count` frames from frame `first` on, as complex floats at 16-bit full scale (32768). Frames read; fewer when
  // the recording ends, or cannot be read on there: Problem() tells the two apart.
  virtual std::int64_t Read(std::int64_t first, SComplex* destination, std::int64_t count) = 0;
  // Of the last Read: empty when all was well, else file, place and reason.
  virtual const std::string& Problem() const = 0;
};

}  // namespace carvello
