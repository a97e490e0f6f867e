#include "ui/about_dlg.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QLabel>
#include <QPushButton>
#include <filesystem>
#include <string>

#include "doctor/report.h"
#include "support/temp_folder.h"
#include "support/version.h"
#include "ui/dialog_fixture.h"
#include "ui/job_menu.h"
#include "ui/resources.h"
#include "ui/ui_test.h"

namespace carvello {

namespace {

QString OutcomeOf(const CAboutDlg& dialog) {
  return dialog.findChild<QLabel*>("outcome")->text();
}

// What the button puts on the clipboard, at last.
QString Copied(CAboutDlg& dialog) {
  constexpr int kLongest = 120'000;
  QGuiApplication::clipboard()->setText("before");
  auto* pCopy = dialog.findChild<QPushButton*>("buttonCopy");
  QTest::mouseClick(pCopy, Qt::LeftButton);
  if (!QTest::qWaitFor([pCopy] { return pCopy->isEnabled(); }, kLongest)) return "nothing was copied";
  return QGuiApplication::clipboard()->text();
}

}  // namespace

class AboutDlgTest : public QObject {
  Q_OBJECT

 private slots:
  void ShowsNameVersionAndIcon();
  void ShowsWhatTheProgramIsMadeOf();
  void DetailsGoToTheClipboardWithoutHoldingTheWindowUp();
  void BesideAJobNothingIsMeasured();
  void ClosingWhileDetailsAreGatheredIsNoHarm();
  void OpenedFromTheJobMenuItLooksAtTheFoldersInUse();
  void OkCloses();
  void TheIconComesInAllSizes();
};

void AboutDlgTest::ShowsNameVersionAndIcon() {
  const CAboutDlg dialog;
  QCOMPARE(dialog.objectName(), "CAboutDlg");
  QCOMPARE(dialog.windowTitle(), "About Carvello");
  bool bText = false;
  bool bIcon = false;
  for (const QLabel* pLabel : dialog.findChildren<QLabel*>()) {
    bText = bText || pLabel->text() == "Carvello, Version 1.0";
    bIcon = bIcon || !pLabel->pixmap().isNull();
  }
  QVERIFY(bText);
  QVERIFY(bIcon);
}

void AboutDlgTest::ShowsWhatTheProgramIsMadeOf() {
  SetBuildCommit("0123456789");
  const CAboutDlg dialog;
  SetBuildCommit("");
  const auto* pFacts = dialog.findChild<QLabel*>("facts");
  QVERIFY(pFacts != nullptr);
  QVERIFY(pFacts->text().contains("Commit: 0123456789\nCompiler: " + QString::fromStdString(CompilerName())));
  QVERIFY(pFacts->text().contains("Library: Vantrel "));
}

void AboutDlgTest::DetailsGoToTheClipboardWithoutHoldingTheWindowUp() {
  const test::CTempFolder folder;
  CAboutDlg dialog({.folders = {folder.Path()}});
  dialog.show();
  const QString text = Copied(dialog);
  for (const char* part :
       {"Program\n", "Downconverter library\n", "System\n", "Folders in use\n", "  Qt: ", "\nDisk of ",
        "brought to the medium\n", "million input frames a second", "frames, as were due\n"}) {
    QVERIFY2(text.contains(part), qPrintable(text));
  }
  QCOMPARE(OutcomeOf(dialog), "The details are on the clipboard.");
  QVERIFY(std::filesystem::is_empty(test::PathOf(folder.Path())));
}

void AboutDlgTest::BesideAJobNothingIsMeasured() {
  CAboutDlg dialog({.folders = {"."}, .bMeasure = false});
  QCOMPARE(OutcomeOf(dialog), "A job is at work, so the disks and a short cut are not measured.");
  const QString text = Copied(dialog);
  QVERIFY2(text.contains("\nDisk of ."), qPrintable(text));
  QVERIFY2(text.contains("not measured; carvello-cli doctor measures it"), qPrintable(text));
  QVERIFY2(!text.contains("brought to the medium"), qPrintable(text));
}

void AboutDlgTest::ClosingWhileDetailsAreGatheredIsNoHarm() {
  {
    CAboutDlg dialog;
    QTest::mouseClick(dialog.findChild<QPushButton*>("buttonCopy"), Qt::LeftButton);
  }
  QCoreApplication::processEvents();
}

void AboutDlgTest::OpenedFromTheJobMenuItLooksAtTheFoldersInUse() {
  test::CDialogFixture fixture;
  fixture.OpenReady();
  QString text;
  fixture.Answers().Do([&text](QDialog& dialog) {
    if (auto* pAbout = qobject_cast<CAboutDlg*>(&dialog)) text = Copied(*pAbout);
    dialog.reject();
  });
  for (QAction* pAction : fixture.Dialog().findChild<CJobMenu*>()->actions()) {
    if (pAction->text() == "A&bout Carvello…") pAction->trigger();
  }
  for (const std::string& folder : {fixture.Folder().Path(), fixture.OutputFolder()}) {
    QVERIFY2(text.contains(QString::fromStdString("\nDisk of " + WithoutHome(folder) + "\n")), qPrintable(text));
  }
}

void AboutDlgTest::OkCloses() {
  CAboutDlg dialog;
  dialog.show();
  auto* pOk = dialog.findChild<QPushButton*>("IDC_1");
  QVERIFY(pOk != nullptr);
  QCOMPARE(pOk->text(), "OK");
  QTest::mouseClick(pOk, Qt::LeftButton);
  QVERIFY(!dialog.isVisible());
}

void AboutDlgTest::TheIconComesInAllSizes() {
  const QIcon icon = ProgramIcon();
  for (const int size : {16, 22, 24, 32, 48, 64, 128, 256}) {
    QVERIFY2(icon.availableSizes().contains(QSize(size, size)), qPrintable(QString::number(size)));
  }
}

}  // namespace carvello

CARVELLO_UI_TEST(carvello::AboutDlgTest)
#include "about_dlg_test.moc"
