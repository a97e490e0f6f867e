// The taskbar's progress on a session bus that the test starts for itself.
#include <QDBusConnection>
#include <QElapsedTimer>
#include <QProcess>
#include <QVariantMap>

#include "ui/taskbar_progress.h"
#include "ui/ui_test.h"

namespace carvello {

class TaskbarLauncherTest : public QObject {
  Q_OBJECT

 public slots:
  void Updated(const QString& program, const QVariantMap& properties) {
    m_programs << program;
    m_fractions << properties.value("progress").toDouble();
    m_visible << properties.value("progress-visible").toBool();
  }

 private slots:
  void initTestCase();
  void init();
  void TellsTheLauncherTheProgress();
  void TakesTheBarAwayAtTheEnd();
  void StaysQuietWhenTheBusGoesAway();
  void ThereIsNoTaskbarWithoutASessionBus();
  void ABusThatHasGoneIsNoTaskbar();
  void cleanupTestCase();

 private:
  QProcess m_daemon;
  QStringList m_programs;
  QList<double> m_fractions;
  QList<bool> m_visible;
};

void TaskbarLauncherTest::initTestCase() {
  m_daemon.start("dbus-daemon", {"--session", "--nofork", "--nopidfile", "--print-address=1"});
  QVERIFY2(m_daemon.waitForStarted(), "dbus-daemon is not installed");
  while (!m_daemon.canReadLine()) QVERIFY(m_daemon.waitForReadyRead());
  const QByteArray address = m_daemon.readLine().trimmed();
  qputenv("DBUS_SESSION_BUS_ADDRESS", address);
  QDBusConnection listener = QDBusConnection::connectToBus(QString::fromUtf8(address), "listener");
  QVERIFY(listener.isConnected());
  QVERIFY(listener.connect({}, {}, "com.canonical.Unity.LauncherEntry", "Update", this,
                           SLOT(Updated(QString, QVariantMap))));
}

void TaskbarLauncherTest::init() {
  m_programs.clear();
  m_fractions.clear();
  m_visible.clear();
}

void TaskbarLauncherTest::TellsTheLauncherTheProgress() {
  {
    const auto pProgress = CreateTaskbarProgress(nullptr);
    QVERIFY(pProgress != nullptr);
    pProgress->SetValue(0, 1000);
    pProgress->SetValue(250, 1000);
  }
  // The last one is that of a program that ends half-way: it leaves no bar behind.
  QTRY_COMPARE(m_fractions, (QList<double>{0.0, 0.25, 0.0}));
  QCOMPARE(m_visible, (QList<bool>{true, true, false}));
  QCOMPARE(m_programs.first(), "application://carvello.desktop");
}

void TaskbarLauncherTest::TakesTheBarAwayAtTheEnd() {
  {
    const auto pProgress = CreateTaskbarProgress(nullptr);
    pProgress->SetValue(1000, 1000);
  }
  QTRY_COMPARE(m_visible, (QList<bool>{false, false}));
  QCOMPARE(m_fractions.first(), 1.0);
}

void TaskbarLauncherTest::StaysQuietWhenTheBusGoesAway() {
  const auto pProgress = CreateTaskbarProgress(nullptr);
  m_daemon.terminate();
  QVERIFY(m_daemon.waitForFinished());
  QElapsedTimer timer;
  timer.start();
  pProgress->SetValue(100, 1000);
  QVERIFY(timer.elapsed() < 5000);
}

void TaskbarLauncherTest::ThereIsNoTaskbarWithoutASessionBus() {
  const QByteArray address = qgetenv("DBUS_SESSION_BUS_ADDRESS");
  qunsetenv("DBUS_SESSION_BUS_ADDRESS");
  QVERIFY(CreateTaskbarProgress(nullptr) == nullptr);
  qputenv("DBUS_SESSION_BUS_ADDRESS", address);
}

// The bus library hears of it on a thread of its own.
void TaskbarLauncherTest::ABusThatHasGoneIsNoTaskbar() {
  QCOMPARE(m_daemon.state(), QProcess::NotRunning);
  QTRY_VERIFY(CreateTaskbarProgress(nullptr) == nullptr);
}

void TaskbarLauncherTest::cleanupTestCase() {
  if (m_daemon.state() == QProcess::NotRunning) return;
  m_daemon.terminate();
  m_daemon.waitForFinished();
}

}  // namespace carvello

CARVELLO_UI_TEST(carvello::TaskbarLauncherTest)
#include "taskbar_launcher_test.moc"
