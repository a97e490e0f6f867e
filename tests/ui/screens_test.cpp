// The window on the screen that CARVELLO_SCREEN names ("1366x768"), at the scale that the toolkit is told.
#include <QComboBox>
#include <QScreen>
#include <QScrollBar>

#include "ui/carvello_app.h"
#include "ui/dialog_fixture.h"
#include "ui/field_scroller.h"
#include "ui/ui_test.h"

namespace carvello {

using test::CDialogFixture;

class ScreensTest : public QObject {
  Q_OBJECT

 private slots:
  void init() { m_pFixture = std::make_unique<CDialogFixture>(); }
  void cleanup() { m_pFixture.reset(); }
  void TheFirstWindowFits();
  void StartAndStopAreInView();
  void RemembersItsPlaceAndSize();
  void TheListShowsSomeRows();
  void WhatHasTheKeyboardIsInView();
  void FileNamesAreWholeOrLeftOutInTheirMiddle();
  void NoTextIsCutOff();
  void NoNameOfAFieldIsPaintedToItsEdge();
  void NoTextOfAddSequenceIsCutOff();
  void TheSpectrumWindowFitsAndCutsNoTextOff();
  void EveryFieldIsReachedOnAVeryLowWindow();

 private:
  void OpenReady() {
    m_pFixture->OpenReady();
    QCoreApplication::processEvents();
  }
  // Whether all of the widget can be seen.
  static bool InView(const QWidget& widget) {
    if (!widget.isVisible() || widget.rect().isEmpty()) return false;
    for (const QWidget* pAround = widget.parentWidget(); pAround != nullptr; pAround = pAround->parentWidget()) {
      if (!pAround->rect().contains(QRect(widget.mapTo(pAround, QPoint()), widget.size()))) return false;
      if (pAround->isWindow()) break;
    }
    return true;
  }

  QStringList CutOff(const QWidget& window);

  std::unique_ptr<CDialogFixture> m_pFixture;
  int m_nLooked = 0;
};

void ScreensTest::TheFirstWindowFits() {
  OpenReady();
  const QSize room = QGuiApplication::primaryScreen()->availableSize();
  const QSize frame = m_pFixture->Dialog().frameGeometry().size();
  QVERIFY2(
      frame.width() <= room.width() && frame.height() <= room.height(),
      qPrintable(
          QString("%1 x %2 on %3 x %4").arg(frame.width()).arg(frame.height()).arg(room.width()).arg(room.height())));
}

void ScreensTest::StartAndStopAreInView() {
  OpenReady();
  for (const int id : {1018, 1019, 1020, 1025, 1017})
    QVERIFY2(InView(m_pFixture->Control(id)), qPrintable(QString::number(id)));
}

void ScreensTest::RemembersItsPlaceAndSize() {
  OpenReady();
  const QRect first = m_pFixture->Dialog().geometry();
  m_pFixture->Dialog().setGeometry(first.adjusted(10, 40, -10, -20));
  QCoreApplication::processEvents();
  const QRect place = m_pFixture->Dialog().geometry();
  QVERIFY(place != first);
  m_pFixture->Dialog().close();
  OpenReady();
  QCOMPARE(m_pFixture->Dialog().geometry(), place);
}

void ScreensTest::TheListShowsSomeRows() {
  OpenReady();
  for (int i = 0; i < 20; ++i) {
    m_pFixture->SetFrequency(7'100'000 + 1000 * i);
    m_pFixture->Click(1015);
  }
  const int height = m_pFixture->List().visualRect(m_pFixture->List().model()->index(0, 0)).height();
  QVERIFY(height > 0);
  QVERIFY(m_pFixture->List().viewport()->height() >= 3 * height);
}

void ScreensTest::WhatHasTheKeyboardIsInView() {
  OpenReady();
  m_pFixture->Click(1086);
  m_pFixture->Click(1087);
  QWidget& first = m_pFixture->Control(1000);
  first.setFocus();
  QSet<const QWidget*> seen;
  for (int presses = 0; presses < 200; ++presses) {
    QWidget* pNow = QApplication::focusWidget();
    QTRY_VERIFY2(InView(*pNow), qPrintable(pNow->objectName()));
    seen.insert(pNow);
    QTest::keyClick(pNow, Qt::Key_Tab);
    if (QApplication::focusWidget() == &first) break;
  }
  QCOMPARE(QApplication::focusWidget(), &first);
  QVERIFY2(seen.size() > 20, qPrintable(QString::number(seen.size())));
}

// What the list shows of a long name ends as the name does.
void ScreensTest::FileNamesAreWholeOrLeftOutInTheirMiddle() {
  OpenReady();
  m_pFixture->Click(1015);
  CMyMFCListCtrl& list = m_pFixture->List();
  const QModelIndex name = list.model()->index(0, 4);
  const QRect cell = list.visualRect(name);
  const int shown = std::min(cell.right(), list.viewport()->width() - 1) - cell.left();
  const int whole = list.fontMetrics().horizontalAdvance(name.data().toString());
  const int part = list.fontMetrics().horizontalAdvance("2020-11-01 2359z… kHz.wav");
  QVERIFY2(shown >= std::min(whole, part), qPrintable(QString("%1 of %2").arg(shown).arg(whole)));
}

void ScreensTest::NoTextIsCutOff() {
  OpenReady();
  QCOMPARE(CutOff(m_pFixture->Dialog()), QStringList());
  QVERIFY(m_nLooked > 40);
}

// A text may be painted wider than the toolkit reckons.
void ScreensTest::NoNameOfAFieldIsPaintedToItsEdge() {
  OpenReady();
  int looked = 0;
  for (const QLabel* pLabel : m_pFixture->Dialog().findChildren<QLabel*>()) {
    if (!pLabel->objectName().startsWith("label_") || !pLabel->isVisible()) continue;
    ++looked;
    const QImage picture = const_cast<QLabel*>(pLabel)->grab().toImage();
    const QRgb background = picture.pixel(0, 0);
    for (int y = 0; y < picture.height(); ++y) {
      QVERIFY2(picture.pixel(picture.width() - 1, y) == background,
               qPrintable(pLabel->objectName() + ": " + pLabel->text()));
    }
  }
  QVERIFY(looked > 12);
}

void ScreensTest::NoTextOfAddSequenceIsCutOff() {
  OpenReady();
  QStringList cut = {"not looked at"};
  m_pFixture->Answers().Do([&](QDialog& dialog) {
    QCoreApplication::processEvents();
    cut = CutOff(dialog);
    dialog.reject();
  });
  m_pFixture->Click(1016);
  QCOMPARE(cut, QStringList());
  QVERIFY(m_nLooked >= 6);
}

void ScreensTest::TheSpectrumWindowFitsAndCutsNoTextOff() {
  OpenReady();
  QTest::keyClick(&m_pFixture->Dialog(), Qt::Key_F6);
  const QWidget* pWindow = nullptr;
  for (const QWidget* pTop : QApplication::topLevelWidgets()) {
    if (pTop->objectName() == "CSpectrumWindow" && pTop->isVisible()) pWindow = pTop;
  }
  QVERIFY(pWindow != nullptr);
  QCoreApplication::processEvents();
  const QSize room = QGuiApplication::primaryScreen()->availableSize(), frame = pWindow->frameGeometry().size();
  QVERIFY2(frame.width() <= room.width() && frame.height() <= room.height(),
           qPrintable(QString("%1 x %2").arg(frame.width()).arg(frame.height())));
  QCOMPARE(CutOff(*pWindow), QStringList());
  QVERIFY2(m_nLooked >= 15, qPrintable(QString::number(m_nLooked)));
}

// Labels and buttons that have less room than they need.
QStringList ScreensTest::CutOff(const QWidget& window) {
  QStringList cut;
  m_nLooked = 0;
  for (const QWidget* pWidget : window.findChildren<QWidget*>()) {
    const auto* pLabel = qobject_cast<const QLabel*>(pWidget);
    const auto* pButton = qobject_cast<const QAbstractButton*>(pWidget);
    if (pWidget->window() != &window || !pWidget->isVisible() || (pLabel == nullptr && pButton == nullptr)) continue;
    if (pLabel != nullptr && (pLabel->wordWrap() || pLabel->text().isEmpty())) continue;
    if (pButton != nullptr && pButton->text().isEmpty()) continue;
    // What gives way to others on purpose tells all of it in its tool tip.
    if (pWidget->sizePolicy().horizontalPolicy() == QSizePolicy::Ignored) continue;
    ++m_nLooked;
    const QSize wanted = pWidget->sizeHint();
    if (pWidget->width() >= wanted.width() && pWidget->height() >= wanted.height()) continue;
    cut << QString("%1: %2 of %3 wide, %4 of %5 high")
               .arg(pWidget->objectName())
               .arg(pWidget->width())
               .arg(wanted.width())
               .arg(pWidget->height())
               .arg(wanted.height());
  }
  return cut;
}

void ScreensTest::EveryFieldIsReachedOnAVeryLowWindow() {
  OpenReady();
  m_pFixture->Dialog().resize(m_pFixture->Dialog().minimumSizeHint());
  QCoreApplication::processEvents();
  auto* pScroller = m_pFixture->Dialog().findChild<CFieldScroller*>();
  QVERIFY(pScroller != nullptr && pScroller->verticalScrollBar()->maximum() > 0);
  QCOMPARE(pScroller->horizontalScrollBar()->maximum(), 0);
  StartAndStopAreInView();
  for (const int id : {1000, 1010, 1014, 1015, 1016, 1009}) {
    m_pFixture->Control(id).setFocus();
    QVERIFY2(InView(m_pFixture->Control(id)), qPrintable(QString::number(id)));
  }
}

}  // namespace carvello

int main(int argc, char** argv) {
  return carvello::test::RunUiTest(
      argc, argv, [] { return std::make_unique<carvello::ScreensTest>(); },
      [](int& count, char** arguments) { return std::make_unique<carvello::CCarvelloApp>(count, arguments); });
}
#include "screens_test.moc"
