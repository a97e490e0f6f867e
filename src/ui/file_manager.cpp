#include "ui/file_manager.h"

#include <QWidget>
#include <functional>

#include "support/shell_open.h"
#include "ui/message_boxes.h"
#include "ui/patient_work.h"
#include "ui/ways_out.h"

namespace carvello {

void OpenOrTell(QWidget* pParent, const std::string& path, const std::string& caption, const std::string& verb,
                CPatientWork& work) {
  const platform::WindowId window = pParent != nullptr ? pParent->effectiveWinId() : 0;
  work.Run("Open", path, [=]() -> std::function<void()> {
    std::string error;
    if (ShellOpen(window, path, verb, error)) return [] {};
    const std::uint32_t reason = platform::GetFileStatus(path) ? 0 : platform::LastError();
    return [=] {
      ShowMessageBox(pParent, {caption, WithWayOut(error, WayOutOfOpening(reason)), EButtons::Ok, EIcon::Stop});
    };
  });
}

}  // namespace carvello
