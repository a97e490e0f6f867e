#include "support/shell_open.h"
#include "support/temp_folder.h"
#include "ui/answers.h"
#include "ui/file_manager.h"
#include "ui/ui_test.h"

namespace carvello {

class FileManagerTest : public QObject {
  Q_OBJECT

 private slots:
  void AFileWhoseFolderIsGoneIsTold();
};

void FileManagerTest::AFileWhoseFolderIsGoneIsTold() {
  const test::CTempFolder folder;
  test::CAnswers answers;
  answers.Give(QMessageBox::Ok);
  ShowFileInFolder(nullptr, folder / "gone\\rec.wav");
  QVERIFY(answers.AllUsed());
  QCOMPARE(answers.Shown()[0].caption, QString("Open Folder"));
  const std::string begin = ShellOpenErrorText(folder / "gone", "");
  QVERIFY2(answers.Shown()[0].text.toStdString().starts_with(begin), qPrintable(answers.Shown()[0].text));
  QVERIFY(answers.Shown()[0].text.size() > static_cast<qsizetype>(begin.size()));
}

}  // namespace carvello

CARVELLO_UI_TEST(carvello::FileManagerTest)
#include "file_manager_windows_test.moc"
