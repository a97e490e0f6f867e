// Jobs that compute some of an entry's samples only: the bits of the job that computes them all.
#include "engine/output_stretch.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <filesystem>
#include <map>
#include <numeric>
#include <random>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "engine/block_reader.h"
#include "engine/engine_choice.h"
#include "engine/engine_fixture.h"
#include "engine/expected_size.h"
#include "engine/output_rate.h"
#include "engine/spectrum_converter.h"

namespace carvello::test {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;
using Bytes = std::vector<std::uint8_t>;

struct SCase {
  std::uint32_t nInputRate;
  std::uint32_t nOutputRate;
  std::int64_t nShift;
  std::int64_t nStart;
  std::int64_t nTotal;  // 0: to the end of the recording
  std::uint32_t nBits;
};

std::ostream& operator<<(std::ostream& stream, const SCase& given) {
  return stream << given.nInputRate << " to " << given.nOutputRate << ", shift " << given.nShift << ", frames "
                << given.nStart << " + " << given.nTotal;
}

// A set whose stretches end at many places: in the middle of files and at their ends.
const std::vector<std::int64_t> kLengths = {600'001, 2'300'000, 2'200'003};
constexpr std::int64_t kFrames = 5'100'004;

class OutputStretchTest : public EngineTest {
 protected:
  OutputStretchTest() {
    EXPECT_EQ(BindDsp(m_dsp, DspLibraryPath()), 1U) << DspLibraryPath();
    std::int64_t frames = 0;
    for (const std::int64_t length : kLengths) {
      m_files.push_back(WriteNumbered(std::to_string(frames) + ".wav", frames, length));
      frames += length;
    }
    m_input = CInputFrames(DescribeSet(m_files));
  }

  OutputEntry Whole(const SCase& given) const {
    OutputEntry entry = MakeEntry("output.wav", given.nStart, given.nTotal);
    entry.nInputSampleRate = given.nInputRate;
    entry.nOutputSampleRate = given.nOutputRate;
    entry.nOutputFrequency = entry.nInputFrequency + given.nShift;
    entry.nBitsPerSample = given.nBits;
    return entry;
  }

  // The job in which an entry is alone.
  SWholeJob JobOf(const OutputEntry& whole) const { return {whole.nStartSample, m_input.Late(whole.nStartSample)}; }

  std::int64_t SamplesOf(const OutputEntry& whole) const {
    return OutputFramesDue(m_input.Due(whole, JobOf(whole).llLate), whole.nInputSampleRate, whole.nOutputSampleRate);
  }

  OutputEntry Stretch(const OutputEntry& whole, EEngine engine, std::int64_t first, std::int64_t end) const {
    std::string problem;
    const auto entry = StretchOf(whole, engine, JobOf(whole), first, end, m_input, m_dsp, problem);
    EXPECT_TRUE(entry.has_value()) << problem;
    return entry.value_or(whole);
  }

  std::vector<SOutputResult> Run(const std::vector<OutputEntry>& entries, const std::vector<EEngine>& engines) {
    m_engines = engines;
    for (const OutputEntry& entry : entries) std::filesystem::remove(entry.strFileName);
    RunJob(m_files, entries, 4 * kFrames);
    return m_reader.Results();
  }

  SOutputResult Run(const OutputEntry& entry, EEngine engine) { return Run({{entry}}, {engine}).at(0); }

  static Bytes Data(const SOutputResult& result) {
    EXPECT_TRUE(result.bOk) << result.strError;
    return result.files.empty() ? Bytes() : ChunkBody(ReadBytes(result.files.front()), "data");
  }

  static std::vector<EEngine> EnginesFor(const OutputEntry& entry) {
    if (CSpectrumConverter::CanConvert(ConversionOf(entry))) return {EEngine::Library, EEngine::Spectrum};
    return {EEngine::Library};
  }

  // The stretches [0, ends[0]), [ends[0], ends[1]), ... each in a job of its own, against the whole in one.
  void ExpectTogetherTheWhole(const OutputEntry& whole, EEngine engine, const std::vector<std::int64_t>& ends) {
    SCOPED_TRACE(EngineName(engine));
    const Bytes expected = Data(Run(whole, engine));
    ASSERT_EQ(expected.size(), static_cast<std::size_t>(ends.back() * 2 * (whole.nBitsPerSample / 8)));
    Bytes together;
    std::map<std::int64_t, std::int64_t> marks;
    std::int64_t nFirst = 0;
    for (const std::int64_t nEnd : ends) {
      const OutputEntry entry = Stretch(whole, engine, nFirst, nEnd);
      const SOutputResult result = Run(entry, engine);
      EXPECT_EQ(result.nFramesDue, nEnd - nFirst);
      const Bytes data = Data(result);
      EXPECT_EQ(data.size(), static_cast<std::size_t>(ExpectedBytes(entry, m_input)));
      together.insert(together.end(), data.begin(), data.end());
      for (const SStretchMark& mark : result.marks) {
        marks[mark.llFrame] = std::max(marks[mark.llFrame], mark.nOutput);
      }
      nFirst = nEnd;
    }
    EXPECT_TRUE(together == expected);

    const SOutputResult atOnce = Run(Stretch(whole, engine, 0, ends.back()), engine);
    EXPECT_TRUE(Data(atOnce) == expected);
    std::vector<SStretchMark> found;
    for (const auto& [llFrame, nOutput] : marks) found.push_back({llFrame, nOutput});
    EXPECT_EQ(found, atOnce.marks);
    EXPECT_THAT(found, Not(IsEmpty()));
  }

  std::vector<std::string> m_files;
  CInputFrames m_input{{}, {}};
};

class StretchesOf : public OutputStretchTest, public testing::WithParamInterface<SCase> {};

INSTANTIATE_TEST_SUITE_P(Cases, StretchesOf,
                         testing::Values(SCase{2'400'000, 44'100, 123'457, 0, 0, 16},
                                         SCase{2'400'000, 48'000, -600'000, 77'777, 4'900'001, 32},
                                         SCase{2'400'000, 12'345, 1, 700'001, 0, 16},
                                         SCase{2'400'000, 500, -31'007, 12'345, 3'000'000, 32},
                                         SCase{1'999'993, 7'919, 499'979, 1, 4'000'000, 16},
                                         SCase{10'000'000, 1'200'000, 2'345'678, 0, 0, 16},       // decimates by 8
                                         SCase{2'400'000, 1'500'000, 0, 599'999, 3'000'000, 16},  // by 2
                                         SCase{1'000'000, 999'999, 7, 0, 700'000, 32},
                                         SCase{1'000'000, 1'000'000, 250'000, 2'900'000, 0, 32},
                                         SCase{1'000'000, 10'000, 123'450, 3'100'000, 0, 32},
                                         SCase{1'000'000, 10'000, 123'450, 600'001, 0, 32},  // begins late
                                         SCase{1'000'000, 10'000, 123'450, 4'999'000, 0, 32}));

TEST_P(StretchesOf, TogetherAreTheBytesAndTheMarksOfTheWhole) {
  const OutputEntry whole = Whole(GetParam());
  const std::int64_t nDue = SamplesOf(whole);
  ASSERT_GT(nDue, 20);
  for (const EEngine engine : EnginesFor(whole)) {
    ExpectTogetherTheWhole(whole, engine, {1, 2, nDue / 3, nDue / 3 + 1, nDue / 2, nDue - 1, nDue});
  }
}

TEST_F(OutputStretchTest, OfAnyRatesPlacesAndCutsTogetherAreTheWhole) {
  constexpr int kTries = 8;
  std::mt19937_64 random(20'26);
  const auto any = [&](std::int64_t from, std::int64_t to) {
    return from + static_cast<std::int64_t>(random() % static_cast<std::uint64_t>(to - from + 1));
  };
  for (int i = 0; i < kTries; ++i) {
    const auto nInputRate = static_cast<std::uint32_t>(any(50'000, 20'000'000));
    const auto nOutputRate =
        static_cast<std::uint32_t>(nInputRate / std::pow(2.0, static_cast<double>(any(0, 1'100)) / 100));
    const std::int64_t nStart = any(0, 3'500'000);
    const SCase given{nInputRate,
                      nOutputRate,
                      any(-10'000'000, 10'000'000),
                      nStart,
                      any(1'000'000, 3'000'000),
                      i % 2 == 0 ? 16U : 32U};
    const OutputEntry whole = Whole(given);
    const std::int64_t nDue = SamplesOf(whole);
    std::set<std::int64_t> ends = {nDue};
    for (int cut = 0; cut < 3; ++cut) ends.insert(any(1, nDue));
    std::ostringstream text;
    text << given << ", cut at"
         << std::accumulate(ends.begin(), ends.end(), std::string(),
                            [](const auto& before, auto end) { return before + " " + std::to_string(end); });
    SCOPED_TRACE(text.str());
    for (const EEngine engine : EnginesFor(whole)) ExpectTogetherTheWhole(whole, engine, {ends.begin(), ends.end()});
  }
}

// Samples that pass at the input's rate wait for nothing, so the marks tell where the stretches end.
TEST_F(OutputStretchTest, MarksStandWhereTheWholeJobEndsItsStretches) {
  const OutputEntry whole = Whole({1'000'000, 1'000'000, 0, 100, 0, 16});
  std::vector<SStretchMark> expected;
  for (const std::int64_t llFrame :
       {600'001LL, 600'001LL + kStretchFrames, 2'900'001LL, 2'900'001LL + kStretchFrames, 5'100'004LL}) {
    expected.push_back({llFrame, llFrame - 100});
  }
  EXPECT_EQ(Run(Stretch(whole, EEngine::Library, 0, SamplesOf(whole)), EEngine::Library).marks, expected);
  // One that begins to read in the middle keeps to them, and tells of no place before its own samples.
  const auto later = Run(Stretch(whole, EEngine::Library, 3'000'000, 5'000'000), EEngine::Library).marks;
  EXPECT_EQ(later, std::vector{expected[3]});
}

TEST_F(OutputStretchTest, WholeEntriesHaveNoMarks) {
  EXPECT_THAT(Run(Whole({1'000'000, 10'000, 0, 0, 0, 16}), EEngine::Library).marks, IsEmpty());
}

// As a task has them: all entries of a job, both roads, each over its own samples.
TEST_F(OutputStretchTest, StretchesOfManyEntriesShareAJob) {
  const SCase cases[] = {{1'000'000, 10'000, 123'457, 300'000, 0, 16},
                         {1'000'000, 12'345, -100'000, 250'001, 3'000'000, 32},
                         {1'000'000, 700'000, 0, 2'000'000, 0, 16}};
  std::vector<OutputEntry> wholes;
  for (const SCase& given : cases) {
    wholes.push_back(Whole(given));
    wholes.back().strFileName = Path("whole" + std::to_string(wholes.size()) + ".wav");
  }
  const std::vector<EEngine> engines = {EEngine::Spectrum, EEngine::Spectrum, EEngine::Library};
  const std::vector<SOutputResult> expected = Run(wholes, engines);
  const SWholeJob job{250'001, 0};
  std::vector<OutputEntry> stretches;
  for (std::size_t i = 0; i < wholes.size(); ++i) {
    const std::int64_t nDue = SamplesOf(wholes[i]);
    std::string problem;
    const auto entry = StretchOf(wholes[i], engines[i], job, nDue / 2, nDue / 2 + 3'000, m_input, m_dsp, problem);
    ASSERT_TRUE(entry) << problem;
    stretches.push_back(*entry);
    stretches.back().strFileName = Path("part" + std::to_string(i) + ".wav");
  }
  const std::vector<SOutputResult> results = Run(stretches, engines);
  for (std::size_t i = 0; i < wholes.size(); ++i) {
    const Bytes whole = Data(expected[i]);
    const Bytes part = Data(results[i]);
    const auto nFrameBytes = 2 * wholes[i].nBitsPerSample / 8;
    ASSERT_THAT(part, SizeIs(3'000 * nFrameBytes));
    const auto begin = whole.begin() + SamplesOf(wholes[i]) / 2 * nFrameBytes;
    EXPECT_TRUE(std::equal(part.begin(), part.end(), begin)) << i;
  }
}

TEST_F(OutputStretchTest, ReadsNoMoreThanAStretchOfInputInFrontAndTheFiltersBehind) {
  const OutputEntry whole = Whole({1'000'000, 10'000, 0, 0, 0, 16});
  const OutputEntry entry = Stretch(whole, EEngine::Library, 40'000, 40'010);
  EXPECT_EQ(entry.stretch->llReadFrom, 2'900'001 - 2'300'000 + kStretchFrames);
  EXPECT_NEAR(static_cast<double>(entry.nStartSample), 4'000'000.0 - 5'500.0, 5'500.0);
  EXPECT_LT(entry.nTotalSamples, 60'000);
  EXPECT_FALSE(entry.stretch->bEndsEntry);
}

// A job that begins to read with the first frame of a later file lets all of its entries begin late.
TEST_F(OutputStretchTest, NeverReadsFromTheFirstFrameOfALaterFile) {
  const OutputEntry whole = Whole({1'000'000, 1'000'000, 0, 0, 0, 16});
  EXPECT_EQ(Stretch(whole, EEngine::Library, 700'000, 700'001).stretch->llReadFrom, 0);
  EXPECT_EQ(Stretch(whole, EEngine::Library, 600'001, 600'002).stretch->llReadFrom, 0);
  const std::int64_t llEnd = 600'001 + std::int64_t{kStretchFrames};
  EXPECT_EQ(Stretch(whole, EEngine::Library, 2'900'001, 2'900'002).stretch->llReadFrom, llEnd);
  EXPECT_EQ(Stretch(whole, EEngine::Library, llEnd, llEnd + 1).stretch->llReadFrom, llEnd);
  EXPECT_EQ(Stretch(whole, EEngine::Library, llEnd - 1, llEnd).stretch->llReadFrom, 0);
}

TEST_F(OutputStretchTest, WhatIsNoStretchIsRefusedWithAReason) {
  const OutputEntry whole = Whole({1'000'000, 10'000, 0, 1'000'000, 500'000, 16});
  const auto refusal = [&](const OutputEntry& entry, const SWholeJob& job, std::int64_t first, std::int64_t end) {
    std::string problem;
    EXPECT_FALSE(StretchOf(entry, EEngine::Library, job, first, end, m_input, m_dsp, problem));
    return problem;
  };
  const SWholeJob job = JobOf(whole);
  for (const auto& [first, end] : {std::pair{-1, 10}, {10, 10}, {11, 10}, {0, 5'001}, {5'000, 5'001}}) {
    EXPECT_THAT(refusal(whole, job, first, end), HasSubstr("none of the 5000")) << first << " to " << end;
  }
  EXPECT_THAT(refusal(whole, {1'000'000, 4'000'000}, 0, 10), HasSubstr("begin late"));
  OutputEntry wider = whole;
  wider.nOutputSampleRate = 1'000'001;
  EXPECT_THAT(refusal(wider, job, 0, 1), HasSubstr("none of the 0"));
  m_dsp.DownconvertResume = nullptr;
  EXPECT_THAT(refusal(whole, job, 0, 10), HasSubstr("cannot begin within"));
}

TEST_F(OutputStretchTest, InputThatBeginsElsewhereThanItsSamplesFailsTheEntry) {
  OutputEntry entry = Stretch(Whole({1'000'000, 10'000, 0, 0, 0, 16}), EEngine::Library, 10'000, 10'100);
  ++entry.nStartSample;
  const SOutputResult result = Run(entry, EEngine::Library);
  EXPECT_FALSE(result.bOk);
  EXPECT_THAT(result.strError, HasSubstr("does not begin where"));
}

TEST_F(OutputStretchTest, InputThatEndsTooEarlyFailsTheEntry) {
  for (const EEngine engine : {EEngine::Library, EEngine::Spectrum}) {
    OutputEntry entry = Stretch(Whole({1'000'000, 10'000, 0, 0, 0, 16}), engine, 10'000, 10'100);
    entry.nTotalSamples = 11'000;
    const SOutputResult result = Run(entry, engine);
    EXPECT_FALSE(result.bOk);
    EXPECT_THAT(result.strError, HasSubstr("of the 100 samples")) << EngineName(engine);
  }
}

TEST_F(OutputStretchTest, StretchesGoByTheRoadOfTheirEntryWhateverTheSetting) {
  const OutputEntry whole = Whole({1'000'000, 10'000, 0, 0, 0, 16});
  const OutputEntry bySpectrum = Stretch(whole, EEngine::Spectrum, 0, 10);
  const OutputEntry byLibrary = Stretch(whole, EEngine::Library, 0, 10);
  for (const auto setting : {EEngineSetting::Auto, EEngineSetting::Library, EEngineSetting::Spectrum}) {
    EXPECT_EQ(ChooseEngines({&bySpectrum, &byLibrary}, setting, kFrames).engines,
              (std::vector{EEngine::Spectrum, EEngine::Library}));
  }
  EXPECT_EQ(ChooseEngines({&bySpectrum, &whole}, EEngineSetting::Library, kFrames).engines,
            (std::vector{EEngine::Spectrum, EEngine::Library}));
}

}  // namespace
}  // namespace carvello::test
