#include "ui/my_list_ctrl.h"

#include <QHeaderView>
#include <QLineEdit>
#include <QScrollBar>
#include <QSignalSpy>
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
  void SizesEveryColumnToContentsAndHeader();
  void SizesColumnsAnewForAnotherFont();
  void TellsTheWholeTextOfANarrowColumn();
  void CannotBeEdited();
  void TakesThousandsOfRows();
  void TheLastCellTellsInAColourAndInFull();
  void TheLastColumnGrowsToALimitAndStaysInView();
  void IsReadableInEveryThemeAlsoWhileItIsDisabled_data();
  void IsReadableInEveryThemeAlsoWhileItIsDisabled();
  void ScrollsAlsoWhileItIsDisabled();
  void SelectsAndDeletesNothingWhileItIsDisabled();

 private:
  void Click(int row, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    const QRect cell = m_pList->visualItemRect(m_pList->topLevelItem(row));
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
  QCOMPARE(m_pList->columnCount(), 6);
  QCOMPARE(m_pList->RowCount(), 4);
  QCOMPARE(m_pList->headerItem()->text(4), "Filename");
  QCOMPARE(m_pList->topLevelItem(0)->text(0), "3.500.000");
  QCOMPARE(m_pList->topLevelItem(3)->text(0), "28.400.000");
  QCOMPARE(m_pList->topLevelItem(3)->text(5), "");
}

void MyListCtrlTest::SelectsWholeRowsAndSeveral() {
  QVERIFY(!m_pList->HasSelection());
  const QSignalSpy changes(m_pList.get(), &QTreeWidget::itemSelectionChanged);
  Click(2);
  QCOMPARE(m_pList->SelectedRows(), std::vector<std::size_t>{2});
  QVERIFY(m_pList->topLevelItem(2)->isSelected());
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
  QCOMPARE(m_pList->topLevelItem(0)->toolTip(4), Row("")[4]);
  QCOMPARE(m_pList->textElideMode(), Qt::ElideMiddle);
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
  QCOMPARE(m_pList->topLevelItem(1)->text(5), "failed: No space left on device");
  QCOMPARE(m_pList->topLevelItem(1)->toolTip(5), "failed: No space left on device");
  QCOMPARE(m_pList->topLevelItem(1)->data(5, Qt::AccessibleTextRole).toString(), "failed: No space left on device");
  const auto told = changes.count();
  QVERIFY(told > 0);
  m_pList->SetLastCell(1, {"failed: No space left on device", ETone::Bad});
  m_pList->SetLastCell(0, {});
  QCOMPARE(changes.count(), told);  // what is there already costs nothing
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
