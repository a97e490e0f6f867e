// Showing files in the desktop's file manager. Disks are left to `work`, which is of the window and outlives the call.
#pragma once

#include <string>

class QWidget;

namespace carvello {

class CPatientWork;

// Opens the folder of the file with the file selected, or, where the file manager cannot do that, just the folder.
void ShowFileInFolder(QWidget* pParent, const std::string& path, CPatientWork& work);

// Opens the file ("open") or folder ("explore") with the desktop's own program. A failure is told in a message box.
void OpenOrTell(QWidget* pParent, const std::string& path, const std::string& caption, const std::string& verb,
                CPatientWork& work);

}  // namespace carvello
