// Starting and stopping jobs: the questions, their texts, batches, and what stands in the way of a job.
#include "engine/job_control.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <deque>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "engine/engine_fixture.h"

namespace carvello::test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

constexpr std::int64_t kFrames = 5'000;

class CScriptedAnswers final : public IJobQuestions {
 public:
  EAnswer Ask(EJobQuestion question, const SMessageBox& box) override {
    asked.emplace_back(question, box);
    if (answers.empty()) return EAnswer::Cancel;
    const EAnswer answer = answers.front();
    answers.pop_front();
    return answer;
  }
  void JobStarting() override { ++jobsStarted; }

  std::deque<EAnswer> answers;
  std::vector<std::pair<EJobQuestion, SMessageBox>> asked;
  int jobsStarted = 0;
};

class JobControlTest : public EngineTest {
 protected:
  JobControlTest() : jobs(m_dsp, m_target, answers, 2) {
    recording.files = Describe({WriteNumbered("in.wav", 0, kFrames)});
    recording.format = NumberedFormat();
    recording.kind = KindOfWave(recording.format);
    recording.nTotalRemainder = 4 * kFrames;
    recording.tStart = 1'604'275'140;
    recording.tEnd = recording.tStart + 5;
    recording.nSampleRate = 1'000;
    recording.nBitsPerSample = 16;
    list.SetRecording(recording, {});
    std::filesystem::create_directory(m_folder / "out");
  }

  // Entries of one sample file each, named by their frequencies.
  void AddEntries(int count) {
    SEntryFields fields;
    fields.nBandwidth = 1'000;
    fields.nFileSizeMB = 0;
    fields.strOutputFolder = Path("out");
    list.AddSequence(fields, 1000, 1000 * count, 1000, [](const SEntryProblem&, SEntryFields&) { FAIL(); });
  }

  void RunToEnd() {
    while (!jobs.OnIdle()) std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }

  std::size_t OutputFiles() const {
    return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(m_folder / "out"), {}));
  }

  void ExpectAsked(std::size_t index, EJobQuestion question, const std::string& caption, const std::string& text,
                   EButtons buttons, EIcon icon) const {
    ASSERT_LT(index, answers.asked.size());
    EXPECT_EQ(answers.asked[index].first, question);
    EXPECT_EQ(answers.asked[index].second.strCaption, caption);
    EXPECT_EQ(answers.asked[index].second.strText, text);
    EXPECT_EQ(answers.asked[index].second.buttons, buttons);
    EXPECT_EQ(answers.asked[index].second.icon, icon);
  }

  CScriptedAnswers answers;
  CJobControl jobs;
  CEntryList list;
  CRecordingSet recording;
};

TEST_F(JobControlTest, LeavesOutWhatCannotBeWrittenWhenThatIsWanted) {
  SEntryFields fields;
  fields.nBandwidth = 1'000;
  fields.nFileSizeMB = 0;
  fields.nFrequency = 500;
  fields.strOutputFolder = Path("gone");
  ASSERT_FALSE(list.AddEntry(fields));
  AddEntries(1);
  ASSERT_EQ(jobs.Start(list, recording, {.bLeaveOutUnwritable = true}), EStartResult::Started);
  RunToEnd();
  EXPECT_THAT(answers.asked, IsEmpty());
  ASSERT_THAT(jobs.EntryStates(), SizeIs(2));
  EXPECT_EQ(jobs.EntryStates()[0].pEntry, &list[1]);
  EXPECT_EQ(jobs.EntryStates()[0].state, EOutputState::Done);
  EXPECT_EQ(jobs.EntryStates()[1].pEntry, &list[0]);
  EXPECT_EQ(jobs.EntryStates()[1].state, EOutputState::Failed);
  EXPECT_THAT(jobs.EntryStates()[1].strReason, HasSubstr(Path("gone")));
  EXPECT_THAT(m_target.Lines(), Contains(HasSubstr("[ERROR] " + list[0].strFileName)));
  EXPECT_EQ(OutputFiles(), 1U);
}

// No recording was made of such an entry: whoever finds it gone from the list believes that it was.
TEST_F(JobControlTest, AnOutputInWhosePlaceAnotherFileStandsFailsWhereNothingIsAsked) {
  AddEntries(2);
  const std::filesystem::path other = list[0].strFileName;
  std::ofstream(other) << "the user's own";
  answers.answers = {EAnswer::No};
  ASSERT_EQ(jobs.Start(list, recording, {.bLeaveOutUnwritable = true}), EStartResult::Started);
  RunToEnd();
  ASSERT_THAT(jobs.EntryStates(), SizeIs(2));
  EXPECT_EQ(jobs.EntryStates()[0].state, EOutputState::Done);
  EXPECT_EQ(jobs.EntryStates()[1].pEntry, &list[0]);
  EXPECT_EQ(jobs.EntryStates()[1].state, EOutputState::Failed);
  EXPECT_THAT(jobs.EntryStates()[1].strReason, HasSubstr("exists and is no recording that could be read"));
  EXPECT_THAT(m_target.Lines(), Contains(HasSubstr("[ERROR] " + list[0].strFileName)));
  EXPECT_EQ(std::filesystem::file_size(other), 14U);
}

TEST_F(JobControlTest, WhatFailsForAnotherFileInItsPlaceStaysOnTheList) {
  AddEntries(9);
  const OutputEntry* failing = &list[3];
  std::ofstream(std::filesystem::path(failing->strFileName)) << "the user's own";
  answers.answers = {EAnswer::Yes, EAnswer::No, EAnswer::Yes};
  ASSERT_EQ(jobs.Start(list, recording, {.bLeaveOutUnwritable = true}), EStartResult::Started);
  RunToEnd();
  ASSERT_TRUE(jobs.ContinueBatch(list));
  ASSERT_EQ(list.Size(), 2u);
  EXPECT_EQ(&list[0], failing);
}

TEST_F(JobControlTest, NothingIsLeftOutUnasked) {
  AddEntries(1);
  std::filesystem::remove(m_folder / "out");
  EXPECT_EQ(jobs.Start(list, recording), EStartResult::OutputUnwritable);
  ASSERT_THAT(answers.asked, SizeIs(1));
  EXPECT_EQ(answers.asked[0].first, EJobQuestion::CannotStart);
  EXPECT_EQ(answers.jobsStarted, 0);
}

TEST_F(JobControlTest, AJobWithoutAnyWritableOutputEndsAtOnce) {
  AddEntries(2);
  std::filesystem::remove(m_folder / "out");
  EXPECT_EQ(jobs.Start(list, recording, {.bLeaveOutUnwritable = true}), EStartResult::OutputUnwritable);
  EXPECT_FALSE(jobs.IsRunning());
  EXPECT_THAT(answers.asked, IsEmpty());
  EXPECT_THAT(jobs.EntryStates(), SizeIs(2));
}

// The list may change, and the owner go away, while a plan still looks at a disk.
TEST_F(JobControlTest, APlanOwnsAllThatItLooksAt) {
  AddEntries(2);
  std::shared_ptr<CJobPlan> pPlan;
  ASSERT_EQ(jobs.Plan(list, recording, {}, pPlan), EStartResult::Started);
  const std::string name = list[1].strFileName;
  std::ofstream(m_folder / "out" / platform::NameOf(name)) << "old";
  list.Reset();
  recording = {};
  std::thread([pPlan] {
    pPlan->Look();
    pPlan->Choose(false);
  }).join();
  EXPECT_FALSE(pPlan->Obstacle());
  EXPECT_EQ(pPlan->Existing(), 1U);
  ASSERT_THAT(pPlan->Chosen(), SizeIs(1));
  EXPECT_EQ(pPlan->Chosen()[0].nEntry, 0U);
  EXPECT_EQ(pPlan->Place(), name);  // looked at last
}

TEST_F(JobControlTest, TellsHowManyThreadsAJobReallyHas) {
  AddEntries(3);
  ASSERT_EQ(jobs.Start(list, recording), EStartResult::Started);
  RunToEnd();
  EXPECT_THAT(m_target.Lines(), Contains("> Processors: 2, max threads: 8"));
  EXPECT_THAT(m_target.Lines(), Contains("> Threads: 1 reads, 3 write"));
}

TEST_F(JobControlTest, RunsAJobFromStartToEnd) {
  AddEntries(2);
  ASSERT_EQ(jobs.Start(list, recording), EStartResult::Started);
  RunToEnd();
  EXPECT_FALSE(jobs.IsRunning());
  EXPECT_THAT(answers.asked, IsEmpty());
  EXPECT_EQ(answers.jobsStarted, 1);
  ASSERT_THAT(jobs.Results(), SizeIs(2));
  EXPECT_TRUE(jobs.Results()[1].bOk);
  EXPECT_EQ(jobs.Results()[1].nFrames, kFrames);
  EXPECT_EQ(jobs.Results()[1].nOutputFrequency, 2000);
  EXPECT_EQ(jobs.InputBytesRead(), 4 * kFrames);
  const auto lines = m_target.Lines();
  EXPECT_EQ(lines.at(0), "> Ready");
  EXPECT_EQ(lines.at(1), "> Processors: 2, max threads: 8");
  EXPECT_EQ(m_target.Progress().front(), 0u);
  EXPECT_EQ(m_target.Progress().back(), 10'000u);
  EXPECT_FALSE(jobs.OnIdle()) << "the end is told once";
}

// Notes the blocks and keeps the samples.
class CNotingListener final : public IBlockListener {
 public:
  void OnBlock(const SharedBlock& samples, std::int64_t position, std::int32_t frames) noexcept override {
    positions.push_back(position);
    for (std::int32_t i = 0; i < frames; ++i) {
      good = good && samples[i].re == NumberedI(position + i) && samples[i].im == NumberedQ(position + i);
    }
    end = position + frames;
  }

  std::vector<std::int64_t> positions;
  std::int64_t end = 0;
  bool good = true;
};

TEST_F(JobControlTest, ListenerHearsOfEveryBlockThatAJobReadsAndWhereItLies) {
  constexpr std::int64_t kLong = 2 * std::int64_t{kBlockFrames} + 1000;
  recording.files = Describe({WriteNumbered("long.wav", 0, kLong), WriteNumbered("next.wav", kLong, 500)});
  const auto listener = std::make_shared<CNotingListener>();
  jobs.SetListener(listener);
  AddEntries(1);
  ASSERT_EQ(jobs.Start(list, recording), EStartResult::Started);
  RunToEnd();
  EXPECT_THAT(listener->positions, ElementsAre(0, kBlockFrames, 2 * kBlockFrames, kLong));
  EXPECT_EQ(listener->end, kLong + 500);
  EXPECT_TRUE(listener->good);
}

TEST_F(JobControlTest, ListenerThatIsTakenAwayHearsNothingOfTheNextJob) {
  const auto listener = std::make_shared<CNotingListener>();
  jobs.SetListener(listener);
  jobs.SetListener(nullptr);
  AddEntries(1);
  ASSERT_EQ(jobs.Start(list, recording), EStartResult::Started);
  RunToEnd();
  EXPECT_THAT(listener->positions, IsEmpty());
  EXPECT_EQ(listener.use_count(), 1);
}

TEST_F(JobControlTest, MaximumIsFourEntriesAProcessor) {
  EXPECT_EQ(jobs.Processors(), 2u);
  EXPECT_EQ(jobs.MaxEntries(), 8u);
  EXPECT_EQ(CJobControl(m_dsp, m_target, answers, 0).MaxEntries(), 4u);
}

TEST_F(JobControlTest, TooManyEntriesAreAskedAboutAndNoStartsNothing) {
  AddEntries(10);
  answers.answers = {EAnswer::No};
  EXPECT_EQ(jobs.Start(list, recording), EStartResult::Declined);
  ExpectAsked(0, EJobQuestion::TooManyEntries, "Start",
              "The maximum entries which can be processed is 10, you have added 8.\n\nContinue?", EButtons::YesNo,
              EIcon::Stop);
  EXPECT_FALSE(jobs.IsRunning());
  EXPECT_EQ(list.Size(), 10u);
  EXPECT_EQ(OutputFiles(), 0u);
}

TEST_F(JobControlTest, BatchesWorkOffALongList) {
  AddEntries(10);
  answers.answers = {EAnswer::Yes, EAnswer::Yes};
  ASSERT_EQ(jobs.Start(list, recording), EStartResult::Started);
  RunToEnd();
  EXPECT_THAT(jobs.Results(), SizeIs(8));
  EXPECT_TRUE(jobs.MoreThanOneBatch(list));
  ASSERT_TRUE(jobs.ContinueBatch(list));
  ExpectAsked(1, EJobQuestion::ContinueBatch, "Continue",
              "10 of 8 entries have been processed. Remove from list and continue?", EButtons::YesNo, EIcon::Stop);
  EXPECT_EQ(list.Size(), 2u);
  ASSERT_EQ(jobs.Start(list, recording), EStartResult::Started);
  RunToEnd();
  EXPECT_FALSE(jobs.MoreThanOneBatch(list));
  EXPECT_FALSE(jobs.ContinueBatch(list));
  EXPECT_THAT(answers.asked, SizeIs(2));
  EXPECT_EQ(OutputFiles(), 10u);
}

TEST_F(JobControlTest, NineEntriesLeaveOneForTheSecondBatch) {
  AddEntries(9);
  answers.answers = {EAnswer::Yes, EAnswer::Yes};
  ASSERT_EQ(jobs.Start(list, recording), EStartResult::Started);
  RunToEnd();
  ASSERT_TRUE(jobs.ContinueBatch(list));
  EXPECT_THAT(answers.asked[1].second.strText, testing::StartsWith("9 of 8 "));
  EXPECT_EQ(list.Size(), 1u);
}

TEST_F(JobControlTest, NoAfterABatchKeepsEveryEntry) {
  AddEntries(9);
  answers.answers = {EAnswer::Yes, EAnswer::No};
  ASSERT_EQ(jobs.Start(list, recording), EStartResult::Started);
  RunToEnd();
  EXPECT_FALSE(jobs.ContinueBatch(list));
  EXPECT_EQ(list.Size(), 9u);
}

TEST_F(JobControlTest, WhatFailedInABatchStaysInTheListAndIsNotRunAgainByTheNext) {
  AddEntries(18);
  const OutputEntry* failing = &list[2];
  std::filesystem::create_directory(failing->strFileName);  // no file can be made in its place
  answers.answers = {EAnswer::Yes, EAnswer::Yes, EAnswer::Yes};
  ASSERT_EQ(jobs.Start(list, recording), EStartResult::Started);
  RunToEnd();
  const auto states = jobs.EntryStates();
  ASSERT_THAT(states, SizeIs(8));
  for (std::size_t i = 0; i < 8; ++i) {
    EXPECT_EQ(states[i].pEntry, &list[i]);
    EXPECT_EQ(states[i].state, i == 2 ? EOutputState::Failed : EOutputState::Done);
  }
  ASSERT_TRUE(jobs.ContinueBatch(list));
  EXPECT_THAT(answers.asked.back().second.strText, testing::StartsWith("18 of 8 "));
  ASSERT_EQ(list.Size(), 11u);
  EXPECT_EQ(&list[0], failing);

  EXPECT_TRUE(jobs.MoreThanOneBatch(list));
  answers.answers = {EAnswer::Yes, EAnswer::Yes};
  ASSERT_EQ(jobs.Start(list, recording), EStartResult::Started);
  ASSERT_THAT(jobs.Batch(list), SizeIs(8));
  RunToEnd();
  ASSERT_THAT(jobs.Results(), SizeIs(8));
  EXPECT_EQ(jobs.Results()[0].strFileName, list[1].strFileName);
  ASSERT_TRUE(jobs.ContinueBatch(list));
  ASSERT_EQ(list.Size(), 3u);
  EXPECT_EQ(&list[0], failing);

  ASSERT_EQ(jobs.Start(list, recording), EStartResult::Started);
  RunToEnd();
  ASSERT_THAT(jobs.Results(), SizeIs(2));
  EXPECT_TRUE(jobs.Results()[0].bOk && jobs.Results()[1].bOk);
  EXPECT_FALSE(jobs.MoreThanOneBatch(list));
}

TEST_F(JobControlTest, FailedEntriesThatStayedDoNotMakeAnotherBatch) {
  AddEntries(9);
  for (std::size_t i = 0; i < 8; ++i) std::filesystem::create_directory(list[i].strFileName);
  answers.answers = {EAnswer::Yes, EAnswer::Yes, EAnswer::Yes};
  ASSERT_EQ(jobs.Start(list, recording), EStartResult::Started);
  RunToEnd();
  ASSERT_TRUE(jobs.ContinueBatch(list));
  EXPECT_EQ(list.Size(), 9u);
  EXPECT_FALSE(jobs.MoreThanOneBatch(list));
  ASSERT_EQ(jobs.Start(list, recording), EStartResult::Started);
  RunToEnd();
  EXPECT_THAT(jobs.Results(), SizeIs(1));
  EXPECT_FALSE(jobs.ContinueBatch(list));
}

TEST_F(JobControlTest, ANewStartRunsWhatFailedInEarlierBatches) {
  AddEntries(9);
  std::filesystem::create_directory(list[0].strFileName);
  answers.answers = {EAnswer::Yes, EAnswer::Yes, EAnswer::Yes};
  ASSERT_EQ(jobs.Start(list, recording), EStartResult::Started);
  RunToEnd();
  ASSERT_TRUE(jobs.ContinueBatch(list));
  ASSERT_EQ(jobs.Start(list, recording), EStartResult::Started);
  RunToEnd();
  std::filesystem::remove(list[0].strFileName);
  answers.answers = {EAnswer::Yes};
  ASSERT_EQ(jobs.Start(list, recording), EStartResult::Started);
  RunToEnd();
  ASSERT_THAT(jobs.Results(), SizeIs(2));
  EXPECT_TRUE(jobs.Results()[0].bOk);
}

TEST_F(JobControlTest, StatesTellTheirEntriesAlsoWhereExistingFilesLeaveSomeOut) {
  AddEntries(3);
  std::filesystem::copy_file(m_folder / "in.wav", list[1].strFileName);
  answers.answers = {EAnswer::No};
  ASSERT_EQ(jobs.Start(list, recording), EStartResult::Started);
  RunToEnd();
  const auto states = jobs.EntryStates();
  ASSERT_THAT(states, SizeIs(2));
  EXPECT_EQ(states[0].pEntry, &list[0]);
  EXPECT_EQ(states[1].pEntry, &list[2]);
}

TEST_F(JobControlTest, OneExistingFileOfOneEntryIsAskedAboutInTheSingular) {
  AddEntries(1);
  std::filesystem::copy_file(m_folder / "in.wav", list[0].strFileName);
  EXPECT_EQ(jobs.Start(list, recording), EStartResult::Declined);
  ExpectAsked(0, EJobQuestion::OverwriteFiles, "Start", "The output file already exists, overwrite it?",
              EButtons::YesNoCancel, EIcon::Question);
  EXPECT_TRUE(ReadBytes(list[0].strFileName) == ReadBytes(Path("in.wav"))) << "Cancel touches nothing";
}

TEST_F(JobControlTest, ExistingFilesOfSeveralEntriesAreCounted) {
  AddEntries(3);
  std::filesystem::copy_file(m_folder / "in.wav", list[1].strFileName);
  EXPECT_EQ(jobs.Start(list, recording), EStartResult::Declined);
  ExpectAsked(0, EJobQuestion::OverwriteFiles, "Start", "1 of 3 file(s) already exist, do you want to overwrite them?",
              EButtons::YesNoCancel, EIcon::Question);
}

TEST_F(JobControlTest, YesOverwritesEveryExistingFile) {
  AddEntries(2);
  for (std::size_t i = 0; i < 2; ++i) std::filesystem::copy_file(m_folder / "in.wav", list[i].strFileName);
  answers.answers = {EAnswer::Yes};
  ASSERT_EQ(jobs.Start(list, recording), EStartResult::Started);
  RunToEnd();
  for (std::size_t i = 0; i < 2; ++i) EXPECT_EQ(ReadBytes(list[i].strFileName).at(1), 'F') << "an RF64 file of ours";
}

TEST_F(JobControlTest, NoLeavesOutTheEntriesWhoseFilesExist) {
  AddEntries(3);
  std::filesystem::copy_file(m_folder / "in.wav", list[1].strFileName);
  answers.answers = {EAnswer::No};
  ASSERT_EQ(jobs.Start(list, recording), EStartResult::Started);
  RunToEnd();
  ASSERT_THAT(jobs.Results(), SizeIs(2));
  EXPECT_EQ(jobs.Results()[0].strFileName, list[0].strFileName);
  EXPECT_EQ(jobs.Results()[1].strFileName, list[2].strFileName);
  EXPECT_TRUE(ReadBytes(list[1].strFileName) == ReadBytes(Path("in.wav")));
}

TEST_F(JobControlTest, NoWithNothingLeftToDoStartsNothing) {
  AddEntries(1);
  std::filesystem::copy_file(m_folder / "in.wav", list[0].strFileName);
  answers.answers = {EAnswer::No, EAnswer::Ok};
  EXPECT_EQ(jobs.Start(list, recording), EStartResult::AllFilesExist);
  ExpectAsked(1, EJobQuestion::AllFilesExist, "Start", "All output files exist, processing not started.", EButtons::Ok,
              EIcon::Exclamation);
  EXPECT_FALSE(jobs.IsRunning());
}

TEST_F(JobControlTest, EmptyListStartsNothing) {
  EXPECT_EQ(jobs.Start(list, recording), EStartResult::AllFilesExist);
  EXPECT_FALSE(jobs.IsRunning());
}

TEST_F(JobControlTest, OverwritingAShorterSplitOutputLeavesNoOldParts) {
  SEntryFields fields;
  fields.nBandwidth = 1'000;
  fields.strOutputFolder = Path("out");
  ASSERT_FALSE(list.AddEntry(fields).has_value());
  const std::string stem = list[0].strFileName.substr(0, list[0].strFileName.size() - 4);
  for (const char* number : {" 000.wav", " 001.wav", " 002.wav"}) {
    std::filesystem::copy_file(m_folder / "in.wav", stem + number);
  }
  answers.answers = {EAnswer::Yes};
  ASSERT_EQ(jobs.Start(list, recording), EStartResult::Started);
  RunToEnd();
  EXPECT_THAT(jobs.Results()[0].files, ElementsAre(stem + " 000.wav"));
  EXPECT_EQ(OutputFiles(), 1u);
}

TEST_F(JobControlTest, StopFinishesTheFilesAndEndsTheJob) {
  SPassThrough::DelayRun(50, 1);
  AddEntries(1);
  ASSERT_EQ(jobs.Start(list, recording), EStartResult::Started);
  jobs.Stop();
  EXPECT_FALSE(jobs.IsRunning());
  ASSERT_THAT(jobs.Results(), SizeIs(1));
  const auto frames = ReadNumbered(list[0].strFileName);
  EXPECT_EQ(static_cast<std::int64_t>(frames.size()), jobs.Results()[0].nFrames);
  EXPECT_FALSE(jobs.OnIdle());
}

TEST_F(JobControlTest, JobAfterAStoppedJobStartsAfresh) {
  AddEntries(1);
  ASSERT_EQ(jobs.Start(list, recording), EStartResult::Started);
  jobs.Stop();
  answers.answers = {EAnswer::Yes};
  ASSERT_EQ(jobs.Start(list, recording), EStartResult::Started);
  RunToEnd();
  EXPECT_EQ(jobs.Results()[0].nFrames, kFrames);
}

TEST_F(JobControlTest, IncompleteLibraryStartsNothingAndNamesItsPath) {
  m_dsp.bLoaded = 0;
  AddEntries(1);
  EXPECT_EQ(jobs.Start(list, recording), EStartResult::LibraryMissing);
  EXPECT_THAT(answers.asked.at(0).second.strText, HasSubstr("Vantrel"));
  EXPECT_THAT(answers.asked.at(0).second.strText, HasSubstr(DspLibraryPath()));
  EXPECT_EQ(OutputFiles(), 0u);
}

TEST_F(JobControlTest, SampleSizeThatNothingConvertsStartsNothing) {
  AddEntries(1);
  // Offset 34 of the header: bits per sample.
  std::fstream(m_folder / "in.wav", std::ios::in | std::ios::out | std::ios::binary).seekp(34).put(12);
  EXPECT_EQ(jobs.Start(list, recording), EStartResult::InputUnsupported);
  EXPECT_THAT(answers.asked.at(0).second.strText, HasSubstr(Path("in.wav") + ": 12-bit PCM"));
  EXPECT_EQ(OutputFiles(), 0u);
}

TEST_F(JobControlTest, InputThatCannotBeReadFromFrontToBackStartsNothing) {
  AddEntries(1);
  std::fstream(m_folder / "in.wav", std::ios::in | std::ios::out | std::ios::binary).seekp(20).put(2);  // ADPCM
  EXPECT_EQ(jobs.Start(list, recording), EStartResult::InputUnsupported);
  EXPECT_THAT(answers.asked.at(0).second.strText, HasSubstr("Not a format that we can handle"));
  EXPECT_EQ(OutputFiles(), 0u);
}

TEST_F(JobControlTest, OldPartThatCannotBeRemovedFailsItsOutputAlone) {
  SEntryFields fields;
  fields.nBandwidth = 1'000;
  fields.strOutputFolder = Path("out");
  ASSERT_FALSE(list.AddEntry(fields).has_value());
  const std::string stem = list[0].strFileName.substr(0, list[0].strFileName.size() - 4);
  std::filesystem::create_directories(std::filesystem::path(stem + " 001.wav") / "full");
  AddEntries(1);
  answers.answers = {EAnswer::Yes};
  ASSERT_EQ(jobs.Start(list, recording), EStartResult::Started);
  RunToEnd();
  ASSERT_THAT(jobs.Results(), SizeIs(2));
  for (const SOutputResult& result : jobs.Results()) {
    const bool hindered = result.strFileName == stem + ".wav";
    EXPECT_EQ(result.bOk, !hindered);
    EXPECT_EQ(result.strError.find(stem + " 001.wav") != std::string::npos, hindered);
  }
  EXPECT_FALSE(std::filesystem::exists(stem + " 000.wav"));
}

TEST_F(JobControlTest, NoLeavesAnOutputOfAnotherStretchAloneThatHasTheSameName) {
  SEntryFields fields;
  fields.nFrequency = 1'000;
  fields.nBandwidth = 1'000;
  fields.nFileSizeMB = 0;
  fields.strOutputFolder = Path("out");
  fields.endMode = EEndMode::After;
  fields.nDurationSeconds = 1;
  ASSERT_FALSE(list.AddEntry(fields).has_value());
  ASSERT_EQ(jobs.Start(list, recording), EStartResult::Started);
  RunToEnd();
  const std::string name = list[0].strFileName;
  const auto before = ReadBytes(name);
  // In the same minute, and longer: by its frames alone the first would pass for a job that was stopped.
  list.Reset();
  fields.startMode = EStartMode::At;
  fields.tPickedStart = recording.tStart + 1;
  fields.nDurationSeconds = 2;
  ASSERT_FALSE(list.AddEntry(fields).has_value());
  ASSERT_EQ(list[0].strFileName, name);
  answers.answers = {EAnswer::No, EAnswer::Ok};
  EXPECT_EQ(jobs.Start(list, recording), EStartResult::AllFilesExist);
  EXPECT_TRUE(ReadBytes(name) == before);
}

TEST_F(JobControlTest, NoDoesAgainWhatAnEarlierJobHasNotFinished) {
  AddEntries(2);
  ASSERT_EQ(jobs.Start(list, recording), EStartResult::Started);
  RunToEnd();
  const auto whole = ReadBytes(list[0].strFileName);
  // As a kill leaves it: some of the samples, and sizes that tell of them; the trailer was never written.
  std::filesystem::resize_file(list[0].strFileName, whole.size() / 2);
  const std::string other = list[1].strFileName;
  std::filesystem::last_write_time(other, std::filesystem::last_write_time(other) - std::chrono::hours(1));
  const auto before = std::filesystem::last_write_time(other);
  answers.answers = {EAnswer::No};
  ASSERT_EQ(jobs.Start(list, recording), EStartResult::Started);
  RunToEnd();
  ASSERT_THAT(jobs.Results(), SizeIs(1));
  EXPECT_EQ(jobs.Results()[0].strFileName, list[0].strFileName);
  EXPECT_TRUE(jobs.Results()[0].bOk);
  EXPECT_EQ(ReadBytes(list[0].strFileName).size(), whole.size());
  EXPECT_EQ(std::filesystem::last_write_time(other), before);
}

TEST_F(JobControlTest, OutputThatWouldReplaceTheInputIsRefused) {
  AddEntries(1);
  std::filesystem::create_hard_link(m_folder / "in.wav", list[0].strFileName);
  answers.answers = {EAnswer::Ok, EAnswer::Yes};
  EXPECT_EQ(jobs.Start(list, recording), EStartResult::OutputIsInput);
  ExpectAsked(0, EJobQuestion::CannotStart, "Start",
              list[0].strFileName + " would replace the input file " + Path("in.wav"), EButtons::Ok, EIcon::Stop);
}

TEST_F(JobControlTest, MissingOutputFolderStartsNothing) {
  AddEntries(1);
  std::filesystem::remove(m_folder / "out");
  EXPECT_EQ(jobs.Start(list, recording), EStartResult::OutputUnwritable);
  EXPECT_THAT(answers.asked.at(0).second.strText, HasSubstr(Path("out")));
  EXPECT_FALSE(std::filesystem::exists(m_folder / "out"));
}

TEST_F(JobControlTest, DestructionDuringAJobFinishesTheFiles) {
  SPassThrough::DelayRun(50, 1);
  AddEntries(1);
  {
    CJobControl shortLived(m_dsp, m_target, answers, 1);
    ASSERT_EQ(shortLived.Start(list, recording), EStartResult::Started);
  }
  const auto frames = ReadNumbered(list[0].strFileName);
  EXPECT_FALSE(frames.empty());
}

}  // namespace
}  // namespace carvello::test
