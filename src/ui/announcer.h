// CAnnouncer: tells readers of the screen what happens while the keyboard is elsewhere. It is a part of the window that
// shows nothing, and that readers know as a notification; each new one is told by all the ways that they listen to.
#pragma once

#include <QStringList>
#include <QTimer>
#include <QWidget>

namespace carvello {

class CAnnouncer : public QWidget {
  Q_OBJECT

 public:
  explicit CAnnouncer(QWidget* pWindow);

  // What happens within a moment is told together: the outcome always, and the first few of the other things in full.
  void Announce(const QString& text);
  void AnnounceOutcome(const QString& text);
  // What was told last.
  const QString& Told() const { return m_strTold; }

  // The share that is done, from 0 to 1: told at every tenth that is reached; of several in a moment, the last.
  void AnnounceProgress(double share);
  void BeginProgress() { m_nTenths = 0; }

 signals:
  void Announced(const QString& text);

 private:
  void Tell();

  QTimer m_timer;
  QStringList m_waiting;
  QString m_strProgress;
  QString m_strOutcome;
  QString m_strTold;
  int m_nMore = 0;
  int m_nTenths = 0;
};

}  // namespace carvello
