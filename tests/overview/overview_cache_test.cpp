// Overviews that are kept: they come back as they were, or not at all.
#include "overview/overview_cache.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <string>

#include "overview/check_sum.h"
#include "overview/overview_fixture.h"
#include "support/temp_folder.h"

namespace carvello::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::int64_t kFrames = 50 * 4096;
constexpr std::int64_t kRoomy = 1'000'000'000;

class OverviewCacheTest : public testing::Test {
 protected:
  OverviewCacheTest() {
    m_recording.files.push_back({.strPath = "a.wav", .nSampleBytes = 4 * kFrames});
    m_recording.files[0].stamp.nSize = 4 * kFrames + 44;
    m_recording.files[0].stamp.nModified = 1'000'000'007;
  }

  COverviewCache Cache(std::int64_t mostBytes = kRoomy) const {
    return {m_folder / "cache/overviews", mostBytes, m_recording};
  }

  // Some rows of numbers, one in each state and the others unknown.
  static void Fill(CBaseLevels& base) {
    for (std::int64_t row = 1; row < 50; row += 12) {
      SCodeRow codes;
      for (std::size_t i = 0; i < kBaseBins; ++i) {
        codes.mean.push_back(static_cast<std::uint8_t>(1 + (i * 7 + static_cast<std::size_t>(row)) % 200));
        codes.maximum.push_back(static_cast<std::uint8_t>(codes.mean.back() + 20));
      }
      base.Restore(row, static_cast<ERowState>(1 + row / 12 % 4), codes.mean, codes.maximum);
    }
  }

  static void ExpectFilled(const CBaseLevels& base) {
    CBaseLevels expected(kFrames);
    Fill(expected);
    EXPECT_TRUE(base.States() == expected.States());
    for (std::int64_t row = 0; row < base.Rows(); ++row) {
      SCodeRow a;
      SCodeRow b;
      base.Copy(row, a);
      expected.Copy(row, b);
      EXPECT_TRUE(a.mean == b.mean && a.maximum == b.maximum) << row;
    }
  }

  void SaveFilled() const {
    CBaseLevels base(kFrames);
    Fill(base);
    ASSERT_TRUE(Cache().Save(base));
  }

  bool Loads() const {
    CBaseLevels base(kFrames);
    return Cache().Load(base);
  }

  std::vector<std::string> Names() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(PathOf(m_folder / "cache/overviews"))) {
      names.push_back(Utf8Of(entry.path().filename()));
    }
    return names;
  }

  CTempFolder m_folder;
  CRecordingSet m_recording;
};

TEST_F(OverviewCacheTest, WhatWasSavedComesBackAndNothingElseIsLeft) {
  EXPECT_FALSE(Loads()) << "nothing is there yet";
  SaveFilled();
  CBaseLevels base(kFrames);
  ASSERT_TRUE(Cache().Load(base));
  ExpectFilled(base);
  EXPECT_THAT(Names(), ElementsAre(platform::NameOf(Cache().Path())));
}

TEST_F(OverviewCacheTest, BelongsToPathsSizesAndTimesOfChange) {
  SaveFilled();
  const CRecordingSet saved = m_recording;
  const auto without = [&](auto change) {
    m_recording = saved;
    change(m_recording);
    return !Loads();
  };
  EXPECT_TRUE(without([](auto& set) { set.files[0].strPath = "b.wav"; }));
  EXPECT_TRUE(without([](auto& set) { ++set.files[0].stamp.nSize; }));
  EXPECT_TRUE(without([](auto& set) { ++set.files[0].stamp.nModified; }));
  EXPECT_TRUE(without([](auto& set) { set.files.push_back(set.files[0]); }));
  EXPECT_TRUE(without([](auto& set) { set.kind.dFullScale = 32'768; }));
  // Another part of the same file.
  EXPECT_TRUE(without([](auto& set) { set.files[0].layout = SSampleLayout(8, 100); }));
  EXPECT_FALSE(without([](auto&) {}));
}

TEST_F(OverviewCacheTest, WithoutAFolderNothingIsKept) {
  CBaseLevels base(kFrames);
  const COverviewCache cache("", kRoomy, m_recording);
  EXPECT_FALSE(cache.Save(base));
  EXPECT_FALSE(cache.Load(base));
}

TEST_F(OverviewCacheTest, FolderThatCannotBeHasNoEffect) {
  WriteWholeFile(m_folder / "cache", "a file");
  CBaseLevels base(kFrames);
  EXPECT_FALSE(Cache().Save(base));
  EXPECT_FALSE(Cache().Load(base));
}

TEST_F(OverviewCacheTest, FileThatWasCutAnywhereIsNotBelieved) {
  SaveFilled();
  const std::string whole = ReadWholeFile(Cache().Path());
  for (std::size_t size = 0; size < whole.size(); size += size < 400 ? 1 : 997) {
    WriteWholeFile(Cache().Path(), whole.substr(0, size));
    ASSERT_FALSE(Loads()) << size;
  }
  WriteWholeFile(Cache().Path(), whole + '\0');
  EXPECT_FALSE(Loads());
}

TEST_F(OverviewCacheTest, FileInWhichAnyByteIsAnotherIsNotBelieved) {
  SaveFilled();
  const std::string whole = ReadWholeFile(Cache().Path());
  for (std::size_t place = 0; place < whole.size(); place += place < 400 ? 1 : 619) {
    std::string changed = whole;
    changed[place] = static_cast<char>(changed[place] ^ (1 << place % 8));
    WriteWholeFile(Cache().Path(), changed);
    ASSERT_FALSE(Loads()) << place;
  }
  for (std::size_t place = whole.size() - 16; place < whole.size(); ++place) {
    std::string changed = whole;
    changed[place] = static_cast<char>(~changed[place]);
    WriteWholeFile(Cache().Path(), changed);
    ASSERT_FALSE(Loads()) << place;
  }
}

TEST_F(OverviewCacheTest, HostileSizesCostNothing) {
  SaveFilled();
  const std::string whole = ReadWholeFile(Cache().Path());
  for (const std::size_t field : {8U, 16U, 24U, 32U, 40U}) {
    for (const std::int64_t value : {std::int64_t{-1}, std::int64_t{0}, std::int64_t{1} << 40, INT64_MAX, INT64_MIN}) {
      std::string changed = whole;
      std::memcpy(&changed[field], &value, sizeof(value));
      WriteWholeFile(Cache().Path(), changed);
      EXPECT_FALSE(Loads()) << field << ": " << value;
    }
  }
}

// The sum is right, and what it holds cannot be.
TEST_F(OverviewCacheTest, StatesThatThereAreNotAreNotBelieved) {
  SaveFilled();
  std::string changed = ReadWholeFile(Cache().Path());
  const std::size_t states = changed.size() - 8 - 5 * 2 * kBaseBins - 50;
  ASSERT_EQ(changed[states + 1], 1);
  for (const auto& [place, state] : {std::pair<std::size_t, char>{1, 9}, {1, 0}, {0, 1}}) {
    std::string lie = changed;
    lie[states + place] = state;
    CCheckSum sum;
    sum.Add(lie.data(), lie.size() - 8);
    const std::uint64_t value = sum.Value();
    std::memcpy(&lie[lie.size() - 8], &value, sizeof(value));
    WriteWholeFile(Cache().Path(), lie);
    EXPECT_FALSE(Loads()) << place << ": " << int{state};
  }
}

TEST_F(OverviewCacheTest, OldestGoFirstWhenRoomIsUsedUpAndStrangersStay) {
  const std::string folder = m_folder / "cache/overviews";
  std::filesystem::create_directories(PathOf(folder));
  const auto put = [&](const std::string& name, std::size_t bytes, int hoursAgo) {
    WriteWholeFile(folder + "/" + name, std::string(bytes, 'x'));
    std::filesystem::last_write_time(PathOf(folder + "/" + name),
                                     std::filesystem::file_time_type::clock::now() - std::chrono::hours(hoursAgo));
  };
  put("old.overview", 50'000, 30);
  put("newer.overview", 50'000, 2);
  put("oldest.overview", 50'000, 40);
  put("killed.overview.part", 50'000, 1);
  put("notes.txt", 500'000, 50);
  CBaseLevels base(kFrames);
  Fill(base);
  const COverviewCache cache = Cache(100'000);
  ASSERT_TRUE(cache.Save(base));  // takes 41 kB
  EXPECT_THAT(Names(), testing::UnorderedElementsAre(platform::NameOf(cache.Path()), "newer.overview", "notes.txt"));
}

TEST_F(OverviewCacheTest, WhatAKillLeftIsWrittenOver) {
  SaveFilled();
  std::filesystem::remove(PathOf(Cache().Path()));
  WriteWholeFile(Cache().Path() + ".part", "half of it");
  SaveFilled();
  EXPECT_TRUE(Loads());
  EXPECT_THAT(Names(), ElementsAre(platform::NameOf(Cache().Path())));
}

TEST(CheckSum, IsTheSameHoweverBytesAreCut) {
  std::string bytes;
  for (int i = 0; i < 1000; ++i) bytes.push_back(static_cast<char>(i * 37));
  CCheckSum whole;
  whole.Add(bytes.data(), bytes.size());
  for (const std::size_t part : {1U, 7U, 31U, 32U, 33U, 100U}) {
    CCheckSum sum;
    for (std::size_t i = 0; i < bytes.size(); i += part) sum.Add(&bytes[i], std::min(part, bytes.size() - i));
    EXPECT_EQ(sum.Value(), whole.Value()) << part;
  }
  CCheckSum longer = whole;
  longer.Add("", 1);
  EXPECT_NE(longer.Value(), whole.Value()) << "a zero more";
}

TEST_F(OverviewCacheTest, SecondOpeningShowsTheWholePictureWithoutReading) {
  SMadeUp madeUp{.nFrames = 8 << 20, .tones = {{.dFrequency = 100e3}}, .dNoise = 0.01};
  const SSpectrumView view = Everything(madeUp, 200, 100);
  const auto first = CWatchedOverview(madeUp, m_folder / "cache").WaitForComplete(view);
  ASSERT_NE(first, nullptr);
  const std::int64_t read = madeUp.nFramesRead;
  madeUp.bHeld = true;
  CWatchedOverview again(madeUp, m_folder / "cache");
  const auto second = again.WaitForComplete(view);
  madeUp.bHeld = false;
  ASSERT_NE(second, nullptr);
  EXPECT_TRUE(second->mean == first->mean && second->maximum == first->maximum);
  EXPECT_EQ(madeUp.nFramesRead, read);
  EXPECT_EQ(again->Progress(), 1.0);
}

TEST_F(OverviewCacheTest, OverviewThatIsClosedBeforeItIsCompleteGoesOnWhereItWas) {
  SMadeUp madeUp{.nFrames = 64LL * 4096 * 8192};
  {
    CWatchedOverview overview(madeUp, m_folder / "cache");
    overview->Pause(true);
    ASSERT_NE(overview.WaitFor(Everything(madeUp, 20, 40),
                               [](const auto& picture) { return picture.rows[39] == ERowKnown::Stretches; }),
              nullptr);
  }
  madeUp.bHeld = true;
  CWatchedOverview again(madeUp, m_folder / "cache");
  again->Pause(true);
  EXPECT_NE(again.WaitFor(Everything(madeUp, 20, 40),
                          [](const auto& picture) { return picture.rows[39] == ERowKnown::Stretches; }),
            nullptr);
  madeUp.bHeld = false;
}

TEST_F(OverviewCacheTest, BrokenFileIsMadeAnew) {
  SMadeUp madeUp{.nFrames = 1 << 20, .dNoise = 0.01};
  const SSpectrumView view = Everything(madeUp, 200, 100);
  const auto first = CWatchedOverview(madeUp, m_folder / "cache").WaitForComplete(view);
  ASSERT_NE(first, nullptr);
  const std::string path = COverviewCache(m_folder / "cache", kRoomy, madeUp.Recording()).Path();
  std::string bytes = ReadWholeFile(path);
  bytes[bytes.size() / 2] = static_cast<char>(~bytes[bytes.size() / 2]);
  WriteWholeFile(path, bytes);
  const auto second = CWatchedOverview(madeUp, m_folder / "cache").WaitForComplete(view);
  ASSERT_NE(second, nullptr);
  EXPECT_TRUE(second->mean == first->mean && second->maximum == first->maximum);
  EXPECT_NE(ReadWholeFile(path), bytes);
}

}  // namespace
}  // namespace carvello::test
