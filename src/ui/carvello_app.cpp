#include "ui/carvello_app.h"

namespace carvello {

CCarvelloApp::CCarvelloApp(int& argc, char** argv) : QApplication(argc, argv) {}

}  // namespace carvello
