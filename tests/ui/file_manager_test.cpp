// The buttons beside the paths, with a file manager on a session bus that the test starts for itself.
#include <QDBusConnection>
#include <QDir>
#include <QProcess>
#include <QUrl>

#include "ui/dialog_fixture.h"
#include "ui/ui_test.h"
#include "ui/ways_out.h"

namespace carvello {

class FileManagerTest : public QObject {
  Q_OBJECT
  Q_CLASSINFO("D-Bus Interface", "org.freedesktop.FileManager1")

 public slots:
  void ShowItems(const QStringList& urls, const QString& startupId) {
    Q_UNUSED(startupId)
    m_shown << urls;
  }

 private slots:
  void initTestCase();
  void init();
  void cleanup() { m_pFixture.reset(); }
  void TheInputIsShownInItsFolder();
  void AnInputNamedFromTheCurrentFolderIsShownToo();
  void WithoutAFileManagerTheInputsFolderIsOpened();
  void WithoutASessionBusTheInputsFolderIsOpened();
  void TheOutputFolderIsOpened();
  void AnEmptyOutputFolderOpensNothing();
  void AFolderThatNoProgramOpensIsTold();
  void cleanupTestCase();

 private:
  QString Folder() const { return QString::fromStdString(m_pFixture->Folder().Path()); }

  QProcess m_daemon;
  std::unique_ptr<test::CDialogFixture> m_pFixture;
  QStringList m_shown;
  qsizetype m_nOpenedBefore = 0;
};

namespace {

constexpr char kService[] = "org.freedesktop.FileManager1";

QDBusConnection Bus() {
  return QDBusConnection("file manager");
}

}  // namespace

void FileManagerTest::initTestCase() {
  m_daemon.start("dbus-daemon", {"--session", "--nofork", "--nopidfile", "--print-address=1"});
  QVERIFY2(m_daemon.waitForStarted(), "dbus-daemon is not installed");
  while (!m_daemon.canReadLine()) QVERIFY(m_daemon.waitForReadyRead());
  const QByteArray address = m_daemon.readLine().trimmed();
  qputenv("DBUS_SESSION_BUS_ADDRESS", address);
  QDBusConnection bus = QDBusConnection::connectToBus(QString::fromUtf8(address), "file manager");
  QVERIFY(bus.registerObject("/org/freedesktop/FileManager1", this, QDBusConnection::ExportAllSlots));
}

void FileManagerTest::init() {
  m_shown.clear();
  m_nOpenedBefore = test::OpenedPaths().size();
  m_pFixture = std::make_unique<test::CDialogFixture>();
  m_pFixture->OpenReady();
}

void FileManagerTest::TheInputIsShownInItsFolder() {
  QVERIFY(Bus().registerService(kService));
  const std::string path = m_pFixture->WriteInput({}, "a 50 % recording #1.wav");
  m_pFixture->SetPath(1000, path);
  m_pFixture->Click(1032);
  QTRY_COMPARE(m_shown.size(), 1);
  QCOMPARE(QUrl(m_shown[0]).toLocalFile(), QString::fromStdString(path));
  QCOMPARE(test::OpenedPaths().size(), m_nOpenedBefore);
}

void FileManagerTest::AnInputNamedFromTheCurrentFolderIsShownToo() {
  QVERIFY(Bus().registerService(kService));
  const QString before = QDir::currentPath();
  QVERIFY(QDir::setCurrent(Folder()));
  m_pFixture->SetPath(1000, "rec.wav");
  m_pFixture->Click(1032);
  QTRY_COMPARE(m_shown.size(), 1);
  QVERIFY(QDir::setCurrent(before));
  QCOMPARE(QUrl(m_shown[0]).toLocalFile(), Folder() + "/rec.wav");
}

void FileManagerTest::WithoutAFileManagerTheInputsFolderIsOpened() {
  Bus().unregisterService(kService);
  m_pFixture->Click(1032);
  QTRY_COMPARE(test::OpenedPaths().size(), m_nOpenedBefore + 1);
  QCOMPARE(test::OpenedPaths().last(), Folder());
  QVERIFY(m_shown.isEmpty());
}

void FileManagerTest::WithoutASessionBusTheInputsFolderIsOpened() {
  QVERIFY(Bus().registerService(kService));
  const QByteArray address = qgetenv("DBUS_SESSION_BUS_ADDRESS");
  qunsetenv("DBUS_SESSION_BUS_ADDRESS");
  m_pFixture->Click(1032);
  qputenv("DBUS_SESSION_BUS_ADDRESS", address);
  QTRY_COMPARE(test::OpenedPaths().size(), m_nOpenedBefore + 1);
  QCOMPARE(test::OpenedPaths().last(), Folder());
  QVERIFY(m_shown.isEmpty());
}

void FileManagerTest::TheOutputFolderIsOpened() {
  m_pFixture->Click(1033);
  QTRY_COMPARE(test::OpenedPaths().size(), m_nOpenedBefore + 1);
  QCOMPARE(test::OpenedPaths().last(), QString::fromStdString(m_pFixture->OutputFolder()));
}

void FileManagerTest::AnEmptyOutputFolderOpensNothing() {
  m_pFixture->SetPath(1009, "");
  QVERIFY(m_pFixture->Control(1033).isEnabled());  // an emptied folder counts as chosen
  m_pFixture->Click(1033);
  QTest::qWait(200);
  QCOMPARE(test::OpenedPaths().size(), m_nOpenedBefore);
  QVERIFY(m_pFixture->Answers().Shown().empty());
}

void FileManagerTest::AFolderThatNoProgramOpensIsTold() {
  const test::CNoOpener noOpener;
  m_pFixture->Answers().Give(QMessageBox::Ok);
  m_pFixture->Click(1033);
  QVERIFY(m_pFixture->Answers().AllUsed());
  const test::SShownBox& box = m_pFixture->Answers().Shown().front();
  QCOMPARE(box.caption, QString("Open Folder"));
  QCOMPARE(box.text, QString("Error processing \"%1\" -\n \n%2\n\n%3")
                         .arg(QString::fromStdString(m_pFixture->OutputFolder()), test::CNoOpener::Reasons().first(),
                              QString::fromStdString(WayOutOfOpening(0))));
  QVERIFY(box.text.contains("xdg-utils"));
  QCOMPARE(box.icon, QMessageBox::Critical);
  QCOMPARE(box.buttons, QMessageBox::Ok);
}

void FileManagerTest::cleanupTestCase() {
  m_daemon.terminate();
  m_daemon.waitForFinished();
}

}  // namespace carvello

CARVELLO_UI_TEST(carvello::FileManagerTest)
#include "file_manager_test.moc"
