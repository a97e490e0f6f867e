// What the desktop and the system are told of runs, with services on a bus that the test starts for itself.
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <QCheckBox>
#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusUnixFileDescriptor>
#include <QProcess>
#include <QVariantMap>
#include <array>

#include "ui/dialog_fixture.h"
#include "ui/keep_awake.h"
#include "ui/notification.h"
#include "ui/outcome_label.h"
#include "ui/ui_test.h"

namespace carvello {

using test::CDialogFixture;

// As systemd's logind: a lock is held until every copy of its file is closed.
class CFakeLogind : public QObject, protected QDBusContext {
  Q_OBJECT
  Q_CLASSINFO("D-Bus Interface", "org.freedesktop.login1.Manager")

 public slots:
  QDBusUnixFileDescriptor Inhibit(const QString& what, const QString& who, const QString& why, const QString& mode) {
    m_asked << QStringList{what, who, why, mode};
    if (m_refused.contains(what)) {
      sendErrorReply("org.freedesktop.DBus.Error.AccessDenied", "Permission denied");
      return {};
    }
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) qFatal("no pipe");
    m_locks << ends[0];
    const QDBusUnixFileDescriptor lock(ends[1]);
    ::close(ends[1]);
    return lock;
  }

 public:
  // Locks that are held now.
  int Held() const {
    int held = 0;
    for (const int end : m_locks) {
      pollfd look{end, POLLIN, 0};
      held += ::poll(&look, 1, 0) == 0;  // nobody will ever write: the end of the file is all that can come
    }
    return held;
  }
  void Forget() {
    for (const int end : m_locks) ::close(end);
    m_locks.clear();
    m_asked.clear();
    m_refused.clear();
  }

  QList<QStringList> m_asked;
  QStringList m_refused;  // kinds of lock that this user may not hold

 private:
  QList<int> m_locks;
};

class CFakeNotifications : public QObject {
  Q_OBJECT
  Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Notifications")

 public slots:
  uint Notify(const QString& program, uint replaces, const QString& icon, const QString& summary, const QString& body,
              const QStringList& actions, const QVariantMap& hints, int timeout) {
    m_shown << QStringList{program, icon, summary, body, hints.value("desktop-entry").toString()};
    m_bPlain = m_bPlain && replaces == 0 && actions.isEmpty() && timeout == -1;
    return 1;
  }

 public:
  QList<QStringList> m_shown;
  bool m_bPlain = true;
};

class DesktopServicesTest : public QObject {
  Q_OBJECT

 private slots:
  void initTestCase();
  void init();
  void cleanup();
  void TheComputerStaysAwakeAsLongAsItShould();
  void WhoMayNotHoldUpSleepKeepsTheSystemFromIdling();
  void ARefusalChangesNothing();
  void AnAnswerThatComesTooLateLeavesNoLock();
  void ANotificationTellsItsText();
  void AnyRunKeepsTheComputerAwake();
  void AnUnattendedRunKeepsItAwakeFromBatchToBatch();
  void TheEndOfAnUnattendedRunIsNotified();
  void ARunThatIsWatchedNotifiesNobody();
  void AStoppedRunNotifiesNobody();
  void WithoutServicesARunIsAsGood();
  void cleanupTestCase();

 private:
  void OpenReady(int seconds, int entries);
  QString Outcome() { return m_pFixture->Dialog().findChild<COutcomeLabel*>("labelOutcome")->text(); }
  void Unattended() { m_pFixture->Dialog().findChild<QCheckBox*>("checkUnattended")->click(); }

  QProcess m_daemon;
  CFakeLogind m_logind;
  CFakeNotifications m_notifications;
  std::unique_ptr<CDialogFixture> m_pFixture;
};

namespace {

constexpr char kLogind[] = "org.freedesktop.login1";
constexpr char kNotifications[] = "org.freedesktop.Notifications";

QDBusConnection Bus() {
  return QDBusConnection("services");
}

}  // namespace

void DesktopServicesTest::initTestCase() {
  m_daemon.start("dbus-daemon", {"--session", "--nofork", "--nopidfile", "--print-address=1"});
  QVERIFY2(m_daemon.waitForStarted(), "dbus-daemon is not installed");
  while (!m_daemon.canReadLine()) QVERIFY(m_daemon.waitForReadyRead());
  const QByteArray address = m_daemon.readLine().trimmed();
  qputenv("DBUS_SESSION_BUS_ADDRESS", address);
  qputenv("DBUS_SYSTEM_BUS_ADDRESS", address);
  QDBusConnection bus = QDBusConnection::connectToBus(QString::fromUtf8(address), "services");
  QVERIFY(bus.registerObject("/org/freedesktop/login1", &m_logind, QDBusConnection::ExportAllSlots));
  QVERIFY(bus.registerObject("/org/freedesktop/Notifications", &m_notifications, QDBusConnection::ExportAllSlots));
  QGuiApplication::setDesktopFileName("carvello");
  QCoreApplication::setApplicationName("Carvello");
}

void DesktopServicesTest::init() {
  m_logind.Forget();
  m_notifications.m_shown.clear();
  QVERIFY(Bus().registerService(kLogind));
  QVERIFY(Bus().registerService(kNotifications));
  m_pFixture = std::make_unique<CDialogFixture>();
}

void DesktopServicesTest::cleanup() {
  QVERIFY(m_pFixture->Answers().AllUsed());
  m_pFixture.reset();
  Bus().unregisterService(kLogind);
  Bus().unregisterService(kNotifications);
}

void DesktopServicesTest::OpenReady(int seconds, int entries) {
  m_pFixture->OpenReady({.nSeconds = seconds});
  m_pFixture->Choose(1014, "One file (RF64)");
  m_pFixture->Choose(1011, "10 kHz");
  for (int i = 0; i < entries; ++i) {
    m_pFixture->SetFrequency(7'100'000 + 1000 * i);
    m_pFixture->Click(1015);
  }
}

void DesktopServicesTest::TheComputerStaysAwakeAsLongAsItShould() {
  auto pAwake = StayAwake("A reason");
  QTRY_COMPARE(m_logind.Held(), 1);
  QCOMPARE(m_logind.m_asked, (QList<QStringList>{{"sleep:idle", "Carvello", "A reason", "block"}}));
  QTest::qWait(50);
  QCOMPARE(m_logind.Held(), 1);
  pAwake.reset();
  QTRY_COMPARE(m_logind.Held(), 0);
}

void DesktopServicesTest::WhoMayNotHoldUpSleepKeepsTheSystemFromIdling() {
  m_logind.m_refused = QStringList{"sleep:idle"};
  const auto pAwake = StayAwake("A reason");
  QTRY_COMPARE(m_logind.Held(), 1);
  QCOMPARE(m_logind.m_asked.last(), (QStringList{"idle", "Carvello", "A reason", "block"}));
}

void DesktopServicesTest::ARefusalChangesNothing() {
  m_logind.m_refused = QStringList{"sleep:idle", "idle"};
  auto pAwake = StayAwake("A reason");
  QTRY_COMPARE(m_logind.m_asked.size(), 2);
  QTest::qWait(50);
  QCOMPARE(m_logind.m_asked.size(), 2);  // nor is it asked again and again
  QCOMPARE(m_logind.Held(), 0);
}

void DesktopServicesTest::AnAnswerThatComesTooLateLeavesNoLock() {
  StayAwake("A reason").reset();
  QTRY_COMPARE(m_logind.m_asked.size(), 1);
  QTRY_COMPARE(m_logind.Held(), 0);
}

void DesktopServicesTest::ANotificationTellsItsText() {
  m_pFixture->Open();
  Notify(&m_pFixture->Dialog(), "A summary", "3 < 4 & 5");
  QTRY_COMPARE(m_notifications.m_shown.size(), 1);
  QCOMPARE(m_notifications.m_shown[0],
           (QStringList{"Carvello", "carvello", "A summary", "3 &lt; 4 &amp; 5", "carvello"}));
  QVERIFY(m_notifications.m_bPlain);
}

void DesktopServicesTest::AnyRunKeepsTheComputerAwake() {
  OpenReady(1000, 1);
  QCOMPARE(m_logind.m_asked.size(), 0);
  m_pFixture->Click(1018);
  QTRY_COMPARE(m_logind.Held(), 1);
  m_pFixture->Click(1019);
  QTRY_COMPARE(m_logind.Held(), 0);
  QCOMPARE(m_logind.m_asked.size(), 1);
}

void DesktopServicesTest::AnUnattendedRunKeepsItAwakeFromBatchToBatch() {
  OpenReady(20, 20);
  Unattended();
  m_pFixture->Click(1018);
  QTRY_COMPARE_WITH_TIMEOUT(Outcome(), QString("20 of 20 outputs written"), 300'000);
  QTRY_COMPARE(m_logind.Held(), 0);
  QCOMPARE(m_logind.m_asked.size(), 1);  // one lock for three batches
  QTRY_COMPARE(m_notifications.m_shown.size(), 1);
}

void DesktopServicesTest::TheEndOfAnUnattendedRunIsNotified() {
  OpenReady(20, 9);
  Unattended();
  m_pFixture->Click(1018);
  QTRY_COMPARE_WITH_TIMEOUT(m_notifications.m_shown.size(), 1, 300'000);
  QCOMPARE(m_notifications.m_shown[0].mid(2, 2), (QStringList{"The run has ended", "9 of 9 outputs written"}));
  QTest::qWait(200);
  QCOMPARE(m_notifications.m_shown.size(), 1);
}

void DesktopServicesTest::ARunThatIsWatchedNotifiesNobody() {
  OpenReady(20, 2);
  m_pFixture->Click(1018);
  QTRY_COMPARE_WITH_TIMEOUT(Outcome(), QString("2 of 2 outputs written"), 300'000);
  QTest::qWait(200);
  QCOMPARE(m_notifications.m_shown.size(), 0);
}

void DesktopServicesTest::AStoppedRunNotifiesNobody() {
  OpenReady(1000, 9);
  Unattended();
  m_pFixture->Click(1018);
  m_pFixture->Click(1019);
  QTest::qWait(200);
  QCOMPARE(m_notifications.m_shown.size(), 0);
  QCOMPARE(m_logind.Held(), 0);
}

void DesktopServicesTest::WithoutServicesARunIsAsGood() {
  Bus().unregisterService(kLogind);
  Bus().unregisterService(kNotifications);
  OpenReady(20, 9);
  Unattended();
  m_pFixture->Click(1018);
  QTRY_COMPARE_WITH_TIMEOUT(Outcome(), QString("9 of 9 outputs written"), 300'000);
}

void DesktopServicesTest::cleanupTestCase() {
  m_daemon.terminate();
  m_daemon.waitForFinished();
}

}  // namespace carvello

CARVELLO_UI_TEST(carvello::DesktopServicesTest)
#include "desktop_services_test.moc"
