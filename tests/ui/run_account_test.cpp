#include "ui/run_account.h"

#include "ui/ui_test.h"

namespace carvello {

namespace {

std::vector<OutputEntry> Entries(std::size_t count) {
  std::vector<OutputEntry> entries(count);
  for (std::size_t i = 0; i < count; ++i) entries[i].strDisplayName = "f=" + std::to_string(i) + ".wav";
  return entries;
}

}  // namespace

class RunAccountTest : public QObject {
  Q_OBJECT

 private slots:
  void init() { m_account.Reset(); }
  void NothingIsToldBeforeARun();
  void StatesAreToldInWords();
  void AllWritten();
  void SomeFailed();
  void AllFailed();
  void Stopped();
  void StoppedWithFailures();
  void StopOfWhatHadEndedIsNoStop();
  void ExistingOnesCountAsSuch();
  void NothingToDoTellsWhy();
  void WhatEndsUnfinishedHasFailed();
  void TheOutcomeIsThatOfAllBatches();
  void WhatHasNotBegunIsTold();
  void ManyFailuresStayOnTheScreen();
  void AReasonIsOneLineWhateverItNames();
  void InBriefAReasonIsItsCause();
  void InBriefAReasonLeavesItsPathOut();
  void OnlyEntriesOnTheListHaveNotBegun();

 private:
  std::vector<const OutputEntry*> Pointers(std::size_t first, std::size_t count) const {
    std::vector<const OutputEntry*> pointers;
    for (std::size_t i = first; i < first + count; ++i) pointers.push_back(&m_entries[i]);
    return pointers;
  }
  SEntryState State(std::size_t i, EOutputState state, const std::string& reason = {}) const {
    return {state, 10'000, reason, &m_entries[i]};
  }
  // A batch of entries that all end in the given states.
  void Run(std::size_t first, const std::vector<SEntryState>& states, bool stopped = false) {
    m_account.BeginBatch(Pointers(first, states.size()));
    m_account.EndBatch(states, stopped, Pointers(first, states.size()));
  }
  std::string Text() const { return m_account.Outcome().strText; }

  const std::vector<OutputEntry> m_entries = Entries(40);
  CRunAccount m_account;
};

void RunAccountTest::NothingIsToldBeforeARun() {
  QCOMPARE(m_account.Outcome(), SToneText());
  QCOMPARE(m_account.StateOf(&m_entries[0]), SToneText());
  QCOMPARE(m_account.Failures(), std::string());
}

void RunAccountTest::StatesAreToldInWords() {
  const auto text = [this](std::size_t i) { return m_account.StateOf(&m_entries[i]); };
  m_account.BeginBatch(Pointers(0, 6));
  QCOMPARE(text(0), (SToneText{"waiting", ETone::Plain}));
  m_account.Update({{EOutputState::Waiting, 0, "", &m_entries[0]},
                    {EOutputState::Running, 4567, "", &m_entries[1]},
                    {EOutputState::Running, 9999, "", &m_entries[2]},
                    {EOutputState::Done, 10'000, "", &m_entries[3]},
                    {EOutputState::Failed, 100, "disk full", &m_entries[4]}});
  QCOMPARE(text(0), (SToneText{"waiting", ETone::Plain}));
  QCOMPARE(text(1), (SToneText{"45%", ETone::Plain}));
  QCOMPARE(text(2), (SToneText{"99%", ETone::Plain}));
  QCOMPARE(text(3), (SToneText{"done", ETone::Good}));
  QCOMPARE(text(4), (SToneText{"failed: disk full", ETone::Bad}));
  QCOMPARE(text(5), (SToneText{"exists", ETone::Plain}));
  QCOMPARE(text(6), SToneText());  // of another batch
  QCOMPARE(m_account.Outcome(), SToneText());
}

void RunAccountTest::AllWritten() {
  Run(0, {State(0, EOutputState::Done), State(1, EOutputState::Done)});
  QCOMPARE(m_account.Outcome(), (SToneText{"2 of 2 outputs written", ETone::Good}));
  QCOMPARE(m_account.Failures(), std::string());
}

void RunAccountTest::SomeFailed() {
  Run(0, {State(0, EOutputState::Done), State(1, EOutputState::Failed, "disk full")});
  QCOMPARE(m_account.Outcome(), (SToneText{"1 of 2 outputs written, 1 failed", ETone::Bad}));
  QCOMPARE(m_account.Failures(), std::string("1 of 2 outputs failed:\n\nf=1.wav: disk full"));
}

void RunAccountTest::AllFailed() {
  Run(0, {State(0, EOutputState::Failed, "a"), State(1, EOutputState::Failed, "b")});
  QCOMPARE(m_account.Outcome(), (SToneText{"0 of 2 outputs written, 2 failed", ETone::Bad}));
}

void RunAccountTest::Stopped() {
  Run(0, {State(0, EOutputState::Done), State(1, EOutputState::Stopped), State(2, EOutputState::Running)}, true);
  QCOMPARE(m_account.Outcome(), (SToneText{"Stopped: 1 of 3 outputs complete", ETone::Caution}));
  for (const std::size_t i : {1U, 2U}) {
    QCOMPARE(m_account.StateOf(&m_entries[i]), (SToneText{"stopped", ETone::Caution}));
  }
  QCOMPARE(m_account.Failures(), std::string());
}

void RunAccountTest::StoppedWithFailures() {
  Run(0, {State(0, EOutputState::Done), State(1, EOutputState::Stopped), State(2, EOutputState::Failed, "x")}, true);
  QCOMPARE(m_account.Outcome(), (SToneText{"Stopped: 1 of 3 outputs complete, 1 failed", ETone::Bad}));
  QCOMPARE(m_account.Failures(), std::string("1 of 3 outputs failed:\n\nf=2.wav: x"));
}

void RunAccountTest::StopOfWhatHadEndedIsNoStop() {
  Run(0, {State(0, EOutputState::Done), State(1, EOutputState::Done)}, true);
  QCOMPARE(Text(), std::string("2 of 2 outputs written"));
}

void RunAccountTest::ExistingOnesCountAsSuch() {
  m_account.BeginBatch(Pointers(0, 3));
  m_account.EndBatch({State(0, EOutputState::Done), State(2, EOutputState::Done)}, false, Pointers(0, 3));
  QCOMPARE(m_account.Outcome(), (SToneText{"2 of 3 outputs written, 1 existed", ETone::Good}));
  QCOMPARE(m_account.StateOf(&m_entries[1]).strText, std::string("exists"));
}

void RunAccountTest::NothingToDoTellsWhy() {
  m_account.BeginBatch(Pointers(0, 3));
  m_account.EndBatchOfExisting(Pointers(0, 3));
  QCOMPARE(m_account.Outcome(), (SToneText{"0 of 3 outputs written, 3 existed", ETone::Plain}));
}

void RunAccountTest::WhatEndsUnfinishedHasFailed() {
  Run(0, {State(0, EOutputState::Done), State(1, EOutputState::Running)});
  QCOMPARE(Text(), std::string("1 of 2 outputs written, 1 failed"));
  QCOMPARE(m_account.StateOf(&m_entries[1]).strText, std::string("failed: not finished"));
  // Nor does an end of which nothing is told count as one that went well.
  m_account.Reset();
  m_account.BeginBatch(Pointers(0, 2));
  m_account.EndBatch({}, false, Pointers(0, 2));
  QCOMPARE(Text(), std::string("0 of 2 outputs written, 2 failed"));
}

void RunAccountTest::TheOutcomeIsThatOfAllBatches() {
  Run(0, {State(0, EOutputState::Done), State(1, EOutputState::Failed, "disk full")});
  Run(2, {State(2, EOutputState::Done), State(3, EOutputState::Done)});
  QCOMPARE(m_account.Outcome(), (SToneText{"3 of 4 outputs written, 1 failed", ETone::Bad}));
  QCOMPARE(m_account.StateOf(&m_entries[1]).strText, std::string("failed: disk full"));
  QCOMPARE(m_account.Failures(), std::string());  // told after its own batch
}

void RunAccountTest::AReasonIsOneLineWhateverItNames() {
  Run(0, {State(0, EOutputState::Failed, "a\n\x1B\u202E: gone")});
  QCOMPARE(m_account.StateOf(&m_entries[0]).strText, std::string("failed: a\\n\\x1B\\u202E: gone"));
  QVERIFY(m_account.Failures().ends_with("f=0.wav: a\\n\\x1B\\u202E: gone"));
}

// What led to it stands in front of it, with paths and numbers that can be long.
void RunAccountTest::InBriefAReasonIsItsCause() {
  Run(0, {State(0, EOutputState::Failed, "/rec - 2/in.wav: reading stopped at byte 5 - Input/output\nerror"),
          State(1, EOutputState::Failed, "in.wav: another file - "), State(2, EOutputState::Failed, "in.wav: a hole")});
  QCOMPARE(m_account.StateOf(&m_entries[0]),
           (SToneText{"failed: /rec - 2/in.wav: reading stopped at byte 5 - Input/output\\nerror", ETone::Bad,
                      "failed: Input/output\\nerror"}));
  QCOMPARE(m_account.StateOf(&m_entries[1]).strBrief, std::string());
  QCOMPARE(m_account.StateOf(&m_entries[2]).strBrief, std::string());
}

void RunAccountTest::InBriefAReasonLeavesItsPathOut() {
  Run(0, {State(0, EOutputState::Failed, "/media/a: b/cuts: No such file or directory"),
          State(1, EOutputState::Failed, "D:\\cuts: in use"), State(2, EOutputState::Failed, "/media/cuts: ")});
  QCOMPARE(m_account.StateOf(&m_entries[0]).strBrief, std::string("failed: No such file or directory"));
  QCOMPARE(m_account.StateOf(&m_entries[1]).strBrief, std::string("failed: in use"));
  QCOMPARE(m_account.StateOf(&m_entries[2]).strBrief, std::string());
}

// Batches that the user did not let follow.
void RunAccountTest::WhatHasNotBegunIsTold() {
  m_account.BeginBatch(Pointers(0, 2));
  m_account.EndBatch({State(0, EOutputState::Done), State(1, EOutputState::Failed, "x")}, false, Pointers(0, 5));
  QCOMPARE(m_account.Outcome(), (SToneText{"1 of 5 outputs written, 1 failed, 3 not begun", ETone::Bad}));
  m_account.BeginBatch(Pointers(2, 2));
  m_account.EndBatch({State(2, EOutputState::Done), State(3, EOutputState::Stopped)}, true, Pointers(1, 4));
  QCOMPARE(m_account.Outcome(), (SToneText{"Stopped: 2 of 5 outputs complete, 1 failed, 1 not begun", ETone::Bad}));
  m_account.Reset();
  m_account.BeginBatch(Pointers(0, 2));
  m_account.EndBatch({State(0, EOutputState::Done), State(1, EOutputState::Done)}, false, Pointers(0, 3));
  QCOMPARE(m_account.Outcome(), (SToneText{"2 of 3 outputs written, 1 not begun", ETone::Caution}));
  m_account.Reset();
  m_account.BeginBatch(Pointers(0, 2));
  m_account.EndBatchOfExisting(Pointers(0, 3));
  QCOMPARE(Text(), std::string("0 of 3 outputs written, 2 existed, 1 not begun"));
}

void RunAccountTest::ManyFailuresStayOnTheScreen() {
  std::vector<SEntryState> states;
  for (std::size_t i = 0; i < 40; ++i) states.push_back(State(i, EOutputState::Failed, std::string(2000, 'x')));
  states[0].strReason = std::string(249, 'y').append("äöü");
  Run(0, states);
  const std::string text = m_account.Failures();
  QVERIFY(text.starts_with("40 of 40 outputs failed:\n\nf=0.wav: "));
  QVERIFY(text.ends_with("\n\nand 30 more, which the list and the log name."));
  QVERIFY(text.size() < 3500);
  QVERIFY(text.find("f=9.wav") != std::string::npos && text.find("f=10.wav") == std::string::npos);
  QVERIFY(!QString::fromStdString(text).contains(QChar::ReplacementCharacter));
  // The list has all of it.
  QCOMPARE(m_account.StateOf(&m_entries[39]).strText.size(), std::size_t{2008});
}

void RunAccountTest::OnlyEntriesOnTheListHaveNotBegun() {
  m_account.BeginBatch(Pointers(0, 2));
  m_account.EndBatch({State(0, EOutputState::Done), State(1, EOutputState::Done)}, false, Pointers(1, 1));
  QCOMPARE(Text(), std::string("2 of 2 outputs written"));
  QCOMPARE(m_account.StateOf(&m_entries[0]).strText, std::string("done"));  // should it come back
}

}  // namespace carvello

CARVELLO_UI_TEST(carvello::RunAccountTest)
#include "run_account_test.moc"
