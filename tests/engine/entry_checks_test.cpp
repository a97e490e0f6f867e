#include "engine/entry_checks.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "engine/wide_recording.h"

namespace carvello::test {
namespace {

OutputEntry Entry(std::int64_t frequency, std::uint32_t bandwidth) {
  OutputEntry entry;
  entry.nInputFrequency = 7'100'000;
  entry.nInputSampleRate = 2'000'000;
  entry.nOutputFrequency = frequency;
  entry.nOutputSampleRate = bandwidth;
  return entry;
}

TEST(EntryChecks, BandwidthGoesFrom10HzToTheInputsRate) {
  EXPECT_FALSE(BandwidthFault(10, WideRecording()));
  EXPECT_FALSE(BandwidthFault(2'000'000, WideRecording()));
  for (const std::int64_t bandwidth :
       {std::int64_t{-1}, std::int64_t{0}, std::int64_t{9}, std::int64_t{2'000'001}, std::int64_t{1} << 32 | 10}) {
    const auto fault = BandwidthFault(bandwidth, WideRecording());
    ASSERT_TRUE(fault) << bandwidth;
    EXPECT_EQ(FaultText(*fault), "The bandwidth " + std::to_string(bandwidth) +
                                     " is out of range.\nAccepted: whole Hz from 10 to the input's sample rate, "
                                     "2000000");
  }
}

TEST(EntryChecks, PickedEndMustLieBehindTheStart) {
  SEntryFields fields;
  fields.endMode = EEndMode::At;
  fields.tPickedEnd = kWideStart;
  EXPECT_TRUE(EndFault(fields, WideRecording())) << "the recording's start counts where none is picked";
  fields.tPickedEnd = kWideStart + 1;
  EXPECT_FALSE(EndFault(fields, WideRecording()));
  fields.startMode = EStartMode::At;
  fields.tPickedStart = kWideStart + 1;
  ASSERT_TRUE(EndFault(fields, WideRecording()));
  EXPECT_EQ(FaultText(*EndFault(fields, WideRecording())),
            "End Time: The end time is before the start time.\n" + AcceptedTimes(WideRecording()));
  fields.endMode = EEndMode::Finish;
  EXPECT_FALSE(EndFault(fields, WideRecording())) << "no end is picked";
}

TEST(EntryChecks, PickedStartMustLieBeforeTheLastSample) {
  CRecordingSet recording = WideRecording();
  recording.tEnd = kWideStart + 5000;
  SEntryFields fields;
  fields.tPickedStart = kWideStart + 1200;
  EXPECT_FALSE(StartFault(fields, recording)) << "no start is picked";
  fields.startMode = EStartMode::At;
  ASSERT_TRUE(StartFault(fields, recording));
  EXPECT_EQ(StartFault(fields, recording)->strAccepted, "Accepted: a start before +1200");
  recording.files[0].nSampleBytes += 4;  // one more frame
  EXPECT_FALSE(StartFault(fields, recording));
}

TEST(EntryChecks, AcceptedTimesAreTold) {
  EXPECT_EQ(AcceptedTimes(WideRecording()),
            "Accepted: a start from 2026-11-21T12:00:00Z (+0) to before 2026-11-21T12:20:00Z (+1200), an end after the "
            "start and not after 2026-11-21T12:20:00Z, a duration that is not 0 and ends before 2026-11-21T12:20:00Z");
}

TEST(EntryChecks, BandThatEndsAtTheEdgeIsInside) {
  EXPECT_EQ(BandPlace(Entry(6'105'000, 10'000)), EBandPlace::Inside);
  EXPECT_EQ(BandPlace(Entry(8'095'000, 10'000)), EBandPlace::Inside);
  EXPECT_EQ(BandPlace(Entry(7'100'000, 2'000'000)), EBandPlace::Inside);
  EXPECT_EQ(OutsideBandText(Entry(7'100'000, 2'000'000)), "");
}

TEST(EntryChecks, BandAcrossTheEdgeIsPartlyOutside) {
  EXPECT_EQ(BandPlace(Entry(6'104'999, 10'000)), EBandPlace::PartlyOutside);
  EXPECT_EQ(BandPlace(Entry(8'104'999, 10'000)), EBandPlace::PartlyOutside);
  EXPECT_EQ(OutsideBandText(Entry(8'104'999, 10'000)), "partly outside 6.100 MHz to 8.100 MHz");
}

TEST(EntryChecks, BandBeyondTheEdgeIsWhollyOutside) {
  EXPECT_EQ(BandPlace(Entry(6'095'000, 10'000)), EBandPlace::WhollyOutside);
  EXPECT_EQ(BandPlace(Entry(8'105'000, 10'000)), EBandPlace::WhollyOutside);
  EXPECT_EQ(OutsideBandText(Entry(9'000'000, 10'000)), "wholly outside 6.100 MHz to 8.100 MHz");
}

}  // namespace
}  // namespace carvello::test
