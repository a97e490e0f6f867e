#include "ui/carvello_app.h"

#include <QIcon>
#include <clocale>

#include "dsp/primitives.h"
#include "support/text.h"
#include "support/version.h"
#include "ui/carvello_dlg.h"
#include "ui/message_boxes.h"

namespace carvello {

namespace {
// Where the framework keeps what is its own, such as the window's place. The dialog's settings have their own key.
constexpr char kRegistryKey[] = "Local Carvello";
}  // namespace

CCarvelloApp::CCarvelloApp(int& argc, char** argv) : QApplication(argc, argv) {
  setOrganizationName(kRegistryKey);
  setApplicationName(QString::fromStdString(VersionValue("ProductName")));
  setApplicationVersion(QString::fromStdString(VersionValue("ProductVersion")));
  setDesktopFileName("carvello");
  // The toolkit has taken over the user's locale; the log and the percentage have a point in every one.
  std::setlocale(LC_NUMERIC, "C");
}

CCarvelloApp::~CCarvelloApp() {
  ExitInstance();
}

int CCarvelloApp::Run(const std::string& input, const std::string& library) {
  int exitCode = 1;
  if (InitInstance(library)) {
    CCarvelloDlg dialog(*m_pDsp, input);
    dialog.exec();
    exitCode = 0;
  }
  ExitInstance();
  return exitCode;
}

bool CCarvelloApp::InitInstance(const std::string& library) {
  m_pDsp = std::make_unique<DspBinding>();
  if (BindDsp(*m_pDsp, library) == 0) {
    ShowMessageBox(nullptr, {VersionValue("ProductName"),
                             Format("The downconverter library Vantrel is missing or incomplete: %s", library.c_str()),
                             EButtons::Ok, EIcon::Stop});
    return false;
  }
  m_pDsp->Advanced(0);
  InitPrimitives();
  return true;
}

void CCarvelloApp::ExitInstance() {
  m_pDsp.reset();
}

}  // namespace carvello
