// CPatientWork: work that may have to wait for a disk, done on a thread that nobody waits for long. What is quick is
// done when Run returns, as if it had simply been called. Else the window lives on meanwhile: it is told that it waits
// and that it does so no more, and may give the work up, whose result is dropped then whenever it comes.
#pragma once

#include <QObject>
#include <QTimer>
#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "ui/posted_calls.h"

namespace carvello {

class CPatientWork : public QObject {
  Q_OBJECT

 public:
  // How long a window may stand still: too short to be noticed, and time enough for a disk that is at hand.
  static constexpr std::chrono::milliseconds kPatience{100};

  // Done on a thread of its own, which may outlive everything: it owns all that it uses. What it returns is called on
  // the window's thread.
  using Work = std::function<std::function<void()>()>;

  explicit CPatientWork(std::chrono::milliseconds patience = kPatience, QObject* pParent = nullptr);
  ~CPatientWork() override;  // gives up

  // Gives up what is under way and begins anew. `name`: of the thread. `place`: what is waited for, for the user.
  // `givenUp`: called when this work is given up, also for other work, but not by the end of this object. While earlier
  // work still hangs, the next begins only when nothing newer has come for a moment: a path that is being typed would
  // leave a thread for each of its letters.
  void Run(const std::string& name, const std::string& place, Work work, std::function<void()> givenUp = nullptr);
  // Run has returned, and the work goes on.
  bool IsWaiting() const { return m_bWaiting; }
  const std::string& Place() const { return m_strPlace; }
  void GiveUp();

 signals:
  void WaitingChanged();

 private:
  struct SState;

  void Begin();
  bool WaitQuietly();
  void EndWaiting();
  void Finish();
  void Leave();

  std::chrono::milliseconds m_patience;
  CPostedCalls m_calls;
  QTimer m_delay;
  std::string m_strName;
  std::string m_strPlace;
  Work m_work;  // not begun yet
  std::function<void()> m_givenUp;
  std::shared_ptr<SState> m_pState;             // of what is under way
  std::vector<std::shared_ptr<SState>> m_left;  // of what was given up and may still hang
  bool m_bWaiting = false;
};

// Whether the disk of the path answers while the window can stand still.
bool AnswersSoon(const std::string& path);
// Where a dialog for files begins, which would wait for the disk: in the folder (or with the file) when its disk
// answers, else in the user's own. An empty one stays so.
QString FolderToBegin(const QString& path);

}  // namespace carvello
