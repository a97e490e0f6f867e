#include "ui/add_sequence.h"

#include <QComboBox>
#include <QFontDatabase>
#include <QLabel>
#include <QPushButton>

#include "ui/my_masked_edit.h"
#include "ui/ui_test.h"

namespace carvello {

class AddSequenceTest : public QObject {
  Q_OBJECT

 private slots:
  void init();
  void OpensWithTheRecordedBandHeldAt0AndCounts21Entries();
  void OpensWithTheWholeRecordedBand();
  void OffersFourRunsOfSteps();
  void TheReverseOrderGivesTheSameSummary();
  void From900To920KilohertzBy10AreThreeEntries();
  void FrequenciesOutsideTheRecordedBandAreNotCounted_data();
  void FrequenciesOutsideTheRecordedBandAreNotCounted();
  void FollowsTheStep();
  void FollowsEveryKey();
  void ARangeOfAHundredMillionFrequenciesIsCountedAtOnce();
  void WithoutAStepNothingIsCounted();
  void OkTakesTheRange();
  void EnterTakesTheRange();
  void CancelAndEscapeDoNot();
  void ControlsAreNamedAndReachable();

 private:
  template <typename T>
  T* Control(const char* name) const {
    T* pControl = m_pDialog->findChild<T*>(name);
    if (pControl == nullptr) qFatal("no control %s", name);
    return pControl;
  }
  void Open(std::int64_t centre, std::uint32_t rate) {
    m_pDialog = std::make_unique<CAddSequence>(centre, rate, QFontDatabase::systemFont(QFontDatabase::FixedFont));
    m_pDialog->show();
  }
  void Range(std::int64_t start, std::int64_t end) const {
    Control<CMyMFCMaskedEdit>("IDC_1010")->SetFrequency(start);
    Control<CMyMFCMaskedEdit>("IDC_1011")->SetFrequency(end);
  }
  void ChooseStep(const char* text) const {
    auto* pSteps = Control<QComboBox>("IDC_1012");
    const int index = pSteps->findText(text);
    QVERIFY2(index >= 0, text);
    pSteps->setCurrentIndex(index);
  }
  QString Summary() const { return Control<QLabel>("IDC_1021")->text(); }

  std::unique_ptr<CAddSequence> m_pDialog;
};

void AddSequenceTest::init() {
  Open(1'000'000, 2'000'000);
}

void AddSequenceTest::OpensWithTheRecordedBandHeldAt0AndCounts21Entries() {
  QCOMPARE(m_pDialog->windowTitle(), "Add Sequence");
  QCOMPARE(Control<CMyMFCMaskedEdit>("IDC_1010")->text(), "_____.___.__0");
  QCOMPARE(Control<CMyMFCMaskedEdit>("IDC_1011")->text(), "____2.000.000");
  QCOMPARE(Control<QComboBox>("IDC_1012")->currentText(), "100 kHz");
  QCOMPARE(Summary(), "0 Hz to 2.000 MHz in steps of 100 kHz. Total entries 21.");
  QCOMPARE(m_pDialog->Start(), 0);
  QCOMPARE(m_pDialog->End(), 2'000'000);
  QCOMPARE(m_pDialog->StepSize(), 100'000);
  QCOMPARE(m_pDialog->Count(), 21);

  // The lower end would lie below 0.
  Open(500'000, 2'000'000);
  QCOMPARE(m_pDialog->Start(), 0);
  QCOMPARE(m_pDialog->End(), 1'500'000);
}

void AddSequenceTest::OpensWithTheWholeRecordedBand() {
  Open(7'100'000, 192'001);
  QCOMPARE(m_pDialog->Start(), 7'004'000);
  QCOMPARE(m_pDialog->End(), 7'196'000);
  QCOMPARE(Summary(), "7.004 MHz to 7.196 MHz in steps of 100 kHz. Total entries 2.");
}

void AddSequenceTest::OffersFourRunsOfSteps() {
  QStringList expected;
  for (int step = 1; step <= 25; ++step) expected << QStringLiteral("%1 kHz").arg(step);
  for (const char* text : {"30", "35", "40", "45", "50", "55", "60", "65", "70", "75", "80", "85", "90", "95", "100"}) {
    expected << QStringLiteral("%1 kHz").arg(text);
  }
  for (int step = 110; step <= 250; step += 10) expected << QStringLiteral("%1 kHz").arg(step);
  for (int step = 275; step <= 1000; step += 25) expected << QStringLiteral("%1 kHz").arg(step);
  const auto* pSteps = Control<QComboBox>("IDC_1012");
  QStringList offered;
  for (int i = 0; i < pSteps->count(); ++i) {
    offered << pSteps->itemText(i);
    QCOMPARE(QStringLiteral("%1 kHz").arg(pSteps->itemData(i).toInt()), pSteps->itemText(i));
  }
  QCOMPARE(offered, expected);
  QCOMPARE(offered.size(), 85);
}

void AddSequenceTest::TheReverseOrderGivesTheSameSummary() {
  Range(900'000, 1'500'000);
  const QString summary = Summary();
  Range(1'500'000, 900'000);
  QCOMPARE(Summary(), summary);
  QCOMPARE(summary, "900 kHz to 1.500 MHz in steps of 100 kHz. Total entries 7.");
  QCOMPARE(m_pDialog->Start(), 900'000);
  QCOMPARE(m_pDialog->End(), 1'500'000);
}

void AddSequenceTest::From900To920KilohertzBy10AreThreeEntries() {
  Range(900'000, 920'000);
  ChooseStep("10 kHz");
  QCOMPARE(Summary(), "900 kHz to 920 kHz in steps of 10 kHz. Total entries 3.");
}

void AddSequenceTest::FrequenciesOutsideTheRecordedBandAreNotCounted_data() {
  QTest::addColumn<qint64>("start");
  QTest::addColumn<qint64>("end");
  QTest::addColumn<qint64>("count");
  // The band is 6.1 to 8.1 MHz, the step 100 kHz.
  QTest::newRow("from below") << qint64{6'000'000} << qint64{6'300'000} << qint64{3};
  QTest::newRow("from below, beside the band's edge") << qint64{6'050'000} << qint64{6'300'000} << qint64{2};
  QTest::newRow("beyond") << qint64{8'000'000} << qint64{9'000'000} << qint64{2};
  QTest::newRow("both ends outside") << qint64{0} << qint64{90'000'000'000} << qint64{21};
  QTest::newRow("all below") << qint64{5'000'000} << qint64{6'000'000} << qint64{0};
  QTest::newRow("all above") << qint64{8'200'000} << qint64{9'000'000} << qint64{0};
  QTest::newRow("over the band in one step") << qint64{6'000'000} << qint64{6'050'000} << qint64{0};
  QTest::newRow("a single frequency") << qint64{7'000'000} << qint64{7'000'000} << qint64{1};
  QTest::newRow("the upper edge") << qint64{8'100'000} << qint64{8'100'000} << qint64{1};
}

void AddSequenceTest::FrequenciesOutsideTheRecordedBandAreNotCounted() {
  QFETCH(qint64, start);
  QFETCH(qint64, end);
  QFETCH(qint64, count);
  Open(7'100'000, 2'000'000);
  Range(start, end);
  QCOMPARE(qint64{m_pDialog->Count()}, count);
  QVERIFY2(Summary().endsWith(QStringLiteral(" Total entries %1.").arg(count)), qPrintable(Summary()));
}

void AddSequenceTest::FollowsTheStep() {
  auto* pSteps = Control<QComboBox>("IDC_1012");
  pSteps->setFocus();
  QTest::keyClick(pSteps, Qt::Key_Down);
  QCOMPARE(Summary(), "0 Hz to 2.000 MHz in steps of 110 kHz. Total entries 19.");
}

void AddSequenceTest::FollowsEveryKey() {
  auto* pEnd = Control<CMyMFCMaskedEdit>("IDC_1011");
  pEnd->setFocus();
  pEnd->selectAll();
  QTest::keyClick(pEnd, '1');
  QCOMPARE(Summary(), "0 Hz to 1.000 MHz in steps of 100 kHz. Total entries 11.");
  QTest::keyClicks(pEnd, ".5");
  QCOMPARE(Summary(), "0 Hz to 1.500 MHz in steps of 100 kHz. Total entries 16.");
}

void AddSequenceTest::ARangeOfAHundredMillionFrequenciesIsCountedAtOnce() {
  Open(50'000'000'000, 4'000'000'000);
  Range(0, 99'999'999'999);
  ChooseStep("1 kHz");
  QCOMPARE(m_pDialog->Count(), 4'000'001);
}

void AddSequenceTest::WithoutAStepNothingIsCounted() {
  Control<QComboBox>("IDC_1012")->setCurrentIndex(-1);
  QCOMPARE(Summary(), "0 Hz to 2.000 MHz in steps of 0 Hz. Total entries 0.");
}

void AddSequenceTest::OkTakesTheRange() {
  QTest::mouseClick(Control<QPushButton>("IDC_1"), Qt::LeftButton);
  QCOMPARE(m_pDialog->result(), static_cast<int>(QDialog::Accepted));
  QVERIFY(!m_pDialog->isVisible());
}

void AddSequenceTest::EnterTakesTheRange() {
  QTest::keyClick(Control<CMyMFCMaskedEdit>("IDC_1011"), Qt::Key_Return);
  QCOMPARE(m_pDialog->result(), static_cast<int>(QDialog::Accepted));
}

void AddSequenceTest::CancelAndEscapeDoNot() {
  QTest::mouseClick(Control<QPushButton>("IDC_2"), Qt::LeftButton);
  QCOMPARE(m_pDialog->result(), static_cast<int>(QDialog::Rejected));
  QVERIFY(!m_pDialog->isVisible());
  m_pDialog->show();
  QTest::keyClick(m_pDialog.get(), Qt::Key_Escape);
  QCOMPARE(m_pDialog->result(), static_cast<int>(QDialog::Rejected));
  QVERIFY(!m_pDialog->isVisible());
}

void AddSequenceTest::ControlsAreNamedAndReachable() {
  QCOMPARE(m_pDialog->objectName(), "CAddSequence");
  for (const char* name : {"IDC_1010", "IDC_1011", "IDC_1012", "IDC_1", "IDC_2"}) {
    QVERIFY2(!Control<QWidget>(name)->accessibleName().isEmpty(), name);
    QVERIFY2(!Control<QWidget>(name)->toolTip().isEmpty(), name);
  }
  const QHash<QString, QString> labels = {
      {"IDC_1010", "Start freq:"}, {"IDC_1011", "End freq:"}, {"IDC_1012", "Step size:"}};
  for (const QLabel* pLabel : m_pDialog->findChildren<QLabel*>()) {
    if (pLabel->buddy() == nullptr) continue;
    QVERIFY(pLabel->text().contains('&'));
    QCOMPARE(QString(pLabel->text()).remove('&'), labels[pLabel->buddy()->objectName()]);
  }
  QStringList order;
  QWidget* pAt = Control<QWidget>("IDC_1010");
  for (int i = 0; i < 5; ++i) {
    order << pAt->objectName();
    do pAt = pAt->nextInFocusChain();
    while ((pAt->focusPolicy() & Qt::TabFocus) == 0);
  }
  QCOMPARE(order, (QStringList{"IDC_1010", "IDC_1011", "IDC_1012", "IDC_1", "IDC_2"}));
}

}  // namespace carvello

CARVELLO_UI_TEST(carvello::AddSequenceTest)
#include "add_sequence_test.moc"
