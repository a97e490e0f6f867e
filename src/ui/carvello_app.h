// CCarvelloApp: starts the tool. Prepares the user interface, loads the downconverter library, runs the main dialog,
// and releases the library when it has closed.
#pragma once

#include <QApplication>
#include <memory>
#include <string>

#include "dsp/dsp_binding.h"

namespace carvello {

class CCarvelloApp : public QApplication {
  Q_OBJECT

 public:
  CCarvelloApp(int& argc, char** argv);
  ~CCarvelloApp() override;

  // Runs the dialog until it is closed; the exit code of the process. `library` is the path of the downconverter
  // library: when it is missing or incomplete, that is told and the tool ends.
  int Run(const std::string& input, const std::string& library = DspLibraryPath());

 private:
  bool InitInstance(const std::string& library);
  void ExitInstance();

  std::unique_ptr<DspBinding> m_pDsp;
};

}  // namespace carvello
