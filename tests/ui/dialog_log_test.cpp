#include <QProgressBar>
#include <QRegularExpression>
#include <thread>

#include "support/file.h"
#include "support/formatting.h"
#include "ui/dialog_fixture.h"
#include "ui/log_list.h"
#include "ui/longest_turn.h"
#include "ui/ui_test.h"
#include "ui/ways_out.h"

namespace carvello {

using test::CDialogFixture;

class DialogLogTest : public QObject {
  Q_OBJECT

 private slots:
  void init();
  void cleanup() { m_pFixture.reset(); }

  void ALineOfAThreadShowsTimeThreadAndText();
  void ALineWithoutAThreadShowsTimeAndText();
  void ABurstOf100000LinesLosesNoneAndKeepsTheDialogAnswering();
  void ALongLineWidensTheScrollRangeUntilTheLogIsCleared();
  void ANewInputClearsTheLog();
  void ProgressShowsPositionAndPercentage_data();
  void ProgressShowsPositionAndPercentage();
  void NothingMovesWhenTheProgressGetsAnotherDigit();
  void ProgressOfNothingIsIgnored();
  void ViewAsTextWritesEveryLineAndOpensTheFile();
  void ViewAsTextOfAnEmptyLogWritesAnEmptyFile();
  void ViewAsTextTellsWhenTheFileCannotBeWritten();
  void ViewAsTextTellsWhenNoProgramOpensIt();
  void TheHelpLinkOpensTheHelpText();

 private:
  void Post(const std::string& worker, const std::string& text) {
    m_pMessages->PostTexts(RegisterMessage(kLogMessageName), worker, text);
  }
  void PostProgress(std::uint64_t total, std::uint64_t done) {
    m_pMessages->PostNumbers(RegisterMessage(kProgressMessageName), total, done);
    QCoreApplication::sendPostedEvents(m_pMessages);
  }

  std::unique_ptr<CDialogFixture> m_pFixture;
  CPostedMessages* m_pMessages = nullptr;
  const std::string m_strFile = test::TempFile("Carvello tmp.txt");
};

void DialogLogTest::init() {
  m_pFixture = std::make_unique<CDialogFixture>();
  m_pMessages = m_pFixture->Open().findChild<CPostedMessages*>();
  QVERIFY(m_pMessages != nullptr);
}

void DialogLogTest::ALineOfAThreadShowsTimeThreadAndText() {
  Post("Reader", "Opening");
  QTRY_COMPARE(m_pFixture->Log().last(), QString("Reader> Opening"));
  const QString line = QString::fromStdString(m_pFixture->Control<CLogList>(1022).Lines().back());
  QVERIFY(QRegularExpression("^\\d\\d:\\d\\d:\\d\\d> Reader> Opening$").match(line).hasMatch());
}

void DialogLogTest::ALineWithoutAThreadShowsTimeAndText() {
  Post("", "100% done, %s");
  QTRY_COMPARE(m_pFixture->Log().last(), QString("100% done, %s"));
}

void DialogLogTest::ABurstOf100000LinesLosesNoneAndKeepsTheDialogAnswering() {
  constexpr int kLines = 100'000;
  constexpr int kBound = 100;                                                        // ms
  const int bound = kBound * (qEnvironmentVariableIsSet("CARVELLO_SLOW") ? 20 : 1);  // with sanitizers
  auto& log = m_pFixture->Control<CLogList>(1022);
  constexpr int kBefore = 2;
  QTRY_COMPARE(log.model()->rowCount(), kBefore);
  // A click now and then, answered like any other.
  int clicks = 0;
  QTimer clicker;
  connect(&clicker, &QTimer::timeout, this, [&] {
    QTest::mouseClick(&m_pFixture->Control(1022), Qt::LeftButton);
    ++clicks;
  });
  clicker.start(10);
  // All at once is the worst case: the dialog gets no turn for anything else while it takes the lines over.
  std::thread([this] {
    for (int line = 0; line < kLines; ++line) Post("Writer [0]", "line " + std::to_string(line));
  }).join();
  test::CLongestTurn turn;
  QTRY_COMPARE_WITH_TIMEOUT(log.model()->rowCount(), kBefore + kLines, 120'000);
  qInfo("longest turn %lld ms of processor time, %d turns, %d clicks", static_cast<long long>(turn.Milliseconds()),
        turn.Turns(), clicks);
  QVERIFY(clicks > 0);
  QVERIFY2(turn.Milliseconds() < bound, qPrintable(QString("%1 ms").arg(turn.Milliseconds())));

  const QStringList lines = m_pFixture->Log().mid(kBefore);
  QCOMPARE(lines.size(), kLines);
  for (int line = 0; line < kLines; ++line) QCOMPARE(lines[line], QString("Writer [0]> line %1").arg(line));
}

void DialogLogTest::ALongLineWidensTheScrollRangeUntilTheLogIsCleared() {
  auto& log = m_pFixture->Control<CLogList>(1022);
  const int extent = log.HorizontalExtent();
  Post("Reader", std::string(500, 'w'));
  QTRY_VERIFY(log.HorizontalExtent() > extent);
  const int wide = log.HorizontalExtent();
  Post("Reader", "short");
  QTRY_COMPARE(m_pFixture->Log().last(), QString("Reader> short"));
  QCOMPARE(log.HorizontalExtent(), wide);
  m_pFixture->SetPath(1000, m_pFixture->WriteInput());
  // Empty first, then as wide as the lines of the new input.
  QTRY_VERIFY(log.HorizontalExtent() > 0 && log.HorizontalExtent() < wide);
}

void DialogLogTest::ANewInputClearsTheLog() {
  Post("Reader", "of before");
  QTRY_COMPARE(m_pFixture->Log().size(), 3);
  m_pFixture->SetPath(1000, m_pFixture->WriteInput());
  QCOMPARE(m_pFixture->Log(), (QStringList{"Ready", "Processors: 2, max threads: 8"}));
}

void DialogLogTest::ProgressShowsPositionAndPercentage_data() {
  QTest::addColumn<unsigned>("total");
  QTest::addColumn<unsigned>("done");
  QTest::addColumn<int>("position");
  QTest::addColumn<QString>("text");
  QTest::newRow("nothing") << 10'000U << 0U << 0 << "0.00%";
  QTest::newRow("a part") << 10'000U << 4567U << 456 << "45.67%";
  QTest::newRow("nearly all") << 10'000U << 9999U << 999 << "99.99%";
  QTest::newRow("all") << 10'000U << 10'000U << 1000 << "100.00%";
  QTest::newRow("another unit") << 3U << 1U << 333 << "33.33%";
}

void DialogLogTest::ProgressShowsPositionAndPercentage() {
  QFETCH(unsigned, total);
  QFETCH(unsigned, done);
  QFETCH(int, position);
  QFETCH(QString, text);
  PostProgress(total, done);
  const auto& bar = m_pFixture->Control<QProgressBar>(1020);
  QCOMPARE(bar.minimum(), 0);
  QCOMPARE(bar.maximum(), 1000);
  QCOMPARE(bar.value(), position);
  QCOMPARE(m_pFixture->Text(1021), text);
  QVERIFY(m_pFixture->Control(1021).isVisible());
}

void DialogLogTest::NothingMovesWhenTheProgressGetsAnotherDigit() {
  PostProgress(10'000, 1);
  QCoreApplication::processEvents();
  const QRect before = m_pFixture->Control(1020).geometry();
  PostProgress(10'000, 10'000);
  QCoreApplication::processEvents();
  QCOMPARE(m_pFixture->Control(1020).geometry(), before);
}

void DialogLogTest::ProgressOfNothingIsIgnored() {
  PostProgress(10'000, 5000);
  PostProgress(0, 0);
  QCOMPARE(m_pFixture->Text(1021), QString("50.00%"));
}

void DialogLogTest::ViewAsTextWritesEveryLineAndOpensTheFile() {
  Post("Reader", "\xC3\xA4 line");
  QTRY_COMPARE(m_pFixture->Log().size(), 3);
  const auto opened = test::OpenedPaths().size();
  m_pFixture->Click(1023);
  std::string expected;
  for (const std::string& line : m_pFixture->Control<CLogList>(1022).Lines()) expected += line + "\n";
  QVERIFY(expected.ends_with("Reader> \xC3\xA4 line\n"));
  QCOMPARE(test::ReadWholeFile(m_strFile), expected);
  QTRY_COMPARE(test::OpenedPaths().size(), opened + 1);
  QCOMPARE(test::OpenedPaths().last().toStdString(), m_strFile);
}

void DialogLogTest::ViewAsTextOfAnEmptyLogWritesAnEmptyFile() {
  m_pFixture->Control<CLogList>(1022).Clear();
  const auto opened = test::OpenedPaths().size();
  m_pFixture->Click(1023);
  QCOMPARE(test::ReadWholeFile(m_strFile), std::string());
  QTRY_COMPARE(test::OpenedPaths().size(), opened + 1);
}

void DialogLogTest::ViewAsTextTellsWhenTheFileCannotBeWritten() {
  std::filesystem::remove(test::PathOf(m_strFile));
  std::filesystem::create_directory(test::PathOf(m_strFile));
  m_pFixture->Answers().Give(QMessageBox::Ok);
  m_pFixture->Click(1023);
  QVERIFY(m_pFixture->Answers().AllUsed());
  const test::SShownBox& box = m_pFixture->Answers().Shown().back();
  QCOMPARE(box.caption, QString("Open File"));
  CFile file;
  QVERIFY(!file.Open(m_strFile, platform::EOpenMode::Replace));
  QCOMPARE(box.text, QString::fromStdString(m_strFile + ": " + SystemErrorText()));
  QCOMPARE(box.icon, QMessageBox::Critical);
  QCOMPARE(box.buttons, QMessageBox::StandardButtons(QMessageBox::Ok));
  std::filesystem::remove(test::PathOf(m_strFile));
}

void DialogLogTest::ViewAsTextTellsWhenNoProgramOpensIt() {
  const test::CNoOpener noOpener;
  m_pFixture->Answers().Give(QMessageBox::Ok);
  m_pFixture->Click(1023);
  QVERIFY(m_pFixture->Answers().AllUsed());
  const test::SShownBox& box = m_pFixture->Answers().Shown().back();
  QCOMPARE(box.caption, QString("Open File"));
  const QString begin = QString("Error processing \"%1\" -\n \n").arg(m_strFile.c_str());
  QCOMPARE(box.text.left(begin.size()), begin);
  const QString wayOut = "\n\n" + QString::fromStdString(WayOutOfOpening(0));
  QVERIFY2(box.text.endsWith(wayOut), qPrintable(box.text));
  const QString reason = box.text.mid(begin.size()).chopped(wayOut.size());
  QVERIFY2(test::CNoOpener::Reasons().contains(reason), qPrintable(box.text));
  QCOMPARE(box.icon, QMessageBox::Critical);
  QCOMPARE(box.buttons, QMessageBox::StandardButtons(QMessageBox::Ok));
}

void DialogLogTest::TheHelpLinkOpensTheHelpText() {
  const auto opened = test::OpenedPaths().size();
  m_pFixture->Click(1024);
  QTRY_COMPARE(test::OpenedPaths().size(), opened + 1);
  const QString path = test::OpenedPaths().last();
  QVERIFY2(QRegularExpression("[/\\\\]Halvarn_\\d\\d\\d\\.rtf$").match(path).hasMatch(), qPrintable(path));
  QVERIFY(test::ReadWholeFile(path.toStdString()).starts_with("{\\rtf"));
}

}  // namespace carvello

CARVELLO_UI_TEST(carvello::DialogLogTest)
#include "dialog_log_test.moc"
