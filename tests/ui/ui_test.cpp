#include "ui/ui_test.h"

#include <QDir>
#include <QTemporaryDir>
#include <cstdio>

namespace carvello::test {

std::string TempFile(const QString& name) {
  return QDir::toNativeSeparators(qEnvironmentVariable("TEMP") + "/" + name).toStdString();
}

int RunUiTest(int argc, char** argv, const std::function<std::unique_ptr<QObject>()>& makeTest,
              const AppMaker& makeApp) {
  if (const auto exitCode = RunAsOpener(argc, argv)) return *exitCode;
  const QTemporaryDir home;
  if (!home.isValid()) {
    std::fputs("no temporary folder\n", stderr);
    return 1;
  }
  const CTestDesktop desktop(home.path());
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");

  QCoreApplication::setOrganizationName("Carvello test");  // what is kept needs one; programs name their own
  const auto app = makeApp ? makeApp(argc, argv) : std::make_unique<QApplication>(argc, argv);
  const std::unique_ptr<QObject> test = makeTest();
  return QTest::qExec(test.get(), argc, argv);
}

}  // namespace carvello::test
