#include "jobs/list_job.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "engine/wide_recording.h"
#include "support/platform.h"

namespace carvello::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

// Everything that decides what an output is, and what lists show of it.
std::string Described(const CEntryList& list, std::size_t i) {
  const OutputEntry& entry = list[i];
  return entry.strFileName + "|" + std::to_string(entry.nStartSample) + "+" + std::to_string(entry.nTotalSamples) +
         "|" + std::to_string(entry.nOutputFrequency) + "|" + std::to_string(entry.nOutputSampleRate) + "|" +
         std::to_string(entry.nBitsPerSample) + "|" + std::to_string(entry.nFileSizeMB) + "|" +
         std::to_string(entry.tStart) + "-" + std::to_string(entry.tEnd);
}

std::vector<std::string> Described(const CEntryList& list) {
  std::vector<std::string> all;
  for (std::size_t i = 0; i < list.Size(); ++i) all.push_back(Described(list, i));
  return all;
}

class ListJob : public testing::Test {
 protected:
  ListJob() {
    m_list.SetRecording(m_recording, SInfoTexts());
    m_fields.nFrequency = 7'100'000;
    m_fields.nBandwidth = 10'000;
    m_fields.strOutputFolder = "out";
  }

  void Add() {
    const auto problem = m_list.AddEntry(m_fields);
    ASSERT_FALSE(problem) << problem->box.strText;
  }
  // The list as it comes back from a text.
  CEntryList Read(const std::string& text) {
    SJobFile job;
    std::string error;
    EXPECT_TRUE(ParseJobFile(text, "job", job, error)) << error;
    CEntryList list;
    list.SetRecording(m_recording, SInfoTexts());
    SEntryFields fields;
    fields.bUtc = !job.bLocalTime;
    m_refused = AddJobToList(job, fields, m_recording, EJobRules::List, list);
    list.Rebuild();
    return list;
  }
  std::string Text() const { return JobFileText(JobOfList(m_list, m_recording, "in.wav", "out", m_fields.bUtc)); }
  void ExpectSameListBack() {
    m_list.Rebuild();
    EXPECT_EQ(Described(Read(Text())), Described(m_list)) << Text();
    EXPECT_EQ(m_refused.nEntries, 0U) << m_refused.strFirst;
  }

  CRecordingSet m_recording = WideRecording();
  SEntryFields m_fields;
  CEntryList m_list;
  SRefusedEntries m_refused;
};

TEST_F(ListJob, EveryKindOfEntryComesBackAsItWas) {
  Add();
  m_fields.b32Bit = true;
  for (const std::uint32_t size : {0U, 100U, 1000U}) {
    m_fields.nFileSizeMB = size;
    m_fields.nFrequency += 10'000;
    Add();
  }
  m_fields.startMode = EStartMode::At;
  m_fields.tPickedStart = kWideStart + 61;
  Add();
  m_fields.endMode = EEndMode::After;
  m_fields.nDurationSeconds = 600;
  Add();
  m_fields.endMode = EEndMode::At;
  m_fields.tPickedEnd = kWideStart + 1200;
  Add();
  m_fields.startMode = EStartMode::Beginning;
  Add();
  m_fields.endMode = EEndMode::After;
  Add();
  m_fields.nFrequency = -5;
  m_fields.nBandwidth = 0;  // only hinted at by the dialog
  Add();
  ExpectSameListBack();
  EXPECT_EQ(m_list.Size(), 10U);
}

TEST_F(ListJob, AnEndBeforeTheStartComesBackToo) {
  m_fields.startMode = EStartMode::At;
  m_fields.tPickedStart = kWideStart + 61;
  m_fields.endMode = EEndMode::At;
  m_fields.tPickedEnd = kWideStart + 30;
  Add();
  ExpectSameListBack();
}

TEST_F(ListJob, FoldersAndNumbersOfNamesComeBack) {
  m_fields.startMode = EStartMode::At;
  for (int second = 0; second < 3; ++second) {
    m_fields.tPickedStart = kWideStart + 60 + second;
    Add();
  }
  m_fields.strOutputFolder = "elsewhere";
  m_fields.tPickedStart = kWideStart + 120;
  Add();
  m_list.Rebuild();
  ExpectSameListBack();
  m_list.Remove({0});
  ExpectSameListBack();
  EXPECT_THAT(m_list[0].strDisplayName, HasSubstr("(2)"));
}

TEST_F(ListJob, NamesKeepTheirKindOfTime) {
  m_fields.bUtc = false;
  Add();
  ExpectSameListBack();
  EXPECT_THAT(Text(), HasSubstr("\"local_time\": true"));
}

TEST_F(ListJob, PathsOfAJobAreWhole) {
  Add();
  const SJobFile job = JobOfList(m_list, m_recording, "in.wav", "out/", true);
  EXPECT_EQ(job.strInput, platform::AbsolutePath("in.wav"));
  EXPECT_EQ(job.strOutput, platform::AbsolutePath("out"));
  EXPECT_EQ(job.entries[0].strOutput, "") << "the same folder";
}

TEST_F(ListJob, WithoutAFolderEveryEntryTellsItsOwn) {
  Add();
  const SJobFile job = JobOfList(m_list, m_recording, "in.wav", "", true);
  EXPECT_EQ(job.strOutput, "") << "not the present folder";
  EXPECT_EQ(job.entries[0].strOutput, platform::AbsolutePath("out"));
}

TEST_F(ListJob, WhatTheCommandLineRefusesIsTold) {
  Add();
  EXPECT_EQ(RefusedByCommandLine(JobOfList(m_list, m_recording, "in.wav", "out", true), m_recording).nEntries, 0U);
  m_fields.nFrequency += 10'000;
  m_fields.nBandwidth = 0;
  Add();
  m_list.Rebuild();
  const SJobFile job = JobOfList(m_list, m_recording, "in.wav", "out", true);
  const SRefusedEntries refused = RefusedByCommandLine(job, m_recording);
  EXPECT_EQ(refused.nEntries, 1U);
  EXPECT_TRUE(refused.strFirst.starts_with("7.110 MHz, BW 0 Hz: The bandwidth 0 is out of range.")) << refused.strFirst;
  CEntryList list;
  list.SetRecording(m_recording, SInfoTexts());
  EXPECT_EQ(AddJobToList(job, m_fields, m_recording, EJobRules::CommandLine, list).nEntries, 1U);
  EXPECT_EQ(list.Size(), 1U);
  ExpectSameListBack();  // which is kept with what it holds
}

TEST_F(ListJob, WhatDoesNotFitTheRecordingIsLeftOutAndTold) {
  const CEntryList list = Read(R"({"entries": [
      {"frequency": 1, "bandwidth": 10, "start": 1200},
      {"frequency": 2, "bandwidth": 10, "start": 1199},
      {"frequency": 3, "bandwidth": 10, "duration": 1200},
      {"frequency": 4, "bandwidth": 4294967296},
      {"frequency": 5, "bandwidth": -1},
      {"frequency": 6, "bandwidth": 10, "start": 9223372036854775807}]})");
  EXPECT_EQ(list.Size(), 1U);
  EXPECT_EQ(m_refused.nEntries, 5U);
  EXPECT_EQ(m_refused.strFirst, "job: entry 1: Start Time: The start time is out of range. Reset the start time?");
}

class MovedJob : public testing::Test {
 protected:
  MovedJob() {
    m_job.recorded = 1'000'000;
    m_job.entries.resize(2);
    m_job.entries[0].start = SMoment{false, 1'000'060};
    m_job.entries[0].end = SMoment{false, 1'000'090};
    m_job.entries[1].start = SMoment{true, 60};
    m_job.entries[1].duration = 5;
  }
  std::vector<std::int64_t> Moments(std::int64_t start) const {
    std::vector<std::int64_t> moments;
    for (const SEntrySpec& spec : m_job.entries) {
      if (spec.start) moments.push_back(spec.start->Resolve(start).value());
      if (spec.end) moments.push_back(spec.end->Resolve(start).value());
    }
    return moments;
  }

  SJobFile m_job;
};

TEST_F(MovedJob, IsAsFarFromTheOtherStart) {
  MoveJob(m_job, 2'000'000, EMoments::AsFarFromStart);
  EXPECT_THAT(Moments(2'000'000), ElementsAre(2'000'060, 2'000'090, 2'000'060));
  EXPECT_EQ(m_job.recorded, 2'000'000);
}

TEST_F(MovedJob, OrKeepsItsTimes) {
  MoveJob(m_job, 1'000'010, EMoments::AsTheyAre);
  EXPECT_THAT(Moments(1'000'010), ElementsAre(1'000'060, 1'000'090, 1'000'060));
}

TEST_F(MovedJob, StaysAsItIsWithoutAStartOfItsOwn) {
  m_job.recorded.reset();
  MoveJob(m_job, 2'000'000, EMoments::AsFarFromStart);
  EXPECT_THAT(Moments(2'000'000), ElementsAre(1'000'060, 1'000'090, 2'000'060));
}

TEST_F(MovedJob, MomentsBeyondAllRangeStay) {
  m_job.entries[0].start = SMoment{false, INT64_MAX};
  MoveJob(m_job, 2'000'000, EMoments::AsFarFromStart);
  EXPECT_EQ(m_job.entries[0].start->nSeconds, INT64_MAX);
}

}  // namespace
}  // namespace carvello::test
