#include "ui/my_list_ctrl.h"

#include <QHeaderView>
#include <QLineEdit>
#include <QSignalSpy>

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

}  // namespace carvello

CARVELLO_UI_TEST(carvello::MyListCtrlTest)
#include "my_list_ctrl_test.moc"
