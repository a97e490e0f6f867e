#include "ui/my_rich_edit_ctrl.h"

#include <QDialog>
#include <QDir>
#include <QFile>
#include <QPushButton>
#include <QTemporaryDir>

#include "support/platform.h"
#include "ui/resources.h"
#include "ui/ui_test.h"

namespace carvello {

class MyRichEditCtrlTest : public QObject {
  Q_OBJECT

 private slots:
  void init();
  void LoadsTheHelpUpToItsMarker();
  void SaysWhatTheHelpSaysInOrderWithItsSlips();
  void WritesTheFirstFileThatCanBeCreated();
  void TriesAHundredNumbers();
  void TheFileHoldsTheRtfLineByLine();
  void MakesItsFolder();
  void TheFolderIsTheUsersDataFolder();
  void OpensTheFileWithTheDesktop();
  void AWindowShowsTheTextWhereNoProgramOpensIt();
  void AWindowShowsTheTextWhenNoFileCanBeWritten();
  void WithoutADesktopTheWindowIsShown();
  void AMissingResourceLeavesTheHelpEmpty();
  void ShowingAMissingHelpShowsAnEmptyDocument();

 private:
  QDialog* Window() const { return m_pHolder->findChild<QDialog*>("CMyRichEditCtrl_window"); }
  std::string File(int number) const {
    const QString name = QStringLiteral("Halvarn_%1.rtf").arg(number, 3, 10, QLatin1Char('0'));
    return platform::JoinPath(m_pFolder->path().toStdString(), name.toStdString());
  }

  std::unique_ptr<QTemporaryDir> m_pFolder;
  std::unique_ptr<QWidget> m_pHolder;
  CMyRichEditCtrl* m_pHelp = nullptr;
  std::vector<std::pair<std::string, std::string>> m_opened;
  bool m_bOpens = true;
};

void MyRichEditCtrlTest::init() {
  m_pFolder = std::make_unique<QTemporaryDir>();
  m_pHolder = std::make_unique<QWidget>();
  m_pHelp = new CMyRichEditCtrl(m_pHolder.get());
  m_pHelp->SetFolder(m_pFolder->path().toStdString());
  m_opened.clear();
  m_bOpens = true;
  m_pHelp->SetOpener([this](const std::string& path, const std::string& verb, std::string&) {
    m_opened.emplace_back(path, verb);
    return m_bOpens;
  });
}

void MyRichEditCtrlTest::LoadsTheHelpUpToItsMarker() {
  const auto resource = LoadResource("RTF", 135);
  QVERIFY(resource.has_value());
  QVERIFY(resource->find("-#-EOF-#-") != std::string::npos);
  QVERIFY(m_pHelp->Load());
  QVERIFY(!m_pHelp->RtfLines().empty());
  QVERIFY(m_pHelp->RtfLines().front().starts_with("{\\rtf1"));
  QCOMPARE(m_pHelp->RtfLines().back(), std::string("}"));
  for (const std::string& line : m_pHelp->RtfLines()) QVERIFY(line.find("-#-") == std::string::npos);
}

void MyRichEditCtrlTest::SaysWhatTheHelpSaysInOrderWithItsSlips() {
  QVERIFY(m_pHelp->Load());
  const QString text = m_pHelp->toPlainText();
  qsizetype at = 0;
  for (const char* words : {"Carvello",
                            "Input",
                            "Orvanta",
                            "WAV RF64",
                            "Output",
                            "solid-state disk",
                            "Centre frequency of the output file",
                            "Bandwidth of the output file",
                            "File size",
                            "\"One file\"",
                            "Sample size",
                            "16-bit",
                            "Optionall select",
                            "Add\n",
                            "Add Sequence\n",
                            "900,kHz",
                            "Output File\n",
                            "overwritten",
                            "Maximum Entries\n",
                            "satrted",
                            "32-bit: 6",
                            "64-bit: 4 times"}) {
    const qsizetype found = text.indexOf(words, at);
    QVERIFY2(found >= at, words);
    at = found;
  }
  QVERIFY(!text.contains("pntext"));
  QVERIFY(!text.contains("Calibri"));
}

void MyRichEditCtrlTest::WritesTheFirstFileThatCanBeCreated() {
  QVERIFY(m_pHelp->Load());
  // What stands in the way of number 0 cannot be opened for writing.
  QVERIFY(QDir(m_pFolder->path()).mkdir("Halvarn_000.rtf"));
  QCOMPARE(m_pHelp->WriteFile(), File(1));
  // An older help is replaced.
  QCOMPARE(m_pHelp->WriteFile(), File(1));
}

void MyRichEditCtrlTest::TriesAHundredNumbers() {
  QVERIFY(m_pHelp->Load());
  for (int number = 0; number < 99; ++number) QVERIFY(QDir().mkdir(QString::fromStdString(File(number))));
  QCOMPARE(m_pHelp->WriteFile(), File(99));
  QVERIFY(QFile::remove(QString::fromStdString(File(99))));
  QVERIFY(QDir().mkdir(QString::fromStdString(File(99))));
  QCOMPARE(m_pHelp->WriteFile(), std::string());
  QCOMPARE(QDir(m_pFolder->path()).entryList(QDir::Files).size(), 0);
}

void MyRichEditCtrlTest::TheFileHoldsTheRtfLineByLine() {
  QVERIFY(m_pHelp->Load());
  QFile file(QString::fromStdString(m_pHelp->WriteFile()));
  QVERIFY(file.open(QIODevice::ReadOnly));
  std::string expected;
  for (const std::string& line : m_pHelp->RtfLines()) expected += line + "\n";
  QCOMPARE(file.readAll().toStdString(), expected);
}

void MyRichEditCtrlTest::MakesItsFolder() {
  m_pHelp->SetFolder(m_pFolder->filePath("a/b").toStdString());
  QVERIFY(m_pHelp->Load());
  QVERIFY(!m_pHelp->WriteFile().empty());
}

void MyRichEditCtrlTest::TheFolderIsTheUsersDataFolder() {
  CMyRichEditCtrl help;
  QVERIFY(help.Load());
  QCOMPARE(QString::fromStdString(help.WriteFile()),
           QDir::toNativeSeparators(test::DataHome() + "/Carvello/Halvarn_000.rtf"));
}

void MyRichEditCtrlTest::OpensTheFileWithTheDesktop() {
  QVERIFY(m_pHelp->Load());
  m_pHelp->ShowHelp();
  QCOMPARE(m_opened, (std::vector<std::pair<std::string, std::string>>{{File(0), "open"}}));
  QVERIFY(Window() == nullptr);
}

void MyRichEditCtrlTest::AWindowShowsTheTextWhereNoProgramOpensIt() {
  QVERIFY(m_pHelp->Load());
  m_bOpens = false;
  m_pHelp->ShowHelp();
  QVERIFY(Window() != nullptr);
  QVERIFY(Window()->isVisible());
  const auto* pText = Window()->findChild<QTextBrowser*>();
  QVERIFY(pText != nullptr);
  QVERIFY(pText->isReadOnly());
  QCOMPARE(pText->toPlainText(), m_pHelp->toPlainText());
  QVERIFY(pText->toPlainText().contains("Optionall"));
  QTest::mouseClick(Window()->findChild<QPushButton*>(), Qt::LeftButton);
  QTRY_VERIFY(Window() == nullptr);
}

void MyRichEditCtrlTest::AWindowShowsTheTextWhenNoFileCanBeWritten() {
  QVERIFY(m_pHelp->Load());
  QFile file(m_pFolder->filePath("file"));
  QVERIFY(file.open(QIODevice::WriteOnly));
  m_pHelp->SetFolder(m_pFolder->filePath("file/folder").toStdString());
  m_pHelp->ShowHelp();
  QVERIFY(m_opened.empty());
  QVERIFY(Window() != nullptr && Window()->isVisible());
}

void MyRichEditCtrlTest::WithoutADesktopTheWindowIsShown() {
  const test::CNoOpener noOpener;
  auto* pHelp = new CMyRichEditCtrl(m_pHolder.get());
  pHelp->SetFolder(m_pFolder->path().toStdString());
  QVERIFY(pHelp->Load());
  pHelp->ShowHelp();
  QVERIFY(Window() != nullptr);
}

void MyRichEditCtrlTest::AMissingResourceLeavesTheHelpEmpty() {
  QVERIFY(m_pHelp->Load());
  QVERIFY(!m_pHelp->Load(136));
  QVERIFY(m_pHelp->RtfLines().empty());
  QVERIFY(m_pHelp->toPlainText().isEmpty());
}

void MyRichEditCtrlTest::ShowingAMissingHelpShowsAnEmptyDocument() {
  QVERIFY(!m_pHelp->Load(136));
  m_pHelp->ShowHelp();
  QCOMPARE(m_opened.size(), std::size_t{1});
  QCOMPARE(QFile(QString::fromStdString(File(0))).size(), 0);
}

}  // namespace carvello

CARVELLO_UI_TEST(carvello::MyRichEditCtrlTest)
#include "my_rich_edit_ctrl_test.moc"
