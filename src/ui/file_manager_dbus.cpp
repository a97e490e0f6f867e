// The file manager of a freedesktop.org desktop:
// https://www.freedesktop.org/wiki/Specifications/file-manager-interface/
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QFileInfo>
#include <QUrl>
#include <QWidget>

#include "support/platform.h"
#include "ui/file_manager.h"
#include "ui/wait_cursor.h"

namespace carvello {

void ShowFileInFolder(QWidget* pParent, const std::string& path) {
  const CWaitCursor wait;
  QDBusMessage message = QDBusMessage::createMethodCall("org.freedesktop.FileManager1", "/org/freedesktop/FileManager1",
                                                        "org.freedesktop.FileManager1", "ShowItems");
  // The file manager has a current folder of its own.
  const QString file = QFileInfo(QString::fromStdString(path)).absoluteFilePath();
  const QString url = QUrl::fromLocalFile(file).toString(QUrl::FullyEncoded);
  message << QStringList{url} << QString();
  // Not waited for: a file manager may take its time to start.
  auto* watcher = new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(message), pParent);
  QObject::connect(watcher, &QDBusPendingCallWatcher::finished, pParent, [watcher, pParent, path] {
    watcher->deleteLater();
    if (watcher->isError()) OpenOrTell(pParent, platform::FolderOf(path), "Open Folder", "explore");
  });
}

}  // namespace carvello
