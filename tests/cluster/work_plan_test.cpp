#include "cluster/work_plan.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "cluster/task_parts.h"
#include "support/temp_folder.h"
#include "support/version.h"

namespace carvello::test {
namespace {

using testing::HasSubstr;

std::string PlanText(const std::string& tasks, const std::string& frames = "600") {
  return R"({"carvello_plan": 1, "version": ")" + Release() +
         R"(", "library": "2.3.4", "engine": "auto", "entries_absolute": false, "sigmf_meta": false, "sync": true, "ds64_frames": false,
    "parts": "/p", "job": "{\"entries\": [{\"frequency\": 7100000, \"bandwidth\": 12000}]}",
    "recordings": [
      {"input": "/r/a.wav", "frames": )" +
         frames + R"(, "sample_rate": 100, "entries": 1, "entries_sha256": "ab",
       "files": [{"path": "/r/a.wav", "size": 2400, "modified": -5}]},
      {"input": "/r/b.wav", "part": 2, "frames": 600, "sample_rate": 100, "entries": 1, "entries_sha256": "cd",
       "files": []}],
    "tasks": )" +
         tasks + "}";
}

SWorkPlan Read(const std::string& text) {
  SWorkPlan plan;
  std::string error;
  EXPECT_TRUE(ParseWorkPlan(text, "night.json", plan, error)) << error;
  return plan;
}

std::string Refusal(const std::string& text) {
  SWorkPlan plan;
  std::string error;
  EXPECT_FALSE(ParseWorkPlan(text, "night.json", plan, error)) << text;
  EXPECT_THAT(error, HasSubstr("night.json"));
  return error;
}

TEST(WorkPlan, ReadsWhatItWrites) {
  const SWorkPlan plan = Read(PlanText("[[0, 0, 5], [0, 5, 10], [1, 0, 5]]"));
  const SWorkPlan again = Read(WorkPlanText(plan));
  for (const SWorkPlan& each : {plan, again}) {
    EXPECT_EQ(each.strVersion, Release());
    EXPECT_EQ(each.strLibrary, "2.3.4");
    ASSERT_EQ(each.recordings.size(), 2U);
    EXPECT_EQ(each.recordings[0].files, (std::vector<SPlannedFile>{{"/r/a.wav", 2400, -5}}));
    EXPECT_EQ(each.recordings[0].nPart, 0U);
    EXPECT_EQ(each.recordings[1].nPart, 2U);
    ASSERT_EQ(each.tasks.size(), 3U);
    EXPECT_EQ(each.tasks[1].nFrom, 5);
    EXPECT_EQ(each.tasks[2].nRecording, 1U);
    ASSERT_EQ(each.job.entries.size(), 1U);
    EXPECT_EQ(each.job.entries[0].bandwidth, 12000);
  }
}

TEST(WorkPlan, TakesTasksInTheirOrderOnly) {
  Read(PlanText("[[0, 0, 5], [0, 7, 9]]"));
  for (const char* const tasks : {"[]", "[[0, 5, 10], [0, 0, 5]]", "[[0, 0, 5], [0, 0, 5]]", "[[0, 0, 5], [0, 4, 9]]",
                                  "[[1, 0, 5], [0, 0, 5]]", "[[2, 0, 5]]", "[[0, 5, 5]]", "[[0, 5, 4]]"}) {
    EXPECT_THAT(Refusal(PlanText(tasks)), HasSubstr("task")) << tasks;
  }
}

TEST(WorkPlan, TakesWholeNumbersOnly) {
  Read(PlanText("[[0, 0, 9223372036854775807]]"));
  for (const char* const tasks :
       {"[[0, 0, 9223372036854775808]]", "[[0, 0, 1e3]]", "[[0, 0, 5.5]]", "[[0, -1, 5]]", "[[-1, 0, 5]]",
        "[[0, 0, 99999999999999999999999]]", "[[0, 0, true]]", "[[0, 0]]", "[[0, 0, null]]", "[5]", "{}", "7"}) {
    EXPECT_THAT(Refusal(PlanText(tasks)), HasSubstr("no plan")) << tasks;
  }
  for (const char* const frames : {"-1", "1.5", "1e300", "\"5\"", "[5]"}) {
    EXPECT_THAT(Refusal(PlanText("[[0, 0, 5]]", frames)), HasSubstr("no plan")) << frames;
  }
}

TEST(WorkPlan, RefusesAPlanOfAnotherVersion) {
  std::string text = PlanText("[[0, 0, 5]]");
  text.replace(text.find("version\": \"") + 11, 1, "x");
  EXPECT_THAT(Refusal(text), HasSubstr("made by version x"));
  // Releases that differ in their last number may differ in samples.
  text = PlanText("[[0, 0, 5]]");
  text.replace(text.find(Release()), Release().size(), Release() + "1");
  EXPECT_THAT(Refusal(text), HasSubstr("made by version " + Release() + "1, and this is " + Release()));
}

TEST(WorkPlan, TellsAFileThatCannotBeReadFromOneThatIsNoPlan) {
  const CTempFolder folder;
  SWorkPlan plan;
  std::string error;
  bool unreadable = false;
  EXPECT_FALSE(ReadWorkPlan(folder / "none.json", plan, error, unreadable));
  EXPECT_TRUE(unreadable);
  WriteWholeFile(folder / "empty.json", "");
  EXPECT_FALSE(ReadWorkPlan(folder / "empty.json", plan, error, unreadable));
  EXPECT_FALSE(unreadable);
}

TEST(TaskParts, KnowsTheNamesOfWhatTasksWrite) {
  for (const char* const name : {
           "t0000000-e000000.wav",
           "t0000012-e000999.json",
           "t12345678-e1234567.wav",
       }) {
    EXPECT_TRUE(IsPartName(name)) << name;
    EXPECT_FALSE(IsMakingFolderName(name)) << name;
  }
  for (const char* const name : {"a.wav", "t0000000.wav", "t0000000-e000000", "t0000000-e000000.wav.bak",
                                 "t0000000-e000000.json.part", "x.json", ""}) {
    EXPECT_FALSE(IsPartName(name)) << name;
    EXPECT_FALSE(IsMakingFolderName(name)) << name;
  }
  EXPECT_TRUE(IsMakingFolderName("t0000012.tmp"));
  EXPECT_FALSE(IsMakingFolderName("t0000012.tmp.mine"));
}

}  // namespace
}  // namespace carvello::test
