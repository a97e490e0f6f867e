// Which transforms make the rows of a picture of a recording, and which of their bins make its columns.
#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>

namespace carvello {

// Frames are numbered through the recording; frequencies are in Hz from its centre.
struct SPictureSpan {
  std::int64_t nTotalFrames = 0;  // of the recording
  double dSampleRate = 0.0;
  std::int64_t nFirstFrame = 0;  // of the picture
  std::int64_t nFrames = 0;
  double dLowFrequency = 0.0;
  double dHighFrequency = 0.0;
  std::int64_t nColumns = 0;
  std::int64_t nRows = 0;
};

// Two bins a column or more where the time allows it: a transform is no longer than a row then. Where both cannot be
// had, columns and rows are blurred alike. The recording holds as many frames as the transform, but for the smallest.
std::size_t PictureTransformLength(const SPictureSpan& span);

// Column c covers the frequencies from low + c (high - low) / columns on, row r the frames from first + r frames / rows
// on.
class CPicturePlan {
 public:
  // `most`: of the transforms of a row, no more than so many, evenly spread; 0 for all of them.
  CPicturePlan(const SPictureSpan& span, std::size_t length, std::int64_t most);

  std::size_t Length() const { return m_nLength; }
  std::int64_t Rows() const { return m_span.nRows; }
  std::int64_t Columns() const { return m_span.nColumns; }

  // The transforms of a row have their middles in it, evenly, and no further apart than half their length: with those
  // of its neighbours they take every frame of the recording, none at the edge of all windows. 1 at least.
  std::int64_t Transforms(std::int64_t row) const;
  // Where the transform begins. All of it lies in the recording, where that is so long.
  std::int64_t TransformFirst(std::int64_t row, std::int64_t transform) const;

  // The bins of a transform, the lowest first, whose middles lie in the column, from the first to behind the last; the
  // nearest one where there is none. None (0, 0) for a column beside the recorded band.
  std::pair<std::size_t, std::size_t> Bins(std::int64_t column) const;
  // Whether every column of the recorded band is as wide as a bin or wider.
  bool HoldsBins() const;
  // Where this place between bins lies; below 0 or behind the last column beside the picture.
  std::int64_t ColumnOf(double bin) const;

 private:
  std::int64_t RowBegin(std::int64_t row) const { return m_span.nFirstFrame + row * m_span.nFrames / m_span.nRows; }

  SPictureSpan m_span;
  std::size_t m_nLength;
  std::int64_t m_nMost;
};

}  // namespace carvello
