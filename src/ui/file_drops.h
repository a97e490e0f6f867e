// CFileDrops: takes files and folders that are dropped anywhere on a window, whatever is there.
#pragma once

#include <QObject>
#include <QString>
#include <functional>

class QDropEvent;
class QWidget;

namespace carvello {

class CFileDrops : public QObject {
  Q_OBJECT

 public:
  // What is done with the path of what was dropped on the widget; false when it is of no use now, which is asked before
  // with `bDropped` false.
  using Taker = std::function<bool(const QString& path, const QObject* pTarget, bool bDropped)>;

  // Of the window and all that is in it now.
  CFileDrops(QWidget& window, Taker taker);

  bool eventFilter(QObject* pWatched, QEvent* event) override;

 private:
  bool Take(QDropEvent& event, const QObject* pTarget, bool bDropped);

  Taker m_taker;
};

}  // namespace carvello
