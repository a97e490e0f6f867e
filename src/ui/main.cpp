#include <QCommandLineParser>
#include <chrono>

#include "doctor/program_facts.h"
#include "overview/left_threads.h"
#include "support/build_commit.h"
#include "support/platform.h"
#include "support/version.h"
#include "ui/carvello_app.h"

namespace {

// Behind the last window, what only reads has this long to end by itself.
constexpr std::chrono::seconds kReadersEnd{2};

// Where there is no screen, too, which an application with windows does not begin without.
void TellVersion(int argc, char** argv) {
  const QCoreApplication app(argc, argv);
  QCommandLineParser parser;
  const QCommandLineOption version = parser.addVersionOption();
  if (!parser.parse(QCoreApplication::arguments()) || !parser.isSet(version)) return;
  // What is shown begins with the program's name, as the report does.
  const std::string name = carvello::VersionValue("ProductName");
  const std::string report = carvello::VersionReport();
  QCoreApplication::setApplicationName(QString::fromStdString(name));
  QCoreApplication::setApplicationVersion(QString::fromStdString(report.substr(name.size() + 1)));
  parser.showVersion();
}

int Run(int argc, char** argv) {
  TellVersion(argc, argv);
  carvello::CCarvelloApp app(argc, argv);

  QCommandLineParser parser;
  parser.setApplicationDescription(
      QCoreApplication::translate("main", "Cuts narrow-band IQ recordings out of a wide-band one."));
  parser.addHelpOption();
  parser.addVersionOption();
  parser.addPositionalArgument("input", QCoreApplication::translate("main", "The recording or the job file to open."),
                               "[INPUT]");
  parser.process(app);
  if (parser.positionalArguments().size() > 1) parser.showHelp(2);
  return app.Run(parser.positionalArguments().value(0).toStdString());
}

}  // namespace

int main(int argc, char** argv) {
  carvello::platform::PrepareProcess();
  carvello::SetBuildCommit(carvello::kBuildCommit);
  const int exitCode = Run(argc, argv);
  // Everything is saved. A disk that never answers must not keep the process alive for ever.
  if (!carvello::JoinLeftThreadsFor(kReadersEnd)) carvello::platform::EndProcess(exitCode);
  return exitCode;
}
