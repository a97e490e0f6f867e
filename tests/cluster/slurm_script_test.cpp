#include "cluster/slurm_script.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace carvello::test {
namespace {

using testing::HasSubstr;

SWorkPlan Plan(std::size_t tasks, std::int64_t frames = 600'000'000) {
  SWorkPlan plan;
  SPlannedRecording& recording = plan.recordings.emplace_back();
  recording.nEntries = 10;
  recording.nFrames = frames;
  recording.nSampleRate = 1'000'000;
  for (std::size_t i = 0; i < tasks; ++i) {
    const auto from = static_cast<std::int64_t>(i) * 600;
    plan.tasks.push_back({0, from, from + 600});
  }
  return plan;
}

TEST(SlurmScript, HasAJobForEveryTaskUpToWhatAnArrayTakes) {
  EXPECT_THAT(SlurmScript(Plan(1), "/p.json", {}, "/bin/x"), HasSubstr("#SBATCH --array=0-0\n"));
  EXPECT_THAT(SlurmScript(Plan(1'000), "/p.json", {}, "/bin/x"), HasSubstr("#SBATCH --array=0-999\n"));
  const std::string many = SlurmScript(Plan(100'000), "/p.json", {1, 500, 600}, "/bin/x");
  EXPECT_THAT(many, HasSubstr("#SBATCH --array=0-999\n"));
  EXPECT_THAT(many, HasSubstr("tasks=100000\njobs=1000\n"));
  EXPECT_THAT(many, HasSubstr("#SBATCH --time=1000\n"));  // a hundred tasks of 10 minutes each
}

TEST(SlurmScript, NeedsAreThoseOfTheLargestTask) {
  const STaskNeeds small = NeedsOf(Plan(1), 4, 10.0);
  // 2.4 GB from a disk of 60 MB/s, four times over, and what the entries take.
  EXPECT_GE(small.nSeconds, 160);
  EXPECT_EQ(small.nProcessors, 1U);
  const STaskNeeds dear = NeedsOf(Plan(1), 4, 100.0);
  EXPECT_GT(dear.nProcessors, 1U);
  EXPECT_LE(NeedsOf(Plan(1), 4, 1e6).nProcessors, 16U);
  EXPECT_GT(small.nMegabytes, 500);
  // A task is never longer than its recording.
  EXPECT_EQ(NeedsOf(Plan(1, 1'000), 4, 10.0).nSeconds, 600);
}

}  // namespace
}  // namespace carvello::test
