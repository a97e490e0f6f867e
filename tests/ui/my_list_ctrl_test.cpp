#include "ui/my_list_ctrl.h"

#include <QApplication>
#include <QClipboard>
#include <QHeaderView>
#include <QHelpEvent>
#include <QLineEdit>
#include <QScreen>
#include <QScrollBar>
#include <QSignalSpy>
#include <QToolTip>
#include <QWheelEvent>

#include "ui/readable_colours.h"
#include "ui/themes.h"
#include "ui/ui_test.h"

namespace carvello {

namespace {

const QStringList kTitles = {"Centre", "Bw", "Start", "Finish", "Filename", ""};

QStringList Row(const QString& centre) {
  return {centre, "10 kHz", "2020-11-01 23:59:00z", "2020-11-02 00:59:00z", "2020-11-01 2359z, f=7.100 MHz.wav", ""};
}

}  // namespace

class MyListCtrlTest : public QObject {
  Q_OBJECT

 private slots:
  void init();
  void ShowsRowsInTheirOrder();
  void SelectsWholeRowsAndSeveral();
  void SelectsAllByKey();
  void TellsOfTheDeleteKey();
  void NewRowsAreNotSelected();
  void TheKeyboardGoesOnBetweenRowsWithoutSelectingAny();
  void AsksToEditTheRowOfADoubleClickEnterOrF2();
  void CopiesSelectedRowsAsLinesWithTabs();
  void SizesEveryColumnToContentsAndHeader();
  void SizesColumnsAnewForAnotherFont();
  void TellsTheWholeTextOfANarrowColumn();
  void ToolTipsShowTextsAsTheyStandAndStayOnTheScreen_data();
  void ToolTipsShowTextsAsTheyStandAndStayOnTheScreen();
  void WhatTheListHasNoRoomForIsLeftOutInItsMiddle();
  void CannotBeEdited();
  void TakesThousandsOfRows();
  void TheLastCellTellsInAColourAndInFull();
  void TheLastCellTellsInBriefWhatItHasNoRoomFor();
  void TheLastColumnGrowsToALimitAndStaysInView();
  void IsReadableInEveryThemeAlsoWhileItIsDisabled_data();
  void IsReadableInEveryThemeAlsoWhileItIsDisabled();
  void ScrollsAlsoWhileItIsDisabled();
  void SelectsAndDeletesNothingWhileItIsDisabled();

 private:
  QString Data(int row, int column, int role) const {
    return m_pList->model()->index(row, column).data(role).toString();
  }

  void Click(int row, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    const QRect cell = m_pList->visualRect(m_pList->model()->index(row, 0));
    QTest::mouseClick(m_pList->viewport(), Qt::LeftButton, modifiers, {cell.left() + 10, cell.center().y()});
  }

  std::unique_ptr<CMyMFCListCtrl> m_pList;
};

void MyListCtrlTest::init() {
  m_pList = std::make_unique<CMyMFCListCtrl>();
  m_pList->SetColumns(kTitles);
  m_pList->SetRows({Row("3.500.000"), Row("7.100.000"), Row("14.200.000"), Row("28.400.000")});
  m_pList->resize(900, 300);
  m_pList->show();
}

void MyListCtrlTest::ShowsRowsInTheirOrder() {
  QCOMPARE(m_pList->ColumnCount(), 6);
  QCOMPARE(m_pList->RowCount(), 4);
  QCOMPARE(m_pList->Title(4), "Filename");
  QCOMPARE(m_pList->Cell(0, 0), "3.500.000");
  QCOMPARE(m_pList->Cell(3, 0), "28.400.000");
  QCOMPARE(m_pList->Cell(3, 5), "");
}

void MyListCtrlTest::SelectsWholeRowsAndSeveral() {
  QVERIFY(!m_pList->HasSelection());
  const QSignalSpy changes(m_pList.get(), &CMyMFCListCtrl::itemSelectionChanged);
  Click(2);
  QCOMPARE(m_pList->SelectedRows(), std::vector<std::size_t>{2});
  QVERIFY(m_pList->selectionModel()->isRowSelected(2, {}));
  Click(0, Qt::ControlModifier);
  QCOMPARE(m_pList->SelectedRows(), (std::vector<std::size_t>{0, 2}));
  Click(3, Qt::ShiftModifier);
  QCOMPARE(m_pList->SelectedRows(), (std::vector<std::size_t>{0, 1, 2, 3}));
  QVERIFY(m_pList->HasSelection());
  QCOMPARE(changes.count(), 3);
}

void MyListCtrlTest::SelectsAllByKey() {
  QTest::keySequence(m_pList.get(), QKeySequence::SelectAll);
  QCOMPARE(m_pList->SelectedRows().size(), std::size_t{4});
}

void MyListCtrlTest::TellsOfTheDeleteKey() {
  const QSignalSpy spy(m_pList.get(), &CMyMFCListCtrl::DeletePressed);
  QTest::keyClick(m_pList.get(), Qt::Key_Delete);
  QCOMPARE(spy.count(), 1);
  QTest::keyClick(m_pList.get(), Qt::Key_Backspace);
  QCOMPARE(spy.count(), 1);
  QCOMPARE(m_pList->RowCount(), 4);
}

void MyListCtrlTest::NewRowsAreNotSelected() {
  Click(1);
  m_pList->SetRows({Row("1.000.000"), Row("2.000.000")});
  QVERIFY(!m_pList->HasSelection());
  QVERIFY(m_pList->SelectedRows().empty());
  QVERIFY(m_pList->updatesEnabled());
}

void MyListCtrlTest::TheKeyboardGoesOnBetweenRowsWithoutSelectingAny() {
  m_pList->GoBefore(2);
  QVERIFY(!m_pList->HasSelection());
  QTest::keyClick(m_pList.get(), Qt::Key_Down);
  QCOMPARE(m_pList->SelectedRows(), std::vector<std::size_t>{2});
  m_pList->GoBefore(2);
  QTest::keyClick(m_pList.get(), Qt::Key_Up);
  QCOMPARE(m_pList->SelectedRows(), std::vector<std::size_t>{1});
  m_pList->GoBefore(0);
  m_pList->clearSelection();
  m_pList->GoBefore(0);
  QTest::keyClick(m_pList.get(), Qt::Key_Down);
  QCOMPARE(m_pList->SelectedRows(), std::vector<std::size_t>{0});
  m_pList->GoBefore(4);  // behind the last
  QTest::keyClick(m_pList.get(), Qt::Key_Up);
  QCOMPARE(m_pList->SelectedRows(), std::vector<std::size_t>{2});
}

void MyListCtrlTest::AsksToEditTheRowOfADoubleClickEnterOrF2() {
  const QSignalSpy spy(m_pList.get(), &CMyMFCListCtrl::EditPressed);
  QTest::keyClick(m_pList.get(), Qt::Key_F2);  // no row is selected
  QCOMPARE(spy.count(), 0);
  Click(1);
  QTest::keyClick(m_pList.get(), Qt::Key_F2);
  QTest::keyClick(m_pList.get(), Qt::Key_Return);
  const QPoint spot = m_pList->visualRect(m_pList->model()->index(3, 0)).center();
  QTest::mouseDClick(m_pList->viewport(), Qt::LeftButton, {}, spot);
  QTest::mouseDClick(m_pList->viewport(), Qt::LeftButton, {}, {spot.x(), m_pList->viewport()->height() - 5});
  QCOMPARE(spy.count(), 3);
  QCOMPARE(spy[0][0].toInt(), 1);
  QCOMPARE(spy[1][0].toInt(), 1);
  QCOMPARE(spy[2][0].toInt(), 3);
}

void MyListCtrlTest::CopiesSelectedRowsAsLinesWithTabs() {
  QStringList odd = Row("9.000.000");
  odd[4] = "a\tb\nc";
  m_pList->SetRows({Row("1.000.000"), odd, Row("2.000.000")});
  m_pList->SelectRows({0, 1});
  const QString line = "10 kHz\t2020-11-01 23:59:00z\t2020-11-02 00:59:00z\t";
  const QString first = "1.000.000\t" + line + "2020-11-01 2359z, f=7.100 MHz.wav";
  const QString second = "9.000.000\t" + line + "a b c";
  QCOMPARE(m_pList->SelectedText(), first + "\n" + second + "\n");
  m_pList->SetLastCell(1, {"done", ETone::Good});
  QCOMPARE(m_pList->SelectedText(), first + "\t\n" + second + "\tdone\n");
  QTest::keySequence(m_pList.get(), QKeySequence::Copy);
  QCOMPARE(QApplication::clipboard()->text(), m_pList->SelectedText());
}

void MyListCtrlTest::SizesEveryColumnToContentsAndHeader() {
  const QFontMetrics metrics = m_pList->fontMetrics();
  const auto widest = [&](const char* text) { return metrics.horizontalAdvance(QString::fromUtf8(text)); };
  QVERIFY(m_pList->columnWidth(0) >= widest("28.400.000") + 10);
  QVERIFY(m_pList->columnWidth(4) >= widest("2020-11-01 2359z, f=7.100 MHz.wav") + 10);
  const int filled = m_pList->columnWidth(1);
  m_pList->SetRows({});
  QVERIFY(m_pList->columnWidth(1) >= widest("Bw") + 10);
  QVERIFY(m_pList->columnWidth(1) < filled);
  for (int column = 0; column < 5; ++column) {
    QCOMPARE(m_pList->columnWidth(column), m_pList->header()->sectionSizeHint(column) + 10);
  }

  // A wide row far below the rows in view counts, too.
  std::vector<QStringList> rows(500, Row("1"));
  rows.back()[0] = "99.999.999.999.999.999";
  m_pList->SetRows(rows);
  QVERIFY(m_pList->columnWidth(0) >= widest("99.999.999.999.999.999") + 10);
}

void MyListCtrlTest::SizesColumnsAnewForAnotherFont() {
  const int before = m_pList->columnWidth(4);
  QFont font = m_pList->font();
  font.setPointSize(font.pointSize() * 2);
  m_pList->setFont(font);
  QVERIFY(m_pList->columnWidth(4) > before * 3 / 2);
}

void MyListCtrlTest::TellsTheWholeTextOfANarrowColumn() {
  QCOMPARE(Data(0, 4, Qt::ToolTipRole), Row("")[4]);
  QCOMPARE(m_pList->textElideMode(), Qt::ElideMiddle);
}

void MyListCtrlTest::ToolTipsShowTextsAsTheyStandAndStayOnTheScreen_data() {
  QTest::addColumn<QString>("text");
  QTest::newRow("plain") << "2020-11-01 2359z, f=7.100 MHz.wav";
  QTest::newRow("markup") << "<b>x</b> &amp;  two blanks.wav";
  QTest::newRow("without blanks") << "/" + QString(2000, 'x') + "/a.wav";
  QTest::newRow("of large characters") << QString::fromUtf8("😀").repeated(500);
}

void MyListCtrlTest::ToolTipsShowTextsAsTheyStandAndStayOnTheScreen() {
  QFETCH(QString, text);
  QStringList row = Row("7.100.000");
  row[4] = text;
  m_pList->SetRows({row});
  const QPoint spot = m_pList->visualRect(m_pList->model()->index(0, 4)).topLeft() + QPoint(5, 5);
  QHelpEvent event(QEvent::ToolTip, spot, m_pList->viewport()->mapToGlobal(spot));
  QApplication::sendEvent(m_pList->viewport(), &event);
  const QWidget* pTip = test::ToolTipShown();
  QVERIFY(pTip != nullptr);
  QCOMPARE(test::ToolTipText(), text);
  QVERIFY2(pTip->width() <= pTip->screen()->availableSize().width(), qPrintable(QString::number(pTip->width())));
  QToolTip::hideText();
}

// The end of a name can be seen wherever the list ends.
void MyListCtrlTest::WhatTheListHasNoRoomForIsLeftOutInItsMiddle() {
  const QStringList row = Row("3.500.000");
  const QRect whole = m_pList->visualRect(m_pList->model()->index(0, 4));
  // The row with such a name, as it looks.
  const auto picture = [&](const QString& name) {
    QStringList other = row;
    other[4] = name;
    const int scrolled = m_pList->horizontalScrollBar()->value();
    m_pList->SetRows({other});
    m_pList->setColumnWidth(4, whole.width());
    QCoreApplication::processEvents();
    m_pList->horizontalScrollBar()->setValue(scrolled);
    const QRect cell = m_pList->visualRect(m_pList->model()->index(0, 4));
    return m_pList->viewport()->grab(QRect(0, cell.top(), m_pList->viewport()->width(), cell.height())).toImage();
  };
  const auto changed = [&](qsizetype at) { return QString(row[4]).replace(at, 2, "XX"); };
  m_pList->resize(whole.left() + whole.width() / 2, 300);
  const QImage shown = picture(row[4]);
  QVERIFY(picture(changed(row[4].size() - 6)) != shown);  // what is near the end of the name is in view
  QVERIFY(picture(changed(row[4].size() / 2)) == shown);  // and what is in its middle is not
  // Scrolled to its end, the name begins where the list does.
  m_pList->horizontalScrollBar()->setValue(whole.left() + whole.width() / 4);
  const QImage scrolled = picture(row[4]);
  QVERIFY(picture(changed(0)) != scrolled);
}

void MyListCtrlTest::CannotBeEdited() {
  Click(1);
  QTest::keyClick(m_pList.get(), Qt::Key_F2);
  QVERIFY(m_pList->viewport()->findChildren<QLineEdit*>().isEmpty());
}

void MyListCtrlTest::TakesThousandsOfRows() {
  m_pList->SetRows(std::vector<QStringList>(20'000, Row("7.100.000")));
  QCOMPARE(m_pList->RowCount(), 20'000);
}

void MyListCtrlTest::TheLastCellTellsInAColourAndInFull() {
  const QSignalSpy changes(m_pList->model(), &QAbstractItemModel::dataChanged);
  m_pList->SetLastCell(1, {"failed: No space left on device", ETone::Bad});
  QCOMPARE(m_pList->Cell(1, 5), "failed: No space left on device");
  QCOMPARE(Data(1, 5, Qt::ToolTipRole), "failed: No space left on device");
  QCOMPARE(Data(1, 5, Qt::AccessibleTextRole), "failed: No space left on device");
  const auto told = changes.count();
  QVERIFY(told > 0);
  m_pList->SetLastCell(1, {"failed: No space left on device", ETone::Bad});
  m_pList->SetLastCell(0, {});
  QCOMPARE(changes.count(), told);  // what is there already costs nothing
}

void MyListCtrlTest::TheLastCellTellsInBriefWhatItHasNoRoomFor() {
  const std::string whole = "failed: Error writing 4194304 bytes - No space left on device";
  const std::string brief = "failed: No space left on device";
  // Whether the cell looks as one that can tell nothing but this text.
  const auto shows = [&](const std::string& text, int width) {
    const auto picture = [&](const SToneText& cell) {
      m_pList->SetLastCell(1, cell);
      m_pList->setColumnWidth(5, width);
      QCoreApplication::processEvents();
      return m_pList->viewport()->grab(m_pList->visualRect(m_pList->model()->index(1, 5))).toImage();
    };
    return picture({text, ETone::Bad, ""}) == picture({whole, ETone::Bad, brief});
  };
  m_pList->resize(1600, 300);
  m_pList->header()->setStretchLastSection(false);
  const int room = m_pList->fontMetrics().horizontalAdvance(QString::fromStdString(whole)) + 20;
  QVERIFY(shows(whole, room));
  QVERIFY(!shows(brief, room));
  QVERIFY(shows(brief, room - 40));
  QVERIFY(!shows(whole, room - 40));
  QCOMPARE(m_pList->Cell(1, 5).toStdString(), whole);
  QCOMPARE(Data(1, 5, Qt::ToolTipRole).toStdString(), whole);
}

void MyListCtrlTest::TheLastColumnGrowsToALimitAndStaysInView() {
  m_pList->resize(400, 300);
  m_pList->SetRows({Row("3.500.000")});
  QCoreApplication::processEvents();
  m_pList->ShowLastColumn();
  QScrollBar* pBar = m_pList->horizontalScrollBar();
  QVERIFY(pBar->maximum() > 0);
  QCOMPARE(pBar->value(), pBar->maximum());
  const int empty = m_pList->columnWidth(5);
  m_pList->SetLastCell(0, {"failed: disk full", ETone::Bad});
  const int reason = m_pList->columnWidth(5);
  QVERIFY(reason > empty);
  m_pList->SetLastCell(0, {"failed: " + std::string(500, 'x'), ETone::Bad});
  const int limit = m_pList->columnWidth(5);
  QVERIFY(limit > reason && limit < 300);
  QCoreApplication::processEvents();
  QCOMPARE(pBar->value(), pBar->maximum());
  m_pList->SetLastCell(0, {"done", ETone::Good});
  QCOMPARE(m_pList->columnWidth(5), limit);
  // Who has scrolled away stays there.
  pBar->setValue(0);
  m_pList->SetRows({Row("1.000.000")});
  m_pList->SetLastCell(0, {"100%", ETone::Plain});
  QCoreApplication::processEvents();
  QCOMPARE(pBar->value(), 0);
}

void MyListCtrlTest::IsReadableInEveryThemeAlsoWhileItIsDisabled_data() {
  QTest::addColumn<QPalette>("palette");
  for (const auto& [name, palette] : test::Themes()) QTest::newRow(name) << palette;
}

// The darkest against the lightest that is painted in a cell; a text as pale as other disabled ones has about 1.6.
void MyListCtrlTest::IsReadableInEveryThemeAlsoWhileItIsDisabled() {
  QFETCH(QPalette, palette);
  m_pList->setPalette(palette);
  m_pList->resize(1200, 300);
  const std::vector<SToneText> texts = {
      {"45%", ETone::Plain}, {"done", ETone::Good}, {"stopped", ETone::Caution}, {"failed: No space left", ETone::Bad}};
  for (int row = 0; row < 4; ++row) m_pList->SetLastCell(row, texts[static_cast<std::size_t>(row)]);
  for (const bool enabled : {true, false}) {
    m_pList->setEnabled(enabled);
    QCoreApplication::processEvents();
    for (int row = 0; row < 4; ++row) {
      for (const int column : {0, 4, 5}) {
        const QRect cell = m_pList->visualRect(m_pList->model()->index(row, column));
        const double contrast = test::BestContrast(m_pList->viewport()->grab(cell).toImage());
        QVERIFY2(contrast >= 4.5, qPrintable(QString("%1 %2: %3").arg(row).arg(column).arg(contrast)));
      }
    }
    const QImage titles = m_pList->header()->viewport()->grab(QRect(0, 0, 60, m_pList->header()->height())).toImage();
    QVERIFY2(test::BestContrast(titles) >= 4.5, qPrintable(QString::number(test::BestContrast(titles))));
  }
  // A row that was selected before stays readable, too.
  m_pList->setEnabled(true);
  Click(0);
  m_pList->setEnabled(false);
  QCoreApplication::processEvents();
  const QRect cell = m_pList->visualRect(m_pList->model()->index(0, 0));
  QVERIFY(test::BestContrast(m_pList->viewport()->grab(cell).toImage()) >= 4.5);
}

void MyListCtrlTest::ScrollsAlsoWhileItIsDisabled() {
  m_pList->SetRows(std::vector<QStringList>(500, Row("7.100.000")));
  m_pList->resize(400, 300);
  m_pList->setEnabled(false);
  QCoreApplication::processEvents();
  QScrollBar* pBar = m_pList->verticalScrollBar();
  QVERIFY(pBar->maximum() > 0);

  const QPointF middle = m_pList->viewport()->rect().center();
  QWheelEvent wheel(middle, m_pList->viewport()->mapToGlobal(middle), {}, {0, -240}, Qt::NoButton, Qt::NoModifier,
                    Qt::NoScrollPhase, false);
  QCoreApplication::sendEvent(m_pList->viewport(), &wheel);
  const int wheeled = pBar->value();
  QVERIFY(wheeled > 0);

  QTest::mouseClick(pBar, Qt::LeftButton, {}, {pBar->width() / 2, pBar->height() * 3 / 4});
  QVERIFY(pBar->value() > wheeled);

  const int before = m_pList->horizontalScrollBar()->value();
  QScrollBar* pAcross = m_pList->horizontalScrollBar();
  QTest::mousePress(pAcross, Qt::LeftButton, {}, {pAcross->width() / 4, pAcross->height() / 2});
  QTest::mouseMove(pAcross, {pAcross->width() * 3 / 4, pAcross->height() / 2});
  QTest::mouseRelease(pAcross, Qt::LeftButton, {}, {pAcross->width() * 3 / 4, pAcross->height() / 2});
  QVERIFY(pAcross->value() > before);

  QVERIFY(m_pList->ScrollByKey(Qt::Key_Home));
  QCOMPARE(pBar->value(), 0);
  QVERIFY(m_pList->ScrollByKey(Qt::Key_PageDown));
  QVERIFY(pBar->value() > 0);
  QVERIFY(m_pList->ScrollByKey(Qt::Key_End));
  QCOMPARE(pBar->value(), pBar->maximum());
  QVERIFY(m_pList->ScrollByKey(Qt::Key_PageUp));
  QVERIFY(!m_pList->ScrollByKey(Qt::Key_A));
}

void MyListCtrlTest::SelectsAndDeletesNothingWhileItIsDisabled() {
  Click(1);
  m_pList->setEnabled(false);
  const QSignalSpy spy(m_pList.get(), &CMyMFCListCtrl::DeletePressed);
  Click(2);
  Click(3, Qt::ControlModifier);
  QTest::keySequence(m_pList.get(), QKeySequence::SelectAll);
  QTest::keyClick(m_pList.get(), Qt::Key_Delete);
  QCOMPARE(m_pList->SelectedRows(), std::vector<std::size_t>{1});
  QCOMPARE(spy.count(), 0);
}

}  // namespace carvello

CARVELLO_UI_TEST(carvello::MyListCtrlTest)
#include "my_list_ctrl_test.moc"
