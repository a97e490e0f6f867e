// What is dropped on the main dialog: a job, a recording, or a folder for the outputs.
#include <QDir>
#include <QTimer>
#include <algorithm>
#include <utility>

#include "support/text.h"
#include "ui/carvello_dlg.h"
#include "ui/file_drops.h"
#include "ui_carvello_dlg.h"

namespace carvello {

void CCarvelloDlg::ConnectDrops() {
  new CFileDrops(*this, [this](const QString& path, const QObject* pTarget, bool dropped) {
    return TakeDropped(path, pTarget == m_ui->IDC_1009, dropped);
  });
}

bool CCarvelloDlg::TakeDropped(const QString& path, bool onFolder, bool dropped) {
  if (m_job.IsRunning()) return false;
  if (!dropped) return true;
  const std::string native = QDir::toNativeSeparators(path).toStdString();
  // When the program that it comes from has its answer, for questions may follow.
  QTimer::singleShot(0, this, [this, native, onFolder] { OpenDropped(native, onFolder); });
  return true;
}

bool CCarvelloDlg::NamesJob(const std::string& path) {
  return QString::fromStdString(path).endsWith(QLatin1String(".json"), Qt::CaseInsensitive);
}

// `onFolder`: onto the field of the folder, which takes that of any file.
void CCarvelloDlg::OpenDropped(const std::string& path, bool onFolder) {
  if (m_job.IsRunning()) return;
  if (!onFolder && NamesJob(path)) {
    OpenJobFile(path);
    return;
  }
  m_fileWork.Run("Drop", path, [this, path, onFolder]() -> std::function<void()> {
    const std::optional<platform::FileStatus> status = platform::GetFileStatus(path);
    const bool folder = status && status->bDirectory;
    return [this, path, status, folder, onFolder] {
      if (folder || onFolder) {
        TakeDroppedFolder(folder ? path : platform::FolderOf(path));
      } else {
        TakeDroppedInput(path, status ? SFileStamp(*status) : SFileStamp());
      }
    };
  });
}

void CCarvelloDlg::TakeDroppedFolder(const std::string& path) {
  if (m_ui->IDC_1009->isEnabled()) {
    m_ui->IDC_1009->SetPath(QString::fromStdString(path));
  } else {
    Beep();
  }
}

// The one that is open already stays as it is, and so does its list, unless the file is another one by now.
void CCarvelloDlg::TakeDroppedInput(const std::string& path, const SFileStamp& stamp) {
  if (m_job.IsRunning()) return;
  if (path != Input()) {
    m_ui->IDC_1000->SetPath(QString::fromStdString(path));
    return;
  }
  const auto& files = m_input.recording.files;
  const bool same = m_bInputValid && std::any_of(files.begin(), files.end(),
                                                 [&stamp](const SRecordingFile& file) { return file.stamp == stamp; });
  if (same) {
    m_ui->IDC_1022->AddLine("Open already: " + path);
  } else {
    InputPathChanged();
  }
}

}  // namespace carvello
