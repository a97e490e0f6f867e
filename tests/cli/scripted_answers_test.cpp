#include "cli/scripted_answers.h"

#include <gtest/gtest.h>

namespace carvello::test {
namespace {

const SMessageBox kBox{"Start", "the reason", EButtons::Ok, EIcon::Stop};

TEST(ScriptedAnswers, BatchFollowsBatchWithoutAQuestion) {
  CScriptedAnswers answers(EAnswer::Cancel);
  EXPECT_EQ(answers.Ask(EJobQuestion::TooManyEntries, kBox), EAnswer::Yes);
  EXPECT_EQ(answers.Ask(EJobQuestion::ContinueBatch, kBox), EAnswer::Yes);
  EXPECT_EQ(answers.Reason(), "");
}

TEST(ScriptedAnswers, FilesAreOverwrittenOnlyWhenAsked) {
  CScriptedAnswers yes(EAnswer::Yes);
  EXPECT_EQ(yes.Ask(EJobQuestion::OverwriteFiles, kBox), EAnswer::Yes);
  CScriptedAnswers no(EAnswer::Cancel);
  EXPECT_EQ(no.Ask(EJobQuestion::OverwriteFiles, kBox), EAnswer::Cancel);
  EXPECT_EQ(no.Reason(), "the reason");
  CScriptedAnswers skip(EAnswer::No);
  EXPECT_EQ(skip.Ask(EJobQuestion::OverwriteFiles, kBox), EAnswer::No);
  EXPECT_EQ(skip.Reason(), "");
}

TEST(ScriptedAnswers, NoticesAreKeptForTheUser) {
  for (const EJobQuestion notice : {EJobQuestion::CannotStart, EJobQuestion::AllFilesExist}) {
    CScriptedAnswers answers(EAnswer::Yes);
    EXPECT_EQ(answers.Ask(notice, kBox), EAnswer::Ok);
    EXPECT_EQ(answers.Reason(), "the reason");
  }
}

}  // namespace
}  // namespace carvello::test
