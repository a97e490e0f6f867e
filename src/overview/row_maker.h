// CRowMaker: brings stretches of a recording to the powers of a row of cells.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "dsp/primitives.h"
#include "engine/frame_source.h"
#include "overview/cell_grid.h"
#include "spectrum/power_spectrum.h"

namespace carvello {

// Of transforms, full scale 1.0 as in CPowerSpectrum.
struct SRowPowers {
  std::vector<float> sum;
  std::vector<float> maximum;
  std::int64_t nTransforms = 0;

  void Clear(std::size_t bins);
};

enum class ERowEnd {
  Made,
  Dropped,     // as the caller wished
  Unreadable,  // CRowMaker::Problem tells why
};

// One a thread.
class CRowMaker {
 public:
  explicit CRowMaker(std::unique_ptr<IFrameSource> source) : m_pSource(std::move(source)) {}

  // Asked between transforms; false drops the row.
  using GoesOn = std::function<bool()>;
  // The transforms that a row lacks from one state to another by NextState; all of them for Whole, from any state.
  ERowEnd Make(const SCellGrid& grid, std::int64_t row, ERowState from, ERowState to, const GoesOn& goesOn,
               SRowPowers& powers);

  // What the last short read took; nothing when there was none since it was asked for last. Long ones tell more of the
  // disk's speed than of how long it takes to get there.
  std::optional<std::chrono::duration<double>> TakeReadTime() { return std::exchange(m_readTime, std::nullopt); }
  IFrameSource& Source() { return *m_pSource; }
  const std::string& Problem() const { return m_pSource->Problem(); }

 private:
  void Prepare(const SCellGrid& grid, std::int64_t frames);
  ERowEnd MakeSparse(const SCellGrid& grid, std::int64_t row, std::int64_t from, std::int64_t to, const GoesOn& goesOn,
                     SRowPowers& powers);
  ERowEnd MakeWhole(const SCellGrid& grid, std::int64_t row, const GoesOn& goesOn, SRowPowers& powers);
  bool Read(const SCellGrid& grid, std::int64_t first, std::int64_t count, SComplex* destination);
  void Add(const SComplex* frames, SRowPowers& powers);

  std::unique_ptr<IFrameSource> m_pSource;
  std::unique_ptr<CPowerSpectrum> m_pSpectrum;
  ComplexBuffer m_pFrames;
  std::int64_t m_nRoom = 0;    // frames in that
  std::vector<float> m_power;  // of one transform
  std::optional<std::chrono::duration<double>> m_readTime;
};

}  // namespace carvello
