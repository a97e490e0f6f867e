#include <QAccessible>
#include <QLineEdit>
#include <QProgressBar>
#include <QSet>
#include <QShortcut>

#include "ui/spectrum_fixture.h"
#include "ui/ui_test.h"

namespace carvello {

using test::CSpectrumFixture;

class SpectrumWindowTest : public QObject {
  Q_OBJECT

 private slots:
  void init() { m_pFixture = std::make_unique<CSpectrumFixture>(); }
  void cleanup() { m_pFixture.reset(); }

  void TheButtonNeedsAValidInput();
  void TheButtonOpensTheWindow();
  void F6GoesToTheWindowAndBack();
  void FollowsTheInputOfTheDialog();
  void AnotherKindOfTimeKeepsWhatIsSeen();
  void ARecordingThatIsGoneLeavesItEmpty();
  void ReadsNothingWhileItIsClosed();
  void RemembersItsPlaceAndSize();
  void RemembersHowItLooks();
  void EveryControlSaysWhatItIs();
  void NoTwoMnemonicsAreTheSame();
  void FitsASmallScreen();
  void CutsNoTextOff();
  void TellsHowMuchOfTheRecordingWasLookedAt();
  void TellsAProblem();
  void TheTitleNamesTheRecording();
  void SwitchingTheCacheOffOpensTheRecordingAnew();
  void AJobHasTheDiskAndFeedsIt();

 private:
  std::unique_ptr<CSpectrumFixture> m_pFixture;
};

void SpectrumWindowTest::TheButtonNeedsAValidInput() {
  m_pFixture->Open();
  auto* pButton = m_pFixture->Dialog().findChild<QAbstractButton*>("buttonSpectrum");
  QVERIFY(pButton != nullptr && pButton->isVisible());
  QVERIFY(!pButton->isEnabled());
  QTest::keyClick(&m_pFixture->Dialog(), Qt::Key_F6);
  QVERIFY(m_pFixture->Dialog().findChild<CSpectrumWindow*>() == nullptr);
  m_pFixture->SetPath(1000, m_pFixture->WriteInput());
  QVERIFY(pButton->isEnabled());
  QCOMPARE(QKeySequence::mnemonic(pButton->text()).toString(), QString("Alt+P"));
  m_pFixture->SetPath(1000, "");
  QVERIFY(!pButton->isEnabled());
}

void SpectrumWindowTest::TheButtonOpensTheWindow() {
  CSpectrumWindow& window = m_pFixture->OpenSpectrum();
  QVERIFY(window.isVisible() && window.isWindow());
  QCOMPARE(window.objectName(), QString("CSpectrumWindow"));
  QCOMPARE(m_pFixture->Fake().nOpened, 1);
  QVERIFY(m_pFixture->Fake().bKeeps && !m_pFixture->Fake().bPaused);
  const SSpectrumView& view = m_pFixture->Fake().views.back();
  QCOMPARE(view.dFirstFrame, 0.0);
  QCOMPARE(view.dFrames, 600.0 * 96'000);
  QCOMPARE(view.dLowFrequency, -48'000.0);
  QCOMPARE(view.dHighFrequency, 48'000.0);
  QCOMPARE(QSize(view.nColumns, view.nRows), m_pFixture->Waterfall().Pixels());
  QVERIFY(m_pFixture->Scene().Picture() != nullptr);
  QVERIFY(m_pFixture->Waterfall().hasFocus());
}

void SpectrumWindowTest::F6GoesToTheWindowAndBack() {
  m_pFixture->OpenReady();
  QTest::keyClick(&m_pFixture->Dialog(), Qt::Key_F6);
  QVERIFY(QTest::qWaitForWindowActive(&m_pFixture->Window()));
  QTest::keyClick(&m_pFixture->Window(), Qt::Key_F6);
  QVERIFY(QTest::qWaitForWindowActive(&m_pFixture->Dialog()));
  QVERIFY(m_pFixture->Window().isVisible());
}

void SpectrumWindowTest::FollowsTheInputOfTheDialog() {
  m_pFixture->OpenSpectrum();
  m_pFixture->SetPath(
      1000, m_pFixture->WriteInput({.nSampleRate = 192'000, .nCentre = 14'200'000, .nSeconds = 60}, "other.wav"));
  m_pFixture->Settle();
  QCOMPARE(m_pFixture->Fake().nOpened, 2);
  QCOMPARE(m_pFixture->Scene().Frequencies().Whole(), (SSpan{14'104'000.0, 14'296'000.0}));
  QCOMPARE(m_pFixture->Scene().Frames().Whole(), (SSpan{0.0, 60.0 * 192'000}));
  QCOMPARE(m_pFixture->Fake().views.back().dHighFrequency, 96'000.0);
  QVERIFY(m_pFixture->TextOf("labelClock") == "UTC");
}

void SpectrumWindowTest::AnotherKindOfTimeKeepsWhatIsSeen() {
  m_pFixture->OpenSpectrum();
  m_pFixture->LookAt(7'100'000.0, 300.0, 10'000.0, 60.0);
  m_pFixture->Settle();
  const SSpan frequencies = m_pFixture->Scene().Frequencies().Shown();
  const SSpan frames = m_pFixture->Scene().Frames().Shown();
  QVERIFY(m_pFixture->Scene().Picture() != nullptr);
  m_pFixture->Click(1034);
  QCOMPARE(m_pFixture->TextOf("labelClock"), QString("local"));
  QCOMPARE(m_pFixture->Fake().nOpened, 1);
  QCOMPARE(m_pFixture->Scene().Frequencies().Shown(), frequencies);
  QCOMPARE(m_pFixture->Scene().Frames().Shown(), frames);
  QVERIFY(m_pFixture->Scene().Picture() != nullptr);
}

void SpectrumWindowTest::ARecordingThatIsGoneLeavesItEmpty() {
  m_pFixture->OpenSpectrum();
  m_pFixture->SetPath(1000, "nothing.wav");
  QVERIFY(m_pFixture->Scene().IsEmpty());
  QVERIFY(m_pFixture->Scene().Picture() == nullptr);
  QCOMPARE(m_pFixture->TextOf("labelProgress"), QString("No recording"));
  // Nothing to be done, and nothing that falls over.
  m_pFixture->Drag(m_pFixture->Waterfall(), {50, 50}, {150, 150});
  for (const int key :
       {Qt::Key_Left, Qt::Key_Plus, Qt::Key_Return, Qt::Key_Escape, Qt::Key_N, Qt::Key_C, Qt::Key_Home}) {
    m_pFixture->Key(key);
  }
  m_pFixture->Wheel(m_pFixture->Waterfall(), {50, 50}, 1);
  QVERIFY(!m_pFixture->Scene().Pending());
  m_pFixture->Window().grab();
}

void SpectrumWindowTest::ReadsNothingWhileItIsClosed() {
  m_pFixture->OpenSpectrum();
  m_pFixture->Window().close();
  QVERIFY(m_pFixture->Fake().bPaused);
  m_pFixture->Dialog().activateWindow();
  QVERIFY(QTest::qWaitForWindowActive(&m_pFixture->Dialog()));
  QTest::keyClick(&m_pFixture->Dialog(), Qt::Key_F6);
  QVERIFY(!m_pFixture->Fake().bPaused);
  QCOMPARE(m_pFixture->Fake().nOpened, 1);
}

void SpectrumWindowTest::RemembersItsPlaceAndSize() {
  m_pFixture->OpenSpectrum().resize(1111, 777);
  m_pFixture->Settle();
  m_pFixture->Window().close();
  m_pFixture->Open();
  QCOMPARE(m_pFixture->OpenSpectrum().size(), QSize(1111, 777));
}

void SpectrumWindowTest::RemembersHowItLooks() {
  m_pFixture->OpenSpectrum();
  m_pFixture->ChooseIn("comboPalette", "Turbo");
  m_pFixture->ChooseIn("comboShow", "Peak");
  m_pFixture->ChooseIn("comboTransform", "16 k");
  m_pFixture->ChooseIn("comboWindow", "Flat top");
  m_pFixture->ChooseIn("comboRaster", "12.5 kHz");
  m_pFixture->SetChecked("checkCarrier", true);
  m_pFixture->Window().close();
  m_pFixture->OpenSpectrum();
  QCOMPARE(m_pFixture->Scene().Look().palette, EPalette::Turbo);
  QVERIFY(m_pFixture->Scene().Look().bPeak);
  QCOMPARE(m_pFixture->Fake().views.back().nTransform, std::size_t{16'384});
  QCOMPARE(m_pFixture->Fake().views.back().window, EWindow::FlatTop);
  QCOMPARE(m_pFixture->Scene().Rules().nRaster, 12'500U);
  QVERIFY(m_pFixture->Part<QAbstractButton>("checkCarrier").isChecked());
}

void SpectrumWindowTest::EveryControlSaysWhatItIs() {
  CSpectrumWindow& window = m_pFixture->OpenSpectrum();
  QSet<QString> names;
  int controls = 0;
  for (const QWidget* pControl : window.findChildren<QWidget*>()) {
    const bool takesKeys = pControl->focusPolicy() != Qt::NoFocus && pControl->isVisible();
    const bool own = !pControl->objectName().isEmpty() && !pControl->objectName().startsWith("qt_");
    if (!takesKeys || !own) continue;
    ++controls;
    QVERIFY2(!pControl->accessibleName().isEmpty(), qPrintable(pControl->objectName()));
    QVERIFY2(!names.contains(pControl->accessibleName()), qPrintable(pControl->objectName()));
    names.insert(pControl->accessibleName());
    if (pControl != &m_pFixture->Waterfall()) {
      QVERIFY2(!pControl->toolTip().isEmpty(), qPrintable(pControl->objectName()));
    }
  }
  QVERIFY2(controls >= 17, qPrintable(QString::number(controls)));
}

void SpectrumWindowTest::NoTwoMnemonicsAreTheSame() {
  QStringList used;
  for (const QWidget* pControl : m_pFixture->OpenSpectrum().findChildren<QWidget*>()) {
    const QKeySequence mnemonic = QKeySequence::mnemonic(pControl->property("text").toString());
    if (mnemonic.isEmpty()) continue;
    QVERIFY2(!used.contains(mnemonic.toString()), qPrintable(pControl->objectName()));
    used << mnemonic.toString();
  }
  QVERIFY2(used.size() >= 17, qPrintable(QString::number(used.size())));
}

void SpectrumWindowTest::FitsASmallScreen() {
  const QSize least = m_pFixture->OpenSpectrum().minimumSizeHint();
  QVERIFY2(least.width() <= 1000 && least.height() <= 690,
           qPrintable(QString("%1 x %2").arg(least.width()).arg(least.height())));
}

void SpectrumWindowTest::CutsNoTextOff() {
  CSpectrumWindow& window = m_pFixture->OpenSpectrum();
  window.resize(window.minimumSizeHint());
  m_pFixture->Settle();
  for (const char* name : {"comboShow", "comboTransform", "comboWindow", "comboPalette", "checkAutomatic", "spinHigh",
                           "spinLow", "comboRaster", "checkCarrier", "buttonAdd", "buttonDrop", "buttonFind",
                           "buttonTake", "buttonTakeAll", "buttonSave", "buttonCopy", "checkKeep"}) {
    const QWidget& control = m_pFixture->Part(name);
    QVERIFY2(
        control.width() >= control.minimumSizeHint().width() && control.height() >= control.minimumSizeHint().height(),
        name);
  }
}

void SpectrumWindowTest::TellsHowMuchOfTheRecordingWasLookedAt() {
  m_pFixture->OpenSpectrum();
  QCOMPARE(m_pFixture->TextOf("labelProgress"), QString("Overview complete"));
  m_pFixture->Fake().dProgress = 0.437;
  m_pFixture->Fake().changed();
  m_pFixture->Settle();
  QCOMPARE(m_pFixture->TextOf("labelProgress"), QString("Overview 43 %"));
  const auto& bar = m_pFixture->Part<QProgressBar>("progressOverview");
  QVERIFY(bar.isVisible());
  QCOMPARE(bar.value(), 437);
}

void SpectrumWindowTest::TellsAProblem() {
  m_pFixture->OpenSpectrum();
  m_pFixture->Fake().strProblem = "rec.wav: cannot be read";
  m_pFixture->Fake().changed();
  m_pFixture->Settle();
  QCOMPARE(m_pFixture->TextOf("labelProgress"), QString("rec.wav: cannot be read"));
}

void SpectrumWindowTest::TheTitleNamesTheRecording() {
  QCOMPARE(m_pFixture->OpenSpectrum().windowTitle(), QString("Spectrum - rec.wav"));
}

void SpectrumWindowTest::SwitchingTheCacheOffOpensTheRecordingAnew() {
  m_pFixture->OpenSpectrum();
  m_pFixture->SetChecked("checkKeep", false);
  QCOMPARE(m_pFixture->Fake().nOpened, 2);
  QVERIFY(!m_pFixture->Fake().bKeeps);
  m_pFixture->OpenSpectrum();
  QVERIFY(!m_pFixture->Fake().bKeeps);
}

void SpectrumWindowTest::AJobHasTheDiskAndFeedsIt() {
  m_pFixture->OpenSpectrum();
  m_pFixture->Drag(7'075'000.0, 300.0, 7'085'000.0, 300.0);
  m_pFixture->Key(Qt::Key_Return);
  m_pFixture->Drag(7'095'000.0, 300.0, 7'105'000.0, 300.0);
  m_pFixture->Fake().pauses.clear();
  m_pFixture->Click(1018);
  QVERIFY(m_pFixture->Fake().bPaused);
  QVERIFY(!m_pFixture->Part("buttonAdd").isEnabled());
  QVERIFY2(m_pFixture->TextOf("labelCut").endsWith("To be added after the run"),
           qPrintable(m_pFixture->TextOf("labelCut")));
  QTRY_VERIFY_WITH_TIMEOUT(!m_pFixture->Fake().bPaused, 120'000);
  QCOMPARE(m_pFixture->Fake().nHeard.load(), CSpectrumFixture::kSeconds * CSpectrumFixture::kRate);
  QVERIFY(m_pFixture->Part("buttonAdd").isEnabled());
}

}  // namespace carvello

CARVELLO_UI_TEST(carvello::SpectrumWindowTest)
#include "spectrum_window_test.moc"
