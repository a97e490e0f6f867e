// CWindowPlace: where a window stands and how large it is, from one time to the next, and always on the screens that
// there are.
#pragma once

#include <QList>
#include <QMargins>
#include <QObject>
#include <QRect>
#include <QString>
#include <QTimer>
#include <functional>

class QWidget;

namespace carvello {

// The place nearest to `wanted` (of a window without its frame) that lies on the screens with its frame: `wanted`
// itself when it does so already, also across several. A window that is too large for a screen becomes smaller, though
// no smaller than `least`; then its upper left corner is what can be seen. Without screens, `wanted`.
QRect PlaceOnScreens(const QRect& wanted, const QMargins& frame, const QSize& least, const QList<QRect>& screens);

class CWindowPlace : public QObject {
  Q_OBJECT

 public:
  using Screens = std::function<QList<QRect>()>;  // what windows may cover of each; the main one first

  // The window must outlive it. `key` names the place among the program's settings.
  CWindowPlace(QWidget& window, QString key);
  CWindowPlace(QWidget& window, QString key, Screens screens);

  // Before the window is shown: the place that was saved, or for the first time the window's present size.
  void Restore();
  void Save() const;

 private:
  void Watch();
  void Check();

  QWidget& m_window;
  QString m_strKey;
  Screens m_screens;
  QTimer m_timer;  // several things change at once when a screen comes or goes
};

}  // namespace carvello
