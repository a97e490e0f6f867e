#include "ui/choice_finder.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QSignalSpy>
#include <QWidget>

#include "ui/ui_test.h"

namespace carvello {

class ChoiceFinderTest : public QObject {
  Q_OBJECT

 private slots:
  void PrefersWhatReadsAsTyped();
  void FindsAChoiceWithItsBlankByTypingIt();
  void FindsAChoiceInTheOpenList();
  void GoesThroughAllThatBeginWithALetter();
  void LeavesKeysAloneThatTypeNothing();
};

void ChoiceFinderTest::PrefersWhatReadsAsTyped() {
  const QStringList choices = {"1000 kHz", "100 kHz", "10 kHz", "1 kHz", "10 Hz"};
  QCOMPARE(FindChoice(choices, "10 kHz"), 2);
  QCOMPARE(FindChoice(choices, "10khz"), 2);
  QCOMPARE(FindChoice(choices, "10"), 2);
  QCOMPARE(FindChoice(choices, "100"), 1);
  QCOMPARE(FindChoice(choices, "10 h"), 4);
  QCOMPARE(FindChoice(choices, "1"), 3);
  QCOMPARE(FindChoice(choices, "2"), -1);
  QCOMPARE(FindChoice(choices, " "), -1);
  QCOMPARE(FindChoice({"0", "1", "10", "12"}, "12"), 3);
}

void ChoiceFinderTest::FindsAChoiceWithItsBlankByTypingIt() {
  QWidget window;
  QComboBox list(&window);
  list.addItems({"1000 kHz", "100 kHz", "20 kHz", "10 kHz", "10 Hz"});
  MakeChoicesFindable(window);
  const QSignalSpy chosen(&list, &QComboBox::activated);
  QTest::keyClicks(&list, "10 kHz");
  QCOMPARE(list.currentText(), QString("10 kHz"));
  QVERIFY(!list.view()->isVisible());  // the blank has not opened it
  QCOMPARE(chosen.count(), 1);
}

void ChoiceFinderTest::FindsAChoiceInTheOpenList() {
  QWidget window;
  QComboBox list(&window);
  list.addItems({"1000 kHz", "100 kHz", "20 kHz", "10 kHz", "10 Hz"});
  MakeChoicesFindable(window);
  window.show();
  list.showPopup();
  QTest::keyClicks(list.view(), "10 kHz");
  QCOMPARE(list.view()->currentIndex().row(), 3);
  QTest::keyClick(list.view(), Qt::Key_Return);
  QTRY_COMPARE(list.currentText(), QString("10 kHz"));
}

void ChoiceFinderTest::GoesThroughAllThatBeginWithALetter() {
  QWidget window;
  QComboBox list(&window);
  list.addItems({"Average", "Peak", "Power"});
  MakeChoicesFindable(window);
  QTest::keyClick(&list, Qt::Key_P);
  QCOMPARE(list.currentText(), QString("Peak"));
  QTest::keyClick(&list, Qt::Key_P);
  QCOMPARE(list.currentText(), QString("Power"));
  QTest::keyClick(&list, Qt::Key_X);
  QCOMPARE(list.currentText(), QString("Power"));
}

void ChoiceFinderTest::LeavesKeysAloneThatTypeNothing() {
  QWidget window;
  QComboBox list(&window);
  list.addItems({"1", "2", "3"});
  MakeChoicesFindable(window);
  QTest::keyClick(&list, Qt::Key_Down);
  QCOMPARE(list.currentText(), QString("2"));
}

}  // namespace carvello

CARVELLO_UI_TEST(carvello::ChoiceFinderTest)
#include "choice_finder_test.moc"
