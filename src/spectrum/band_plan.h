// How an entry's band is taken out of the frames of spectrum: by which decimation, through which filter, and where on
// the grid of frames its samples stand. Whole numbers only.
#pragma once

#include <cstdint>
#include <optional>

#include "spectrum/spectrum_grid.h"

namespace carvello {

// What the first filter's stop band is designed for, in dB. With the library's filters behind it, all error beside the
// wanted signal is theirs.
inline constexpr double kFirstFilterAttenuation = 132.0;

// Edges of filters are whole numbers of these parts of a bin.
inline constexpr std::int64_t kPartsPerBin = 64;

// An entry's wish.
struct SBandWish {
  std::uint32_t nInputRate = 0;  // samples/s
  std::int64_t llShift = 0;      // Hz from the input's centre to the band's; any
  // nStep / nPhases input samples make an output sample: input rate / output rate, or a whole number / 1.
  std::uint32_t nStep = 0;
  std::uint32_t nPhases = 0;
  std::int64_t llStart = 0;  // the entry's first sample in the recording
};

// The way to samples of the band at the middle rate, input rate / nDecimation.
//
// Output sample m of an entry stands at its start + m * nStep / nPhases. The first filter rings before the start, so
// middle samples begin nLead output samples earlier. Middle sample i stands at
//   (llFirst + i) * nDecimation + nResidue / nPhases
// and is the input there through the first filter, turned by nTurn / nCircle of a circle. An oscillator that turns
// sample i back by nMiddleShift * i / nInputRate then brings the band to 0 Hz, with the phase that it has when the
// oscillator stands still at the entry's start.
struct SBandPlan {
  std::uint32_t nInputRate = 0;
  std::int64_t nDecimation = 0;  // a power of two, 2 .. kLargestBandDecimation
  std::uint64_t nStep = 0;       // the wish's, in lowest terms
  std::uint64_t nPhases = 0;

  // The first filter: flat up to nPass, closed from nStop on, in parts of a bin either side of nCentreBin. It reaches
  // nHalfTaps samples to either side.
  std::int64_t nPass = 0;
  std::int64_t nStop = 0;
  std::int64_t nHalfTaps = 0;
  std::int64_t nCentreBin = 0;  // the bin nearest to the band's centre, negative below the input's

  std::uint32_t nLead = 0;
  std::int64_t llFirst = 0;    // may be negative
  std::uint64_t nResidue = 0;  // 0 .. nDecimation * nPhases - 1
  std::int64_t nTurn = 0;
  std::int64_t nCircle = 1;
  std::uint32_t nMiddleShift = 0;

  // Of the inverse transform; the middle samples of a whole frame.
  std::int64_t PointCount() const { return kFrameSize / nDecimation; }
  // Those that a frame answers for.
  std::int64_t SamplesPerFrame() const { return kFrameHop / nDecimation; }
};

// By the largest decimation that leaves room for the filter. Nothing when there is none: the band is too wide a part of
// the input's.
std::optional<SBandPlan> PlanBand(const SBandWish& wish);

// Middle rate : output rate, in lowest terms: what is left for a second stage.
struct SRateRatio {
  std::uint32_t nInput = 0;
  std::uint32_t nOutput = 0;
};
SRateRatio SecondStageRatio(const SBandPlan& plan);

}  // namespace carvello
