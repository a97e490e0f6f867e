#include "overview/recording_scan.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "overview/formula_source.h"

namespace carvello::test {
namespace {

constexpr std::uint32_t kRate = 100'000;
constexpr std::int64_t kCentre = 7'100'000;
constexpr std::int64_t kStart = 1'767'225'600;
constexpr auto kAlways = [](double) { return true; };

CRecordingSet Recording() {
  CRecordingSet recording;
  recording.nSampleRate = kRate;
  recording.nRadioCenterFreq = kCentre;
  recording.tStart = kStart;
  recording.nBitsPerSample = 16;
  return recording;
}

SSignalScan Scan(std::int64_t frames, const CFormulaSource::Signal& signal, SScanRequest request = {}) {
  CFormulaSource source(frames, signal);
  if (request.nFrames == 0) request.nFrames = frames;
  SSignalScan result;
  std::string error;
  EXPECT_TRUE(ScanRecording(Recording(), source, request, kAlways, result, error)) << error;
  return result;
}

// -50 dBFS in all of the band are -100 dBFS in 1 Hz.
SComplex Noise(std::int64_t n) {
  return NoiseFrame(n, -50.0);
}
bool IsWithin(std::int64_t n, double from, double to) {
  return static_cast<double>(n) >= from * kRate && static_cast<double>(n) < to * kRate;
}

TEST(RecordingScan, TellsTheNoiseAndNoSignalWhereThereIsNone) {
  const SSignalScan result = Scan(1'000'000, Noise);
  EXPECT_TRUE(result.found.empty());
  EXPECT_NEAR(result.dNoise, -100.0, 0.2);
}

// 20 dB above the noise in its own bandwidth, which is that of the window: -80 dBFS + 10 log (1.5 x resolution).
TEST(RecordingScan, ACarrierOfTwentyDecibelsIsFoundWithinOneStepWhereverItStands) {
  for (int i = 0; i < 40; ++i) {
    const double fOffset = -49'000.0 + 2'511.7 * i;
    const double fLevel = -80.0 + 10.0 * std::log10(1.5 * kRate / 512.0);
    const SSignalScan result =
        Scan(500'000, [&](std::int64_t n) { return Noise(n) + ToneFrame(n, fOffset / kRate, fLevel); });
    ASSERT_EQ(result.found.size(), 1u) << fOffset;
    const SSignal& signal = result.found.front();
    EXPECT_LE(result.dResolution, 200.0);
    EXPECT_NEAR(signal.dFrequency, kCentre + fOffset, result.dResolution);
    EXPECT_NEAR(signal.dLevel, fLevel, 0.7);
    EXPECT_EQ(signal.dStart, kStart);
    EXPECT_EQ(signal.dEnd, kStart + 5);
    EXPECT_GT(signal.dOccupancy, 0.95);
  }
}

TEST(RecordingScan, LevelsOfStrongSignalsAreRightToATenth) {
  const SSignalScan result = Scan(400'000, [](std::int64_t n) {
    return Noise(n) + ToneFrame(n, 10'000.3 / kRate, -10.0) + ToneFrame(n, -20'000.7 / kRate, -35.0);
  });
  ASSERT_EQ(result.found.size(), 2u);
  EXPECT_NEAR(result.found[0].dLevel, -35.0, 0.1);
  EXPECT_NEAR(result.found[1].dLevel, -10.0, 0.1);
  for (const SSignal& signal : result.found) {
    EXPECT_NEAR(signal.dSnr, signal.dLevel + 100.0 - 10.0 * std::log10(signal.dBandwidth), 0.5);
  }
}

TEST(RecordingScan, ABurstOfFiveMillisecondsInAMinuteIsFound) {
  const SSignalScan result = Scan(6'000'000, [](std::int64_t n) {
    SComplex frame = Noise(n);
    if (IsWithin(n, 41.234, 41.239)) frame = frame + ToneFrame(n, -0.3, -50.0);
    return frame;
  });
  ASSERT_EQ(result.found.size(), 1u);
  const SSignal& signal = result.found.front();
  EXPECT_NEAR(signal.dFrequency, kCentre - 30'000.0, result.dResolution);
  EXPECT_NEAR(signal.dLevel, -50.0, 2.0);
  EXPECT_NEAR(signal.dStart, kStart + 41.234, 0.01);
  EXPECT_NEAR(signal.dEnd, kStart + 41.239, 0.01);
  EXPECT_LT(signal.dOccupancy, 0.001);
  EXPECT_GT(signal.dOccupancy, 0.0);
}

TEST(RecordingScan, TellsWhenASignalWasOn) {
  const SSignalScan result = Scan(4'000'000, [](std::int64_t n) {
    SComplex frame = Noise(n);
    if (IsWithin(n, 10.0, 14.0) || IsWithin(n, 30.0, 34.0)) frame = frame + ToneFrame(n, 0.2, -60.0);
    return frame;
  });
  ASSERT_EQ(result.found.size(), 1u);
  const SSignal& signal = result.found.front();
  EXPECT_NEAR(signal.dStart, kStart + 10.0, 0.1);
  EXPECT_NEAR(signal.dEnd, kStart + 34.0, 0.1);
  EXPECT_NEAR(signal.dOccupancy, 0.2, 0.01);
  EXPECT_NEAR(signal.dLevel, -60.0, 0.2);
}

TEST(RecordingScan, NeighboursFiveKilohertzApartAreTwoOnTheRasterAndOff) {
  const auto signal = [](std::int64_t n) {
    return Noise(n) + ToneFrame(n, 10'000.0 / kRate, -30.0) + ToneFrame(n, 15'000.0 / kRate, -40.0) +
           ToneFrame(n, 9'000.0 / kRate, -39.0) + ToneFrame(n, 11'000.0 / kRate, -39.0);
  };
  for (const double fRaster : {0.0, 5'000.0}) {
    SScanRequest request;
    request.dRaster = fRaster;
    const SSignalScan result = Scan(500'000, signal, request);
    ASSERT_EQ(result.found.size(), 2u);
    EXPECT_NEAR(result.found[0].dFrequency, 7'110'000.0, fRaster > 0.0 ? 0.0 : 30.0);
    EXPECT_NEAR(result.found[1].dFrequency, 7'115'000.0, fRaster > 0.0 ? 0.0 : 30.0);
    EXPECT_NEAR(result.found[0].dBandwidth, 2'000.0, 1'000.0);
  }
}

TEST(RecordingScan, AModulatedFrequencyIsOneSignal) {
  // By noise of some kHz, 12 kHz to either side.
  double fPhase = 0.0;
  double fSound = 0.0;
  std::vector<SComplex> frames;
  for (std::int64_t n = 0; n < 500'000; ++n) {
    fSound += 0.2 * (NoiseFrame(n, 0.0, 7).re / 32'768.0 - fSound);
    fPhase += 2.0 * std::numbers::pi * (-10'000.0 + 12'000.0 * fSound) / kRate;
    frames.push_back(Noise(n) + SComplex{static_cast<float>(1'000.0 * std::cos(fPhase)),
                                         static_cast<float>(1'000.0 * std::sin(fPhase))});
  }
  const SSignalScan result = Scan(500'000, [&](std::int64_t n) { return frames[static_cast<std::size_t>(n)]; });
  ASSERT_EQ(result.found.size(), 1u);
  EXPECT_NEAR(result.found[0].dFrequency, kCentre - 10'000.0, 2'000.0);
  EXPECT_GT(result.found[0].dBandwidth, 8'000.0);
  EXPECT_NEAR(result.found[0].dLevel, 20.0 * std::log10(1'000.0 / 32'768.0), 0.2);
}

TEST(RecordingScan, ABareCarrierAtTheCentreIsLeftOutUnlessItIsAskedFor) {
  const auto signal = [](std::int64_t n) { return Noise(n) + SComplex{500.0f, 200.0f}; };
  const SSignalScan without = Scan(300'000, signal);
  EXPECT_TRUE(without.found.empty());
  EXPECT_TRUE(without.bCentreLeftOut);
  SScanRequest request;
  request.bCentre = true;
  const SSignalScan with = Scan(300'000, signal, request);
  ASSERT_EQ(with.found.size(), 1u);
  EXPECT_NEAR(with.found[0].dFrequency, kCentre, 1.0);
  EXPECT_FALSE(with.bCentreLeftOut);
}

TEST(RecordingScan, TheEdgesOfAFilterAreNoSignals) {
  // Noise through a filter that falls from 0.35 of the rate on, as averaging neighbours does at the band's ends.
  const SSignalScan result = Scan(1'000'000, [](std::int64_t n) {
    SComplex frame = NoiseFrame(n, -85.0, 3);  // of what digitises
    for (std::int64_t i = -8; i <= 8; ++i) {
      const double fX = std::numbers::pi * 0.8 * static_cast<double>(i);
      const double fTap =
          (i == 0 ? 1.0 : std::sin(fX) / fX) * (0.5 + 0.5 * std::cos(std::numbers::pi * static_cast<double>(i) / 9.0));
      const SComplex noise = Noise(n + i + 8);
      frame = frame + SComplex{static_cast<float>(noise.re * fTap), static_cast<float>(noise.im * fTap)};
    }
    return frame;
  });
  EXPECT_TRUE(result.found.empty());
}

TEST(RecordingScan, AClickInAllOfTheBandIsNoSignal) {
  const SSignalScan result = Scan(1'000'000, [](std::int64_t n) {
    return n == 654'321 ? SComplex{30'000.0f, 0.0f} : Noise(n);
  });
  EXPECT_TRUE(result.found.empty());
}

TEST(RecordingScan, LeavesOutWhatIsNarrowerOrWeakerThanAskedFor) {
  const auto signal = [](std::int64_t n) { return Noise(n) + ToneFrame(n, 0.1, -60.0); };
  SScanRequest request;
  request.dMinWidth = 2'000.0;
  EXPECT_TRUE(Scan(300'000, signal, request).found.empty());
  request.dMinWidth = 0.0;
  request.dAbove = 30.0;
  EXPECT_TRUE(Scan(300'000, signal, request).found.empty());
  request.dAbove = 10.0;
  EXPECT_EQ(Scan(300'000, signal, request).found.size(), 1u);
}

TEST(RecordingScan, LooksAtItsSpanOnly) {
  const auto signal = [](std::int64_t n) {
    return IsWithin(n, 2.0, 4.0) ? Noise(n) + ToneFrame(n, 0.1, -50.0) : Noise(n);
  };
  SScanRequest request;
  request.nFirstFrame = 500'000;
  request.nFrames = 500'000;
  EXPECT_TRUE(Scan(1'000'000, signal, request).found.empty());
  request.nFirstFrame = 300'000;
  const SSignalScan result = Scan(1'000'000, signal, request);
  ASSERT_EQ(result.found.size(), 1u);
  EXPECT_NEAR(result.found[0].dStart, kStart + 3.0, 0.05);
  EXPECT_NEAR(result.found[0].dEnd, kStart + 4.0, 0.05);
}

TEST(RecordingScan, OfAnyLengthAndOfSilenceEnds) {
  for (const std::int64_t nFrames : {1, 63, 64, 100, 1'000, 5'000, 70'001}) {
    EXPECT_TRUE(Scan(nFrames, [](std::int64_t) { return SComplex{}; }).found.empty());
    for (const SSignal& signal : Scan(nFrames, [](std::int64_t n) { return ToneFrame(n, 0.1, 0.0); }).found) {
      EXPECT_TRUE(std::isfinite(signal.dLevel) && std::isfinite(signal.dSnr));
    }
  }
}

// The thresholds are made for one recording in some thousands. They follow from how many values are looked at, so short
// recordings tell as much as long ones.
TEST(RecordingScan, NoiseAloneFindsNothingInManyRecordings) {
  for (std::uint64_t nSeed = 0; nSeed < 60; ++nSeed) {
    const SSignalScan result = Scan(60'000, [=](std::int64_t n) { return NoiseFrame(n, -50.0, nSeed + 100); });
    EXPECT_TRUE(result.found.empty()) << nSeed;
  }
}

TEST(RecordingScan, NoiseAloneFindsNothingHoweverShortItIs) {
  for (const std::int64_t nFrames : {1, 2, 3, 10, 40, 63, 64, 65, 70, 100, 130, 200, 500, 2'000}) {
    int nFound = 0;
    for (std::uint64_t nSeed = 0; nSeed < 300; ++nSeed) {
      const auto signal = [=](std::int64_t n) { return NoiseFrame(n, -50.0, nSeed + 1'000); };
      nFound += Scan(nFrames, signal).found.empty() ? 0 : 1;
    }
    EXPECT_EQ(nFound, 0) << nFrames;
  }
}

TEST(RecordingScan, AStrongBurstIsOneSignalWhereverItBeginsAndStands) {
  for (int i = 0; i < 200; ++i) {
    const std::int64_t nBegin = 20'000 + i * 37 % 256;
    const double fFrequency = 0.1 + i * 0.000137;
    const double fLevel = -35.0 + 5.0 * (i % 5);
    const SSignalScan result = Scan(60'000, [=](std::int64_t n) {
      return n >= nBegin && n < nBegin + 500 ? Noise(n) + ToneFrame(n, fFrequency, fLevel) : Noise(n);
    });
    ASSERT_EQ(result.found.size(), 1u) << i;
    EXPECT_NEAR(result.found[0].dFrequency, kCentre + fFrequency * kRate, result.dResolution) << i;
  }
}

TEST(RecordingScan, ACutAroundItsFrequencyHoldsAllOfASignal) {
  SScanRequest request;
  request.dRaster = 9'000.0;
  // 7,059,597 Hz stand nearest to 7,056,000 of such a raster.
  const auto line = [](std::int64_t n) { return Noise(n) + ToneFrame(n, -0.40403, -40.0); };
  const SSignalScan shifted = Scan(300'000, line, request);
  ASSERT_EQ(shifted.found.size(), 1u);
  EXPECT_EQ(shifted.found[0].dFrequency, 7'056'000.0);
  EXPECT_LT(shifted.found[0].dBandwidth, 1'500.0);
  EXPECT_GT(shifted.found[0].dHolding, 2.0 * 3'597.0);
  EXPECT_LT(shifted.found[0].dHolding, 2.0 * 3'597.0 + 1'500.0);
  const SSignalScan plain = Scan(300'000, line);
  ASSERT_EQ(plain.found.size(), 1u);
  EXPECT_EQ(plain.found[0].dHolding, plain.found[0].dBandwidth);
  // A carrier at the lower edge of its only sideband.
  const SSignalScan lopsided = Scan(300'000, [&](std::int64_t n) {
    SComplex frame = Noise(n) + ToneFrame(n, 0.1, -30.0);
    for (int i = 1; i <= 12; ++i) frame = frame + ToneFrame(n, 0.1 + 0.004 * i, -48.0);
    return frame;
  });
  ASSERT_EQ(lopsided.found.size(), 1u);
  EXPECT_NEAR(lopsided.found[0].dFrequency, kCentre + 10'000.0, lopsided.dResolution);
  EXPECT_NEAR(lopsided.found[0].dBandwidth, 4'800.0, 1'200.0);
  EXPECT_NEAR(lopsided.found[0].dHolding, 9'600.0, 1'200.0);
}

TEST(RecordingScan, WhatCannotBeReadIsToldAndAskedEndsEnd) {
  CFormulaSource source(3'000'000, Noise);
  SScanRequest request;
  request.nFrames = 3'000'000;
  SSignalScan result;
  std::string error;
  EXPECT_FALSE(ScanRecording(
      Recording(), source, request, [](double) { return false; }, result, error));
  EXPECT_EQ(error, "");
  EXPECT_FALSE(ScanRecording(
      Recording(), source, request, [](double done) { return done < 0.5; }, result, error));
  EXPECT_EQ(error, "");
  source.FailFrom(2'500'000);
  EXPECT_FALSE(ScanRecording(Recording(), source, request, kAlways, result, error));
  EXPECT_EQ(error, "made.wav: cannot be read");
}

}  // namespace
}  // namespace carvello::test
