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

std::string Script(const SWorkPlan& plan, const STaskNeeds& tasks = {}, const STaskNeeds& join = {}) {
  return SlurmScript(plan, "/p.json", tasks, join, "/bin/x");
}

TEST(SlurmScript, HasAJobForEveryTaskUpToWhatAnArrayTakes) {
  EXPECT_THAT(Script(Plan(1)), HasSubstr("#SBATCH --array=0-0\n"));
  EXPECT_THAT(Script(Plan(1'000)), HasSubstr("#SBATCH --array=0-999\n"));
  const std::string many = Script(Plan(100'000), {1, 500, 600});
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

TEST(SlurmScript, GivesTheJoinWhatItNeedsItself) {
  const std::string script = Script(Plan(3), {8, 700, 600}, {2, 900, 130'000});
  EXPECT_THAT(script, HasSubstr("#SBATCH --cpus-per-task=8\n#SBATCH --mem=700M\n#SBATCH --time=10\n"));
  EXPECT_THAT(script, HasSubstr("--cpus-per-task=2 --mem=900M --time=2167 "));
}

TEST(SlurmScript, CountsInItsFirstLine) {
  EXPECT_THAT(Script(Plan(1)), HasSubstr("# 1 recording, 1 task. "));
  EXPECT_THAT(Script(Plan(12)), HasSubstr("# 1 recording, 12 tasks. "));
}

TEST(SlurmScript, AJoinNeedsTheTimeOfAllOutputs) {
  // 3.3 TB at 50 MB/s are 66,000 s.
  const STaskNeeds large = JoinNeedsOf(Plan(1'000), 3.3e12);
  EXPECT_GE(large.nSeconds, 2 * 66'000);
  EXPECT_LE(large.nSeconds, 3 * 66'000);
  EXPECT_EQ(large.nProcessors, 2U);
  EXPECT_GE(JoinNeedsOf(Plan(1'000), 6.6e12).nSeconds, large.nSeconds + 2 * 66'000);
  // A small one has an hour, and many small parts take time however small they are.
  EXPECT_EQ(JoinNeedsOf(Plan(1), 1e6).nSeconds, 3'600);
  EXPECT_GT(JoinNeedsOf(Plan(100'000), 1e6).nSeconds, 10'000);
}

TEST(SlurmScript, AJoinNeedsTheMemoryOfThePlanAndOfItsLargestRecording) {
  const STaskNeeds small = JoinNeedsOf(Plan(1), 1e6);
  EXPECT_GE(small.nMegabytes, 500);
  EXPECT_GT(JoinNeedsOf(Plan(1'000'000), 1e6).nMegabytes, small.nMegabytes + 100);
  SWorkPlan wide = Plan(1, 1'000'000'000'000);
  wide.recordings[0].nEntries = 1'000;
  EXPECT_GT(JoinNeedsOf(wide, 1e6).nMegabytes, small.nMegabytes + 1'000);
  wide.recordings[0].nEntries = 1;
  EXPECT_EQ(JoinNeedsOf(wide, 1e6).nProcessors, 1U);  // one output has nothing beside it
}

}  // namespace
}  // namespace carvello::test
