#include "ui/ui_test.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTextDocument>
#include <QToolTip>
#include <cstdio>

namespace carvello::test {

std::string TempFile(const QString& name) {
  return QDir::toNativeSeparators(qEnvironmentVariable("TEMP") + "/" + name).toStdString();
}

QWidget* ToolTipShown() {
  for (QWidget* pWidget : QApplication::topLevelWidgets()) {
    if (pWidget->inherits("QTipLabel") && pWidget->isVisible()) return pWidget;
  }
  return nullptr;
}

QString ToolTipText() {
  QString text = QToolTip::text();
  if (Qt::mightBeRichText(text)) {
    QTextDocument document;
    document.setHtml(text);
    text = document.toPlainText();
  }
  return text.remove(QChar(0x200B));
}

namespace {

// A platform without a screen has one of 800 x 800 unless it is told of another: the one that CARVELLO_SCREEN names
// ("1366x768"), or a usual one. Its description is named without its folder, for colons separate the platform's
// options.
std::unique_ptr<QApplication> AppOnAScreen(const QString& home, int& argc, char** argv, const AppMaker& makeApp) {
  const auto make = [&] { return makeApp ? makeApp(argc, argv) : std::make_unique<QApplication>(argc, argv); };
  if (qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) return make();
  const QList<QByteArray> size = qEnvironmentVariable("CARVELLO_SCREEN", "1600x1100").toLatin1().split('x');
  QFile file(home + "/screen.json");
  if (size.size() != 2 || !file.open(QIODevice::WriteOnly)) qFatal("no screen");
  file.write(R"({"synchronousWindowSystemEvents": false, "windowFrameMargins": true, "screens": [{"name": "screen", )"
             R"("x": 0, "y": 0, "logicalDpi": 96, "logicalBaseDpi": 96, "dpr": 1, "width": )" +
             size[0] + R"(, "height": )" + size[1] + "}]}");
  file.close();
  const QString folder = QDir::currentPath();
  QDir::setCurrent(home);
  qputenv("QT_QPA_PLATFORM", "offscreen:configfile=screen.json");
  auto app = make();
  QDir::setCurrent(folder);
  return app;
}

}  // namespace

int RunUiTest(int argc, char** argv, const std::function<std::unique_ptr<QObject>()>& makeTest,
              const AppMaker& makeApp) {
  if (const auto exitCode = RunAsOpener(argc, argv)) return *exitCode;
  const QTemporaryDir home;
  if (!home.isValid()) {
    std::fputs("no temporary folder\n", stderr);
    return 1;
  }
  const CTestDesktop desktop(home.path());
  QCoreApplication::setOrganizationName("Carvello test");  // what is kept needs one; programs name their own
  const auto app = AppOnAScreen(home.path(), argc, argv, makeApp);
  const std::unique_ptr<QObject> test = makeTest();
  return QTest::qExec(test.get(), argc, argv);
}

}  // namespace carvello::test
