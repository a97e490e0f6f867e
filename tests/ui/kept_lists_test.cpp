#include "ui/kept_lists.h"

#include <QDir>
#include <QFile>
#include <algorithm>
#include <limits>
#include <string>
#include <vector>

#include "overview/left_threads.h"
#include "support/mutex.h"
#include "support/platform.h"
#include "support/temp_folder.h"
#include "ui/ui_test.h"

namespace carvello {

using test::CTempFolder;

namespace {

CRecordingSet Recording(const std::string& path) {
  CRecordingSet recording;
  recording.files.push_back({path, 0, 0, 0, {}});
  recording.files.push_back({path + "2", 0, 0, 0, {}});
  return recording;
}

SJobFile Job(const std::string& input, int entries) {
  SJobFile job;
  job.strInput = platform::AbsolutePath(input);
  job.strOutput = "/out";
  for (int i = 0; i < entries; ++i) {
    SEntrySpec spec;
    spec.frequency = i;
    spec.bandwidth = 10;
    job.entries.push_back(spec);
  }
  return job;
}

}  // namespace

class KeptListsTest : public QObject {
  Q_OBJECT

 private slots:
  void init();
  void cleanup();

  void AListIsFoundByAnotherProgramOfTheSameRecordingOnly();
  void AListThatAnotherWindowIsAtWorkOnIsLeftToIt();
  void TheListOfAWindowThatWasKilledIsFound();
  void TidyingUpSparesAListAtWork();
  void ItIsOfferedForEveryFileOfItsSet();
  void AListThatIsEmptyAgainIsGone();
  void AListThatWasLeftIsThereAtOnceAndTheNextIsAnother();
  void TheLastOneIsFound();
  void WhatWasSetAsideIsOfferedNoMoreButNotLost();
  void WhatCannotBeSetAsideStaysAsItIs();
  void SettingAsideNeedsNoNewCopy();
  void WhatWasTakenBackIsGoneWhenItIsKeptAnewOnly();
  void NothingIsKeptWhereItIsNotWanted();
  void NoMoreThanTwentyAreKept();
  void HalfWrittenAndBrokenFilesAreNoLists();
  void AFolderThatCannotBeMadeIsTold();
  void ManyChangesLeaveTheLast();

 private:
  std::string ListsFolder() const { return m_pFolder->Path() + "/a/b/lists"; }
  std::function<void(const std::string&)> Tell() {
    return [this](const std::string& problem) {
      const CLockGuard guard(m_lock);
      m_problems.push_back(problem);
    };
  }
  CKeptLists Lists() { return CKeptLists(ListsFolder(), Tell()); }
  std::vector<std::string> AllFiles() const {
    return platform::ListFolder(ListsFolder()).value_or(std::vector<std::string>());
  }
  std::vector<std::string> Files() const {
    std::vector<std::string> files = AllFiles();
    std::erase_if(files, [](const std::string& name) { return name.ends_with(".lock"); });
    return files;
  }

  std::unique_ptr<CTempFolder> m_pFolder;
  CMutex m_lock;
  std::vector<std::string> m_problems;
};

void KeptListsTest::init() {
  m_pFolder = std::make_unique<CTempFolder>();
  m_problems.clear();
}

void KeptListsTest::cleanup() {
  JoinLeftThreads();
  QVERIFY(m_problems.empty());
}

void KeptListsTest::AListIsFoundByAnotherProgramOfTheSameRecordingOnly() {
  {
    CKeptLists lists = Lists();
    lists.Keep(Recording("/rec/a"), Job("/rec/a", 3));
  }
  JoinLeftThreads();
  const CKeptLists others = Lists();
  const auto found = others.Find(Recording("/rec/a"))();
  QVERIFY(found);
  QCOMPARE(found->job.entries.size(), std::size_t{3});
  QCOMPARE(found->job.strOutput, std::string("/out"));
  QVERIFY(!others.Find(Recording("/rec/b"))());
  QVERIFY(!others.Find(CRecordingSet())());
  QCOMPARE(Files().size(), std::size_t{1});
  QCOMPARE(AllFiles().size(), std::size_t{1});  // the lock went with who held it
}

void KeptListsTest::AListThatAnotherWindowIsAtWorkOnIsLeftToIt() {
  auto pFirst = std::make_unique<CKeptLists>(ListsFolder(), Tell());
  pFirst->Keep(Recording("/rec/a"), Job("/rec/a", 3));
  pFirst->Wait();
  CKeptLists second = Lists();
  QVERIFY(!second.Find(Recording("/rec/a"))());
  QCOMPARE(second.All()().size(), std::size_t{1});  // it can be looked up
  second.Keep(Recording("/rec/a"), Job("/rec/a", 2));
  second.Wait();
  QVERIFY(!pFirst->Find(Recording("/rec/b"))());
  QCOMPARE(pFirst->Find(Recording("/rec/a"))()->job.entries.size(), std::size_t{3});
  QCOMPARE(second.Find(Recording("/rec/a"))()->job.entries.size(), std::size_t{2});
  second.Keep(Recording("/rec/a"), Job("/rec/a", 0));
  second.Wait();
  QVERIFY(!second.Find(Recording("/rec/a"))());
  pFirst.reset();
  JoinLeftThreads();
  QCOMPARE(second.Find(Recording("/rec/a"))()->job.entries.size(), std::size_t{3});
}

void KeptListsTest::TheListOfAWindowThatWasKilledIsFound() {
  {
    CKeptLists lists = Lists();
    lists.Keep(Recording("/rec/a"), Job("/rec/a", 3));
  }
  JoinLeftThreads();
  QCOMPARE(Files().size(), std::size_t{1});
  const std::string list = Files().front();
  const std::string owner = list.substr(32, list.size() - 32 - 5);
  QFile file(QString::fromStdString(ListsFolder() + "/" + owner + ".lock"));
  QVERIFY(file.open(QIODevice::WriteOnly));
  file.close();
  const std::optional<SKeptList> found = Lists().Find(Recording("/rec/a"))();
  QVERIFY(found);
  QCOMPARE(found->job.entries.size(), std::size_t{3});
  QVERIFY(!file.exists());
}

void KeptListsTest::TidyingUpSparesAListAtWork() {
  CKeptLists oldest = Lists();
  oldest.Keep(Recording("/rec/a"), Job("/rec/a", 3));
  oldest.Wait();
  for (int i = 0; i < 25; ++i) {
    QTest::qWait(2);
    CKeptLists lists = Lists();
    lists.Keep(Recording("/rec/b"), Job("/rec/b", i + 1));
    lists.Wait();
  }
  JoinLeftThreads();
  QVERIFY(oldest.Find(Recording("/rec/a"))());
}

void KeptListsTest::ItIsOfferedForEveryFileOfItsSet() {
  CKeptLists lists = Lists();
  lists.Keep(Recording("/rec/a"), Job("/rec/a2", 1));
  lists.Wait();
  QVERIFY(lists.Find(Recording("/rec/a"))());
}

void KeptListsTest::AListThatIsEmptyAgainIsGone() {
  CKeptLists lists = Lists();
  lists.Keep(Recording("/rec/a"), Job("/rec/a", 3));
  lists.Wait();
  QCOMPARE(Files().size(), std::size_t{1});
  lists.Keep(Recording("/rec/a"), Job("/rec/a", 0));
  lists.Wait();
  QVERIFY(Files().empty());
  QVERIFY(!lists.Find(Recording("/rec/a"))());
}

void KeptListsTest::AListThatWasLeftIsThereAtOnceAndTheNextIsAnother() {
  CKeptLists lists = Lists();
  lists.Keep(Recording("/rec/a"), Job("/rec/a", 3));
  lists.Leave();
  const auto found = lists.Find(Recording("/rec/a"))();  // written or not
  QVERIFY(found);
  lists.Keep(Recording("/rec/a"), Job("/rec/a", 0));  // the list that follows is empty
  lists.Wait();
  QCOMPARE(Files().size(), std::size_t{1});
  lists.Forget(*found);
  lists.Wait();
  QVERIFY(Files().empty());
  QVERIFY(!lists.Find(Recording("/rec/a"))());
}

void KeptListsTest::TheLastOneIsFound() {
  for (const int entries : {1, 2, 3}) {
    CKeptLists lists = Lists();
    lists.Keep(Recording("/rec/a"), Job("/rec/a", entries));
    lists.Wait();
    QTest::qWait(3);  // begun in another millisecond
  }
  JoinLeftThreads();
  QCOMPARE(Lists().Find(Recording("/rec/a"))()->job.entries.size(), std::size_t{3});
  const std::vector<SKeptList> all = Lists().All()();
  QCOMPARE(all.size(), std::size_t{3});
  QCOMPARE(all[2].job.entries.size(), std::size_t{1});
  QVERIFY(all[0].tBegun > all[2].tBegun);
}

void KeptListsTest::WhatWasSetAsideIsOfferedNoMoreButNotLost() {
  CKeptLists lists = Lists();
  lists.Keep(Recording("/rec/a"), Job("/rec/a", 3));
  lists.Leave();
  lists.SetAside(*lists.Find(Recording("/rec/a"))());
  QVERIFY(!lists.Find(Recording("/rec/a"))());
  lists.Wait();
  QVERIFY(!lists.Find(Recording("/rec/a"))());
  QCOMPARE(lists.All()().size(), std::size_t{1});
  QCOMPARE(Files().size(), std::size_t{1});
  lists.SetAside(lists.All()().front());  // for good
  lists.Wait();
  QCOMPARE(lists.All()().size(), std::size_t{1});
}

void KeptListsTest::WhatCannotBeSetAsideStaysAsItIs() {
  CKeptLists lists = Lists();
  lists.Keep(Recording("/rec/a"), Job("/rec/a", 3));
  lists.Wait();
  lists.Leave();
  std::string aside = m_pFolder->Path() + "/a/b/lists/" + Files().front();
  aside.insert(aside.size() - 5, ".aside");
  QVERIFY(QDir().mkpath(QString::fromStdString(aside + "/in the way")));
  lists.SetAside(*lists.Find(Recording("/rec/a"))());
  lists.Wait();
  QCOMPARE(lists.Find(Recording("/rec/a"))()->job.entries.size(), std::size_t{3});
  const CLockGuard guard(m_lock);
  QCOMPARE(m_problems.size(), std::size_t{1});
  m_problems.clear();
}

void KeptListsTest::SettingAsideNeedsNoNewCopy() {
  CKeptLists lists = Lists();
  lists.Keep(Recording("/rec/a"), Job("/rec/a", 3));
  lists.Wait();
  SKeptList found = *lists.Find(Recording("/rec/a"))();
  found.job.recorded = std::numeric_limits<std::int64_t>::max();  // no calendar has it: it cannot be written
  lists.SetAside(found);
  lists.Wait();
  QVERIFY(!lists.Find(Recording("/rec/a"))());
  QCOMPARE(Lists().All()().size(), std::size_t{1});
}

void KeptListsTest::WhatWasTakenBackIsGoneWhenItIsKeptAnewOnly() {
  CKeptLists lists = Lists();
  lists.Keep(Recording("/rec/a"), Job("/rec/a", 3));
  lists.Leave();
  SKeptList found = *lists.Find(Recording("/rec/a"))();
  QTest::qWait(3);  // begun in another millisecond
  SJobFile unwritable = found.job;
  unwritable.recorded = std::numeric_limits<std::int64_t>::max();  // no calendar has it
  lists.Keep(Recording("/rec/a"), unwritable);
  lists.TakenBack(found);
  lists.Wait();
  QCOMPARE(lists.Find(Recording("/rec/a"))()->job.entries.size(), std::size_t{3});
  {
    const CLockGuard guard(m_lock);
    QCOMPARE(m_problems.size(), std::size_t{1});
    m_problems.clear();
  }

  lists.Keep(Recording("/rec/a"), Job("/rec/a", 2));
  lists.TakenBack(found);
  lists.Wait();
  QCOMPARE(Files().size(), std::size_t{1});
  found = *lists.Find(Recording("/rec/a"))();
  QCOMPARE(found.job.entries.size(), std::size_t{2});

  CKeptLists others = Lists();  // which keep nothing now
  others.TakenBack(found);
  others.Wait();
  QVERIFY(!lists.Find(Recording("/rec/a"))());
  QCOMPARE(Lists().All()().size(), std::size_t{1});
}

void KeptListsTest::NothingIsKeptWhereItIsNotWanted() {
  CKeptLists lists = Lists();
  lists.Keep(Recording("/rec/a"), Job("/rec/a", 3));
  lists.Wait();
  lists.SetWanted(false);
  QVERIFY(!lists.Find(Recording("/rec/a"))());
  lists.Keep(Recording("/rec/b"), Job("/rec/b", 3));
  lists.Wait();
  QCOMPARE(Files().size(), std::size_t{1});
  CKeptLists none(std::string(), {});
  none.Keep(Recording("/rec/a"), Job("/rec/a", 3));
  QVERIFY(!none.Find(Recording("/rec/a"))());
}

void KeptListsTest::NoMoreThanTwentyAreKept() {
  for (int i = 0; i < 25; ++i) {
    CKeptLists lists = Lists();
    lists.Keep(Recording("/rec/a"), Job("/rec/a", i + 1));
    lists.Wait();
    QTest::qWait(2);
  }
  JoinLeftThreads();
  const std::vector<SKeptList> all = Lists().All()();
  QVERIFY(all.size() >= 20 && all.size() <= 21);  // one may be written behind the tidying up
  QCOMPARE(all.front().job.entries.size(), std::size_t{25});
}

void KeptListsTest::HalfWrittenAndBrokenFilesAreNoLists() {
  CKeptLists lists = Lists();
  lists.Keep(Recording("/rec/a"), Job("/rec/a", 3));
  lists.Wait();
  const std::string good = Files().front();
  const std::string folder = m_pFolder->Path() + "/a/b/lists/";
  const auto write = [&folder](const std::string& name, const char* text) {
    QFile file(QString::fromStdString(folder + name));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(text);
  };
  std::string later = good;
  later.replace(17, 14, "99999999999999");
  write(later, R"({"entries": [{"frequency": 1, )");
  write(good + ".part", "{");
  write("notes.json", "{}");
  write("0123456789abcdef-notanumber12-1.json", "{}");
  QCOMPARE(lists.Find(Recording("/rec/a"))()->job.entries.size(), std::size_t{3});
  QCOMPARE(Lists().All()().size(), std::size_t{1});
  CKeptLists next = Lists();
  next.Keep(Recording("/rec/b"), Job("/rec/b", 1));
  next.Wait();
  QVERIFY(!QFile::exists(QString::fromStdString(folder + good + ".part")));
  QVERIFY(QFile::exists(QString::fromStdString(folder + "notes.json")));
}

void KeptListsTest::AFolderThatCannotBeMadeIsTold() {
  QFile file(QString::fromStdString(m_pFolder->Path() + "/a"));
  QVERIFY(file.open(QIODevice::WriteOnly));
  CKeptLists lists = Lists();
  lists.Keep(Recording("/rec/a"), Job("/rec/a", 3));
  lists.Wait();
  const CLockGuard guard(m_lock);
  QCOMPARE(m_problems.size(), std::size_t{1});
  QVERIFY(m_problems.front().starts_with(m_pFolder->Path() + "/a/b/lists: "));
  m_problems.clear();
}

void KeptListsTest::ManyChangesLeaveTheLast() {
  CKeptLists lists = Lists();
  for (int i = 1; i <= 300; ++i) lists.Keep(Recording("/rec/a"), Job("/rec/a", i));
  lists.Wait();
  QCOMPARE(Files().size(), std::size_t{1});
  QCOMPARE(lists.Find(Recording("/rec/a"))()->job.entries.size(), std::size_t{300});
}

}  // namespace carvello

CARVELLO_UI_TEST(carvello::KeptListsTest)
#include "kept_lists_test.moc"
