#include "ui/carvello_app.h"

#include <QIcon>
#include <chrono>
#include <clocale>

#include "dsp/start_dsp.h"
#include "overview/left_threads.h"
#include "support/platform.h"
#include "support/version.h"
#include "ui/carvello_dlg.h"
#include "ui/message_boxes.h"
#include "ui/readable_style.h"
#include "ui/translations.h"

namespace carvello {

namespace {
// Where the framework keeps what is its own, such as the window's place. The dialog's settings have their own key.
constexpr char kRegistryKey[] = "Local Carvello";
// What is written at the end beside a disk that does not answer has so long.
constexpr std::chrono::seconds kWritersEnd(10);
}  // namespace

CCarvelloApp::CCarvelloApp(int& argc, char** argv) : QApplication(argc, argv) {
  setOrganizationName(kRegistryKey);
  setApplicationName(QString::fromStdString(VersionValue("ProductName")));
  setApplicationVersion(QString::fromStdString(VersionValue("ProductVersion")));
  setDesktopFileName("carvello");
  setStyle(new CReadableStyle(style()->name()));
  UseLanguageOfUser(*this);
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
    if (dialog.IsHeldUp()) {
      // The list is kept first, unless its disk is the one that does not answer.
      JoinLeftThreadsFor(std::chrono::milliseconds(0), kWritersEnd);
      platform::EndProcess(0);
    }
    exitCode = 0;
  }
  ExitInstance();
  return exitCode;
}

bool CCarvelloApp::InitInstance(const std::string& library) {
  m_pDsp = std::make_unique<DspBinding>();
  if (StartDsp(*m_pDsp, library)) return true;
  ShowMessageBox(nullptr, {VersionValue("ProductName"), MissingLibraryText(library), EButtons::Ok, EIcon::Stop});
  return false;
}

void CCarvelloApp::ExitInstance() {
  m_pDsp.reset();
}

}  // namespace carvello
