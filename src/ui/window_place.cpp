#include "ui/window_place.h"

#include <QApplication>
#include <QRegion>
#include <QScreen>
#include <QSettings>
#include <QWidget>
#include <algorithm>
#include <utility>

namespace carvello {

namespace {

// What window managers put around a window, which is not known before it is shown.
constexpr QMargins kLikelyFrame(8, 36, 8, 8);

QList<QRect> AvailableScreens() {
  QList<QRect> areas;
  for (const QScreen* pScreen : QGuiApplication::screens()) areas.append(pScreen->availableGeometry());
  return areas;
}

int Area(const QRect& rect) {
  return rect.isEmpty() ? 0 : rect.width() * rect.height();
}

int Distance(const QRect& a, const QRect& b) {
  return (a.center() - b.center()).manhattanLength();
}

QMargins Largest(const QMargins& a, const QMargins& b) {
  return {std::max(a.left(), b.left()), std::max(a.top(), b.top()), std::max(a.right(), b.right()),
          std::max(a.bottom(), b.bottom())};
}

}  // namespace

QRect PlaceOnScreens(const QRect& wanted, const QMargins& frame, const QSize& least, const QList<QRect>& screens) {
  if (screens.isEmpty()) return wanted;
  const QRect outer = wanted.marginsAdded(frame);
  QRegion covered;
  for (const QRect& screen : screens) covered += screen;
  if ((QRegion(outer) - covered).isEmpty()) return wanted;

  // The screen that shows most of it, or else the nearest.
  const QRect screen = *std::max_element(screens.begin(), screens.end(), [&](const QRect& a, const QRect& b) {
    const int onA = Area(a & outer), onB = Area(b & outer);
    return onA != onB ? onA < onB : Distance(a, outer) > Distance(b, outer);
  });
  const QRect room = screen.marginsRemoved(frame);
  const QSize size = wanted.size().boundedTo(room.size()).expandedTo(least);
  const int x = std::max(room.left(), std::min(wanted.x(), room.left() + room.width() - size.width()));
  const int y = std::max(room.top(), std::min(wanted.y(), room.top() + room.height() - size.height()));
  return {{x, y}, size};
}

CWindowPlace::CWindowPlace(QWidget& window, QString key) : CWindowPlace(window, std::move(key), AvailableScreens) {}

CWindowPlace::CWindowPlace(QWidget& window, QString key, Screens screens)
    : m_window(window), m_strKey(std::move(key)), m_screens(std::move(screens)) {
  m_timer.setSingleShot(true);
  connect(&m_timer, &QTimer::timeout, this, &CWindowPlace::Check);
  const auto changed = [this] {
    Watch();
    m_timer.start();
  };
  connect(qApp, &QGuiApplication::screenAdded, this, changed);
  connect(qApp, &QGuiApplication::screenRemoved, this, changed);
  connect(qApp, &QGuiApplication::primaryScreenChanged, this, changed);
  Watch();
}

void CWindowPlace::Watch() {
  const auto start = qOverload<>(&QTimer::start);
  for (const QScreen* pScreen : QGuiApplication::screens()) {
    connect(pScreen, &QScreen::availableGeometryChanged, &m_timer, start, Qt::UniqueConnection);
  }
}

void CWindowPlace::Restore() {
  if (m_window.restoreGeometry(QSettings().value(m_strKey).toByteArray())) {
    Check();
    return;
  }
  // The window manager chooses the place; the size is what has to fit, on the main screen.
  const QList<QRect> screens = m_screens();
  if (screens.isEmpty()) return;
  const QSize room = screens.front().marginsRemoved(kLikelyFrame).size();
  m_window.resize(m_window.size().boundedTo(room).expandedTo(m_window.minimumSizeHint()));
}

void CWindowPlace::Save() const {
  QSettings().setValue(m_strKey, m_window.saveGeometry());
}

void CWindowPlace::Check() {
  if (m_window.isMaximized() || m_window.isFullScreen()) return;  // the window manager sees to these
  const QRect inner = m_window.geometry(), outer = m_window.frameGeometry();
  const QMargins frame(inner.left() - outer.left(), inner.top() - outer.top(), outer.right() - inner.right(),
                       outer.bottom() - inner.bottom());
  const QRect place = PlaceOnScreens(inner, m_window.isVisible() ? frame : Largest(frame, kLikelyFrame),
                                     m_window.minimumSizeHint(), m_screens());
  if (place != inner) m_window.setGeometry(place);
}

}  // namespace carvello
