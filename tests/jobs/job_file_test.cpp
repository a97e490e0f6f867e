#include "jobs/job_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "jobs/fact_texts.h"
#include "support/temp_folder.h"

namespace carvello::test {
namespace {

using testing::HasSubstr;

SJobFile Read(const std::string& text) {
  SJobFile job;
  std::string error;
  EXPECT_TRUE(ParseJobFile(text, "jobs.json", job, error)) << error;
  return job;
}

std::string Refusal(const std::string& text) {
  SJobFile job;
  std::string error;
  EXPECT_FALSE(ParseJobFile(text, "jobs.json", job, error)) << text;
  EXPECT_THAT(error, HasSubstr("jobs.json"));
  return error;
}

std::string RefusedEntry(const std::string& entry) {
  return Refusal(R"({"entries": [)" + entry + "]}");
}

TEST(JobFile, ReadsEverything) {
  const SJobFile job = Read(R"({"input": "in 000.wav", "output": "out", "entries": [
      {"frequency": 7100000, "bandwidth": 10000, "bits": 32, "size": "RF64",
       "start": "2026-11-21T12:00:00Z", "end": "+90"},
      {"frequency": "7.1M", "bandwidth": "10k", "bits": "16", "duration": 90}]})");
  EXPECT_EQ(job.strInput, "in 000.wav");
  EXPECT_EQ(job.strOutput, "out");
  ASSERT_EQ(job.entries.size(), 2U);
  EXPECT_EQ(job.entries[0].strLabel, "jobs.json: entry 1");
  EXPECT_EQ(job.entries[0].frequency, 7'100'000);
  EXPECT_EQ(job.entries[0].bandwidth, 10'000);
  EXPECT_TRUE(job.entries[0].b32Bit);
  EXPECT_EQ(job.entries[0].nFileSizeMB, 0U);
  EXPECT_EQ(job.entries[0].start->Resolve(0), 1'795'262'400);
  EXPECT_EQ(job.entries[0].end->Resolve(1000), 1090);
  EXPECT_EQ(job.entries[1].frequency, 7'100'000);
  EXPECT_EQ(job.entries[1].bandwidth, 10'000);
  EXPECT_FALSE(job.entries[1].b32Bit);
  EXPECT_EQ(job.entries[1].duration, 90U);
}

TEST(JobFile, ABareNumberAsAMomentCountsFromTheRecordingsStart) {
  const SJobFile job = Read(R"({"entries": [{"frequency": 1, "bandwidth": 10, "start": 5, "end": 60}]})");
  ASSERT_EQ(job.entries.size(), 1U);
  EXPECT_EQ(job.entries[0].start->Resolve(1000), 1005);
  EXPECT_EQ(job.entries[0].end->Resolve(1000), 1060);
}

TEST(JobFile, ReadsWhatOnlyItCanTell) {
  const SJobFile job = Read(R"({"local_time": true, "recorded": "2026-11-21T12:00:00Z", "entries": [
      {"frequency": 1, "bandwidth": 10, "output": "elsewhere", "number": 3}]})");
  EXPECT_TRUE(job.bLocalTime);
  EXPECT_EQ(job.recorded, 1'795'262'400);
  ASSERT_EQ(job.entries.size(), 1U);
  EXPECT_EQ(job.entries[0].strOutput, "elsewhere");
  EXPECT_EQ(job.entries[0].nNameNumber, 3);
  EXPECT_THAT(Refusal(R"({"local_time": "yes"})"), HasSubstr("true nor false"));
  EXPECT_THAT(Refusal(R"({"local_time": [true]})"), HasSubstr("true nor false"));
  EXPECT_THAT(Refusal(R"({"input": true})"), HasSubstr("no text"));
  EXPECT_THAT(Refusal(R"({"recorded": 5})"), HasSubstr("date and time"));
  EXPECT_THAT(Refusal(R"({"recorded": "+5"})"), HasSubstr("date and time"));
  EXPECT_THAT(RefusedEntry(R"({"frequency": 1, "bandwidth": 10, "output": ""})"), HasSubstr("a folder"));
  EXPECT_THAT(RefusedEntry("{\"frequency\": 1, \"bandwidth\": 10, \"output\": \"a\\u0000b\"}"), HasSubstr("a folder"));
  for (const char* number : {"0", "-1", "100001", "1.5"}) {
    EXPECT_THAT(RefusedEntry(std::string(R"({"frequency": 1, "bandwidth": 10, "number": )") + number + "}"),
                HasSubstr("from 1 to 100000"));
  }
}

TEST(JobFile, TextOfAJobReadsAsTheSame) {
  const std::string text = R"({
  "input": "/rec/in 000.wav",
  "output": "/cuts \"here\"",
  "local_time": true,
  "recorded": "2026-11-21T12:00:00Z",
  "entries": [
    {
      "frequency": -7100000,
      "bandwidth": 10000,
      "bits": 32,
      "size": "RF64",
      "start": "2026-11-21T12:00:05Z",
      "end": 90,
      "output": "/elsewhere",
      "number": 2
    },
    {
      "frequency": 0,
      "bandwidth": 250,
      "bits": 16,
      "size": "1GB",
      "duration": 4000000000
    },
    {
      "frequency": 1,
      "bandwidth": 0,
      "bits": 16,
      "size": "100MB"
    }
  ]
}
)";
  EXPECT_EQ(JobFileText(Read(text)), text);
  EXPECT_EQ(JobFileText(SJobFile()), "{\n  \"entries\": []\n}\n");
}

TEST(JobFile, TellsWhatTheUserSaysOfTheInput) {
  const SJobFile job =
      Read(R"({"part": 2, "rate": "2.4M", "centre": -7100000, "sample_type": "CU8", "time_zone": "-03:30",
      "start_time": "2026-11-21T14:00:00.25+02:00"})");
  EXPECT_EQ(job.given.nPart, 2U);
  EXPECT_EQ(job.given.nSampleRate, 2'400'000U);
  EXPECT_EQ(job.given.nCentre, -7'100'000);
  EXPECT_EQ(job.given.kind, ParseSampleKind("cu8"));
  EXPECT_EQ(job.given.zone, (STimeZone{false, -12'600}));
  EXPECT_EQ(job.given.start, (SExactTime{1'795'262'400, 250'000'000}));
  EXPECT_EQ(Read(JobFileText(job)).given, job.given);
  EXPECT_THAT(JobFileText(job), HasSubstr(R"("start_time": "2026-11-21T12:00:00.25Z")"));
  EXPECT_TRUE(Read("{}").given == SGivenFacts());
}

TEST(JobFile, RefusesWhatNobodyCanSayOfAnInput) {
  for (const char* value : {R"("rate": 0)", R"("rate": "4294967296")", R"("rate": 0.5)", R"("rate": "fast")",
                            R"("part": 0)", R"("part": -1)", R"("part": "two")", R"("centre": "7,1M")",
                            R"("start_time": "2026-11-21T12:00:00")", R"("start_time": "1969-12-31T23:59:59Z")",
                            R"("sample_type": "ci12")", R"("time_zone": "Berlin")", R"("time_zone": "")"}) {
    EXPECT_THAT(Refusal("{" + std::string(value) + "}"), HasSubstr("cannot be read. Accepted: ")) << value;
  }
  EXPECT_THAT(Refusal(R"({"rate": true})"), HasSubstr("neither a text nor a number"));
  EXPECT_THAT(Refusal(R"({"rate": null})"), HasSubstr("neither a text nor a number"));
  EXPECT_THAT(Refusal(R"({"rate": [1]})"), HasSubstr("neither a text nor a number"));
  EXPECT_THAT(Refusal(R"({"rate": 5, "rate": 5})"), HasSubstr("twice"));
  EXPECT_LT(Refusal(R"({"centre": ")" + std::string(60'000, 'x') + "\"}").size(), 1000U);
}

TEST(FactTexts, ALineHoldsAllThatIsGivenAndReadsAsTheSame) {
  SGivenFacts given;
  EXPECT_EQ(FactsLine(given), "");
  given.nSampleRate = 2'400'000;
  given.zone = STimeZone{true, 0};
  given.start = SExactTime{1'795'262'400, 1};
  EXPECT_EQ(FactsLine(given), "rate=2400000,start_time=2026-11-21T12:00:00.000000001Z,time_zone=local");
  EXPECT_EQ(ParseFactsLine(FactsLine(given)), given);
  for (const char* none : {"", ",", "rate", "rate=", "rate=5,colour=red", "rate=5,centre"}) {
    EXPECT_EQ(ParseFactsLine(none), SGivenFacts()) << none;
  }
}

TEST(JobFile, EverythingIsOptionalAtTheTop) {
  const SJobFile job = Read("{}");
  EXPECT_EQ(job.strInput, "");
  EXPECT_EQ(job.strOutput, "");
  EXPECT_TRUE(job.entries.empty());
}

TEST(JobFile, AcceptsWholeNumbersWrittenAsDecimals) {
  const SJobFile job = Read(R"({"entries": [{"frequency": 7100000.0, "bandwidth": 1e4}]})");
  ASSERT_EQ(job.entries.size(), 1U);
  EXPECT_EQ(job.entries[0].frequency, 7'100'000);
  EXPECT_EQ(job.entries[0].bandwidth, 10'000);
}

TEST(JobFile, RefusesUnknownKeysAndNamesTheEntry) {
  EXPECT_THAT(Refusal(R"({"inputs": "in.wav"})"),
              AllOf(HasSubstr("\"inputs\""), HasSubstr("input, output, local_time, recorded, part")));
  EXPECT_THAT(Refusal(R"({"entries": [{"frequency": 1, "bandwidth": 10}, {"frequency": 1, "bandwidth": 10, "f": 2}]})"),
              AllOf(HasSubstr("entry 2"), HasSubstr("\"f\""), HasSubstr("frequency, bandwidth, bits")));
}

TEST(JobFile, RefusesValuesAndNamesTheEntryAndKey) {
  EXPECT_THAT(RefusedEntry(R"({"frequency": 7100000.5, "bandwidth": 10})"),
              AllOf(HasSubstr("entry 1"), HasSubstr("frequency \"7100000.5\""), HasSubstr("whole Hz")));
  EXPECT_THAT(RefusedEntry(R"({"frequency": 1, "bandwidth": 10, "bits": 24})"), HasSubstr("16 or 32"));
  EXPECT_THAT(RefusedEntry(R"({"frequency": 1, "bandwidth": 10, "size": 100})"), HasSubstr("RF64"));
  EXPECT_THAT(RefusedEntry(R"({"frequency": 1, "bandwidth": 10, "start": -5})"), HasSubstr("start"));
  EXPECT_THAT(RefusedEntry(R"({"frequency": 1, "bandwidth": 10, "start": 0.5})"), HasSubstr("start"));
  EXPECT_THAT(RefusedEntry(R"({"frequency": 1, "bandwidth": 10, "end": 5, "duration": 5})"), HasSubstr("exclude"));
  EXPECT_THAT(RefusedEntry(R"({"frequency": 1e300, "bandwidth": 10})"), HasSubstr("frequency"));
}

TEST(JobFile, RefusesTypesThatNoFieldHas) {
  for (const char* value : {"true", "null", "[1]", "{}"}) {
    EXPECT_THAT(RefusedEntry(std::string(R"({"frequency": )") + value + R"(, "bandwidth": 10})"),
                HasSubstr("neither a text nor a number"));
  }
  EXPECT_THAT(RefusedEntry("7"), HasSubstr("not an object"));
  EXPECT_THAT(Refusal("[]"), HasSubstr("not an object"));
  EXPECT_THAT(Refusal(R"({"entries": {}})"), HasSubstr("no list"));
  EXPECT_THAT(Refusal(R"({"input": 5})"), HasSubstr("\"input\" is no text"));
}

TEST(JobFile, RefusesEntriesThatLackAKey) {
  EXPECT_THAT(RefusedEntry(R"({"bandwidth": 10})"), HasSubstr("frequency is missing"));
  EXPECT_THAT(RefusedEntry(R"({"frequency": 10})"), HasSubstr("bandwidth is missing"));
}

TEST(JobFile, TellsWhereTheTextIsNoJson) {
  EXPECT_THAT(Refusal("{\n  \"input\": }"), HasSubstr("line 2"));
  EXPECT_THAT(Refusal(""), HasSubstr("no JSON"));
  EXPECT_THAT(Refusal("{\"input\": \"\xff\"}"), HasSubstr("no JSON"));
}

TEST(JobFile, RefusesKeysThatComeTwice) {
  EXPECT_THAT(Refusal(R"({"input": "a", "input": "b"})"), HasSubstr("\"input\" is given twice"));
  EXPECT_THAT(Refusal(R"({"entries": [], "entries": []})"), HasSubstr("\"entries\" is given twice"));
  EXPECT_THAT(RefusedEntry(R"({"bits": 16, "bits": 32, "frequency": 1, "bandwidth": 10})"),
              AllOf(HasSubstr("entry 1"), HasSubstr("\"bits\" is given twice")));
}

TEST(JobFile, RefusesAPathThatTheSystemWouldCutShort) {
  EXPECT_THAT(Refusal(R"({"input": "a.wav\u0000b"})"), HasSubstr("\"input\" holds a character 0"));
}

TEST(JobFile, ThatNestsDeeplyIsRefusedWhereItLeavesTheForm) {
  const std::size_t count = 60'000'000;
  EXPECT_THAT(Refusal(std::string(count, '[')), HasSubstr("not an object"));
  EXPECT_THAT(Refusal("{\"entries\": " + std::string(count, '[')),
              AllOf(HasSubstr("entry 1"), HasSubstr("not an object")));
  EXPECT_THAT(RefusedEntry("{\"frequency\": " + std::string(100'000, '[') + std::string(100'000, ']') + "}"),
              AllOf(HasSubstr("entry 1"), HasSubstr("neither a text nor a number")));
  EXPECT_THAT(Refusal("{\"input\": " + std::string(100'000, '[') + std::string(100'000, ']') + "}"),
              HasSubstr("\"input\" is no text"));
}

TEST(JobFile, WithMoreKeysThanThereAreIsRefusedAtTheFirstThatIsWrong) {
  std::string members;
  for (int i = 0; i < 1'000'000; ++i) members += "\"" + std::to_string(i) + "\": 1, ";
  EXPECT_THAT(Refusal("{" + members + "\"input\": \"a\"}"), HasSubstr("unknown key \"0\""));
  EXPECT_THAT(RefusedEntry("{" + members + "\"frequency\": 1}"),
              AllOf(HasSubstr("entry 1"), HasSubstr("unknown key \"0\"")));
  std::string same;
  for (int i = 0; i < 1'000'000; ++i) same += "\"bits\": 16, ";
  EXPECT_THAT(RefusedEntry("{" + same + "\"frequency\": 1}"), HasSubstr("\"bits\" is given twice"));
}

TEST(JobFile, WithMoreEntriesThanAJobTakesIsRefused) {
  const std::string entry = R"({"frequency": 1, "bandwidth": 10})";
  std::string entries = entry;
  for (int i = 1; i < kMostEntries; ++i) entries += "," + entry;
  EXPECT_EQ(Read("{\"entries\": [" + entries + "]}").entries.size(), static_cast<std::size_t>(kMostEntries));
  EXPECT_THAT(RefusedEntry(entries + "," + entry), AllOf(HasSubstr("entry 100001"), HasSubstr("at most 100000")));
}

TEST(JobFile, WithALongerTextThanMeansAnythingIsRefusedWithItsPlace) {
  const std::string longest(65'536 - 2, 'x');  // and its quotes
  EXPECT_EQ(Read("{\"input\": \"" + longest + "\"}").strInput, longest);
  for (const std::string& token :
       {"\"" + longest + "x\"", "\"\\\"" + longest + "\"", std::string(65'537, '1'), std::string(65'537, 't')}) {
    EXPECT_THAT(Refusal("{\n  \"input\": " + token + "}"),
                AllOf(HasSubstr("line 2, column 12"), HasSubstr("more than 65536 bytes")));
  }
}

TEST(JobFile, IsRefusedInOneLineThatIsShortAndPrintable) {
  const std::string hostile = "\\u001b[2J\\n\\u009b\\u202e";
  const std::string shown = "\\x1B[2J\\n\\u009B\\u202E";
  EXPECT_THAT(Refusal("{\"" + hostile + "\": 1}"), HasSubstr("unknown key \"" + shown + "\""));
  EXPECT_THAT(RefusedEntry("{\"" + hostile + "\": true}"), HasSubstr("\"" + shown + "\" is neither"));
  EXPECT_THAT(RefusedEntry("{\"" + hostile + "\": 1, \"bandwidth\": 1}"), HasSubstr("unknown key \"" + shown + "\""));
  EXPECT_THAT(RefusedEntry("{\"frequency\": \"" + hostile + "\"}"), HasSubstr("frequency \"" + shown + "\""));
  EXPECT_LT(Refusal("{\"input\": " + std::string(60'000, 'x') + "}").size(), 1000U);
  SJobFile job;
  std::string error;
  EXPECT_FALSE(ParseJobFile("{", "a\x1B\n.json", job, error));
  EXPECT_THAT(error, testing::StartsWith("a\\x1B\\n.json: no JSON"));
}

TEST(JobFile, IsReadFromAFileWithAnyName) {
  const CTempFolder folder;
  const std::string path = folder / "Aufträge 夜.json";
  WriteWholeFile(path, R"({"input": "Größe.wav"})");
  SJobFile job;
  std::string error;
  ASSERT_TRUE(ReadJobFile(path, job, error)) << error;
  EXPECT_EQ(job.strInput, "Größe.wav");
}

TEST(JobFile, ThatCannotBeOpenedIsNamed) {
  const CTempFolder folder;
  SJobFile job;
  std::string error;
  EXPECT_FALSE(ReadJobFile(folder / "none.json", job, error));
  EXPECT_THAT(error, HasSubstr("none.json"));
  EXPECT_FALSE(ReadJobFile(folder.Path(), job, error));
}

}  // namespace
}  // namespace carvello::test
