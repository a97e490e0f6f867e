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

int Run(int argc, char** argv) {
  carvello::CCarvelloApp app(argc, argv);

  QCommandLineParser parser;
  parser.setApplicationDescription(
      QCoreApplication::translate("main", "Cuts narrow-band IQ recordings out of a wide-band one."));
  parser.addHelpOption();
  const QCommandLineOption version = parser.addVersionOption();
  parser.addPositionalArgument("input", QCoreApplication::translate("main", "The recording or the job file to open."),
                               "[INPUT]");
  if (parser.parse(QCoreApplication::arguments()) && parser.isSet(version)) {
    // What is shown begins with the program's name, as the report does.
    const std::string name = QCoreApplication::applicationName().toStdString() + " ";
    const std::string report = carvello::VersionReport();
    QCoreApplication::setApplicationVersion(QString::fromStdString(report.substr(name.size())));
  }
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
