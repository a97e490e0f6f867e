// The stretch of the input that a job reads.
#include "engine/progress_span.h"

#include <gtest/gtest.h>

namespace carvello::test {
namespace {

class ProgressSpanTest : public testing::Test {
 protected:
  ProgressSpanTest() {
    recording.format.Format.nChannels = 2;
    recording.format.Format.wBitsPerSample = 16;
    recording.files.push_back({"in.wav", 4000, 0, 4000, {}});
    recording.files.back().stamp.nSize = 4400;
    early.nStartSample = 100;
    early.nTotalSamples = 200;
    late.nStartSample = 500;
    late.nTotalSamples = 300;
    open.nStartSample = 600;
  }

  SProgressSpan Span(std::vector<const OutputEntry*> entries) const { return SpanOf(entries, recording); }

  CRecordingSet recording;
  OutputEntry early, late, open;
};

TEST_F(ProgressSpanTest, ReachesFromTheFirstBeginToTheLastEnd) {
  const SProgressSpan span = Span({&late, &early});
  EXPECT_EQ(span.dBegin, 400.0);
  EXPECT_EQ(span.dEnd, 3200.0);
  EXPECT_EQ(span.dInputBytes, 4400.0) << "with the headers, as progress is told";
}

TEST_F(ProgressSpanTest, AnEntryWithoutALengthReachesToTheEndOfTheInput) {
  EXPECT_EQ(Span({&early, &open}).dEnd, 4000.0);
  EXPECT_EQ(Span({&open}).dBegin, 2400.0);
}

TEST_F(ProgressSpanTest, TellsThePlaceOfAShareOfTheWholeInput) {
  EXPECT_EQ(Span({&late}).PlaceOf(0.5), 2200.0);
}

}  // namespace
}  // namespace carvello::test
