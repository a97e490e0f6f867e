// Making, checking, naming, de-duplicating and sorting output entries.
#include "engine/entry_list.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <ctime>
#include <filesystem>
#include <functional>
#include <limits>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "support/platform.h"

namespace carvello {
namespace {

using testing::ElementsAre;

constexpr std::int64_t kStart = 1604275140;  // 2020-11-01 23:59:00 UTC
constexpr std::int64_t kLength = 3600;
constexpr std::uint32_t kRate = 2'000'000;

class EntryListTest : public testing::Test {
 protected:
  EntryListTest() {
    CRecordingSet recording;
    recording.tStart = kStart;
    recording.tEnd = kStart + kLength;
    recording.nSampleRate = kRate;
    recording.nRadioCenterFreq = 7'000'000;
    recording.strMetadata = "<SDR-XML-Root/>";
    SInfoTexts texts;
    texts.strIPRD = "product";
    texts.strIART = "artist";
    texts.strICMT = "comment";
    texts.strICOP = "rights";
    list.SetRecording(recording, texts);
    fields.nFrequency = 7'100'000;
    fields.nBandwidth = 10'000;
    fields.strOutputFolder = "out";
  }

  void ExpectRefused(const char* caption, const char* text, EButtons buttons,
                     SEntryProblem::EReset reset = SEntryProblem::EReset::None) {
    const std::size_t before = list.Size();
    const auto problem = list.AddEntry(fields);
    ASSERT_TRUE(problem.has_value());
    EXPECT_EQ(problem->box.strCaption, caption);
    EXPECT_EQ(problem->box.strText, text);
    EXPECT_EQ(problem->box.buttons, buttons);
    EXPECT_EQ(problem->box.icon, EIcon::Stop);
    EXPECT_EQ(problem->reset, reset);
    EXPECT_EQ(list.Size(), before);
  }

  void ExpectAdded() { ASSERT_FALSE(list.AddEntry(fields).has_value()); }

  std::vector<std::int64_t> Frequencies() const {
    std::vector<std::int64_t> frequencies;
    for (std::size_t i = 0; i < list.Size(); ++i) frequencies.push_back(list[i].nOutputFrequency);
    return frequencies;
  }

  CEntryList list;
  SEntryFields fields;
};

TEST_F(EntryListTest, EntryCarriesEveryField) {
  fields.b32Bit = true;
  fields.nFileSizeMB = 1000;
  ExpectAdded();
  const OutputEntry& entry = list[0];
  EXPECT_EQ(entry.nFlags, 0u);
  EXPECT_EQ(entry.nBitsPerSample, 32u);
  EXPECT_EQ(entry.nFileSizeMB, 1000u);
  EXPECT_EQ(entry.tReserved, 0);
  EXPECT_EQ(entry.tStart, kStart);
  EXPECT_EQ(entry.tEnd, kStart + kLength);
  EXPECT_EQ(entry.nReserved, 0);
  EXPECT_EQ(entry.strDisplayName, "2020-11-01 2359z, f=7.100 MHz, bw=10 kHz.wav");
  EXPECT_EQ(entry.strFileName, platform::JoinPath(platform::AbsolutePath("out"), entry.strDisplayName));
  EXPECT_EQ(entry.nReserved2, 0u);
  EXPECT_EQ(entry.strMetadata.Text(), "<SDR-XML-Root/>");
  EXPECT_EQ(entry.strInfo1.Text(), "product");
  EXPECT_EQ(entry.strInfo2.Text(), "artist");
  EXPECT_EQ(entry.strInfo3.Text(), "comment");
  EXPECT_EQ(entry.strInfo4.Text(), "rights");
  EXPECT_EQ(entry.strTitle, "7.100 MHz, BW 10 kHz");
  EXPECT_EQ(entry.nStartSample, 0);
  EXPECT_EQ(entry.nTotalSamples, 0) << "0 means to the end";
  EXPECT_EQ(entry.nInputFrequency, 7'000'000);
  EXPECT_EQ(entry.nInputSampleRate, kRate);
  EXPECT_EQ(entry.nOutputFrequency, 7'100'000);
  EXPECT_EQ(entry.nOutputSampleRate, 10'000u);
}

TEST_F(EntryListTest, FlagIsSetWhenNoBandwidthIsSelected) {
  fields.nBandwidth = 0;
  ExpectAdded();
  EXPECT_EQ(list[0].nFlags, 1u);
}

TEST_F(EntryListTest, OneGigabyteIsAThousandMegabytesAndRf64IsZero) {
  fields.nFileSizeMB = 0;
  ExpectAdded();
  EXPECT_EQ(list[0].nFileSizeMB, 0u);
  EXPECT_THAT(list[0].strDisplayName, testing::EndsWith(".wav")) << "also when it is one RF64 file";
}

TEST_F(EntryListTest, StartBecomesAnOffsetInInputSamples) {
  fields.startMode = EStartMode::At;
  fields.tPickedStart = kStart + 61;
  ExpectAdded();
  EXPECT_EQ(list[0].nStartSample, 61LL * kRate);
  EXPECT_EQ(list[0].strDisplayName, "2020-11-02 0000z, f=7.100 MHz, bw=10 kHz.wav");
}

TEST_F(EntryListTest, StartBeforeTheRecordingIsRefused) {
  fields.startMode = EStartMode::At;
  fields.tPickedStart = kStart - 1;
  ExpectRefused("Start Time", "The start time is out of range. Reset the start time?", EButtons::YesNo,
                SEntryProblem::EReset::StartToRecordingStart);
}

TEST_F(EntryListTest, StartAtTheRecordingsEndIsRefused) {
  fields.startMode = EStartMode::At;
  fields.tPickedStart = kStart + kLength;
  ExpectRefused("Start Time", "The start time is out of range. Reset the start time?", EButtons::YesNo,
                SEntryProblem::EReset::StartToRecordingStart);
}

TEST_F(EntryListTest, EndAtTheRecordingsEndIsAccepted) {
  fields.endMode = EEndMode::At;
  fields.tPickedEnd = kStart + kLength;
  ExpectAdded();
  EXPECT_EQ(list[0].nTotalSamples, kLength * kRate);
}

TEST_F(EntryListTest, EndBehindTheRecordingIsRefused) {
  fields.endMode = EEndMode::At;
  fields.tPickedEnd = kStart + kLength + 1;
  ExpectRefused("End Time", "The end time is out of range. Reset the end time?", EButtons::YesNo,
                SEntryProblem::EReset::EndToRecordingEnd);
}

TEST_F(EntryListTest, EndBeforeTheRecordingIsRefused) {
  fields.endMode = EEndMode::At;
  fields.tPickedEnd = kStart - 1;
  ExpectRefused("End Time", "The end time is out of range. Reset the end time?", EButtons::YesNo,
                SEntryProblem::EReset::EndToRecordingEnd);
}

TEST_F(EntryListTest, PickedEndIsNotComparedWithTheStart) {
  fields.startMode = EStartMode::At;
  fields.tPickedStart = kStart + 100;
  fields.endMode = EEndMode::At;
  fields.tPickedEnd = kStart + 50;
  ExpectAdded();
  EXPECT_EQ(list[0].nTotalSamples, -50LL * kRate);
}

TEST_F(EntryListTest, ZeroDurationIsRefused) {
  fields.endMode = EEndMode::After;
  ExpectRefused("End", "End duration cannot be zero.", EButtons::Ok);
}

// Outputs tell the whole path that they were written to, and stay where they were asked for whatever folder is the
// present one later.
TEST_F(EntryListTest, ARelativeFolderCountsFromThePresentOne) {
  const std::filesystem::path here = std::filesystem::current_path();
  const auto nameIn = [this](const std::string& folder) {
    list.Reset();
    fields.strOutputFolder = folder;
    ExpectAdded();
    return list[0].strFileName;
  };
  const std::string name = platform::NameOf(nameIn("out"));
  EXPECT_EQ(nameIn("out"), (here / "out" / name).string());
  EXPECT_EQ(nameIn("./out"), (here / "out" / name).string());
  EXPECT_EQ(nameIn("."), (here / name).string());
  EXPECT_EQ(nameIn(""), (here / name).string());
  EXPECT_EQ(nameIn((here / "out").string()), (here / "out" / name).string());
}

TEST_F(EntryListTest, DurationThatEndsExactlyAtTheRecordingsEndIsRefused) {
  fields.endMode = EEndMode::After;
  fields.nDurationSeconds = kLength;
  ExpectRefused("End Time", "The start time + end duration is past the end of file, change the duration.",
                EButtons::Ok);
  fields.nDurationSeconds = kLength - 1;
  ExpectAdded();
}

TEST_F(EntryListTest, ShownFinishOfADurationCountsFromTheRecordingsStart) {
  fields.startMode = EStartMode::At;
  fields.tPickedStart = kStart + 600;
  fields.endMode = EEndMode::After;
  fields.nDurationSeconds = 1800;
  ExpectAdded();
  EXPECT_EQ(list[0].tEnd, kStart + 1800);
  EXPECT_EQ(list[0].nTotalSamples, 1800LL * kRate);
  EXPECT_EQ(list[0].nStartSample, 600LL * kRate);
}

TEST_F(EntryListTest, SameEntryTwiceLeavesOne) {
  ExpectAdded();
  ExpectAdded();
  EXPECT_EQ(list.Size(), 2u);
  list.Rebuild();
  EXPECT_EQ(list.Size(), 1u);
}

TEST_F(EntryListTest, EntriesThatDifferOnlyInSizesCollapseToTheEarlier) {
  ExpectAdded();
  fields.b32Bit = true;
  fields.nFileSizeMB = 0;
  ExpectAdded();
  list.Rebuild();
  ASSERT_EQ(list.Size(), 1u);
  EXPECT_EQ(list[0].nBitsPerSample, 16u);
  EXPECT_EQ(list[0].nFileSizeMB, 100u);
}

TEST_F(EntryListTest, EntriesThatDifferOnlyInFolderCollapseToTheEarlier) {
  ExpectAdded();
  fields.strOutputFolder = "elsewhere";
  ExpectAdded();
  list.Rebuild();
  ASSERT_EQ(list.Size(), 1u);
  EXPECT_EQ(list[0].strFileName, platform::JoinPath(platform::AbsolutePath("out"), list[0].strDisplayName));
}

TEST_F(EntryListTest, DroppedEntriesAreToldWithWhatWasNotTakenOver) {
  ExpectAdded();
  ExpectAdded();
  fields.strOutputFolder = "elsewhere";
  ExpectAdded();
  fields.b32Bit = true;
  fields.nFileSizeMB = 0;
  ExpectAdded();
  const auto dropped = list.Rebuild();
  ASSERT_EQ(dropped.size(), 3u);
  EXPECT_EQ(dropped[0].strTitle, "7.100 MHz, BW 10 kHz");
  EXPECT_EQ(dropped[0].strNotTakenOver, "");
  EXPECT_EQ(dropped[1].strNotTakenOver, "folder");
  EXPECT_EQ(dropped[2].strNotTakenOver, "folder, sample size, file size");
  EXPECT_TRUE(list.Rebuild().empty());
}

TEST_F(EntryListTest, FieldsThatAProblemPutsRightCountForTheRestOfASequence) {
  fields.startMode = EStartMode::At;
  fields.tPickedStart = kStart - 1;
  int problems = 0;
  list.AddSequence(fields, 0, 40, 10, [&](const SEntryProblem&, SEntryFields& forTheRest) {
    if (++problems == 2) forTheRest.tPickedStart = kStart + 5;
  });
  EXPECT_EQ(problems, 2);
  EXPECT_THAT(Frequencies(), ElementsAre(20, 30, 40));
  EXPECT_EQ(list[2].tStart, kStart + 5);
}

TEST_F(EntryListTest, EqualLengthsWithDifferentStartsStayApart) {
  fields.startMode = EStartMode::At;
  fields.endMode = EEndMode::After;
  fields.nDurationSeconds = 60;
  for (const std::int64_t start : {kStart, kStart + 120}) {
    fields.tPickedStart = start;
    ExpectAdded();
  }
  list.Rebuild();
  EXPECT_EQ(list.Size(), 2u);
}

TEST_F(EntryListTest, DifferentStretchesWithinAMinuteGetDifferentNames) {
  fields.startMode = EStartMode::At;
  fields.endMode = EEndMode::After;
  fields.nDurationSeconds = 5;
  for (const int second : {0, 10, 20}) {
    fields.tPickedStart = kStart + second;
    ExpectAdded();
  }
  EXPECT_EQ(list[0].strDisplayName, "2020-11-01 2359z, f=7.100 MHz, bw=10 kHz.wav");
  EXPECT_EQ(list[1].strDisplayName, "2020-11-01 2359z, f=7.100 MHz, bw=10 kHz (2).wav");
  EXPECT_EQ(list[2].strDisplayName, "2020-11-01 2359z, f=7.100 MHz, bw=10 kHz (3).wav");
  EXPECT_EQ(list[2].strFileName, platform::JoinPath(platform::AbsolutePath("out"), list[2].strDisplayName));
}

TEST_F(EntryListTest, TheNameOfARemovedEntryIsFreeAgain) {
  fields.startMode = EStartMode::At;
  fields.endMode = EEndMode::After;
  fields.nDurationSeconds = 5;
  const auto addAt = [&](int second) {
    fields.tPickedStart = kStart + second;
    ExpectAdded();
    return list[list.Size() - 1].strDisplayName;
  };
  const std::string name = addAt(0);
  const std::string second = addAt(10);
  EXPECT_NE(second, name);
  list.Remove({0});
  list.Rebuild();
  EXPECT_EQ(addAt(20), name);
  list.Remove({0});
  EXPECT_EQ(addAt(30), second);
  list.Reset();
  EXPECT_EQ(addAt(40), name);
}

// Time that so many entries of one frequency take: of the processor, where a system's clock() tells that, or elapsed.
class EntryListCost : public EntryListTest {
 protected:
  double Seconds(int count, const std::function<void(int)>& choose) {
    list.Reset();
    const std::clock_t begun = std::clock();
    for (int i = 0; i < count; ++i) {
      choose(i);
      ExpectAdded();
    }
    list.Rebuild();
    return static_cast<double>(std::clock() - begun) / CLOCKS_PER_SEC;
  }

  // How many times as long ten times the entries take, at best: what else runs on the machine slows one or the other.
  double TimesForTenTimes(int count, const std::function<void(int)>& choose) {
    double least = std::numeric_limits<double>::max();
    for (int attempt = 0; attempt < 4; ++attempt) {
      const double few = Seconds(count, choose);
      least = std::min(least, Seconds(10 * count, choose) / few);
    }
    return least;
  }

  // Ten times the entries may take ten times as long, and some more for what grows with them: caches, trees. A list
  // that looks through all for each one takes a hundred times as long.
  static constexpr double kMostTimes = 40.0;
};

TEST_F(EntryListCost, OfEntriesThatAreAllTheSameGrowsWithTheirNumber) {
  EXPECT_LT(TimesForTenTimes(5'000, [](int) {}), kMostTimes);
  EXPECT_EQ(list.Size(), 1u);
}

TEST_F(EntryListCost, OfEntriesThatWouldShareANameGrowsWithTheirNumber) {
  fields.startMode = EStartMode::At;
  fields.endMode = EEndMode::After;
  const auto choose = [&](int i) {
    fields.tPickedStart = kStart + i % 60;
    fields.nDurationSeconds = static_cast<std::uint32_t>(1 + i / 60);
  };
  EXPECT_LT(TimesForTenTimes(5'000, choose), kMostTimes);
  EXPECT_EQ(list.Size(), 50'000u);
}

TEST_F(EntryListCost, OfTakingBatchesOffTheFrontIsNotThatOfSortingAnew) {
  const auto choose = [&](int i) { fields.nFrequency = 1'000'000 - i; };
  const double making = Seconds(20'000, choose);
  const std::clock_t begun = std::clock();
  for (int batch = 0; batch < 100; ++batch) {
    list.Remove({0, 1, 2, 3, 4, 5, 6, 7});
    EXPECT_TRUE(list.Rebuild().empty());
  }
  EXPECT_LT(static_cast<double>(std::clock() - begun) / CLOCKS_PER_SEC, 10 * making);
  EXPECT_EQ(list.Size(), 19'200u);
  EXPECT_EQ(list[0].nOutputFrequency, 1'000'000 - 19'999 + 800);
}

TEST_F(EntryListTest, EntriesShareTheTextsOfTheirRecording) {
  list.AddSequence(fields, 7'000'000, 7'100'000, 50'000, [](const SEntryProblem&, SEntryFields&) { FAIL(); });
  ASSERT_EQ(list.Size(), 3u);
  EXPECT_EQ(&list[0].strMetadata.Text(), &list[2].strMetadata.Text());
  EXPECT_EQ(&list[0].strMetadata.Lists(), &list[2].strMetadata.Lists());
  EXPECT_EQ(&list[0].strInfo1.Text(), &list[2].strInfo1.Text());
  EXPECT_EQ(&list[0].strInfo4.Text(), &list[2].strInfo4.Text());
}

TEST_F(EntryListTest, TextsOfAnEntryOutliveTheListsRecording) {
  ExpectAdded();
  const OutputEntry entry = list[0];
  list.SetRecording(CRecordingSet{}, SInfoTexts{});
  EXPECT_EQ(entry.strMetadata.Text(), "<SDR-XML-Root/>");
  EXPECT_EQ(entry.strInfo3.Text(), "comment");
}

// By the rules alone: the first of equal entries, ascending, equal keys in the order in which they came.
TEST_F(EntryListTest, ManyEntriesComeOutAsIfEachWereComparedWithEach) {
  fields.startMode = EStartMode::At;
  struct SAsked {
    std::int64_t nFrequency;
    std::uint32_t nBandwidth;
    std::int64_t tStart;
    std::uint32_t nFileSizeMB;  // tells which of equal entries it is
  };
  std::vector<SAsked> asked;
  std::uint32_t random = 1;
  const auto next = [&random](std::uint32_t below) {
    random = random * 1'664'525 + 1'013'904'223;
    return (random >> 16) % below;
  };
  for (std::uint32_t i = 0; i < 400; ++i) {
    asked.push_back({7'000'000 + next(4), 10 + next(3), kStart + next(12), i});
  }
  for (const SAsked& one : asked) {
    fields.nFrequency = one.nFrequency;
    fields.nBandwidth = one.nBandwidth;
    fields.tPickedStart = one.tStart;
    fields.nFileSizeMB = one.nFileSizeMB;
    ExpectAdded();
  }
  list.Rebuild();

  for (std::size_t later = asked.size(); later-- > 1;) {
    for (std::size_t earlier = 0; earlier < later; ++earlier) {
      if (asked[earlier].nFrequency == asked[later].nFrequency &&
          asked[earlier].nBandwidth == asked[later].nBandwidth && asked[earlier].tStart == asked[later].tStart) {
        asked.erase(asked.begin() + static_cast<std::ptrdiff_t>(later));
        break;
      }
    }
  }
  for (std::size_t end = asked.size(); end > 1; --end) {
    for (std::size_t i = 1; i < end; ++i) {
      if (std::tie(asked[i].nFrequency, asked[i].nBandwidth) <
          std::tie(asked[i - 1].nFrequency, asked[i - 1].nBandwidth)) {
        std::swap(asked[i], asked[i - 1]);
      }
    }
  }
  ASSERT_EQ(list.Size(), asked.size());
  ASSERT_LT(asked.size(), 200u) << "or there were hardly any duplicates";
  for (std::size_t i = 0; i < asked.size(); ++i) EXPECT_EQ(list[i].nFileSizeMB, asked[i].nFileSizeMB) << i;
}

TEST_F(EntryListTest, SortsByFrequencyThenBandwidth) {
  fields.nFrequency = 7'100'000;
  ExpectAdded();
  fields.nFrequency = 3'500'000;
  ExpectAdded();
  fields.nFrequency = 7'100'000;
  fields.nBandwidth = 5'000;
  ExpectAdded();
  list.Rebuild();
  EXPECT_THAT(Frequencies(), ElementsAre(3'500'000, 7'100'000, 7'100'000));
  EXPECT_EQ(list[1].nOutputSampleRate, 5'000u);
  EXPECT_EQ(list[2].nOutputSampleRate, 10'000u);
}

TEST_F(EntryListTest, EqualKeysKeepTheirOrder) {
  fields.startMode = EStartMode::At;
  for (const int second : {300, 100, 200}) {
    fields.tPickedStart = kStart + second;
    ExpectAdded();
  }
  list.Rebuild();
  ASSERT_EQ(list.Size(), 3u);
  EXPECT_EQ(list[0].tStart, kStart + 300);
  EXPECT_EQ(list[1].tStart, kStart + 100);
  EXPECT_EQ(list[2].tStart, kStart + 200);
}

TEST_F(EntryListTest, SequenceAddsBothEndsInEitherOrder) {
  const auto none = [](const SEntryProblem&, SEntryFields&) { FAIL(); };
  list.AddSequence(fields, 920'000, 900'000, 10'000, none);
  EXPECT_THAT(Frequencies(), ElementsAre(900'000, 910'000, 920'000));
}

TEST_F(EntryListTest, SequenceStopsAtTheLastFullStep) {
  list.AddSequence(fields, 0, 25, 10, [](const SEntryProblem&, SEntryFields&) { FAIL(); });
  EXPECT_THAT(Frequencies(), ElementsAre(0, 10, 20));
}

TEST_F(EntryListTest, SequenceAlsoAddsFrequenciesOutsideTheBand) {
  list.AddSequence(fields, 0, 20'000'000, 10'000'000, [](const SEntryProblem&, SEntryFields&) { FAIL(); });
  EXPECT_THAT(Frequencies(), ElementsAre(0, 10'000'000, 20'000'000));
}

TEST_F(EntryListTest, SequenceWithoutAStepAddsNothing) {
  list.AddSequence(fields, 0, 10, 0, [](const SEntryProblem&, SEntryFields&) { FAIL(); });
  EXPECT_EQ(list.Size(), 0u);
}

TEST_F(EntryListTest, SequenceAtTheEndOfTheNumberRangeEnds) {
  constexpr std::int64_t kMost = std::numeric_limits<std::int64_t>::max();
  list.AddSequence(fields, kMost - 1, kMost, 1, [](const SEntryProblem&, SEntryFields&) { FAIL(); });
  EXPECT_EQ(list.Size(), 2u);
}

TEST_F(EntryListTest, SequenceReportsEveryRefusedEntry) {
  fields.endMode = EEndMode::After;
  int refused = 0;
  list.AddSequence(fields, 0, 40, 10, [&](const SEntryProblem& problem, SEntryFields&) {
    EXPECT_EQ(problem.box.strText, "End duration cannot be zero.");
    ++refused;
  });
  EXPECT_EQ(refused, 5);
  EXPECT_EQ(list.Size(), 0u);
}

TEST_F(EntryListTest, RemoveTakesAnyOrderAndIgnoresWhatIsNotThere) {
  list.AddSequence(fields, 0, 40, 10, [](const SEntryProblem&, SEntryFields&) {});
  list.Remove({3, 0, 99, 3});
  EXPECT_THAT(Frequencies(), ElementsAre(10, 20, 40));
  list.Remove({0, 1, 2});
  EXPECT_EQ(list.Size(), 0u);
}

TEST_F(EntryListTest, NewRecordingEmptiesTheList) {
  ExpectAdded();
  list.SetRecording(CRecordingSet{}, SInfoTexts{});
  EXPECT_EQ(list.Size(), 0u);
}

TEST_F(EntryListTest, RecordingOfImpossibleLengthGivesTheLargestOffsetRatherThanAWrongOne) {
  CRecordingSet recording;
  recording.tEnd = std::numeric_limits<std::int64_t>::max();
  recording.nSampleRate = 4'000'000'000u;
  list.SetRecording(recording, SInfoTexts{});
  fields.endMode = EEndMode::At;
  fields.tPickedEnd = recording.tEnd;
  ExpectAdded();
  EXPECT_EQ(list[0].nTotalSamples, std::numeric_limits<std::int64_t>::max());
}

TEST_F(EntryListTest, PutsBackTheVerySameEntries) {
  list.AddEntry(fields);
  fields.nFrequency = 7'200'000;
  list.AddEntry(fields);
  list.Rebuild();
  const CEntryList::Saved saved = list.Save();
  const std::vector<const OutputEntry*> before = list.Pointers();
  list.Remove({0});
  fields.nFrequency = 7'300'000;
  list.AddEntry(fields);
  list.Rebuild();
  list.PutBack(saved);
  EXPECT_EQ(list.Pointers(), before);
  list.PutBack({});
  EXPECT_EQ(list.Size(), 0U);
  list.PutBack(saved);
  EXPECT_EQ(list.Pointers(), before);
}

// Two stretches of a channel within a minute: the later one has a number in its name.
TEST_F(EntryListTest, MovedEntriesAreTheSameButForTheirFolder) {
  fields.startMode = EStartMode::At;
  fields.bUtc = false;
  for (const int second : {0, 1, 2}) {
    fields.tPickedStart = kStart + second;
    fields.strOutputFolder = second == 2 ? "other" : "out";
    ExpectAdded();
  }
  list.Rebuild();
  const CEntryList::Saved before = list.Save();
  const std::vector<std::string> names = {list[0].strDisplayName, list[1].strDisplayName, list[2].strDisplayName};
  EXPECT_EQ(names[0], names[2]) << "in another folder";
  list.MoveTo("new");
  const std::string folder = platform::AbsolutePath("new");
  EXPECT_EQ(list[0].strFileName, platform::JoinPath(folder, names[0]));
  EXPECT_EQ(list[1].strFileName, platform::JoinPath(folder, names[1]));
  EXPECT_EQ(list.NameNumber(2), 3) << "its name is taken in the folder that all are in now";
  EXPECT_EQ(list[2].nStartSample, 2 * kRate);
  fields.strOutputFolder = "new";
  fields.tPickedStart = kStart + 5;
  ExpectAdded();
  EXPECT_EQ(list.NameNumber(3), 4) << "the names are taken";
  list.PutBack(before);
  EXPECT_EQ(list[2].strFileName, platform::JoinPath(platform::AbsolutePath("other"), names[2]));
}

TEST_F(EntryListTest, WantedNumberOfANameIsTakenWhenItIsFree) {
  fields.startMode = EStartMode::At;
  for (const int second : {0, 1}) {
    fields.tPickedStart = kStart + second;
    fields.nNameNumber = 2;
    ExpectAdded();
  }
  EXPECT_EQ(list.NameNumber(0), 2);
  EXPECT_EQ(list.NameNumber(1), 1);
}

TEST_F(EntryListTest, NamesOfEntriesThatWerePutBackAreTakenAgain) {
  fields.endMode = EEndMode::At;
  const auto add = [&](std::int64_t end) {
    fields.tPickedEnd = kStart + end;
    list.AddEntry(fields);
    list.Rebuild();
    return list[list.Size() - 1].strDisplayName;
  };
  const std::string first = add(10);
  const std::string second = add(20);
  const CEntryList::Saved saved = list.Save();
  list.Remove({0});
  EXPECT_EQ(add(30), first) << "the name is free";
  list.PutBack(saved);
  const std::string third = add(40);
  EXPECT_NE(third, first);
  EXPECT_NE(third, second);
}

}  // namespace
}  // namespace carvello
