#include "ui/file_manager.h"

#include <QWidget>

#include "support/shell_open.h"
#include "ui/message_boxes.h"
#include "ui/wait_cursor.h"

namespace carvello {

bool OpenOrTell(QWidget* pParent, const std::string& path, const std::string& caption, const std::string& verb) {
  std::string error;
  {
    const CWaitCursor wait;
    if (ShellOpen(pParent != nullptr ? pParent->effectiveWinId() : 0, path, verb, error)) return true;
  }
  ShowMessageBox(pParent, {caption, error, EButtons::Ok, EIcon::Stop});
  return false;
}

}  // namespace carvello
