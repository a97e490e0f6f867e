#include "cli/program.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/temp_folder.h"

namespace carvello::test {
namespace {

using testing::HasSubstr;

struct SOutcome {
  int nExit;
  std::string strOut;
  std::string strErr;
};

SOutcome RunCli(std::vector<std::string> arguments) {
  arguments.insert(arguments.begin(), "carvello-cli");
  testing::internal::CaptureStdout();
  testing::internal::CaptureStderr();
  const int exit = RunProgram(arguments);
  return {exit, testing::internal::GetCapturedStdout(), testing::internal::GetCapturedStderr()};
}

TEST(Program, HelpAndVersionAreNoErrors) {
  for (const std::vector<std::string>& arguments : std::vector<std::vector<std::string>>{{"--help"},
                                                                                         {"-h"},
                                                                                         {"--version"},
                                                                                         {"info", "--help"},
                                                                                         {"cut", "--help"},
                                                                                         {"picture", "--help"},
                                                                                         {"chunks", "--help"},
                                                                                         {"synth", "--help"}}) {
    const SOutcome outcome = RunCli(arguments);
    EXPECT_EQ(outcome.nExit, 0);
    EXPECT_NE(outcome.strOut, "");
    EXPECT_EQ(outcome.strErr, "");
  }
  EXPECT_THAT(RunCli({"--help"}).strOut, AllOf(HasSubstr("info"), HasSubstr("cut"), HasSubstr("picture"),
                                               HasSubstr("chunks"), HasSubstr("synth"), HasSubstr("130")));
  EXPECT_THAT(RunCli({"cut", "--help"}).strOut, AllOf(HasSubstr("--entry E"), HasSubstr("Exit codes")));
}

TEST(Program, NoCommandAndUnknownCommandsAreUsageErrors) {
  for (const std::vector<std::string>& arguments : std::vector<std::vector<std::string>>{{}, {"frob"}, {"--frob"}}) {
    const SOutcome outcome = RunCli(arguments);
    EXPECT_EQ(outcome.nExit, 2);
    EXPECT_EQ(outcome.strOut, "");
    EXPECT_THAT(
        outcome.strErr,
        HasSubstr("Accepted: info, cut, picture, scan, plan, run, join, repair, chunks, synth, doctor, completions"));
  }
}

TEST(Program, UnknownOptionsAreNamedWithTheAccepted) {
  const SOutcome outcome = RunCli({"cut", "in.wav", "--colour"});
  EXPECT_EQ(outcome.nExit, 2);
  EXPECT_THAT(outcome.strErr, AllOf(HasSubstr("--colour"), HasSubstr("--output"), HasSubstr("--skip-existing")));
}

TEST(Program, MissingArgumentsAreUsageErrors) {
  EXPECT_EQ(RunCli({"info"}).nExit, 2);
  EXPECT_EQ(RunCli({"chunks"}).nExit, 2);
  EXPECT_EQ(RunCli({"synth"}).nExit, 2);
  EXPECT_EQ(RunCli({"cut"}).nExit, 2);
  EXPECT_EQ(RunCli({"cut", "--entry"}).nExit, 2);
  EXPECT_EQ(RunCli({"info", "a", "b"}).nExit, 2);
}

// The option must not swallow the argument behind its own.
TEST(Program, AnEntryTakesOneArgument) {
  const SOutcome outcome = RunCli({"cut", "--entry", "f=7.1M,bw=10k", "none.wav", "--output", "out"});
  EXPECT_EQ(outcome.nExit, 3);
  EXPECT_THAT(outcome.strErr, HasSubstr("none.wav"));
}

TEST(Program, NegativeValuesAreNoOptions) {
  const SOutcome outcome = RunCli({"cut", "none.wav", "--output", "out", "--sequence", "-7k:7k:1k", "--bw", "-1"});
  EXPECT_EQ(outcome.nExit, 3) << outcome.strErr;  // got as far as the input
}

TEST(Program, UnreadableInputsEndWith3) {
  const CTempFolder folder;
  WriteWholeFile(folder / "text.wav", "This is no recording.");
  for (const std::string& input : {folder / "none.wav", folder / "text.wav", folder.Path()}) {
    for (const std::vector<std::string>& arguments :
         std::vector<std::vector<std::string>>{{"info", input},
                                               {"chunks", input},
                                               {"cut", input, "--output", folder.Path(), "--entry", "f=1,bw=10"},
                                               {"picture", input, folder / "out.png"}}) {
      const SOutcome outcome = RunCli(arguments);
      EXPECT_EQ(outcome.nExit, 3) << arguments.front() << " " << input;
      EXPECT_THAT(outcome.strErr, HasSubstr(input));
    }
  }
}

TEST(Program, SynthDoesNotReplaceFilesUnasked) {
  const CTempFolder folder;
  const std::string file = folder / "rec.wav";
  const std::vector<std::string> synth = {"synth", file, "--rate", "48k", "--seconds", "0.1"};
  EXPECT_EQ(RunCli(synth).strOut, file + "\n");
  const std::string first = ReadWholeFile(file);
  const SOutcome refused = RunCli(synth);
  EXPECT_EQ(refused.nExit, 4);
  EXPECT_THAT(refused.strErr, AllOf(HasSubstr(file), HasSubstr("--overwrite")));
  EXPECT_EQ(ReadWholeFile(file), first);

  std::vector<std::string> replace = synth;
  replace.insert(replace.end(), {"--overwrite", "--quiet", "--seconds", "0.2"});
  replace.erase(replace.begin() + 4, replace.begin() + 6);
  const SOutcome replaced = RunCli(replace);
  EXPECT_EQ(replaced.nExit, 0) << replaced.strErr;
  EXPECT_EQ(replaced.strOut, "");
  EXPECT_GT(ReadWholeFile(file).size(), first.size());
}

TEST(Program, SynthWarnsOfClipping) {
  const CTempFolder folder;
  const SOutcome outcome =
      RunCli({"synth", folder / "rec.wav", "--rate", "48k", "--seconds", "0.1", "--station", "7.1M:6"});
  EXPECT_EQ(outcome.nExit, 0);
  EXPECT_THAT(outcome.strErr, HasSubstr("warning: 4800 values lay beyond full scale"));
}

TEST(Program, SynthThatCannotWriteEndsWith1) {
  const CTempFolder folder;
  EXPECT_EQ(RunCli({"synth", folder / "none/rec.wav", "--seconds", "0.1"}).nExit, 1);
}

TEST(Program, SynthOptionsThatCannotBeUsedEndWith2) {
  const CTempFolder folder;
  const SOutcome outcome = RunCli({"synth", folder / "rec.wav", "--bits", "12"});
  EXPECT_EQ(outcome.nExit, 2);
  EXPECT_THAT(outcome.strErr, HasSubstr("--bits \"12\""));
}

}  // namespace
}  // namespace carvello::test
