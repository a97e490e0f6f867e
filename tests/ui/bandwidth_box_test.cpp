#include "ui/bandwidth_box.h"

#include <QAbstractItemView>
#include <QCompleter>
#include <QLineEdit>

#include "ui/ui_test.h"

namespace carvello {

class BandwidthBoxTest : public QObject {
  Q_OBJECT

 private slots:
  void init();
  void IsWhatIsChosen();
  void IsWhatIsTypedAndWritesItTidily();
  void ChoosesWhatIsTypedAndOffered();
  void CompletesWhatIsTyped();
  void TellsWhatCannotBeRead();
  void TakesZeroForABandwidthThatIsTyped();
  void StepsFromWhatWasTypedToItsNeighbours();
  void HomeAndEndChooseTheFirstAndTheLastWhileNothingIsWritten();
  void IsEmptyWithoutAChoice();

 private:
  void Type(const QString& text) {
    m_pBox->lineEdit()->selectAll();
    QTest::keyClicks(m_pBox.get(), text);
  }
  void Enter() { QTest::keyClick(m_pBox.get(), Qt::Key_Return); }

  std::unique_ptr<CBandwidthBox> m_pBox;
};

void BandwidthBoxTest::init() {
  m_pBox = std::make_unique<CBandwidthBox>();
  for (const auto& [text, value] : std::vector<std::pair<QString, int>>{
           {"1000 kHz", 1'000'000}, {"100 kHz", 100'000}, {"20 kHz", 20'000}, {"10 kHz", 10'000}, {"10 Hz", 10}}) {
    m_pBox->addItem(text, value);
  }
  m_pBox->setCurrentIndex(-1);
  m_pBox->show();
  QVERIFY(QTest::qWaitForWindowActive(m_pBox.get()));
  m_pBox->setFocus();
}

void BandwidthBoxTest::IsWhatIsChosen() {
  m_pBox->setCurrentIndex(2);
  QCOMPARE(m_pBox->Bandwidth(), 20'000U);
  QVERIFY(!m_pBox->IsTyped());
  m_pBox->SetBandwidth(10);
  QCOMPARE(m_pBox->currentText(), QString("10 Hz"));
}

void BandwidthBoxTest::IsWhatIsTypedAndWritesItTidily() {
  m_pBox->setCurrentIndex(2);
  Type("12.5k");
  QCOMPARE(m_pBox->Bandwidth(), 12'500U);  // also before the field is left
  Enter();
  QCOMPARE(m_pBox->currentText(), QString("12.5 kHz"));
  QCOMPARE(m_pBox->Bandwidth(), 12'500U);
  QVERIFY(m_pBox->IsTyped());
  QCOMPARE(m_pBox->count(), 5);  // nothing was added to what is offered
}

void BandwidthBoxTest::ChoosesWhatIsTypedAndOffered() {
  m_pBox->setCurrentIndex(0);
  Type("10");
  Enter();
  QCOMPARE(m_pBox->currentText(), QString("10 kHz"));
  QCOMPARE(m_pBox->currentIndex(), 3);
  QVERIFY(!m_pBox->IsTyped());
  Type("10 hz");
  Enter();
  QCOMPARE(m_pBox->currentIndex(), 4);
}

void BandwidthBoxTest::CompletesWhatIsTyped() {
  Type("10");
  QCOMPARE(m_pBox->lineEdit()->text(), QString("10"));  // nothing is written for the user
  QTRY_VERIFY(m_pBox->completer()->popup()->isVisible());
  QCOMPARE(m_pBox->completer()->completionCount(), 4);
  QTest::keyClick(m_pBox->completer()->popup(), Qt::Key_Down);
  QTest::keyClick(m_pBox->completer()->popup(), Qt::Key_Down);
  QTest::keyClick(m_pBox->completer()->popup(), Qt::Key_Return);
  QCOMPARE(m_pBox->Bandwidth(), 100'000U);
}

void BandwidthBoxTest::TellsWhatCannotBeRead() {
  m_pBox->setCurrentIndex(2);
  Type("12q");
  QVERIFY(m_pBox->IsUnreadable());
  QCOMPARE(m_pBox->Bandwidth(), 0U);
  Enter();
  QCOMPARE(m_pBox->currentText(), QString("12q"));  // for the user to mend
}

void BandwidthBoxTest::TakesZeroForABandwidthThatIsTyped() {
  m_pBox->setCurrentIndex(2);
  for (const char* text : {"0", "0 Hz", "0.0k"}) {
    Type(text);
    QVERIFY(m_pBox->IsTyped() && !m_pBox->IsUnreadable());
    QCOMPARE(m_pBox->Bandwidth(), 0U);
    Enter();
    QCOMPARE(m_pBox->currentText(), QString(text));  // for the user to mend
    QVERIFY(m_pBox->IsTyped());
  }
}

void BandwidthBoxTest::StepsFromWhatWasTypedToItsNeighbours() {
  Type("12.5k");
  Enter();
  QTest::keyClick(m_pBox.get(), Qt::Key_Down);
  QCOMPARE(m_pBox->Bandwidth(), 10'000U);
  Type("12.5k");
  Enter();
  QTest::keyClick(m_pBox.get(), Qt::Key_Up);
  QCOMPARE(m_pBox->Bandwidth(), 20'000U);
  QTest::keyClick(m_pBox.get(), Qt::Key_Up);
  QCOMPARE(m_pBox->Bandwidth(), 100'000U);
}

void BandwidthBoxTest::HomeAndEndChooseTheFirstAndTheLastWhileNothingIsWritten() {
  m_pBox->SetBandwidth(0);
  QTest::keyClick(m_pBox.get(), Qt::Key_Home);
  QCOMPARE(m_pBox->currentIndex(), 0);
  QTest::keyClick(m_pBox.get(), Qt::Key_End);
  QCOMPARE(m_pBox->currentIndex(), m_pBox->count() - 1);
  Type("25");
  QTest::keyClick(m_pBox.get(), Qt::Key_Home);  // of the text
  QTest::keyClicks(m_pBox.get(), "1");
  QCOMPARE(m_pBox->currentText(), QString("125"));
}

void BandwidthBoxTest::IsEmptyWithoutAChoice() {
  QCOMPARE(m_pBox->currentText(), QString());
  QCOMPARE(m_pBox->Bandwidth(), 0U);
  QVERIFY(!m_pBox->IsUnreadable() && !m_pBox->IsTyped());
  m_pBox->SetBandwidth(33'000);
  QCOMPARE(m_pBox->currentText(), QString("33 kHz"));
  m_pBox->SetBandwidth(0);
  QCOMPARE(m_pBox->currentText(), QString());
}

}  // namespace carvello

CARVELLO_UI_TEST(carvello::BandwidthBoxTest)
#include "bandwidth_box_test.moc"
