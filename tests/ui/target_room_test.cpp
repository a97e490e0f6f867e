#include "ui/target_room.h"

#include <QSignalSpy>
#include <condition_variable>
#include <fstream>
#include <mutex>

#include "overview/left_threads.h"
#include "support/platform.h"
#include "support/temp_folder.h"
#include "ui/list_sums.h"
#include "ui/ui_test.h"

namespace carvello {

class TargetRoomTest : public QObject {
  Q_OBJECT

 private slots:
  void TellsTheRoomOfTheDisk();
  void CountsWhatWillBeReplacedAsRoom();
  void DoesNotKnowTheRoomOfAFolderThatIsNotThere();
  void ADiskThatDoesNotAnswerKeepsNobodyWaiting();
  void IsAskedAgainOnceForAllThatChangedMeanwhile();
  void ADiskThatNeverAnswersDoesNotEndTheAsking();
  void SumsTellWhetherItFitsInWords();
};

namespace {

SRoomWanted Wanted(const std::string& file, std::int64_t bytes) {
  return {file, 100, bytes};
}

// A disk that answers when it is let.
struct SSlowDisk {
  std::mutex lock;
  std::condition_variable changed;
  int nAsked = 0;
  int nAnswers = 0;

  std::vector<SRoom> Find(const std::vector<SRoomWanted>& wanted) {
    std::unique_lock guard(lock);
    const int mine = ++nAsked;
    changed.notify_all();
    changed.wait(guard, [&] { return nAnswers >= mine; });
    return {{"/far", wanted[0].nBytes, 7}};
  }
  void Answer() {
    const std::lock_guard guard(lock);
    ++nAnswers;
    changed.notify_all();
  }
  int Asked() {
    const std::lock_guard guard(lock);
    return nAsked;
  }
};

}  // namespace

void TargetRoomTest::TellsTheRoomOfTheDisk() {
  const test::CTempFolder folder;
  const std::vector<SRoom> rooms = FindRoom({Wanted(folder / "a.wav", 1000), Wanted(folder / "b.wav", 500)});
  QCOMPARE(rooms.size(), std::size_t{1});
  QCOMPARE(rooms[0].nWanted, std::int64_t{1500});
  QVERIFY(rooms[0].nFree.has_value() && *rooms[0].nFree > 0);
  QVERIFY(rooms[0].Fits());
  QVERIFY(!FindRoom({Wanted(folder / "a.wav", *rooms[0].nFree * 2)})[0].Fits());
}

void TargetRoomTest::CountsWhatWillBeReplacedAsRoom() {
  const test::CTempFolder folder;
  const auto write = [&](const std::string& name, std::size_t bytes) {
    std::ofstream(test::PathOf(folder / name), std::ios::binary) << std::string(bytes, 'x');
  };
  write("a 000.wav", 300);
  write("a 001.wav", 200);
  write("b.wav", 100);
  write("c.wav", 10);
  const std::vector<SRoom> rooms =
      FindRoom({Wanted(folder / "a.wav", 1000), {folder / "b.wav", 0, 1000}, Wanted(folder / "d.wav", 7)});
  QCOMPARE(rooms[0].nWanted, std::int64_t{500 + 900 + 7});
}

void TargetRoomTest::DoesNotKnowTheRoomOfAFolderThatIsNotThere() {
  const test::CTempFolder folder;
  const std::vector<SRoom> rooms = FindRoom({Wanted(platform::JoinPath(folder / "none", "a.wav"), 1000)});
  QCOMPARE(rooms.size(), std::size_t{1});
  QVERIFY(!rooms[0].nFree.has_value());
  QVERIFY(rooms[0].Fits());
}

void TargetRoomTest::ADiskThatDoesNotAnswerKeepsNobodyWaiting() {
  const auto pDisk = std::make_shared<SSlowDisk>();
  {
    CTargetRoom room([] { return std::vector<SRoomWanted>{Wanted("/far/a.wav", 3)}; }, nullptr,
                     [pDisk](const std::vector<SRoomWanted>& wanted) { return pDisk->Find(wanted); });
    const QSignalSpy found(&room, &CTargetRoom::Found);
    room.Ask();
    QTRY_COMPARE(pDisk->Asked(), 1);
    for (int i = 0; i < 5; ++i) room.Ask();
    QTest::qWait(300);
    QCOMPARE(pDisk->Asked(), 1);  // and no thread more waits for it
    QCOMPARE(found.count(), 0);
  }
  // The window is gone before the answer.
  pDisk->Answer();
}

void TargetRoomTest::IsAskedAgainOnceForAllThatChangedMeanwhile() {
  const auto pDisk = std::make_shared<SSlowDisk>();
  std::int64_t bytes = 3;
  CTargetRoom room([&] { return std::vector<SRoomWanted>{Wanted("/far/a.wav", bytes)}; }, nullptr,
                   [pDisk](const std::vector<SRoomWanted>& wanted) { return pDisk->Find(wanted); });
  std::vector<std::int64_t> answers;
  connect(&room, &CTargetRoom::Found, this,
          [&](const std::vector<SRoom>& rooms) { answers.push_back(rooms[0].nWanted); });
  room.Ask();
  QTRY_COMPARE(pDisk->Asked(), 1);
  bytes = 4;
  room.Ask();
  bytes = 5;
  room.Ask();
  pDisk->Answer();
  QTRY_COMPARE(pDisk->Asked(), 2);
  pDisk->Answer();
  QTRY_COMPARE(answers, (std::vector<std::int64_t>{5}));  // the answer for 3 is of an older list
}

void TargetRoomTest::ADiskThatNeverAnswersDoesNotEndTheAsking() {
  const auto pDisk = std::make_shared<SSlowDisk>();
  std::int64_t bytes = 3;
  CTargetRoom room([&] { return std::vector<SRoomWanted>{Wanted("/far/a.wav", bytes)}; }, nullptr,
                   [pDisk](const std::vector<SRoomWanted>& wanted) {
                     if (wanted[0].nBytes == 3) return pDisk->Find(wanted);
                     return std::vector<SRoom>{{"/near", wanted[0].nBytes, 7}};
                   },
                   std::chrono::milliseconds(20));
  std::vector<std::int64_t> answers;
  connect(&room, &CTargetRoom::Found, this,
          [&](const std::vector<SRoom>& rooms) { answers.push_back(rooms[0].nWanted); });
  room.Ask();
  QTRY_COMPARE(pDisk->Asked(), 1);
  bytes = 4;
  room.Ask();
  QTRY_COMPARE(answers, (std::vector<std::int64_t>{4}));
  pDisk->Answer();
  JoinLeftThreads();
  QCoreApplication::sendPostedEvents();
  QCOMPARE(answers, (std::vector<std::int64_t>{4}));  // what comes too late is told to nobody
}

void TargetRoomTest::SumsTellWhetherItFitsInWords() {
  SListSums sums;
  QCOMPARE(ListSumsText(sums).strText, std::string());
  sums.nEntries = 3;
  sums.dSeconds = 5400;
  sums.nBytes = 1'500'000'000;
  QCOMPARE(ListSumsText(sums).strText, std::string("Entries: 3, hours: 1.5, expected: 1.50 GB"));
  sums.rooms = {{"/a", 1'500'000'000, std::nullopt}};
  QCOMPARE(ListSumsText(sums).strText, std::string("Entries: 3, hours: 1.5, expected: 1.50 GB, free: not known"));
  sums.rooms = {{"/a", 1'500'000'000, 1'500'000'000}};
  QCOMPARE(ListSumsText(sums).strText, std::string("Entries: 3, hours: 1.5, expected: 1.50 GB, free: 1.50 GB"));
  QCOMPARE(ListSumsText(sums).tone, ETone::Plain);
  // Of several disks the one that lacks most.
  sums.rooms = {{"/a", 1'000, 1'500'000'000}, {"/b", 1'400'000'000, 1'000'000}};
  QCOMPARE(ListSumsText(sums).strText,
           std::string("Does not fit: entries: 3, hours: 1.5, expected: 1.50 GB, free: 1.0 MB in /b"));
  QCOMPARE(ListSumsText(sums).tone, ETone::Bad);
}

}  // namespace carvello

CARVELLO_UI_TEST(carvello::TargetRoomTest)
#include "target_room_test.moc"
