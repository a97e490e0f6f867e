#include <QCommandLineParser>

#include "support/platform.h"
#include "ui/carvello_app.h"

int main(int argc, char** argv) {
  carvello::platform::PrepareProcess();
  carvello::CCarvelloApp app(argc, argv);

  QCommandLineParser parser;
  parser.setApplicationDescription("Cuts narrow-band IQ recordings out of a wide-band one.");
  parser.addHelpOption();
  parser.addVersionOption();
  parser.addPositionalArgument("input", "The recording to open.", "[INPUT]");
  parser.process(app);
  if (parser.positionalArguments().size() > 1) parser.showHelp(2);
  return app.Run(parser.positionalArguments().value(0).toStdString());
}
