#include "cli/time_span.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace carvello {
namespace {

using ::testing::HasSubstr;

// 100 seconds from 2026-01-01T00:00:00Z on.
CRecordingSet Recording() {
  CRecordingSet recording;
  recording.nSampleRate = 1'000;
  recording.tStart = 1'767'225'600;
  recording.tEnd = recording.tStart + 100;
  recording.format.Format.nChannels = 2;
  recording.format.Format.wBitsPerSample = 16;
  recording.format.Format.nBlockAlign = 4;
  SRecordingFile file;
  file.nDataBytes = 400'000;
  file.nSampleBytes = 400'000;
  recording.AddFile(file);
  return recording;
}

SFrameSpan Resolved(const STimeSpanOptions& options) {
  SFrameSpan span;
  std::string error;
  EXPECT_TRUE(ResolveTimeSpan(options, Recording(), span, error)) << error;
  return span;
}

std::string Refusal(const STimeSpanOptions& options) {
  SFrameSpan span;
  std::string error;
  EXPECT_FALSE(ResolveTimeSpan(options, Recording(), span, error));
  return error;
}

void ExpectSpan(const STimeSpanOptions& options, std::int64_t first, std::int64_t count) {
  const SFrameSpan span = Resolved(options);
  EXPECT_EQ(span.nFirst, first);
  EXPECT_EQ(span.nCount, count);
}

TEST(TimeSpan, IsTheWholeRecordingWhereNothingIsAsked) {
  ExpectSpan({}, 0, 100'000);
}

TEST(TimeSpan, TakesDatesSecondsFromTheStartAndDecimals) {
  ExpectSpan({"2026-01-01T00:00:10Z", "", ""}, 10'000, 90'000);
  ExpectSpan({"2026-01-01T02:00:10+02:00", "+20", ""}, 10'000, 10'000);
  ExpectSpan({"+1.5", "", "0.25"}, 1'500, 250);
  ExpectSpan({"", "", "0:01"}, 0, 60'000);
  ExpectSpan({"", "", "0:00:30"}, 0, 30'000);
  ExpectSpan({"+0.0005", "+0.002", ""}, 1, 1);
  ExpectSpan({"+40", "2026-01-01T00:01:40Z", ""}, 40'000, 60'000);
}

TEST(TimeSpan, RefusesWhatCannotBeReadOrLiesOutside) {
  EXPECT_THAT(Refusal({"noon", "", ""}), HasSubstr("--start \"noon\" cannot be read. Accepted"));
  EXPECT_THAT(Refusal({"", "-1", ""}), HasSubstr("--end \"-1\" cannot be read"));
  EXPECT_THAT(Refusal({"", "", "1e3"}), HasSubstr("--duration \"1e3\" cannot be read"));
  EXPECT_THAT(Refusal({"", "+5", "5"}), HasSubstr("exclude each other"));
  EXPECT_THAT(Refusal({"+100", "", ""}), HasSubstr("--start"));
  EXPECT_THAT(Refusal({"2025-12-31T23:59:59Z", "", ""}), HasSubstr("--start"));
  EXPECT_THAT(Refusal({"9999-12-31T23:59:59Z", "", ""}), HasSubstr("--start"));
  EXPECT_THAT(Refusal({"", "+101", ""}), HasSubstr("beyond"));
  EXPECT_THAT(Refusal({"+50", "", "51"}), HasSubstr("beyond"));
  EXPECT_THAT(Refusal({"+50", "+50", ""}), HasSubstr("behind the start"));
  EXPECT_THAT(Refusal({"+50", "2020-01-01T00:00:00Z", ""}), HasSubstr("behind the start"));
  EXPECT_THAT(Refusal({"", "", "0"}), HasSubstr("behind the start"));
}

}  // namespace
}  // namespace carvello
