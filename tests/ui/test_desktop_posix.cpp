#include <dlfcn.h>

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QSettings>
#include <QTimeZone>
#include <ctime>

#include "ui/test_desktop.h"

namespace carvello::test {

namespace {

constexpr const char* kBerlin = "Europe/Berlin";

void WriteScript(const QString& path, const QByteArray& commands) {
  QFile script(path);
  if (!script.open(QIODevice::WriteOnly)) qFatal("no script");
  script.write("#!/bin/sh\n" + commands + "\n");
  script.setPermissions(script.permissions() | QFileDevice::ExeOwner);
}

}  // namespace

CTestDesktop::CTestDesktop(const QString& home) {
  for (const char* variable :
       {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME", "XDG_RUNTIME_DIR", "TEMP", "TMPDIR"}) {
    qputenv(variable, home.toUtf8());
  }
  qputenv("PATH", home.toUtf8() + ":" + qgetenv("PATH"));
  // They stand for the desktop's own: there is a program for every kind of file, and what is to be opened is noted.
  WriteScript(home + "/xdg-mime", "echo a.desktop");
  WriteScript(home + "/xdg-open", "printf '%s\\n' \"$1\" >> \"$HOME/opened\"");
  qputenv("LC_ALL", "C.UTF-8");
  // Nothing of the desktop that a test happens to run on may be reached.
  qunsetenv("DBUS_SESSION_BUS_ADDRESS");
  qputenv("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/no/such/bus");
}

CTestDesktop::~CTestDesktop() = default;

std::optional<int> RunAsOpener(int /*argc*/, char** /*argv*/) {
  return std::nullopt;
}

QStringList OpenedPaths() {
  QFile file(qEnvironmentVariable("HOME") + "/opened");
  if (!file.open(QIODevice::ReadOnly)) return {};
  return QString::fromUtf8(file.readAll()).split('\n', Qt::SkipEmptyParts);
}

QString DataHome() {
  return qEnvironmentVariable("XDG_DATA_HOME");
}

void ForgetSettings() {
  QSettings().clear();
  QSettings(QSettings::IniFormat, QSettings::UserScope, "Carvello", "Carvello").clear();
}

void SetTimeZone(const char* zone) {
  qputenv("TZ", zone);
  tzset();
}

bool UseBerlinTime() {
  SetTimeZone(kBerlin);
  return true;
}

QDateTime WallClock(qint64 moment) {
  const QDateTime local = QDateTime::fromSecsSinceEpoch(moment, QTimeZone(kBerlin));
  return QDateTime(local.date(), local.time(), Qt::UTC);
}

QString DateText(int year, int month, int day) {
  return QDate(year, month, day).toString("MM/dd/yy");
}

QString TimeText(int hours, int minutes, int seconds) {
  return QTime(hours, minutes, seconds).toString("HH:mm:ss");
}

bool IsLoaded(const std::string& library) {
  void* handle = dlopen(library.c_str(), RTLD_NOW | RTLD_NOLOAD);
  if (handle != nullptr) dlclose(handle);
  return handle != nullptr;
}

QString MissingReason() {
  return "No such file or directory";
}

// Nothing that could open a file is found in such a folder, but the shell that asks for it.
CNoOpener::CNoOpener() : m_kept(qEnvironmentVariable("PATH")) {
  const QString programs = qEnvironmentVariable("HOME") + "/programs";
  QDir().mkpath(programs);
  QFile::link("/bin/sh", programs + "/sh");
  qputenv("PATH", programs.toUtf8());
}

CNoOpener::~CNoOpener() {
  qputenv("PATH", m_kept.toUtf8());
}

QStringList CNoOpener::Reasons() {
  return {MissingReason()};
}

}  // namespace carvello::test
