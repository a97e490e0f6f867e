#include "support/platform.h"
#include "ui/carvello_app.h"

int main(int argc, char** argv) {
  carvello::platform::PrepareProcess();
  carvello::CCarvelloApp app(argc, argv);
  return 0;
}
