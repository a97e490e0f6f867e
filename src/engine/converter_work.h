// CConverterWork: the memory that converting a block takes. It belongs to a thread, which lends it to the entries that
// it works on one after the other: a thousand of them need no more than one.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <new>
#include <optional>

#include "dsp/primitives.h"
#include "spectrum/frame_samples.h"

namespace carvello {

class CConverterWork {
 public:
  enum EPlace : std::size_t {
    kPiece,      // a stretch of input that is being shifted and decimated
    kOutput,     // the output of a block
    kTransform,  // where a transform works
    kBand,       // where a band is taken out of a frame
    kMiddle,     // samples at a middle rate
    kPlaces,
  };

  // Room for `count` samples. A place that grows loses what stood there. Exhausted memory raises std::bad_alloc.
  SComplex* Room(EPlace place, std::int64_t count) {
    SRoom& room = m_rooms[place];
    if (count > room.nCapacity) {
      room.nCapacity = 0;
      room.pSamples.reset(AllocComplex(count));
      if (!room.pSamples) throw std::bad_alloc();
      room.nCapacity = count;
    }
    return room.pSamples.get();
  }

  // Of a recording's frames, the last one that was transformed for entries that begin or end within it: the work is one
  // job's. Exhausted memory raises std::bad_alloc.
  CClippedFrame& ClippedFrame(const CBlockTransform& transform) {
    if (!m_clippedFrame) m_clippedFrame.emplace(transform);
    return *m_clippedFrame;
  }

 private:
  struct SRoom {
    ComplexBuffer pSamples;
    std::int64_t nCapacity = 0;
  };
  std::array<SRoom, kPlaces> m_rooms;
  std::optional<CClippedFrame> m_clippedFrame;
};

}  // namespace carvello
