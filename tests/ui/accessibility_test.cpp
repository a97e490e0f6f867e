// What is told to readers of the screen, what can be done without a mouse, and what can be seen by weak eyes.
#include <QAccessible>
#include <QCheckBox>
#include <QProgressBar>
#include <QRadioButton>
#include <QSignalSpy>

#include "ui/announcer.h"
#include "ui/carvello_app.h"
#include "ui/dialog_fixture.h"
#include "ui/log_list.h"
#include "ui/outcome_label.h"
#include "ui/readable_style.h"
#include "ui/themes.h"
#include "ui/ui_test.h"

namespace carvello {

using test::CDialogFixture;

class AccessibilityTest : public QObject {
  Q_OBJECT

 private slots:
  void init() { m_pFixture = std::make_unique<CDialogFixture>(); }
  void cleanup();
  void EveryStaticTextTellsWhatItIsAndWhatItSays();
  void RowsAndTheirStatesAreTold();
  void EverythingThatCanBeUsedHasANameAndARole();
  void NewsAreTold();
  void ManyNewsAtOnceAreToldInShort();
  void TheOutcomeIsToldHoweverMuchElseThereIs();
  void ProgressIsToldAtEveryTenth();
  void ErrorsInTheLogAreTold();
  void AWholeRunIsDoneByKeys();
  void EveryTextCanBeReadInEveryTheme_data();
  void EveryTextCanBeReadInEveryTheme();
  void EveryPaletteGetsReadableDisabledTexts();
  void CheckBoxesAndRadioButtonsCanBeSeenInEveryTheme_data();
  void CheckBoxesAndRadioButtonsCanBeSeenInEveryTheme();

 private:
  QString Spoken(int id) { return Spoken(&m_pFixture->Control(id)); }
  static QString Spoken(QWidget* pWidget) {
    return QAccessible::queryAccessibleInterface(pWidget)->text(QAccessible::Name);
  }
  CAnnouncer& Announcer() { return *m_pFixture->Dialog().findChild<CAnnouncer*>(); }
  void Themes();

  std::unique_ptr<CDialogFixture> m_pFixture;
};

namespace {

// A key of the keyboard, to whatever has the focus.
void Press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
  QTest::keyClick(QApplication::focusWidget(), key, modifiers);
}

void Type(const QString& text) {
  QTest::keyClicks(QApplication::focusWidget(), text);
}

}  // namespace

void AccessibilityTest::cleanup() {
  QVERIFY(m_pFixture->Answers().AllUsed());
  m_pFixture.reset();
}

void AccessibilityTest::EveryStaticTextTellsWhatItIsAndWhatItSays() {
  m_pFixture->OpenReady({.nSeconds = 20});
  QCOMPARE(Spoken(1001), "Centre frequency: 7.100 MHz");
  QCOMPARE(Spoken(1004), "Number of files: 1");
  int told = 0;
  for (const int id : {1001, 1002, 1003, 1004, 1005, 1006, 1007, 1036, 1027}) {
    const QString text = m_pFixture->Text(id).trimmed();
    QVERIFY(!text.isEmpty() && text != "-");
    QVERIFY2(Spoken(id).endsWith(": " + text), qPrintable(Spoken(id)));
    QCOMPARE(QAccessible::queryAccessibleInterface(&m_pFixture->Control(id))->role(), QAccessible::StaticText);
    ++told;
  }
  QCOMPARE(told, 9);
  // And anew with another input.
  m_pFixture->SetPath(1000, m_pFixture->WriteInput({.nCentre = 3'500'000}, "other.wav"));
  QCOMPARE(Spoken(1001), "Centre frequency: 3.500 MHz");
  m_pFixture->SetPath(1000, "/none");
  QCOMPARE(Spoken(1001), "Centre frequency: -");
}

void AccessibilityTest::RowsAndTheirStatesAreTold() {
  m_pFixture->OpenReady({.nSeconds = 20});
  m_pFixture->Choose(1011, "10 kHz");
  m_pFixture->Click(1015);
  m_pFixture->Click(1018);
  QTRY_VERIFY_WITH_TIMEOUT(!m_pFixture->Control(1019).isEnabled(), 300'000);
  auto* pTable = QAccessible::queryAccessibleInterface(&m_pFixture->List())->tableInterface();
  QVERIFY(pTable != nullptr);
  QCOMPARE(pTable->rowCount(), 1);
  QStringList cells;
  for (int column = 0; column < pTable->columnCount(); ++column) {
    cells << pTable->cellAt(0, column)->text(QAccessible::Name);
  }
  QCOMPARE(cells, m_pFixture->Row(0));
  QCOMPARE(cells.last(), "done");
}

void AccessibilityTest::EverythingThatCanBeUsedHasANameAndARole() {
  m_pFixture->OpenReady();
  int looked = 0;
  for (QWidget* pWidget : m_pFixture->Dialog().findChildren<QWidget*>()) {
    if (pWidget->focusPolicy() == Qt::NoFocus || !pWidget->isVisible() || pWidget->objectName().startsWith("qt_"))
      continue;
    QAccessibleInterface* pInterface = QAccessible::queryAccessibleInterface(pWidget);
    QVERIFY2(pInterface != nullptr, qPrintable(pWidget->objectName()));
    const bool part = pWidget->parentWidget()->inherits("QAbstractItemView") || pWidget->inherits("QSplitterHandle") ||
                      pWidget->parentWidget()->inherits("QAbstractSpinBox") ||
                      pWidget->parentWidget()->inherits("QComboBox");
    if (part) continue;
    QVERIFY2(!pInterface->text(QAccessible::Name).isEmpty(), qPrintable(pWidget->objectName()));
    QVERIFY2(pInterface->role() != QAccessible::Client && pInterface->role() != QAccessible::NoRole,
             qPrintable(pWidget->objectName()));
    ++looked;
  }
  QVERIFY2(looked > 30, qPrintable(QString::number(looked)));
}

void AccessibilityTest::NewsAreTold() {
  m_pFixture->Open();
  Announcer().Announce("Something has happened");
  QTRY_COMPARE(Announcer().Told(), "Something has happened");
  QAccessibleInterface* pInterface = QAccessible::queryAccessibleInterface(&Announcer());
  QCOMPARE(pInterface->role(), QAccessible::Notification);
  QCOMPARE(pInterface->text(QAccessible::Name), "Something has happened");
  QVERIFY(!pInterface->state().invisible);
}

void AccessibilityTest::ManyNewsAtOnceAreToldInShort() {
  m_pFixture->Open();
  for (int i = 1; i <= 50; ++i) Announcer().Announce(QString("news %1").arg(i));
  QTRY_COMPARE(Announcer().Told(), "news 1\nnews 2\nnews 3\nand 47 more");
}

void AccessibilityTest::TheOutcomeIsToldHoweverMuchElseThereIs() {
  m_pFixture->Open();
  for (int i = 1; i <= 9; ++i) Announcer().AnnounceProgress(i / 10.0);
  for (int i = 1; i <= 50; ++i) Announcer().Announce(QString("news %1").arg(i));
  Announcer().AnnounceOutcome("all is done");
  QTRY_COMPARE(Announcer().Told(), "all is done\nnews 1\nnews 2\nnews 3\nand 47 more");
}

void AccessibilityTest::ProgressIsToldAtEveryTenth() {
  m_pFixture->Open();
  QStringList told;
  connect(&Announcer(), &CAnnouncer::Announced, this, [&](const QString& text) { told << text; });
  Announcer().BeginProgress();
  for (int i = 0; i <= 1000; ++i) {
    Announcer().AnnounceProgress(i / 1000.0);
    if (i % 100 == 50) QTest::qWait(400);
  }
  QTRY_COMPARE(told.size(), 9);
  QCOMPARE(told.first(), "Progress: 10 %");
  QCOMPARE(told.last(), "Progress: 90 %");
}

void AccessibilityTest::ErrorsInTheLogAreTold() {
  m_pFixture->Open();
  auto& log = m_pFixture->Control<CLogList>(1022);
  log.AddLine("Reader", "all is well");
  log.AddLine("Writer [0]", "[ERROR] No space left on device");
  QTRY_VERIFY(Announcer().Told().endsWith("> Writer [0]> [ERROR] No space left on device"));
  QVERIFY(!Announcer().Told().contains("all is well"));
}

void AccessibilityTest::AWholeRunIsDoneByKeys() {
  const std::string input = m_pFixture->WriteInput({.nSeconds = 20});
  m_pFixture->Open();
  QStringList told;
  connect(&Announcer(), &CAnnouncer::Announced, this, [&](const QString& text) { told << text; });
  // The field for the input is where the keyboard is at first.
  QCOMPARE(QApplication::focusWidget(), &m_pFixture->Control(1000));
  Type(QString::fromStdString(input));
  QCOMPARE(Spoken(1001), "Centre frequency: 7.100 MHz");
  for (int i = 0; i < 20 && QApplication::focusWidget() != &m_pFixture->Control(1009); ++i) Press(Qt::Key_Tab);
  Type(QString::fromStdString(m_pFixture->OutputFolder()));
  Press(Qt::Key_W, Qt::AltModifier);
  for (int i = 0; i < 100 && m_pFixture->Control<QComboBox>(1011).currentText() != "10 kHz"; ++i) Press(Qt::Key_Down);
  Press(Qt::Key_C, Qt::AltModifier);
  Type("7.105");
  Press(Qt::Key_A, Qt::AltModifier);
  QCOMPARE(m_pFixture->List().RowCount(), 1);
  QCOMPARE(m_pFixture->Row(0)[0], "7.105.000");
  Press(Qt::Key_S, Qt::AltModifier);
  QTRY_VERIFY_WITH_TIMEOUT(!m_pFixture->Control(1019).isEnabled(), 300'000);
  const QString outcome = Spoken(m_pFixture->Dialog().findChild<QWidget*>("labelOutcome"));
  QCOMPARE(outcome, "Outcome: 1 of 1 outputs written");
  QTRY_VERIFY(told.join('\n').contains("1 of 1 outputs written"));
  QVERIFY(
      std::filesystem::exists(test::PathOf(m_pFixture->OutputFolder() + "/" + m_pFixture->Row(0)[4].toStdString())) ||
      !std::filesystem::is_empty(test::PathOf(m_pFixture->OutputFolder())));
}

void AccessibilityTest::Themes() {
  QTest::addColumn<QPalette>("palette");
  for (const auto& [name, palette] : test::Themes()) QTest::newRow(name) << palette;
}

void AccessibilityTest::EveryTextCanBeReadInEveryTheme_data() {
  Themes();
}

// The darkest against the lightest pixel of every text that is shown, before there is an input, with one, and in a run.
void AccessibilityTest::EveryTextCanBeReadInEveryTheme() {
  QFETCH(QPalette, palette);
  QApplication::style()->polish(palette);  // as the style does with the desktop's
  m_pFixture->OpenReady({.nSampleRate = 1'000'000, .nSeconds = 1000});
  m_pFixture->Dialog().setPalette(palette);
  m_pFixture->Choose(1014, "One file (RF64)");
  m_pFixture->Choose(1011, "250 kHz");
  m_pFixture->Click(1015);
  int looked = 0;
  const auto look = [&] {
    QCoreApplication::processEvents();
    for (QWidget* pWidget : m_pFixture->Dialog().findChildren<QWidget*>()) {
      if (!pWidget->isVisible() || pWidget->objectName() == "IDC_1020") continue;
      const auto* pLabel = qobject_cast<QLabel*>(pWidget);
      const auto* pButton = qobject_cast<QAbstractButton*>(pWidget);
      const bool text = (pLabel != nullptr && !pLabel->text().isEmpty()) ||
                        (pButton != nullptr && !pButton->text().isEmpty()) || pWidget->inherits("QComboBox") ||
                        pWidget->inherits("QLineEdit");
      if (!text) continue;
      // Without the frame of a field or button, and without the mark of a check box.
      QRect inner = pWidget->rect();
      if (pLabel == nullptr) inner.adjust(6, 5, -6, -5);
      if (pButton != nullptr && pButton->isCheckable()) inner.setLeft(22);
      if (pWidget->inherits("QComboBox")) inner.setRight(inner.right() - 22);
      if (inner.isEmpty()) continue;
      const double contrast = test::BestContrast(pWidget->grab(inner).toImage());
      QVERIFY2(contrast >= 4.5, qPrintable(QString("%1: %2").arg(pWidget->objectName()).arg(contrast)));
      ++looked;
    }
  };
  look();
  m_pFixture->Click(1018);
  QVERIFY(m_pFixture->Control(1019).isEnabled());
  look();
  m_pFixture->Click(1019);
  QVERIFY2(looked > 80, qPrintable(QString::number(looked)));
}

void AccessibilityTest::EveryPaletteGetsReadableDisabledTexts() {
  for (const test::STheme& theme : test::Themes()) {
    const QPalette palette = WithReadableDisabledTexts(theme.palette);
    const std::pair<QPalette::ColorRole, QPalette::ColorRole> pairs[] = {{QPalette::WindowText, QPalette::Window},
                                                                         {QPalette::Text, QPalette::Base},
                                                                         {QPalette::ButtonText, QPalette::Button}};
    for (const auto& [text, background] : pairs) {
      const QColor colour = palette.color(QPalette::Disabled, text);
      const double contrast = ContrastOf(colour, palette.color(QPalette::Disabled, background));
      QVERIFY2(contrast >= 4.5, qPrintable(QString("%1 %2").arg(theme.name).arg(contrast)));
      // And still paler than what can be used.
      QVERIFY(contrast <
              ContrastOf(palette.color(QPalette::Active, text), palette.color(QPalette::Active, background)));
    }
    QCOMPARE(WithReadableDisabledTexts(palette), palette);
  }
}

void AccessibilityTest::CheckBoxesAndRadioButtonsCanBeSeenInEveryTheme_data() {
  Themes();
}

void AccessibilityTest::CheckBoxesAndRadioButtonsCanBeSeenInEveryTheme() {
  QFETCH(QPalette, palette);
  QCheckBox check;
  QRadioButton radio;
  for (QAbstractButton* pButton : {static_cast<QAbstractButton*>(&check), static_cast<QAbstractButton*>(&radio)}) {
    pButton->setPalette(palette);
    for (const bool enabled : {true, false}) {
      pButton->setEnabled(enabled);
      pButton->resize(pButton->sizeHint());
      const QColor window = palette.color(enabled ? QPalette::Active : QPalette::Disabled, QPalette::Window);
      const double contrast = test::BestContrast(pButton->grab().toImage(), window);
      QVERIFY2(contrast >= 3.0, qPrintable(QString::number(contrast)));
    }
  }
}

}  // namespace carvello

int main(int argc, char** argv) {
  return carvello::test::RunUiTest(
      argc, argv, [] { return std::make_unique<carvello::AccessibilityTest>(); },
      [](int& count, char** arguments) { return std::make_unique<carvello::CCarvelloApp>(count, arguments); });
}
#include "accessibility_test.moc"
