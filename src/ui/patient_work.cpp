#include "ui/patient_work.h"

#include <QDir>
#include <algorithm>
#include <condition_variable>
#include <utility>

#include "overview/left_threads.h"
#include "support/mutex.h"
#include "support/platform.h"
#include "ui/wait_cursor.h"

namespace carvello {

namespace {

// From the last key of a path to the work on it, while earlier work hangs.
constexpr int kDelayMilliseconds = 300;

}  // namespace

// What the thread and its owner share.
struct CPatientWork::SState {
  CMutex mutex;
  std::condition_variable ended;
  bool bEnded CARVELLO_GUARDED_BY(mutex) = false;
  std::function<void()> finish CARVELLO_GUARDED_BY(mutex);

  void End(std::function<void()> call) {
    const CLockGuard lock(mutex);
    finish = std::move(call);
    bEnded = true;
    ended.notify_all();
  }

  bool HasEnded() {
    const CLockGuard lock(mutex);
    return bEnded;
  }

  bool WaitUntil(std::chrono::steady_clock::time_point time) {
    CLockGuard lock(mutex);
    while (!bEnded && lock.WaitUntil(ended, time)) {
    }
    return bEnded;
  }

  std::function<void()> TakeFinish() {
    const CLockGuard lock(mutex);
    return std::exchange(finish, nullptr);
  }
};

CPatientWork::CPatientWork(std::chrono::milliseconds patience, QObject* pParent)
    : QObject(pParent), m_patience(patience) {
  m_delay.setSingleShot(true);
  m_delay.setInterval(kDelayMilliseconds);
  connect(&m_delay, &QTimer::timeout, this, &CPatientWork::Begin);
}

CPatientWork::~CPatientWork() = default;

void CPatientWork::Run(const std::string& name, const std::string& place, Work work, std::function<void()> givenUp) {
  Leave();
  m_strName = name;
  m_strPlace = place;
  m_work = std::move(work);
  m_givenUp = std::move(givenUp);
  std::erase_if(m_left, [](const auto& pState) { return pState->HasEnded(); });
  if (m_left.empty()) {
    Begin();
    if (WaitQuietly()) {
      Finish();
      return;
    }
  } else {
    m_delay.start();
  }
  m_bWaiting = true;
  emit WaitingChanged();  // also when only the place is another one
}

void CPatientWork::Begin() {
  m_pState = std::make_shared<SState>();
  const auto run = [this, work = std::exchange(m_work, nullptr), pState = m_pState, post = m_calls.MakePoster()] {
    pState->End(work());
    // Called only as long as this object lives.
    post([this, pState] {
      if (m_pState == pState) Finish();
    });
  };
  if (!StartLeftThread(m_strName, run)) run();
}

bool CPatientWork::WaitQuietly() {
  const CWaitCursor wait;
  return m_pState->WaitUntil(std::chrono::steady_clock::now() + m_patience);
}

// May begin the next work.
void CPatientWork::Finish() {
  const std::function<void()> finish = std::exchange(m_pState, nullptr)->TakeFinish();
  m_givenUp = nullptr;
  EndWaiting();
  finish();
}

void CPatientWork::GiveUp() {
  Leave();
  EndWaiting();
}

void CPatientWork::Leave() {
  m_delay.stop();
  m_work = nullptr;
  if (m_pState) m_left.push_back(std::exchange(m_pState, nullptr));
  if (const std::function<void()> givenUp = std::exchange(m_givenUp, nullptr)) givenUp();
}

void CPatientWork::EndWaiting() {
  if (std::exchange(m_bWaiting, false)) emit WaitingChanged();
}

bool AnswersSoon(const std::string& path) {
  bool answered = false;
  CPatientWork work;
  work.Run("Look", path, [path, &answered]() -> std::function<void()> {
    platform::GetFileStatus(path);
    return [&answered] { answered = true; };
  });
  return answered;
}

QString FolderToBegin(const QString& path) {
  return path.isEmpty() || AnswersSoon(path.toStdString()) ? path : QDir::homePath();
}

}  // namespace carvello
