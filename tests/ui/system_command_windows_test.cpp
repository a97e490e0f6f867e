// Commands of the window's system menu, as the system brings them to the dialog. That needs windows of the system's.
// clang-format off
#include <windows.h>
// clang-format on

#include "dsp/start_dsp.h"
#include "ui/answers.h"
#include "ui/carvello_dlg.h"
#include "ui/ui_test.h"

namespace carvello {

class SystemCommandTest : public QObject {
  Q_OBJECT

 private slots:
  void initTestCase();
  void TheCommandOfTheAboutBoxOpensIt_data();
  void TheCommandOfTheAboutBoxOpensIt();
  void NothingElseOpensIt_data();
  void NothingElseOpensIt();

 private:
  void Send(UINT message, WPARAM command) {
    SendMessageW(reinterpret_cast<HWND>(m_pDialog->winId()), message, command, 0);
  }

  DspBinding m_dsp;
  std::unique_ptr<CCarvelloDlg> m_pDialog;
};

void SystemCommandTest::initTestCase() {
  QVERIFY(StartDsp(m_dsp));
  m_pDialog = std::make_unique<CCarvelloDlg>(m_dsp);
}

void SystemCommandTest::TheCommandOfTheAboutBoxOpensIt_data() {
  QTest::addColumn<unsigned>("command");
  QTest::newRow("the first") << 0x0010U;
  QTest::newRow("one between") << 0x0013U;  // the lower bits do not count
  QTest::newRow("the last") << 0x001FU;
}

void SystemCommandTest::TheCommandOfTheAboutBoxOpensIt() {
  QFETCH(unsigned, command);
  QString title;
  test::CAnswers answers;
  answers.Do([&](QDialog& dialog) {
    title = dialog.windowTitle();
    dialog.close();
  });
  Send(WM_SYSCOMMAND, command);
  QCOMPARE(title, QString("About Carvello"));
  QVERIFY(answers.AllUsed());
}

void SystemCommandTest::NothingElseOpensIt_data() {
  QTest::addColumn<unsigned>("message");
  QTest::addColumn<unsigned>("command");
  QTest::newRow("the command before") << unsigned{WM_SYSCOMMAND} << 0x000FU;
  QTest::newRow("the command behind") << unsigned{WM_SYSCOMMAND} << 0x0020U;
  QTest::newRow("another message") << unsigned{WM_APP} << 0x0010U;
}

void SystemCommandTest::NothingElseOpensIt() {
  QFETCH(unsigned, message);
  QFETCH(unsigned, command);
  test::CAnswers answers;
  Send(message, command);
  QVERIFY(answers.AllUsed());
}

}  // namespace carvello

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "windows");
  return carvello::test::RunUiTest(argc, argv, [] { return std::make_unique<carvello::SystemCommandTest>(); });
}
#include "system_command_windows_test.moc"
