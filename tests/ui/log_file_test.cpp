#include "ui/log_file.h"

#include "support/file.h"
#include "support/formatting.h"
#include "support/temp_folder.h"
#include "ui/ui_test.h"

namespace carvello {

class LogFileTest : public QObject {
  Q_OBJECT

 private slots:
  void LiesInTheUsersTemporaryFolder();
  void HoldsOneLinePerLine();
  void ReplacesAnOlderFile();
  void NothingIsAnEmptyFile();
  void TellsWhyItCannotBeWritten();

 private:
  test::CTempFolder m_folder;
};

void LogFileTest::LiesInTheUsersTemporaryFolder() {
  QCOMPARE(LogFilePath(), test::TempFile("Carvello tmp.txt"));
}

void LogFileTest::HoldsOneLinePerLine() {
  std::string error;
  QVERIFY(WriteTextFile(m_folder / "a.txt", {"12:00:00> one", "", "12:00:01> \xC3\xA4"}, error));
  QCOMPARE(test::ReadWholeFile(m_folder / "a.txt"), std::string("12:00:00> one\n\n12:00:01> \xC3\xA4\n"));
}

void LogFileTest::ReplacesAnOlderFile() {
  std::string error;
  QVERIFY(WriteTextFile(m_folder / "b.txt", {"a long line of before"}, error));
  QVERIFY(WriteTextFile(m_folder / "b.txt", {"short"}, error));
  QCOMPARE(test::ReadWholeFile(m_folder / "b.txt"), std::string("short\n"));
}

void LogFileTest::NothingIsAnEmptyFile() {
  std::string error;
  QVERIFY(WriteTextFile(m_folder / "c.txt", {}, error));
  QCOMPARE(test::ReadWholeFile(m_folder / "c.txt"), std::string());
}

void LogFileTest::TellsWhyItCannotBeWritten() {
  std::string error;
  QVERIFY(!WriteTextFile(m_folder / "none/d.txt", {"line"}, error));
  CFile file;
  QVERIFY(!file.Open(m_folder / "none/d.txt", platform::EOpenMode::Replace));
  QCOMPARE(error, SystemErrorText());
}

}  // namespace carvello

CARVELLO_UI_TEST(carvello::LogFileTest)
#include "log_file_test.moc"
