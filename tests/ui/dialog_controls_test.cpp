#include <QApplication>
#include <QCheckBox>
#include <QLabel>
#include <QRegularExpression>
#include <QSet>
#include <QSettings>
#include <QStyle>

#include "support/text.h"
#include "support/version.h"
#include "ui/dialog_fixture.h"
#include "ui/ui_test.h"

namespace carvello {

using test::CDialogFixture;

namespace {

// Not a part of one, such as a browse button.
bool IsOfTheTable(const QWidget& control) {
  return QRegularExpression("^IDC_\\d+$").match(control.objectName()).hasMatch();
}

}  // namespace

class DialogControlsTest : public QObject {
  Q_OBJECT

 private slots:
  void init() { m_pFixture = std::make_unique<CDialogFixture>(); }
  void cleanup() { m_pFixture.reset(); }

  void HasEveryControl_data();
  void HasEveryControl();
  void NamesEveryField_data();
  void NamesEveryField();
  void EveryControlSaysWhatItIs();
  void OnePassStandsWithTheCount();
  void TabVisitsTheControlsInTheOrderOfTheWindow();
  void TabVisitsABrowseButtonBehindItsField();
  void NoTwoMnemonicsAreTheSame();
  void TheTitleNamesProductAndVersion();
  void TheHelpHolderIsHidden();
  void EntriesFrequencyAndLogShareAFixedPitchFont();
  void ThePercentageStaysAwayUntilThereIsProgress();
  void FitsAScreenOf1024By768();
  void CutsNoTextOff();
  void TheListsTakeTheRoom();
  void EnterInAnyFieldKeepsTheDialogOpen();
  void EscapeClosesTheDialog();
  void TheCloseBoxClosesTheDialog();
  void ASystemCommandOpensTheAboutBox();

 private:
  std::unique_ptr<CDialogFixture> m_pFixture;
};

void DialogControlsTest::HasEveryControl_data() {
  QTest::addColumn<int>("id");
  QTest::addColumn<QByteArray>("kind");
  QTest::addColumn<QString>("text");
  const auto row = [](int id, const char* kind, const char* text = nullptr) {
    QTest::addRow("%d", id) << id << QByteArray(kind) << (text == nullptr ? QString() : QString::fromUtf8(text));
  };
  row(1000, "carvello::CMyMFCEditBrowseCtrl");
  row(1032, "QAbstractButton", "∙∙∙");
  for (const int id : {1001, 1002, 1003, 1004, 1005, 1006, 1007, 1036}) row(id, "QLabel", "-");
  row(1034, "QCheckBox", "UTC");
  row(1009, "carvello::CMyMFCEditBrowseCtrl");
  row(1033, "QAbstractButton", "∙∙∙");
  row(1010, "carvello::CMyMFCMaskedEdit", "__________.__0");
  row(1035, "QAbstractButton", "◀");
  row(1011, "QComboBox");
  row(1014, "QComboBox");
  row(1012, "QRadioButton", "16 bit");
  row(1013, "QRadioButton", "32 bit");
  row(1085, "QRadioButton", "Start at beginning");
  row(1086, "QRadioButton", "");
  row(1105, "QDateEdit");
  row(1103, "QTimeEdit");
  row(1083, "QRadioButton", "Finish at end");
  row(1084, "QRadioButton", "After:");
  row(1087, "QRadioButton", "");
  row(1028, "QComboBox");
  row(1029, "QComboBox");
  row(1106, "QDateEdit");
  row(1104, "QTimeEdit");
  row(1015, "QPushButton", "Add");
  row(1016, "QPushButton", "Add Sequence");
  row(1027, "QLabel", "Maximum entries: 8");
  row(1008, "carvello::CMyMFCListCtrl");
  row(1025, "QPushButton", "Delete");
  row(1017, "QPushButton", "Reset");
  row(1018, "QPushButton", "▶ Start");
  row(1019, "QPushButton", "◼ Stop");
  row(1020, "QProgressBar");
  row(1021, "QLabel", "99.99%");
  row(1022, "carvello::CLogList");
  row(1023, "carvello::CMyLinkCtrl", "View as text");
  row(1024, "carvello::CMyLinkCtrl", "Help");
  row(1026, "carvello::CMyRichEditCtrl");
}

void DialogControlsTest::HasEveryControl() {
  QFETCH(int, id);
  QFETCH(QByteArray, kind);
  QFETCH(QString, text);
  m_pFixture->Open();
  const QWidget& control = m_pFixture->Control(id);
  QVERIFY2(control.inherits(kind.constData()), control.metaObject()->className());
  if (text.isNull() || id == 1010) return;
  QCOMPARE(control.property("text").toString().remove('&'), text);
}

void DialogControlsTest::NamesEveryField_data() {
  QTest::addColumn<int>("id");
  QTest::addColumn<QString>("text");
  QTest::newRow("1001") << 1001 << "Centre freq:";
  QTest::newRow("1002") << 1002 << "Bandwidth:";
  QTest::newRow("1003") << 1003 << "Sample size:";
  QTest::newRow("1004") << 1004 << "Total files:";
  QTest::newRow("1005") << 1005 << "Start:";
  QTest::newRow("1006") << 1006 << "Finish:";
  QTest::newRow("1007") << 1007 << "Total:";
  QTest::newRow("1028") << 1028 << "h";
  QTest::newRow("1029") << 1029 << "m";
}

// The label stands in the row of its field: left of it, or behind it for a unit.
void DialogControlsTest::NamesEveryField() {
  QFETCH(int, id);
  QFETCH(QString, text);
  CCarvelloDlg& dialog = m_pFixture->Open();
  const auto* label = dialog.findChild<QLabel*>(QString("label_%1").arg(id));
  QVERIFY(label != nullptr);
  QCOMPARE(label->text(), text);
  const QWidget& field = m_pFixture->Control(id);
  const QPoint labelAt = label->mapTo(&dialog, QPoint(0, label->height() / 2));
  const QPoint fieldAt = field.mapTo(&dialog, QPoint(0, field.height() / 2));
  QVERIFY(std::abs(labelAt.y() - fieldAt.y()) <= 1);
  QCOMPARE(labelAt.x() > fieldAt.x(), text.size() == 1);
}

void DialogControlsTest::EveryControlSaysWhatItIs() {
  CCarvelloDlg& dialog = m_pFixture->Open();
  QSet<QString> names;
  for (const QWidget* control : dialog.findChildren<QWidget*>()) {
    if (!IsOfTheTable(*control)) continue;
    const QString name = control->accessibleName();
    QVERIFY2(!name.isEmpty(), qPrintable(control->objectName()));
    QVERIFY2(!names.contains(name), qPrintable(control->objectName() + ": " + name));
    names.insert(name);
    if (control->isVisibleTo(&dialog)) QVERIFY2(!control->toolTip().isEmpty(), qPrintable(control->objectName()));
  }
  QCOMPARE(names.size(), 44);
}

void DialogControlsTest::OnePassStandsWithTheCount() {
  m_pFixture->OpenReady();
  const auto* pOnePass = m_pFixture->Dialog().findChild<QCheckBox*>("checkOnePass");
  QVERIFY(pOnePass != nullptr && pOnePass->isVisible());
  QCOMPARE(pOnePass->text().remove('&'), QString("All in one pass"));
  QCOMPARE(pOnePass->accessibleName(), QString("All in one pass"));
  QVERIFY(!pOnePass->toolTip().isEmpty());
  QVERIFY(pOnePass->width() >= pOnePass->sizeHint().width());
  const QWidget& count = m_pFixture->Control(1027);
  const QPoint distance =
      pOnePass->mapTo(&m_pFixture->Dialog(), QPoint()) - count.mapTo(&m_pFixture->Dialog(), QPoint(0, count.height()));
  QVERIFY2(distance.x() == 0 && distance.y() >= 0 && distance.y() < 10, qPrintable(QString::number(distance.y())));
  QCOMPARE(m_pFixture->Control(1016).nextInFocusChain(), pOnePass);
}

void DialogControlsTest::TabVisitsTheControlsInTheOrderOfTheWindow() {
  m_pFixture->Open();
  const QList<int> order = {1000, 1032, 1034, 1009, 1033, 1010, 1035, 1011, 1014, 1012, 1013,
                            1085, 1086, 1105, 1103, 1083, 1084, 1028, 1029, 1087, 1106, 1104,
                            1015, 1016, 1008, 1025, 1017, 1018, 1019, 1022, 1023, 1024};
  QList<int> visited;
  const QWidget* first = &m_pFixture->Control(1000);
  const QWidget* control = first;
  do {
    if (IsOfTheTable(*control) && (control->focusPolicy() & Qt::TabFocus) != 0 && control->isVisible()) {
      visited << control->objectName().mid(4).toInt();
    }
    control = control->nextInFocusChain();
  } while (control != first);
  QCOMPARE(visited, order);
}

void DialogControlsTest::TabVisitsABrowseButtonBehindItsField() {
  m_pFixture->OpenReady();
  m_pFixture->Control(1000).setFocus();
  QStringList visited;
  for (int i = 0; i < 7; ++i) {
    visited << QApplication::focusWidget()->objectName();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
  }
  QCOMPARE(visited, QStringList({"IDC_1000", "IDC_1000_browse", "IDC_1032", "IDC_1034", "buttonSpectrum", "IDC_1009",
                                 "IDC_1009_browse"}));
}

void DialogControlsTest::NoTwoMnemonicsAreTheSame() {
  CCarvelloDlg& dialog = m_pFixture->Open();
  QStringList used;
  for (const QWidget* control : dialog.findChildren<QWidget*>()) {
    const QKeySequence mnemonic = QKeySequence::mnemonic(control->property("text").toString());
    if (mnemonic.isEmpty()) continue;
    QVERIFY2(!used.contains(mnemonic.toString()), qPrintable(control->objectName()));
    used << mnemonic.toString();
  }
  for (const int id : {1012, 1013, 1015, 1016, 1017, 1018, 1019, 1023, 1024, 1025, 1034, 1083, 1084, 1085}) {
    QVERIFY(!QKeySequence::mnemonic(m_pFixture->Control(id).property("text").toString()).isEmpty());
  }
}

void DialogControlsTest::TheTitleNamesProductAndVersion() {
  QCOMPARE(m_pFixture->Open().windowTitle(), QString("Carvello v1.0"));
  QCOMPARE(m_pFixture->Dialog().objectName(), QString("CCarvelloDlg"));
}

void DialogControlsTest::TheHelpHolderIsHidden() {
  m_pFixture->Open();
  QVERIFY(!m_pFixture->Control(1026).isVisible());
}

void DialogControlsTest::EntriesFrequencyAndLogShareAFixedPitchFont() {
  m_pFixture->Open();
  const QFont font = m_pFixture->Control(1010).font();
  QVERIFY(QFontMetrics(font).horizontalAdvance("iiii") == QFontMetrics(font).horizontalAdvance("WWWW"));
  QCOMPARE(m_pFixture->Control(1008).font().family(), font.family());
  QCOMPARE(m_pFixture->Control(1022).font().family(), font.family());
}

void DialogControlsTest::ThePercentageStaysAwayUntilThereIsProgress() {
  m_pFixture->Open();
  QVERIFY(!m_pFixture->Control(1021).isVisible());
}

void DialogControlsTest::FitsAScreenOf1024By768() {
  m_pFixture->OpenReady();
  const QSize least = m_pFixture->Dialog().minimumSizeHint();
  // With room for a title bar, a frame and a panel.
  QVERIFY2(least.width() <= 1000 && least.height() <= 690,
           qPrintable(QString("%1 x %2").arg(least.width()).arg(least.height())));
}

void DialogControlsTest::CutsNoTextOff() {
  m_pFixture->OpenReady({.nSampleRate = 1'999'999, .nCentre = 12'345'678'901, .nSeconds = 200});
  m_pFixture->Dialog().resize(m_pFixture->Dialog().minimumSizeHint());
  QCoreApplication::processEvents();
  for (const QWidget* control : m_pFixture->Dialog().findChildren<QWidget*>()) {
    if (!IsOfTheTable(*control) && !control->objectName().startsWith("label_")) continue;
    const bool shows = control->inherits("QLabel") || control->inherits("QAbstractButton") ||
                       control->inherits("QComboBox") || control->inherits("QDateTimeEdit") ||
                       control->inherits("carvello::CMyMFCMaskedEdit");
    if (!shows || !control->isVisible() || control->visibleRegion().isEmpty()) continue;
    QVERIFY2(control->width() >= control->minimumSizeHint().width() &&
                 control->height() >= control->minimumSizeHint().height(),
             qPrintable(QString("%1: %2 x %3, least %4 x %5")
                            .arg(control->objectName())
                            .arg(control->width())
                            .arg(control->height())
                            .arg(control->minimumSizeHint().width())
                            .arg(control->minimumSizeHint().height())));
  }
}

void DialogControlsTest::TheListsTakeTheRoom() {
  m_pFixture->OpenReady();
  CCarvelloDlg& dialog = m_pFixture->Dialog();
  dialog.resize(1000, 660);
  QCoreApplication::processEvents();
  const QSize list = m_pFixture->Control(1008).size();
  const QSize log = m_pFixture->Control(1022).size();
  const int inputHeight = m_pFixture->Control(1000).height();
  dialog.resize(1600, 1060);
  QCoreApplication::processEvents();
  QCOMPARE(m_pFixture->Control(1008).height() - list.height(), 400);
  QCOMPARE(m_pFixture->Control(1022).height() - log.height(), 400);
  QCOMPARE(m_pFixture->Control(1008).width() + m_pFixture->Control(1022).width() - list.width() - log.width(), 600);
  QCOMPARE(m_pFixture->Control(1000).height(), inputHeight);
}

void DialogControlsTest::EnterInAnyFieldKeepsTheDialogOpen() {
  m_pFixture->OpenReady();
  m_pFixture->Click(1086);
  m_pFixture->Click(1087);
  int pressed = 0;
  for (QWidget* control : m_pFixture->Dialog().findChildren<QWidget*>()) {
    if (!control->objectName().startsWith("IDC_") || control->focusPolicy() == Qt::NoFocus || !control->isEnabled() ||
        !control->isVisible())
      continue;
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter}) {
      QTest::keyClick(control, key);
      QVERIFY2(m_pFixture->Dialog().isVisible(), qPrintable(control->objectName()));
      ++pressed;
    }
  }
  QVERIFY(pressed > 40);
  QCOMPARE(m_pFixture->List().RowCount(), 0);  // nor was it a click on Add
  QVERIFY(m_pFixture->Answers().AllUsed());
}

void DialogControlsTest::EscapeClosesTheDialog() {
  m_pFixture->Open();
  QTest::keyClick(&m_pFixture->Control(1000), Qt::Key_Escape);
  QVERIFY(!m_pFixture->Dialog().isVisible());
  QCOMPARE(m_pFixture->Dialog().m_nBeeps, 0);
}

void DialogControlsTest::TheCloseBoxClosesTheDialog() {
  m_pFixture->Open();
  QVERIFY(m_pFixture->Dialog().close());
  QVERIFY(!m_pFixture->Dialog().isVisible());
}

void DialogControlsTest::ASystemCommandOpensTheAboutBox() {
  m_pFixture->Open();
  QString title;
  m_pFixture->Answers().Do([&](QDialog& dialog) {
    title = dialog.windowTitle();
    QTest::keyClick(&dialog, Qt::Key_Escape);
  });
  m_pFixture->Dialog().OnSystemCommand(0x0020);
  QVERIFY(title.isEmpty());
  m_pFixture->Dialog().OnSystemCommand(0x0013);  // the lower bits do not count
  QCOMPARE(title, QString("About Carvello"));
  QVERIFY(m_pFixture->Answers().AllUsed());
}

}  // namespace carvello

CARVELLO_UI_TEST(carvello::DialogControlsTest)
#include "dialog_controls_test.moc"
