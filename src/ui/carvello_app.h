// CCarvelloApp: starts the tool. Prepares the look of the user interface, loads the downconverter library, runs the
// main dialog, and releases the library when it has closed.
#pragma once

#include <QApplication>

namespace carvello {

class CCarvelloApp : public QApplication {
  Q_OBJECT

 public:
  CCarvelloApp(int& argc, char** argv);
};

}  // namespace carvello
