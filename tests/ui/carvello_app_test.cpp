#include "ui/carvello_app.h"

#include <clocale>

#include "support/temp_folder.h"
#include "ui/answers.h"
#include "ui/ui_test.h"

namespace carvello {

class CarvelloAppTest : public QObject {
  Q_OBJECT

 private slots:
  void NumbersHaveAPointInEveryLocale();
  void ClosingTheDialogEndsTheRunAndUnloadsTheLibrary();
  void AMissingLibraryIsToldAndEndsTheRun();
};

namespace {

CCarvelloApp& App() {
  return *qobject_cast<CCarvelloApp*>(QCoreApplication::instance());
}

}  // namespace

// Where the user's locale is taken over when the program starts, a comma may stand for the point.
void CarvelloAppTest::NumbersHaveAPointInEveryLocale() {
  QVERIFY(std::string(std::setlocale(LC_CTYPE, nullptr)) != "C");
  QCOMPARE(std::string(std::setlocale(LC_NUMERIC, nullptr)), std::string("C"));
}

void CarvelloAppTest::ClosingTheDialogEndsTheRunAndUnloadsTheLibrary() {
  bool loaded = false;
  test::CAnswers answers;
  answers.Do([&](QDialog& dialog) {
    loaded = test::IsLoaded(DspLibraryPath());
    dialog.close();
  });
  QCOMPARE(App().Run({}), 0);
  QVERIFY(answers.AllUsed());
  QVERIFY(loaded);
  QVERIFY(!test::IsLoaded(DspLibraryPath()));
}

void CarvelloAppTest::AMissingLibraryIsToldAndEndsTheRun() {
  const test::CTempFolder folder;
  const std::string library = folder / "none.so";
  test::CAnswers answers;
  answers.Give(QMessageBox::Ok);
  QCOMPARE(App().Run({}, library), 1);
  QCOMPARE(answers.Shown().size(), std::size_t{1});
  QCOMPARE(answers.Shown()[0].caption, QString("Carvello"));
  QVERIFY(answers.Shown()[0].text.endsWith(QString::fromStdString(library)));
}

}  // namespace carvello

int main(int argc, char** argv) {
  return carvello::test::RunUiTest(
      argc, argv, [] { return std::make_unique<carvello::CarvelloAppTest>(); },
      [](int& count, char** arguments) {
        std::setlocale(LC_ALL, "");  // as the toolkit does on some systems
        return std::make_unique<carvello::CCarvelloApp>(count, arguments);
      });
}
#include "carvello_app_test.moc"
