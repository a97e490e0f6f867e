// Work on a recording that is cut into units, done by all processors at once, with the same result however many there
// are.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "engine/frame_source.h"

namespace carvello {

// What one thread works with. Read is called with the source by one thread at a time, in the units' order; Work by all
// at once; Merge in the units' order again.
class IUnitWorker {
 public:
  virtual ~IUnitWorker() = default;
  // False when the source could not be read; its Problem() tells why.
  virtual bool Read(std::int64_t unit, IFrameSource& source) = 0;
  virtual void Work(std::int64_t unit) = 0;
  virtual void Merge(std::int64_t unit) = 0;
};

// Asked regularly on the calling thread with the share that is done, 0 to 1; false ends the work.
using GoesOn = std::function<bool(double)>;

// Reads `count` frames from `first` on, all of them; false when they are not there.
bool ReadAll(IFrameSource& source, std::int64_t first, SComplex* destination, std::int64_t count);

// Does `units` units on as many threads, this one among them; on fewer where the system gives no more. False when it
// was ended by `goesOn` (the error is empty then) or could not be read to its end. Throws std::bad_alloc.
bool WorkInOrder(std::int64_t units, unsigned threads, IFrameSource& source,
                 const std::function<std::unique_ptr<IUnitWorker>()>& makeWorker, const GoesOn& goesOn,
                 std::string& error);

}  // namespace carvello
