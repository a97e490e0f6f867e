// Messages about what is gone or may not be read name it, and what can be done.
#include <cerrno>

#include "ui/dead_disk.h"
#include "ui/dialog_fixture.h"
#include "ui/job_menu.h"
#include "ui/ui_test.h"

namespace carvello {

using test::CDeadDisk;
using test::CDialogFixture;

class WaysOutTest : public QObject {
  Q_OBJECT

 private slots:
  void init() { m_pFixture = std::make_unique<CDialogFixture>(); }
  void cleanup();

  void AnInputThatMayNotBeReadIsNamed();
  void ARememberedInputThatMayNotBeReadIsNamed();
  void ARememberedInputThatIsGoneIsForgottenQuietly();
  void AnInputThatVanishedBeforeStartIsNamed();
  void AnInputThatMayNotBeReadAnyMoreIsNamedAtStart();
  void AnInputThatVanishedDuringTheRunIsNamed();
  void AnOutputFolderThatIsGoneIsNamed();
  void AnOutputFolderThatMayNotBeWrittenToIsNamed();
  void ADiskThatFailsIsNotTakenForARefusal();
  void AJobThatCannotBeReadIsNamed();
  void AJobThatCannotBeSavedIsNamed();
  void TheInputInThePlaceOfAnOutputIsNamed();

 private:
  void OpenReady();
  std::string Path(const char* name) const { return m_pFixture->Folder() / name; }
  // The box that a click on Start brings.
  QString StartBox();

  std::unique_ptr<CDialogFixture> m_pFixture;
};

void WaysOutTest::cleanup() {
  QVERIFY(m_pFixture->Answers().AllUsed());
  m_pFixture.reset();
}

void WaysOutTest::OpenReady() {
  m_pFixture->OpenReady({.nSeconds = 20});
  m_pFixture->Choose(1014, "One file (RF64)");
  m_pFixture->Choose(1011, "10 kHz");
  m_pFixture->Click(1015);
}

QString WaysOutTest::StartBox() {
  m_pFixture->Answers().Give(QMessageBox::Ok);
  m_pFixture->Click(1018);
  return m_pFixture->Answers().Shown().empty() ? QString() : m_pFixture->Answers().Shown().back().text;
}

void WaysOutTest::AnInputThatMayNotBeReadIsNamed() {
  m_pFixture->WriteInput();
  m_pFixture->Open();
  const CDeadDisk refusing(Path("rec.wav"), EACCES);
  m_pFixture->SetPath(1000, Path("rec.wav"));
  QCOMPARE(m_pFixture->Log().last(),
           QString::fromStdString(Path("rec.wav") +
                                  ": Permission denied: it may not be read. Ask for the right to read it, or copy it "
                                  "to where you may"));
}

void WaysOutTest::ARememberedInputThatMayNotBeReadIsNamed() {
  m_pFixture->WriteInput();
  m_pFixture->Settings().Write("InputFile", Path("rec.wav"));
  const CDeadDisk refusing(Path("rec.wav"), EACCES);
  m_pFixture->Open();
  QVERIFY(m_pFixture->Control<QLineEdit>(1000).text().isEmpty());
  QVERIFY2(m_pFixture->Log().last().startsWith(QString::fromStdString("[WARNING] " + Path("rec.wav") + ": it may not")),
           qPrintable(m_pFixture->Log().last()));
}

void WaysOutTest::ARememberedInputThatIsGoneIsForgottenQuietly() {
  m_pFixture->Settings().Write("InputFile", Path("gone.wav"));
  m_pFixture->Open();
  QVERIFY(m_pFixture->Control<QLineEdit>(1000).text().isEmpty());
  QCOMPARE(m_pFixture->Log().size(), 2);
}

void WaysOutTest::AnInputThatVanishedBeforeStartIsNamed() {
  OpenReady();
  std::filesystem::remove(test::PathOf(Path("rec.wav")));
  const QString text = StartBox();
  QVERIFY2(text.startsWith(QString::fromStdString(Path("rec.wav") + ": ")) && text.contains(test::MissingReason()),
           qPrintable(text));
  QVERIFY2(text.endsWith("\n\nThe recording is gone since it was chosen. Connect its disk or put it back, then start "
                         "again."),
           qPrintable(text));
}

void WaysOutTest::AnInputThatMayNotBeReadAnyMoreIsNamedAtStart() {
  OpenReady();
  const CDeadDisk refusing(Path("rec.wav"), EACCES);
  const QString text = StartBox();
  QVERIFY2(text.startsWith(QString::fromStdString(Path("rec.wav") + ": ")) && text.contains("Permission denied"),
           qPrintable(text));
  QVERIFY2(text.endsWith("Ask for the right to read it, or copy it to where you may."), qPrintable(text));
}

void WaysOutTest::AnInputThatVanishedDuringTheRunIsNamed() {
  m_pFixture->Open();
  m_pFixture->WriteInput({.nSeconds = 20}, "set 000.wav");
  m_pFixture->WriteInput({.tStart = test::kRecordingStart + 20, .nSeconds = 20, .strFirstFile = "set 000.wav"},
                         "set 001.wav");
  m_pFixture->SetPath(1000, Path("set 000.wav"));
  m_pFixture->SetPath(1009, m_pFixture->OutputFolder());
  m_pFixture->Choose(1011, "10 kHz");
  m_pFixture->Click(1015);
  std::filesystem::remove(test::PathOf(Path("set 001.wav")));
  m_pFixture->Answers().Give(QMessageBox::Ok);
  m_pFixture->Click(1018);
  QTRY_COMPARE_WITH_TIMEOUT(m_pFixture->Answers().Shown().size(), std::size_t{1}, 300'000);
  const QString text = m_pFixture->Answers().Shown()[0].text;
  QVERIFY2(text.contains(QString::fromStdString(Path("set 001.wav"))) && text.contains(test::MissingReason()),
           qPrintable(text));
  QVERIFY2(text.endsWith("What failed stays on the list: put the cause right, and press Start again."),
           qPrintable(text));
}

void WaysOutTest::AnOutputFolderThatIsGoneIsNamed() {
  OpenReady();
  std::filesystem::remove(test::PathOf(m_pFixture->OutputFolder()));
  QCOMPARE(StartBox(), QString::fromStdString(m_pFixture->OutputFolder()) + ": " + test::MissingReason() +
                           "\n\nCreate the folder or connect its disk, or choose another folder for the entries.");
}

void WaysOutTest::AnOutputFolderThatMayNotBeWrittenToIsNamed() {
  OpenReady();
  const CDeadDisk refusing(m_pFixture->OutputFolder(), EACCES);
  QCOMPARE(StartBox(), QString::fromStdString(m_pFixture->OutputFolder()) +
                           ": Permission denied\n\nChoose a folder for the entries that you may write to.");
}

void WaysOutTest::ADiskThatFailsIsNotTakenForARefusal() {
  OpenReady();
  {
    const CDeadDisk failing(Path("rec.wav"), EIO);
    QVERIFY2(StartBox().endsWith("Its disk or the connection to it is failing. Check it, then try again."),
             qPrintable(m_pFixture->Answers().Shown().back().text));
  }
  const CDeadDisk failing(m_pFixture->OutputFolder(), EROFS);
  QVERIFY2(
      StartBox().endsWith("Nothing can be written there. Choose another folder for the entries, or check its disk."),
      qPrintable(m_pFixture->Answers().Shown().back().text));
}

void WaysOutTest::AJobThatCannotBeReadIsNamed() {
  m_pFixture->OpenReady();
  const auto box = [this] {
    m_pFixture->Answers().Give(QMessageBox::Ok);
    emit m_pFixture->Dialog().findChild<CJobMenu*>()->FilePressed(Path("job.json"));
    return m_pFixture->Answers().Shown().back().text;
  };
  const QString place = QString::fromStdString(Path("job.json"));
  QVERIFY2(box().startsWith(place) && box().endsWith("Connect its disk or put it back, or choose another."),
           qPrintable(box()));
  test::WriteWholeFile(Path("job.json"), "{");
  QVERIFY2(box().startsWith(place) && !box().contains("disk"), qPrintable(box()));
  const CDeadDisk refusing(Path("job.json"), EACCES);
  QVERIFY2(box().startsWith(place) && box().endsWith("Ask for the right to read it."), qPrintable(box()));
}

void WaysOutTest::AJobThatCannotBeSavedIsNamed() {
  OpenReady();
  const std::string path = m_pFixture->Folder() / "job.json";
  m_pFixture->Answers().ChooseFile(path);
  auto& menu = *m_pFixture->Dialog().findChild<CJobMenu*>();
  emit menu.SaveAsPressed();
  const CDeadDisk refusing(path, EACCES);
  m_pFixture->Answers().Give(QMessageBox::Ok);
  emit menu.SavePressed();
  const QString text = m_pFixture->Answers().Shown().back().text;
  QVERIFY2(text.startsWith(QString::fromStdString(path)) && text.contains("Permission denied") &&
               text.endsWith("Save it in another place with Save As, in the menu of Job."),
           qPrintable(text));
}

void WaysOutTest::TheInputInThePlaceOfAnOutputIsNamed() {
  OpenReady();
  const std::string output = m_pFixture->OutputFolder() + "/" + m_pFixture->Row(0)[4].toStdString();
  std::filesystem::create_symlink(test::PathOf(Path("rec.wav")), test::PathOf(output));
  QCOMPARE(StartBox(), QString::fromStdString(output + " would replace the input file " + Path("rec.wav") +
                                              "\n\nChoose another folder for the entries."));
}

}  // namespace carvello

CARVELLO_UI_TEST(carvello::WaysOutTest)
#include "ways_out_test.moc"
