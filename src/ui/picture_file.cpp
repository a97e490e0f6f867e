#include "ui/picture_file.h"

#include <QFileDialog>
#include <QSaveFile>
#include <QSettings>

#include "overview/left_threads.h"
#include "support/text.h"
#include "ui/message_boxes.h"
#include "ui/patient_work.h"
#include "ui/posted_calls.h"

namespace carvello {

namespace {

constexpr char kFolderKey[] = "PictureFolder";

// Why it could not be written; empty when it was.
QString Written(const QImage& picture, const QString& path) {
  QSaveFile file(path);
  if (!file.open(QIODevice::WriteOnly) || !picture.save(&file, "PNG") || !file.commit()) return file.errorString();
  return {};
}

}  // namespace

void SavePictureFile(QWidget* pWindow, const QImage& picture) {
  const QString folder = FolderToBegin(QSettings().value(kFolderKey).toString());
  QFileDialog dialog(pWindow, QFileDialog::tr("Save Picture"), folder, QFileDialog::tr("PNG pictures (*.png)"));
  dialog.setAcceptMode(QFileDialog::AcceptSave);
  dialog.setDefaultSuffix(QStringLiteral("png"));
  if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return;
  const QString path = dialog.selectedFiles().first();
  QSettings().setValue(kFolderKey, dialog.directory().absolutePath());
  auto* pCalls = new CPostedCalls(pWindow);  // gone with the window, or when the file is there
  const auto work = [picture, path, pWindow, pCalls, post = pCalls->MakePoster()] {
    const QString problem = Written(picture, path);
    post([path, problem, pWindow, pCalls] {
      pCalls->deleteLater();
      if (problem.isEmpty()) return;
      ShowMessageBox(pWindow,
                     {"Save Picture", Format("%s: %s", path.toStdString().c_str(), problem.toStdString().c_str()),
                      EButtons::Ok, EIcon::Stop});
    });
  };
  if (!StartLeftThread("Save", work, ELeft::Writes)) work();
}

}  // namespace carvello
