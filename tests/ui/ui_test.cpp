#include "ui/ui_test.h"

#include <QApplication>
#include <QFile>
#include <QTemporaryDir>
#include <cstdio>

namespace carvello::test {

namespace {

// Stands for the desktop's opener: notes what it was asked to open.
void WriteOpener(const QString& folder) {
  QFile script(folder + "/xdg-open");
  if (!script.open(QIODevice::WriteOnly)) qFatal("no opener");
  script.write("#!/bin/sh\nprintf '%s\\n' \"$1\" >> \"$HOME/opened\"\n");
  script.setPermissions(script.permissions() | QFileDevice::ExeOwner);
}

}  // namespace

QStringList OpenedPaths() {
  QFile file(qEnvironmentVariable("HOME") + "/opened");
  if (!file.open(QIODevice::ReadOnly)) return {};
  return QString::fromUtf8(file.readAll()).split('\n', Qt::SkipEmptyParts);
}

int RunUiTest(int argc, char** argv, const std::function<std::unique_ptr<QObject>()>& makeTest) {
  const QTemporaryDir home;
  if (!home.isValid()) {
    std::fputs("no temporary folder\n", stderr);
    return 1;
  }
  const QByteArray folder = home.path().toUtf8();
  for (const char* variable :
       {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME", "XDG_RUNTIME_DIR", "TEMP", "TMPDIR"}) {
    qputenv(variable, folder);
  }
  qputenv("PATH", folder + ":" + qgetenv("PATH"));
  WriteOpener(home.path());
  qputenv("LC_ALL", "C.UTF-8");
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  // Nothing of the desktop that a test happens to run on may be reached.
  qunsetenv("DBUS_SESSION_BUS_ADDRESS");

  QApplication app(argc, argv);
  const std::unique_ptr<QObject> test = makeTest();
  return QTest::qExec(test.get(), argc, argv);
}

}  // namespace carvello::test
