// What a scan keeps of the spectra of a recording.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace carvello {

// How the transforms of a scan stand in its span, and which of its rows each belongs to. All overlap by a half, but for
// the last one, which ends with the span: cut off sharply, a signal would seem to fill the band.
struct SScanGrid {
  std::int64_t nFirstFrame = 0;
  std::int64_t nFrames = 0;
  std::uint32_t nSampleRate = 0;
  std::size_t nLength = 0;       // of a transform
  std::int64_t nTransforms = 0;  // 1 at least
  std::int64_t nRows = 0;        // of equal length, but for rounding

  // As many as the span would hold were the last one as far from the one before as all others are.
  double WholeTransforms() const;
  double BinWidth() const { return static_cast<double>(nSampleRate) / static_cast<double>(nLength); }
  // In bins: what is wider counts as noise. A quarter of the band, or as much more as stations of 400 kHz take.
  std::size_t WidestSignal() const;
  std::int64_t Hop() const { return static_cast<std::int64_t>(nLength / 2); }
  std::int64_t FirstFrame(std::int64_t transform) const;
  std::int64_t RowOf(std::int64_t transform) const { return transform * nRows / nTransforms; }
  // The first transform of a row, and of the one behind the last.
  std::int64_t RowBegin(std::int64_t row) const { return (row * nTransforms + nRows - 1) / nRows; }
  // Seconds from the recording's beginning to the middle between this transform and the one before.
  double TimeOf(std::int64_t transform) const;
};

// As long as it takes to part stations on any raster and to see bursts of some milliseconds, and no longer than leaves
// some transforms in the span.
SScanGrid MakeScanGrid(std::int64_t firstFrame, std::int64_t frames, std::uint32_t sampleRate);

// Of single transforms in which a bin stood out by itself.
struct SBinBursts {
  std::int64_t nCount = 0;
  std::int64_t nFirst = 0;  // transforms
  std::int64_t nLast = 0;
  float fLargest = 0.0f;
};

struct SScanStatistics {
  std::vector<float> rows;  // mean powers, row after row
  std::vector<SBinBursts> bursts;
};

// How far single powers, means of rows and the mean of all must stand above the noise so that noise alone brings a
// signal in no more than one of 5,000 recordings, whatever their length: of so many values in all, each exceeds its
// threshold with the chance that is left for it.
struct SScanThresholds {
  SScanThresholds(const SScanGrid& grid, double aboveDecibels);

  double fSingle;
  double fRow;
  double fMean;
  // For neighbours of what is sure.
  double fRowEdge;
  double fMeanEdge;
};

}  // namespace carvello
