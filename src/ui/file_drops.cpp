#include "ui/file_drops.h"

#include <QDropEvent>
#include <QMimeData>
#include <QUrl>
#include <QWidget>
#include <utility>

namespace carvello {

CFileDrops::CFileDrops(QWidget& window, Taker taker) : QObject(&window), m_taker(std::move(taker)) {
  window.setAcceptDrops(true);
  window.installEventFilter(this);
  // Fields for texts would take the name of the file.
  for (QWidget* pWidget : window.findChildren<QWidget*>()) {
    if (pWidget->acceptDrops()) pWidget->installEventFilter(this);
  }
}

bool CFileDrops::eventFilter(QObject* pWatched, QEvent* event) {
  switch (event->type()) {
    case QEvent::DragEnter:
    case QEvent::DragMove:
      return Take(static_cast<QDropEvent&>(*event), pWatched, false);
    case QEvent::Drop:
      return Take(static_cast<QDropEvent&>(*event), pWatched, true);
    default:
      return false;
  }
}

// False for what is no file: that is left to the widget.
bool CFileDrops::Take(QDropEvent& event, const QObject* pTarget, bool bDropped) {
  const QList<QUrl> urls = event.mimeData()->urls();
  if (urls.isEmpty() || !urls.first().isLocalFile()) return false;
  if (m_taker(urls.first().toLocalFile(), pTarget, bDropped)) {
    event.acceptProposedAction();
  } else {
    event.ignore();
  }
  return true;
}

}  // namespace carvello
