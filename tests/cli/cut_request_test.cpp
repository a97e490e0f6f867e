#include "cli/cut_request.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/temp_folder.h"

namespace carvello::test {
namespace {

using testing::HasSubstr;

SCutOptions Options() {
  SCutOptions options;
  options.strInput = "in.wav";
  options.strOutput = "out";
  return options;
}

SCutRequest Accepted(const SCutOptions& options) {
  SCutRequest request;
  std::string error;
  EXPECT_TRUE(MakeCutRequest(options, request, error)) << error;
  return request;
}

std::string Refusal(const SCutOptions& options) {
  SCutRequest request;
  std::string error;
  EXPECT_FALSE(MakeCutRequest(options, request, error));
  return error;
}

TEST(CutRequest, TakesEntriesInOrderAndNumbersThem) {
  SCutOptions options = Options();
  options.entries = {"f=7.1M,bw=10k", "f=7.2M,bw=20k"};
  const SCutRequest request = Accepted(options);
  ASSERT_EQ(request.entries.size(), 2U);
  EXPECT_EQ(request.entries[1].strLabel, "--entry 2 (f=7.2M,bw=20k)");
  EXPECT_EQ(request.entries[1].frequency, 7'200'000);
}

TEST(CutRequest, NamesTheEntryThatIsRefused) {
  SCutOptions options = Options();
  options.entries = {"f=7.1M,bw=10k", "f=7.2M,bw=x"};
  EXPECT_THAT(Refusal(options), AllOf(HasSubstr("--entry 2 (f=7.2M,bw=x)"), HasSubstr("Accepted")));
}

TEST(CutRequest, ASequenceTakesTheCommonOptions) {
  SCutOptions options = Options();
  options.sequences = {"900k:920k:10k", "1M:2M:1M"};
  options.strBandwidth = "5k";
  options.strBits = "32";
  options.strSize = "RF64";
  options.strStart = "+1";
  options.strDuration = "5";
  const SCutRequest request = Accepted(options);
  ASSERT_EQ(request.entries.size(), 2U);
  for (const SEntrySpec& spec : request.entries) {
    EXPECT_FALSE(spec.frequency);
    EXPECT_EQ(spec.bandwidth, 5000);
    EXPECT_TRUE(spec.b32Bit);
    EXPECT_EQ(spec.nFileSizeMB, 0U);
    EXPECT_EQ(spec.start->Resolve(0), 1);
    EXPECT_EQ(spec.duration, 5U);
  }
  EXPECT_EQ(request.entries[1].range->nTo, 2'000'000);
  EXPECT_EQ(request.entries[1].strLabel, "--sequence 2 (1M:2M:1M)");
}

TEST(CutRequest, ASequenceNeedsABandwidth) {
  SCutOptions options = Options();
  options.sequences = {"900k:920k:10k"};
  EXPECT_THAT(Refusal(options), HasSubstr("--sequence needs --bw"));
}

TEST(CutRequest, TheCommonOptionsAreCheckedByName) {
  SCutOptions options = Options();
  options.sequences = {"900k:920k:10k"};
  options.strBandwidth = "5q";
  EXPECT_THAT(Refusal(options), AllOf(HasSubstr("--bw \"5q\""), HasSubstr("Accepted")));
}

TEST(CutRequest, TheCommonOptionsAloneAreRefused) {
  SCutOptions options = Options();
  options.entries = {"f=7.1M,bw=10k"};
  options.strBits = "32";
  EXPECT_THAT(Refusal(options), HasSubstr("--bits belongs to --sequence"));
}

TEST(CutRequest, RefusesTooManyEntriesOverAllSequences) {
  SCutOptions options = Options();
  options.strBandwidth = "10";
  options.sequences = {"1:60000:1", "1:60000:1"};
  EXPECT_THAT(Refusal(options), HasSubstr("120000 entries"));
}

TEST(CutRequest, NeedsEntriesAnInputAndAnOutput) {
  SCutOptions options = Options();
  EXPECT_THAT(Refusal(options), HasSubstr("no entries"));
  options.entries = {"f=7.1M,bw=10k"};
  options.strInput.clear();
  EXPECT_THAT(Refusal(options), HasSubstr("INPUT is missing"));
  options.strInput = "in.wav";
  options.strOutput.clear();
  EXPECT_THAT(Refusal(options), HasSubstr("--output is missing"));
}

TEST(CutRequest, TheEngineIsChosenByItselfUnlessItIsNamed) {
  SCutOptions options = Options();
  options.entries = {"f=7.1M,bw=10k"};
  for (const auto& [text, engine] : {std::pair{"", EEngineSetting::Auto},
                                     {"auto", EEngineSetting::Auto},
                                     {"library", EEngineSetting::Library},
                                     {"spectrum", EEngineSetting::Spectrum}}) {
    options.strEngine = text;
    EXPECT_EQ(Accepted(options).engine, engine) << text;
  }
  options.strEngine = "Spectrum";
  EXPECT_EQ(Refusal(options), "--engine Spectrum is unknown. Accepted: auto, library, spectrum");
}

TEST(CutRequest, OverwriteAndSkipExistingExcludeEachOther) {
  SCutOptions options = Options();
  options.entries = {"f=7.1M,bw=10k"};
  options.bOverwrite = true;
  options.bSkipExisting = true;
  EXPECT_THAT(Refusal(options), AllOf(HasSubstr("--overwrite"), HasSubstr("--skip-existing")));
}

class CutRequestWithJobFile : public testing::Test {
 protected:
  CutRequestWithJobFile() {
    WriteWholeFile(m_folder / "jobs.json",
                   R"({"input": "file.wav", "output": "file out", "entries": [{"frequency": "3M", "bandwidth": 10}]})");
    m_options.strJobFile = m_folder / "jobs.json";
  }

  CTempFolder m_folder;
  SCutOptions m_options;
};

TEST_F(CutRequestWithJobFile, TakesWhatTheCommandLineLeavesOpen) {
  const SCutRequest request = Accepted(m_options);
  EXPECT_EQ(request.strInput, "file.wav");
  EXPECT_EQ(request.strOutput, "file out");
  ASSERT_EQ(request.entries.size(), 1U);
  EXPECT_EQ(request.entries[0].frequency, 3'000'000);
}

TEST_F(CutRequestWithJobFile, OneThatCannotBeReadIsNamedWithItsOption) {
  m_options.strJobFile = m_folder / "none.json";
  EXPECT_THAT(Refusal(m_options), AllOf(HasSubstr("--jobs "), HasSubstr("none.json")));
}

TEST_F(CutRequestWithJobFile, TheCommandLineWins) {
  m_options.strInput = "in.wav";
  m_options.strOutput = "out";
  m_options.entries = {"f=7.1M,bw=10k"};
  const SCutRequest request = Accepted(m_options);
  EXPECT_EQ(request.strInput, "in.wav");
  EXPECT_EQ(request.strOutput, "out");
  ASSERT_EQ(request.entries.size(), 1U);
  EXPECT_EQ(request.entries[0].frequency, 7'100'000);
}

TEST_F(CutRequestWithJobFile, WhatItSaysOfItsOwnInputIsNotSaidOfAnother) {
  WriteWholeFile(m_folder / "jobs.json", R"({"input": "a.iq", "output": "o", "rate": "2M", "part": 3,
                                            "entries": [{"frequency": "3M", "bandwidth": 10}]})");
  EXPECT_EQ(Accepted(m_options).given.nSampleRate, 2'000'000U);
  EXPECT_EQ(Accepted(m_options).given.nPart, 3U);
  m_options.strInput = "b.iq";
  EXPECT_EQ(Accepted(m_options).given, SGivenFacts());
  WriteWholeFile(m_folder / "jobs.json", R"({"output": "o", "rate": "2M",
                                            "entries": [{"frequency": "3M", "bandwidth": 10}]})");
  EXPECT_EQ(Accepted(m_options).given.nSampleRate, 2'000'000U);
}

TEST_F(CutRequestWithJobFile, ASequenceReplacesItsEntriesToo) {
  m_options.sequences = {"1M:2M:1M"};
  m_options.strBandwidth = "10";
  const SCutRequest request = Accepted(m_options);
  ASSERT_EQ(request.entries.size(), 1U);
  EXPECT_TRUE(request.entries[0].range);
}

}  // namespace
}  // namespace carvello::test
