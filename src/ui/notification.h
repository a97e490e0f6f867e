// Notifications of the desktop.
#pragma once

#include <QString>

class QWidget;

namespace carvello {

// Tells something that the user should know who looks elsewhere: by the desktop's own notification, and by the window's
// button on the taskbar when the window is not in front. Never waits; does what it can where the desktop has none.
void Notify(QWidget* pWindow, const QString& summary, const QString& text);

}  // namespace carvello
