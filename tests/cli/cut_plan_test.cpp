#include "cli/cut_plan.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "engine/wide_recording.h"
#include "support/platform.h"

namespace carvello::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class CutPlan : public testing::Test {
 protected:
  CutPlan() { m_list.SetRecording(m_recording, SInfoTexts()); }

  void Ask(const std::string& entry) {
    SEntrySpec spec;
    std::string error;
    ASSERT_TRUE(ParseEntry(entry, spec, error)) << error;
    spec.strLabel = "--entry " + std::to_string(m_request.entries.size() + 1) + " (" + entry + ")";
    m_request.entries.push_back(spec);
  }
  void AskSequence(std::int64_t from, std::int64_t to, std::int64_t step) {
    SEntrySpec spec;
    spec.strLabel = "--sequence 1";
    spec.range = SFrequencyRange{from, to, step};
    spec.bandwidth = 10'000;
    m_request.entries.push_back(spec);
  }
  void Accept() {
    std::string error;
    ASSERT_TRUE(BuildEntryList(m_request, m_recording, m_list, m_notes, error)) << error;
  }
  std::string Refusal(const std::string& entry) {
    m_request.entries.clear();
    Ask(entry);
    std::string error;
    EXPECT_FALSE(BuildEntryList(m_request, m_recording, m_list, m_notes, error)) << entry;
    EXPECT_THAT(error, HasSubstr("--entry 1 (" + entry + ")"));
    return error;
  }

  CRecordingSet m_recording = WideRecording();
  SCutRequest m_request{"in.wav", "out", {}};
  CEntryList m_list;
  SPlanNotes m_notes;
};

TEST_F(CutPlan, MakesEntriesInTheListsOrder) {
  Ask("f=7.1M,bw=10k");
  Ask("f=6.5M,bw=100k,bits=32,size=RF64,start=+60,duration=0:10");
  Accept();
  ASSERT_EQ(m_list.Size(), 2U);
  EXPECT_EQ(m_list[0].nOutputFrequency, 6'500'000);
  EXPECT_EQ(m_list[0].nOutputSampleRate, 100'000U);
  EXPECT_EQ(m_list[0].nBitsPerSample, 32U);
  EXPECT_EQ(m_list[0].nFileSizeMB, 0U);
  EXPECT_EQ(m_list[0].nStartSample, 120'000'000);
  EXPECT_EQ(m_list[0].nTotalSamples, 1'200'000'000);
  EXPECT_EQ(m_list[0].strDisplayName, "2026-11-21 1201z, f=6.500 MHz, bw=100 kHz.wav");
  EXPECT_EQ(m_list[1].nStartSample, 0);
  EXPECT_EQ(m_list[1].nTotalSamples, 0);
  EXPECT_THAT(m_notes.outsideBand, IsEmpty());
}

TEST_F(CutPlan, TakesStartAndEndFromTheClock) {
  Ask("f=7.1M,bw=10k,start=2026-11-21T13:01:00+01:00,end=2026-11-21T12:02Z");
  Accept();
  EXPECT_EQ(m_list[0].nStartSample, 120'000'000);
  EXPECT_EQ(m_list[0].nTotalSamples, 120'000'000);
}

TEST_F(CutPlan, AcceptsAnEndAtTheRecordingsEnd) {
  Ask("f=7.1M,bw=10k,end=+1200");
  Accept();
  EXPECT_EQ(m_list[0].nTotalSamples, 2'400'000'000);
}

TEST_F(CutPlan, ExpandsASequence) {
  AskSequence(7'000'000, 7'020'000, 10'000);
  Accept();
  ASSERT_EQ(m_list.Size(), 3U);
  EXPECT_EQ(m_list[2].nOutputFrequency, 7'020'000);
}

TEST_F(CutPlan, CountsDuplicates) {
  Ask("f=7.01M,bw=10k");
  AskSequence(7'000'000, 7'020'000, 10'000);
  Accept();
  EXPECT_EQ(m_list.Size(), 3U);
  EXPECT_EQ(m_notes.nDuplicates, 1U);
}

TEST_F(CutPlan, RefusesWithTheListsOwnTextsAndSaysWhatIsAccepted) {
  for (const char* entry : {"f=7.1M,bw=10k,start=+1200", "f=7.1M,bw=10k,start=2026-11-21T11:59:59Z"}) {
    EXPECT_THAT(Refusal(entry), AllOf(HasSubstr("Start Time: The start time is out of range."),
                                      HasSubstr("2026-11-21T12:00:00Z"), HasSubstr("2026-11-21T12:20:00Z")));
  }
  EXPECT_THAT(Refusal("f=7.1M,bw=10k,end=+1201"), HasSubstr("End Time: The end time is out of range."));
  EXPECT_THAT(Refusal("f=7.1M,bw=10k,duration=0"), HasSubstr("End: End duration cannot be zero."));
  EXPECT_THAT(Refusal("f=7.1M,bw=10k,duration=0:20"), HasSubstr("past the end of file"));
}

TEST_F(CutPlan, RefusesAnEndThatDoesNotLieBehindTheStart) {
  EXPECT_THAT(Refusal("f=7.1M,bw=10k,start=+60,end=+60"), HasSubstr("The end time is before the start time."));
  EXPECT_THAT(Refusal("f=7.1M,bw=10k,start=+60,end=+59"), HasSubstr("The end time is before the start time."));
  EXPECT_THAT(Refusal("f=7.1M,bw=10k,end=+0"), HasSubstr("The end time is before the start time."));
}

TEST_F(CutPlan, RefusesMomentsBeyondAllTime) {
  EXPECT_THAT(Refusal("f=7.1M,bw=10k,start=+9223372036854775807"), HasSubstr("The start time is out of range."));
  EXPECT_THAT(Refusal("f=7.1M,bw=10k,end=+9223372036854775807"), HasSubstr("The end time is out of range."));
}

TEST_F(CutPlan, AcceptsBandwidthsFrom10HzToTheInputsRate) {
  Ask("f=7.1M,bw=10");
  Ask("f=7.1M,bw=2M");
  Accept();
  EXPECT_EQ(m_list.Size(), 2U);
  for (const char* entry : {"f=7.1M,bw=9", "f=7.1M,bw=0", "f=7.1M,bw=-10k", "f=7.1M,bw=2000001", "f=7.1M,bw=10G"}) {
    EXPECT_THAT(Refusal(entry), AllOf(HasSubstr("bandwidth"), HasSubstr("from 10 to"), HasSubstr("2000000")));
  }
}

TEST_F(CutPlan, ASequenceThatIsRefusedIsNamedOnce) {
  AskSequence(7'000'000, 7'020'000, 10'000);
  m_request.entries[0].duration = 0;
  std::string error;
  EXPECT_FALSE(BuildEntryList(m_request, m_recording, m_list, m_notes, error));
  EXPECT_THAT(error, HasSubstr("--sequence 1: End: End duration cannot be zero."));
}

TEST_F(CutPlan, WarnsOfBandsOutsideTheRecording) {
  Ask("f=6.105M,bw=10k");  // ends exactly at the edge
  Ask("f=6.104M,bw=10k");
  Ask("f=9M,bw=10k");
  Accept();
  EXPECT_THAT(m_notes.outsideBand, ElementsAre(AllOf(HasSubstr("6.104 MHz"), HasSubstr("partly")),
                                               AllOf(HasSubstr("9.000 MHz"), HasSubstr("wholly"))));
}

TEST_F(CutPlan, WarnsOfARateThatTheFileWillNotHave) {
  Ask("f=7.1M,bw=1.5M");
  Ask("f=7.1M,bw=2M");
  Ask("f=7.1M,bw=999k");  // any rate up to 1 MHz can be had
  Accept();
  EXPECT_THAT(m_notes.surprises, ElementsAre(AllOf(HasSubstr("BW 1.500 MHz"), HasSubstr("will be 2 MHz"))));
}

TEST_F(CutPlan, WarnsOfAFirstStartWhereALaterFileBegins) {
  m_recording = WideRecording(2);
  m_list.SetRecording(m_recording, SInfoTexts());
  Ask("f=7.1M,bw=10k,start=+600");
  Accept();
  EXPECT_THAT(m_notes.surprises, ElementsAre(AllOf(HasSubstr("in 001.wav"), HasSubstr("1200000000 frames late"))));
}

// Two files of ten minutes each, an hour apart.
TEST_F(CutPlan, RefusesAStartInTheTimeBehindTheSamplesOfASetWithGaps) {
  m_recording = WideRecording(2);
  m_recording.tEnd = kWideStart + 1200 + 3600;
  m_list.SetRecording(m_recording, SInfoTexts());
  for (const char* entry : {"f=7.1M,bw=10k,start=+1200", "f=7.1M,bw=10k,start=+4799,end=+4800"}) {
    EXPECT_THAT(Refusal(entry), AllOf(HasSubstr("behind the last sample"), HasSubstr("a start before +1200")));
  }
  m_request.entries.clear();
  m_list.SetRecording(m_recording, SInfoTexts());
  Ask("f=7.1M,bw=10k,start=+1199");
  Accept();
  EXPECT_THAT(m_notes.surprises, IsEmpty());
}

TEST_F(CutPlan, WarnsOfAnEntryThatEndsBehindTheSamples) {
  m_recording.tEnd = kWideStart + 1300;
  m_list.SetRecording(m_recording, SInfoTexts());
  Ask("f=7.1M,bw=10k,start=+1100,end=+1250");
  Accept();
  EXPECT_THAT(m_notes.surprises, ElementsAre(AllOf(HasSubstr("BW 10 kHz"), HasSubstr("end 50.0 seconds before"))));
}

TEST_F(CutPlan, DoesNotWarnWhereAnotherEntryStartsEarlier) {
  m_recording = WideRecording(2);
  m_list.SetRecording(m_recording, SInfoTexts());
  Ask("f=7.1M,bw=10k,start=+600");
  Ask("f=7.2M,bw=10k,start=+599");
  Accept();
  EXPECT_THAT(m_notes.surprises, IsEmpty());
}

TEST_F(CutPlan, AnEntrysOwnFolderAndNumberCount) {
  Ask("f=7.1M,bw=10k");
  Ask("f=7.2M,bw=10k");
  m_request.entries[1].strOutput = "elsewhere";
  m_request.entries[1].nNameNumber = 3;
  Accept();
  ASSERT_EQ(m_list.Size(), 2U);
  EXPECT_EQ(platform::FolderOf(m_list[0].strFileName), platform::AbsolutePath("out"));
  EXPECT_EQ(platform::FolderOf(m_list[1].strFileName), platform::AbsolutePath("elsewhere"));
  EXPECT_THAT(m_list[1].strDisplayName, testing::EndsWith("bw=10 kHz (3).wav"));
}

TEST_F(CutPlan, NamesTellLocalTimeWhenAsked) {
  Ask("f=7.1M,bw=10k");
  m_request.bLocalTime = true;
  Accept();
  EXPECT_THAT(m_list[0].strDisplayName, testing::Not(HasSubstr("z, f=")));
}

}  // namespace
}  // namespace carvello::test
