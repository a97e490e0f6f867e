#include "ui/log_list.h"

#include <QApplication>
#include <QClipboard>
#include <QElapsedTimer>
#include <QPainter>
#include <QScrollBar>
#include <algorithm>
#include <ctime>

#include "ui/readable_colours.h"
#include "ui/themes.h"
#include "ui/ui_test.h"

namespace carvello {

class LogListTest : public QObject {
  Q_OBJECT

 private slots:
  void init();
  void ALineHasTimeNameAndText();
  void ALineWithoutANameHasTimeAndText();
  void ATextOfSeveralLinesIsOneLine();
  void WhatWouldBeObeyedIsEscaped();
  void FollowsTheNewestLine();
  void AWideLineWidensTheExtentWhichOnlyGrows();
  void ClearingResetsTheExtent();
  void ALongLineCanBeScrolledTo();
  void LinesAreThereBeforeTheyAreInView();
  void ClearingForgetsLinesThatAreNotInViewYet();
  void CopiesTheSelectedLinesInTheirOrder();
  void CopiesNothingWithoutASelection();
  void SelectsSeveralLinesWithTheMouse();
  void ABurstOf100000LinesLosesNoneAndKeepsAnswering();
  void TheTimeIsThatOfTheLine();
  void MeasuresAnewForAnotherFont();
  void ErrorsAndWarningsStandOutInEveryTheme_data();
  void ErrorsAndWarningsStandOutInEveryTheme();
  void AMarkedLineIsAsHighAsAnyOther();
  void ClearingButErrorsKeepsErrorsAndWarningsWithTheirTimes();

 private:
  void ShowAll() const {
    QTRY_COMPARE_WITH_TIMEOUT(m_pLog->model()->rowCount(), static_cast<int>(m_pLog->Lines().size()), 60'000);
  }

  std::unique_ptr<CLogList> m_pLog;
  std::int64_t m_now = 0;
};

void LogListTest::init() {
  test::SetTimeZone("XXX-1");  // an hour ahead of UTC
  m_now = 1'604'275'140;       // 2020-11-02 00:59:00 there
  m_pLog = std::make_unique<CLogList>();
  m_pLog->SetClock([this] { return m_now; });
  m_pLog->resize(400, 200);
  m_pLog->show();
}

void LogListTest::ALineHasTimeNameAndText() {
  m_pLog->AddLine("Reader", "Opening");
  QCOMPARE(m_pLog->Lines(), std::vector<std::string>{"00:59:00> Reader> Opening"});
}

void LogListTest::ALineWithoutANameHasTimeAndText() {
  m_pLog->AddLine("Ready");
  m_pLog->AddLine("", "Set");
  QCOMPARE(m_pLog->Lines(), (std::vector<std::string>{"00:59:00> Ready", "00:59:00> Set"}));
}

void LogListTest::ATextOfSeveralLinesIsOneLine() {
  m_pLog->AddLine("a\r\nb\nc");
  QCOMPARE(m_pLog->Lines(), std::vector<std::string>{"00:59:00> a  b c"});
}

void LogListTest::WhatWouldBeObeyedIsEscaped() {
  m_pLog->AddLine("Reader\x1B", "a\t\u009B\u202Eb\xFF");
  QCOMPARE(m_pLog->Lines(), std::vector<std::string>{"00:59:00> Reader\\x1B> a\\t\\u009B\\u202Eb\\xFF"});
}

void LogListTest::FollowsTheNewestLine() {
  for (int i = 0; i < 500; ++i) m_pLog->AddLine("line " + std::to_string(i));
  ShowAll();
  const QRect last = m_pLog->visualRect(m_pLog->model()->index(499, 0));
  QVERIFY(m_pLog->viewport()->rect().contains(last.center()));
  QCOMPARE(m_pLog->verticalScrollBar()->value(), m_pLog->verticalScrollBar()->maximum());
  m_pLog->verticalScrollBar()->setValue(0);
  m_pLog->AddLine("one more");
  ShowAll();
  QCOMPARE(m_pLog->verticalScrollBar()->value(), m_pLog->verticalScrollBar()->maximum());
}

void LogListTest::AWideLineWidensTheExtentWhichOnlyGrows() {
  m_pLog->AddLine("short");
  ShowAll();
  const int narrow = m_pLog->HorizontalExtent();
  QCOMPARE(narrow, m_pLog->fontMetrics().horizontalAdvance("00:59:00> short "));
  const std::string wide(300, 'w');
  m_pLog->AddLine(wide);
  ShowAll();
  QCOMPARE(m_pLog->HorizontalExtent(),
           m_pLog->fontMetrics().horizontalAdvance("00:59:00> " + QString::fromStdString(wide) + " "));
  const int extent = m_pLog->HorizontalExtent();
  m_pLog->AddLine("short");
  ShowAll();
  QCOMPARE(m_pLog->HorizontalExtent(), extent);
}

void LogListTest::ClearingResetsTheExtent() {
  m_pLog->AddLine(std::string(300, 'w'));
  ShowAll();
  QVERIFY(m_pLog->horizontalScrollBar()->maximum() > 0);
  m_pLog->Clear();
  QCOMPARE(m_pLog->HorizontalExtent(), 0);
  QVERIFY(m_pLog->Lines().empty());
  QTRY_COMPARE(m_pLog->horizontalScrollBar()->maximum(), 0);
  m_pLog->AddLine("short");
  ShowAll();
  QTRY_COMPARE(m_pLog->horizontalScrollBar()->maximum(), 0);
}

void LogListTest::ALongLineCanBeScrolledTo() {
  m_pLog->AddLine(std::string(300, 'w'));
  ShowAll();
  // A page and what lies beyond it are as wide as the line and little more.
  const int range = m_pLog->horizontalScrollBar()->maximum() + m_pLog->viewport()->width();
  QVERIFY(range >= m_pLog->HorizontalExtent());
  QVERIFY(range < m_pLog->HorizontalExtent() + 20);
}

void LogListTest::LinesAreThereBeforeTheyAreInView() {
  m_pLog->AddLine("a");
  QCOMPARE(m_pLog->model()->rowCount(), 0);
  QCOMPARE(m_pLog->Lines().size(), std::size_t{1});
  ShowAll();
  m_pLog->AddLine("b");
  QCOMPARE(m_pLog->Lines(), (std::vector<std::string>{"00:59:00> a", "00:59:00> b"}));
}

void LogListTest::ClearingForgetsLinesThatAreNotInViewYet() {
  m_pLog->AddLine("a");
  m_pLog->Clear();
  m_pLog->AddLine("b");
  ShowAll();
  QCOMPARE(m_pLog->Lines(), std::vector<std::string>{"00:59:00> b"});
  QCOMPARE(m_pLog->model()->index(0, 0).data().toString(), "00:59:00> b");
}

void LogListTest::CopiesTheSelectedLinesInTheirOrder() {
  for (const char* text : {"a", "b", "c", "d"}) m_pLog->AddLine(text);
  ShowAll();
  QItemSelectionModel* pSelection = m_pLog->selectionModel();
  pSelection->select(m_pLog->model()->index(3, 0), QItemSelectionModel::Select);
  pSelection->select(m_pLog->model()->index(1, 0), QItemSelectionModel::Select);
  QTest::keySequence(m_pLog.get(), QKeySequence::Copy);
  QCOMPARE(QApplication::clipboard()->text(), "00:59:00> b\n00:59:00> d");
  QTest::keySequence(m_pLog.get(), QKeySequence::SelectAll);
  QTest::keySequence(m_pLog.get(), QKeySequence::Copy);
  QCOMPARE(QApplication::clipboard()->text(), "00:59:00> a\n00:59:00> b\n00:59:00> c\n00:59:00> d");
}

void LogListTest::CopiesNothingWithoutASelection() {
  m_pLog->AddLine("a");
  ShowAll();
  QApplication::clipboard()->setText("kept");
  QTest::keySequence(m_pLog.get(), QKeySequence::Copy);
  QCOMPARE(QApplication::clipboard()->text(), "kept");
}

void LogListTest::SelectsSeveralLinesWithTheMouse() {
  for (const char* text : {"a", "b", "c"}) m_pLog->AddLine(text);
  ShowAll();
  const auto click = [this](int row, Qt::KeyboardModifiers modifiers) {
    QTest::mouseClick(m_pLog->viewport(), Qt::LeftButton, modifiers,
                      m_pLog->visualRect(m_pLog->model()->index(row, 0)).center());
  };
  click(0, Qt::NoModifier);
  click(2, Qt::ShiftModifier);
  QTest::keySequence(m_pLog.get(), QKeySequence::Copy);
  QCOMPARE(QApplication::clipboard()->text(), "00:59:00> a\n00:59:00> b\n00:59:00> c");
}

void LogListTest::ABurstOf100000LinesLosesNoneAndKeepsAnswering() {
  constexpr int kLines = 100'000;
  for (int i = 0; i < kLines; ++i) m_pLog->AddLine("Writer [1]", "line number " + std::to_string(i));
  // While lines come into view, a click is answered as soon as the work on hand is done: the longest turn of the
  // event loop is the longest wait.
  QElapsedTimer turn;
  qint64 longest = 0;
  int turns = 0;
  while (m_pLog->model()->rowCount() < kLines) {
    turn.start();
    QApplication::processEvents(QEventLoop::WaitForMoreEvents);
    longest = std::max(longest, turn.elapsed());
    ++turns;
  }
  qInfo("%d turns, the longest %lld ms", turns, static_cast<long long>(longest));
  QVERIFY(turns > 1);
  const std::vector<std::string> lines = m_pLog->Lines();
  QCOMPARE(lines.size(), static_cast<std::size_t>(kLines));
  for (int i = 0; i < kLines; ++i) {
    QCOMPARE(lines[static_cast<std::size_t>(i)], "00:59:00> Writer [1]> line number " + std::to_string(i));
  }
  QVERIFY(m_pLog->viewport()->rect().contains(m_pLog->visualRect(m_pLog->model()->index(kLines - 1, 0)).center()));
}

void LogListTest::TheTimeIsThatOfTheLine() {
  m_pLog->AddLine("a");
  m_now += 61;
  m_pLog->AddLine("b");
  m_now -= 61;
  m_pLog->AddLine("c");
  QCOMPARE(m_pLog->Lines(), (std::vector<std::string>{"00:59:00> a", "01:00:01> b", "00:59:00> c"}));
}

void LogListTest::MeasuresAnewForAnotherFont() {
  m_pLog->AddLine("some words");
  ShowAll();
  const int before = m_pLog->HorizontalExtent();
  QFont font = m_pLog->font();
  font.setPointSize(font.pointSize() * 3);
  m_pLog->setFont(font);
  QVERIFY(m_pLog->HorizontalExtent() > 2 * before);
  QTRY_VERIFY(m_pLog->visualRect(m_pLog->model()->index(0, 0)).height() >= m_pLog->fontMetrics().lineSpacing());
}

void LogListTest::ErrorsAndWarningsStandOutInEveryTheme_data() {
  QTest::addColumn<QPalette>("palette");
  for (const auto& [name, palette] : test::Themes()) QTest::newRow(name) << palette;
}

void LogListTest::ErrorsAndWarningsStandOutInEveryTheme() {
  QFETCH(QPalette, palette);
  m_pLog->setPalette(palette);
  m_pLog->AddLine("Reader", "Opening");
  m_pLog->AddLine("Reader", "[WARNING] Data size");
  m_pLog->AddLine("Writer [0]", "[ERROR] a.wav: disk full");
  m_pLog->AddLine("Writer [1]", "Error creating b.wav - no such folder");
  ShowAll();
  const auto colour = [this](int row) { return m_pLog->model()->index(row, 0).data(Qt::ForegroundRole); };
  const auto bold = [this](int row) { return m_pLog->model()->index(row, 0).data(Qt::FontRole).value<QFont>().bold(); };
  QVERIFY(!colour(0).isValid() && !bold(0));
  const QColor base = m_pLog->palette().color(QPalette::Base);
  for (int row = 1; row < 4; ++row) {
    QVERIFY(bold(row));
    QVERIFY(ContrastOf(colour(row).value<QColor>(), base) >= 4.5);
    // What is painted has that colour.
    const QRect line = m_pLog->visualRect(m_pLog->model()->index(row, 0));
    QVERIFY(test::BestContrast(m_pLog->viewport()->grab(line).toImage(), base) >= 4.5);
  }
  QVERIFY(colour(1) != colour(2));
  QCOMPARE(colour(2), colour(3));
}

void LogListTest::AMarkedLineIsAsHighAsAnyOther() {
  m_pLog->AddLine("Opening");
  m_pLog->AddLine("[ERROR] disk full");
  ShowAll();
  QCOMPARE(m_pLog->visualRect(m_pLog->model()->index(1, 0)).size(),
           m_pLog->visualRect(m_pLog->model()->index(0, 0)).size());
  QFont bold = m_pLog->font();
  bold.setBold(true);
  QVERIFY(m_pLog->HorizontalExtent() >= QFontMetrics(bold).horizontalAdvance("00:59:00> [ERROR] disk full "));
}

void LogListTest::ClearingButErrorsKeepsErrorsAndWarningsWithTheirTimes() {
  m_pLog->AddLine("Opening");
  m_pLog->AddLine("[ERROR] disk full");
  ShowAll();
  m_pLog->AddLine("[WARNING] not in view yet");
  m_pLog->AddLine("Closed");
  m_now += 60;
  m_pLog->ClearButErrors();
  m_pLog->AddLine("Ready");
  const std::vector<std::string> expected = {"00:59:00> [ERROR] disk full", "00:59:00> [WARNING] not in view yet",
                                             "01:00:00> Ready"};
  QCOMPARE(m_pLog->Lines(), expected);
  ShowAll();
  QCOMPARE(m_pLog->Lines(), expected);
}

}  // namespace carvello

CARVELLO_UI_TEST(carvello::LogListTest)
#include "log_list_test.moc"
