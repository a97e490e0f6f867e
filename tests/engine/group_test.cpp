// Entries in groups: several on one thread, beside others that have a thread each, on recordings whose frames carry
// their own numbers.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstring>
#include <mutex>
#include <set>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "engine/engine_fixture.h"
#include "engine/library_converter.h"

namespace carvello::test {
namespace {

using testing::Contains;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

constexpr std::int64_t kBlock = kBlockFrames;

// The samples of a numbered recording from `first` on; zeros outside `begin` and `end`.
std::vector<SComplex> Numbered(std::int64_t first, std::int64_t count, std::int64_t begin, std::int64_t end) {
  std::vector<SComplex> samples(static_cast<std::size_t>(count));
  for (std::int64_t i = 0; i < count; ++i) {
    const std::int64_t frame = first + i;
    if (frame < begin || frame >= end) continue;
    samples[static_cast<std::size_t>(i)] = {static_cast<float>(NumberedI(frame)), static_cast<float>(NumberedQ(frame))};
  }
  return samples;
}

bool Same(const SComplex* a, const SComplex* b, std::int64_t count) {
  return std::memcmp(a, b, static_cast<std::size_t>(count) * sizeof(SComplex)) == 0;
}

std::mutex foundLock;
std::vector<std::string> faultsFound;
std::set<std::int64_t> framesFound;
std::int64_t firstRead = 0;  // of the recording

void Found(const std::string& fault) {
  const std::lock_guard guard(foundLock);
  faultsFound.push_back(fault);
}

// Passes samples through as the library does, and holds what it is given against the recording.
class CCheckingConverter final : public IEntryConverter {
 public:
  explicit CCheckingConverter(const DspBinding& dsp) : m_library(dsp) {}

  std::optional<std::string> Begin(const SConversion& conversion) override { return m_library.Begin(conversion); }
  std::uint32_t RateOut() const override { return m_library.RateOut(); }
  std::optional<std::uint32_t> Delay() const override { return m_library.Delay(); }
  std::span<const SComplex> ConvertSilence(CConverterWork& work) override { return m_library.ConvertSilence(work); }

  std::span<const SComplex> Convert(const SBlockPart& part, CConverterWork& work) override {
    const SInputBlock& block = part.block;
    const std::int64_t first = block.llPosition - kHistoryFrames;
    const std::int64_t count = kHistoryFrames + block.nCount;
    const auto samples = Numbered(first, count, firstRead, first + count);
    if (!Same(samples.data(), block.pSamples - kHistoryFrames, count)) Found("samples of the block, or in front of it");
    CheckFrames(block, work);
    return m_library.Convert(part, work);
  }

 private:
  void CheckFrames(const SInputBlock& block, CConverterWork& work) {
    CSpectrumBlock& spectrum = *block.pSpectrum;
    if (spectrum.FirstFrame() != FirstIncompleteFrame(block.llPosition) ||
        spectrum.EndFrame() != FirstIncompleteFrame(block.llPosition + block.nCount)) {
      Found("other frames than are complete with the block");
    }
    static const CBlockTransform transform(kFrameSize);
    for (std::int64_t frame = spectrum.FirstFrame(); frame < spectrum.EndFrame(); ++frame) {
      const SComplex* const bins = spectrum.Frame(frame, work);
      {
        const std::lock_guard guard(foundLock);
        if (!framesFound.insert(frame).second) continue;  // one look at each is enough
      }
      const auto samples = Numbered(FrameFirst(frame), kFrameSize, firstRead, FrameEnd(frame));
      std::vector<SComplex> expected(samples.size());
      std::vector<SComplex> place(transform.WorkSize());
      transform.Forward(samples.data(), expected.data(), place.data());
      if (!Same(bins, expected.data(), kFrameSize)) Found("bins of frame " + std::to_string(frame));
    }
  }

  CLibraryConverter m_library;
};

// Passes samples through, but for the one that was made as number `failing`, which fails at its second block.
class CFailingConverter final : public IEntryConverter {
 public:
  explicit CFailingConverter(const DspBinding& dsp) : m_library(dsp), m_bFails(made++ == failing) {}

  std::optional<std::string> Begin(const SConversion& conversion) override { return m_library.Begin(conversion); }
  std::uint32_t RateOut() const override { return m_library.RateOut(); }
  std::optional<std::uint32_t> Delay() const override { return m_library.Delay(); }
  std::span<const SComplex> ConvertSilence(CConverterWork& work) override { return m_library.ConvertSilence(work); }
  std::span<const SComplex> Convert(const SBlockPart& part, CConverterWork& work) override {
    if (m_bFails && m_nBlocks++ == 1) throw std::runtime_error("this one fails");
    return m_library.Convert(part, work);
  }

  inline static int made = 0;
  inline static int failing = 0;

 private:
  CLibraryConverter m_library;
  bool m_bFails;
  int m_nBlocks = 0;
};

template <typename TConverter>
std::unique_ptr<IEntryConverter> Make(EEngine engine, const DspBinding& dsp) {
  if (engine == EEngine::Library) return std::make_unique<CLibraryConverter>(dsp);
  return std::make_unique<TConverter>(dsp);
}

class GroupTest : public EngineTest {
 protected:
  GroupTest() {
    faultsFound.clear();
    framesFound.clear();
    firstRead = 0;
    CFailingConverter::made = 0;
    CFailingConverter::failing = -1;
    m_reader.SetConverterMaker(Make<CLibraryConverter>);
  }

  // All by the spectrum, but for every `library`-th.
  void Group(std::size_t entries, std::size_t groups, std::size_t library = 0) {
    m_reader.SetGroups(groups);
    m_engines.assign(entries, EEngine::Spectrum);
    for (std::size_t i = 0; library != 0 && i < entries; i += library) m_engines[i] = EEngine::Library;
  }

  std::vector<OutputEntry> Entries(std::size_t count, std::int64_t start, std::int64_t total) const {
    std::vector<OutputEntry> entries;
    for (std::size_t i = 0; i < count; ++i) entries.push_back(MakeEntry(Name(i), start, total));
    return entries;
  }
  static std::string Name(std::size_t entry) { return "out" + std::to_string(entry) + ".wav"; }
};

TEST_F(GroupTest, GroupsAndSingleEntriesOfOneJobAllGetEveryFrame) {
  constexpr std::int64_t kFrames = 3 * kBlock + 1'234;
  const auto input = WriteNumbered("in.wav", 0, kFrames);
  auto entries = Entries(23, 0, 0);
  entries[4] = MakeEntry(Name(4), kBlock + 17, 1'000);  // in a group
  entries[5] = MakeEntry(Name(5), kBlock - 1, 2);       // alone
  entries[6] = MakeEntry(Name(6), 2 * kBlock, 0);       // begins with a block
  Group(entries.size(), 3, 5);
  RunJob({input}, entries, 4 * kFrames);
  for (std::size_t i = 0; i < entries.size(); ++i) {
    const SOutputResult& result = m_reader.Results()[i];
    EXPECT_TRUE(result.bOk) << result.strError;
    EXPECT_EQ(result.engine, i % 5 == 0 ? EEngine::Library : EEngine::Spectrum);
    const std::int64_t start = entries[i].nStartSample;
    EXPECT_FRAMES(Path(Name(i)), start, entries[i].nTotalSamples != 0 ? entries[i].nTotalSamples : kFrames - start);
    EXPECT_EQ(m_target.Count("Writer [" + std::to_string(i) + "]> Closing"), 1U);
  }
  EXPECT_EQ(m_target.Count("Reader> Closing 8 writer threads"), 1U) << "five of the library, three groups";
}

TEST_F(GroupTest, GroupsHaveAboutAsMuchToDoEach) {
  std::vector<OutputEntry> entries;
  for (const std::uint32_t rate : {10'000U, 500'000U, 10'000U, 10'000U, 250'000U, 1'000'000U, 250'000U, 10'000U}) {
    entries.push_back(MakeEntry("out.wav", 0, 0));
    entries.back().nOutputSampleRate = rate;
  }
  std::vector<std::unique_ptr<COutputAccount>> accounts;
  for (const OutputEntry& entry : entries) accounts.push_back(std::make_unique<COutputAccount>(entry));
  std::vector<EEngine> engines(entries.size(), EEngine::Spectrum);
  engines[0] = EEngine::Library;
  const auto groupOf = DealToGroups(accounts, engines, 2);
  EXPECT_THAT(groupOf, testing::ElementsAre(0, 1, 0, 1, 1, 0, 1, 0))
      << "1 MHz on one side, what adds up to it opposite";
  EXPECT_EQ(DealToGroups(accounts, engines, 1), std::vector<std::size_t>(entries.size(), 0));
}

TEST_F(GroupTest, ThereAreNoMoreGroupsThanEntries) {
  const auto input = WriteNumbered("in.wav", 0, 5'000);
  Group(2, 8);
  RunJob({input}, Entries(2, 0, 0), 20'000);
  EXPECT_EQ(m_target.Count("Reader> Closing 2 writer threads"), 1U);
  EXPECT_FRAMES(Path(Name(1)), 0, 5'000);
}

// Blocks are short at the ends of files, some far shorter than a frame.
TEST_F(GroupTest, FramesOfSpectrumAreThoseOfTheRecordingWhateverTheBlocks) {
  std::vector<std::string> files;
  std::int64_t frames = 0;
  for (const std::int64_t length : {kBlock + 5'000, std::int64_t{1}, std::int64_t{100}, std::int64_t{20'000}, kBlock}) {
    files.push_back(WriteNumbered(std::to_string(files.size()) + ".wav", frames, length));
    frames += length;
  }
  m_reader.SetConverterMaker(Make<CCheckingConverter>);
  Group(4, 3, 0);
  RunJob(files, Entries(4, 0, 0), 4 * frames);
  EXPECT_THAT(faultsFound, IsEmpty());
  EXPECT_THAT(framesFound, SizeIs(static_cast<std::size_t>(FirstIncompleteFrame(frames) - FirstIncompleteFrame(0))));
  EXPECT_FRAMES(Path(Name(3)), 0, frames);
}

TEST_F(GroupTest, WhatWasNotReadCountsAsSilenceInFrontOfTheFirstBlock) {
  const auto input = WriteNumbered("in.wav", 0, 2 * kBlock);
  firstRead = 30'000;
  m_reader.SetConverterMaker(Make<CCheckingConverter>);
  Group(2, 2);
  RunJob({input}, Entries(2, 30'000, 0), 8 * kBlock);
  EXPECT_THAT(faultsFound, IsEmpty());
  EXPECT_EQ(*framesFound.begin(), FirstIncompleteFrame(30'000)) << "the grid stands where it always does";
  EXPECT_FRAMES(Path(Name(1)), 30'000, 2 * kBlock - 30'000);
}

TEST_F(GroupTest, EntryThatFailsLeavesTheOthersOfItsGroupGoing) {
  const auto input = WriteNumbered("in.wav", 0, 3 * kBlock);
  m_reader.SetConverterMaker(Make<CFailingConverter>);
  CFailingConverter::failing = 2;
  auto entries = Entries(6, 0, 0);
  entries[4].strFileName = Path("no such folder") + "/out4.wav";
  entries[5].nOutputSampleRate = 0;
  Group(6, 1);
  RunJob({input}, entries, 12 * kBlock);
  const auto& results = m_reader.Results();
  for (const std::size_t i : {0U, 1U, 3U}) {
    EXPECT_TRUE(results[i].bOk) << results[i].strError;
    EXPECT_FRAMES(Path(Name(i)), 0, 3 * kBlock);
  }
  EXPECT_EQ(results[2].strError, "this one fails");
  EXPECT_FRAMES(Path(Name(2)), 0, kBlock);
  EXPECT_FALSE(results[4].bOk);
  EXPECT_EQ(results[5].strError, "a bandwidth of 0 Hz cannot be cut");
}

TEST_F(GroupTest, GroupThatIsBehindHoldsTheReaderUp) {
  const auto input = WriteNumbered("in.wav", 0, 8 * kBlock);
  SPassThrough::Hold(2);
  Group(4, 2);
  const auto entries = Entries(4, 0, 0);
  StartJob(Describe({input}), entries, 32 * kBlock);
  const auto blocks = [this] { return m_target.Progress().size(); };
  for (std::size_t before = 0; blocks() == 0 || blocks() != before;) {
    before = blocks();
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
  }
  EXPECT_LE(blocks(), 4U) << "three ahead of the group, and one in the reader's hand";
  SPassThrough::LetAllGo();
  FinishJob();
  for (std::size_t i = 0; i < entries.size(); ++i) EXPECT_FRAMES(Path(Name(i)), 0, 8 * kBlock);
}

TEST_F(GroupTest, StopFinishesTheFilesOfAllEntriesOfAGroup) {
  const auto input = WriteNumbered("in.wav", 0, 10 * kBlock);
  SPassThrough::Hold(1);
  auto entries = Entries(30, 0, 0);
  entries[29] = MakeEntry(Name(29), 10, 100);
  Group(entries.size(), 2, 7);
  StartJob(Describe({input}), entries, 40 * kBlock);
  while (m_reader.EntryStates()[29].nProgress < 10'000) std::this_thread::sleep_for(std::chrono::milliseconds(1));
  m_reader.PostStop();
  SPassThrough::LetAllGo();
  FinishJob();
  for (std::size_t i = 0; i < 29; ++i) {
    const SOutputResult& result = m_reader.Results()[i];
    EXPECT_EQ(result.strError, "stopped");
    EXPECT_LT(result.nFrames, 10 * kBlock);
    EXPECT_FRAMES(Path(Name(i)), 0, result.nFrames);
  }
  EXPECT_TRUE(m_reader.Results()[29].bOk);
  EXPECT_FRAMES(Path(Name(29)), 10, 100);
}

TEST_F(GroupTest, StopCreatesNoFilesThatAreNotThereYet) {
  const auto input = WriteNumbered("in.wav", 0, 5'000);
  SPassThrough::HoldInit();
  const auto entries = Entries(40, 0, 0);
  Group(entries.size(), 1);
  StartJob(Describe({input}), entries, 20'000);
  m_reader.PostStop();
  while (m_target.Count("Reader> Closing 1 writer threads") == 0) {
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  SPassThrough::LetInitGo(40);
  FinishJob();
  SPassThrough::ForgetInits();
  for (std::size_t i = 0; i < entries.size(); ++i) {
    EXPECT_EQ(m_reader.Results()[i].strError, "stopped");
    EXPECT_EQ(std::filesystem::exists(Path(Name(i))), i == 0) << i;
  }
}

// With every interval over at once, all files of a group are saved behind each block, side by side.
TEST_F(GroupTest, SavingEarlyAndAUsedUpBudgetChangeNoBytes) {
  const auto input = WriteNumbered("in.wav", 0, 4 * kBlock + 77);
  m_reader.SetSaveInterval(std::chrono::milliseconds(0));
  m_reader.BufferBudget().TakeAtAnyRate(CBufferBudget::kBytes);
  auto entries = Entries(12, 0, 0);
  for (OutputEntry& entry : entries) entry.nFileSizeMB = 100;
  Group(entries.size(), 2);
  RunJob({input}, entries, 16 * kBlock);
  for (std::size_t i = 0; i < entries.size(); ++i) {
    ASSERT_TRUE(m_reader.Results()[i].bOk) << m_reader.Results()[i].strError;
    EXPECT_FRAMES(m_reader.Results()[i].files[0], 0, 4 * kBlock + 77);
  }
  EXPECT_EQ(m_reader.BufferBudget().Left(), 0) << "what was taken is given back";
}

TEST_F(GroupTest, SamplesOfAGroupReachTheirFilesWhileNothingMoreComes) {
  const auto input = WriteNumbered("in.wav", 0, 9 * kBlock);
  m_reader.SetSaveInterval(std::chrono::milliseconds(20));
  SPassThrough::Hold(1);
  auto entries = Entries(5, 0, kBlock);
  entries[0] = MakeEntry(Name(0), 0, 0);
  Group(entries.size(), 1, 5);  // the first is alone, and held
  StartJob(Describe({input}), entries, 36 * kBlock);
  for (std::size_t i = 1; i < entries.size(); ++i) {
    std::error_code error;
    while (std::filesystem::file_size(Path(Name(i)), error) < 4 * kBlock || error) {
      std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
  }
  SPassThrough::LetAllGo();
  FinishJob();
  for (std::size_t i = 1; i < entries.size(); ++i) EXPECT_FRAMES(Path(Name(i)), 0, kBlock);
}

}  // namespace
}  // namespace carvello::test
