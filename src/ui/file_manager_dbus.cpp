// The file manager of a freedesktop.org desktop:
// https://www.freedesktop.org/wiki/Specifications/file-manager-interface/
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QUrl>
#include <QWidget>

#include "support/platform.h"
#include "ui/file_manager.h"
#include "ui/patient_work.h"
#include "ui/session_bus.h"
#include "ui/wait_cursor.h"

namespace carvello {

namespace {

void OpenFolderOf(const std::string& path, QWidget* pParent, CPatientWork& work) {
  OpenOrTell(pParent, platform::FolderOf(path), "Open Folder", "explore", work);
}

}  // namespace

void ShowFileInFolder(QWidget* pParent, const std::string& path, CPatientWork& work) {
  const auto bus = SessionBus();
  if (!bus) {
    OpenFolderOf(path, pParent, work);
    return;
  }
  const CWaitCursor wait;
  QDBusMessage message = QDBusMessage::createMethodCall("org.freedesktop.FileManager1", "/org/freedesktop/FileManager1",
                                                        "org.freedesktop.FileManager1", "ShowItems");
  // The file manager has a current folder of its own.
  const QString file = QString::fromStdString(platform::AbsolutePath(path));
  const QString url = QUrl::fromLocalFile(file).toString(QUrl::FullyEncoded);
  message << QStringList{url} << QString();
  // Not waited for: a file manager may take its time to start.
  auto* watcher = new QDBusPendingCallWatcher(bus->asyncCall(message), pParent);
  QObject::connect(watcher, &QDBusPendingCallWatcher::finished, &work, [watcher, pParent, path, &work] {
    watcher->deleteLater();
    if (watcher->isError()) OpenFolderOf(path, pParent, work);
  });
}

}  // namespace carvello
