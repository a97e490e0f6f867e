#include "cli/program.h"
#include "support/platform.h"

int main(int argc, char** argv) {
  carvello::platform::PrepareProcess();
  carvello::platform::UseUtf8Console();
  return carvello::RunProgram(argc, argv);
}
