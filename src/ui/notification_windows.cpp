// A balloon at the notification area, which Windows shows as a notification of today's kind.
#include <QApplication>
#include <QSystemTrayIcon>
#include <QWidget>

#include "ui/notification.h"

namespace carvello {

void Notify(QWidget* pWindow, const QString& summary, const QString& text) {
  QApplication::alert(pWindow);  // flashes the button on the taskbar
  if (!QSystemTrayIcon::isSystemTrayAvailable()) return;
  // The icon has to be there as long as its balloon; a click on either brings the window back.
  auto* pIcon = pWindow->findChild<QSystemTrayIcon*>();
  if (pIcon == nullptr) {
    pIcon = new QSystemTrayIcon(pWindow->windowIcon(), pWindow);
    const auto back = [pWindow, pIcon] {
      pIcon->hide();
      pWindow->setWindowState(pWindow->windowState() & ~Qt::WindowMinimized);  // a maximised window stays so
      pWindow->show();
      pWindow->raise();
      pWindow->activateWindow();
    };
    QObject::connect(pIcon, &QSystemTrayIcon::messageClicked, pWindow, back);
    QObject::connect(pIcon, &QSystemTrayIcon::activated, pWindow, back);
  }
  pIcon->show();
  pIcon->showMessage(summary, text, QSystemTrayIcon::Information);
}

}  // namespace carvello
