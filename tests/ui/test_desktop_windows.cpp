// clang-format off
#include <windows.h>
// clang-format on

#include <QDir>
#include <QFile>
#include <QLocale>

#include "support/formatting.h"
#include "support/platform.h"
#include "support/platform_windows_text.h"
#include "support/text.h"
#include "ui/test_desktop.h"

namespace carvello::test {

using platform::Wide;

namespace {

constexpr const wchar_t* kOpener = L"Carvello test opener";
constexpr const char* kOpenerOption = "--note-opened";

// Of the registry as it is; what the test sees instead lies below.
std::wstring Branch() {
  return L"Software\\Carvello test " + std::to_wstring(GetCurrentProcessId());
}

HKEY MakeKey(const std::wstring& path) {
  HKEY key = nullptr;
  if (RegCreateKeyExW(HKEY_CURRENT_USER, path.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key, nullptr) != 0) {
    qFatal("no registry");
  }
  return key;
}

void SetDefaultValue(const std::wstring& key, const std::wstring& value) {
  const auto bytes = static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t));
  if (RegSetKeyValueW(HKEY_CLASSES_ROOT, key.c_str(), nullptr, REG_SZ, value.c_str(), bytes) != 0)
    qFatal("no registry");
}

void AssociateFiles() {
  for (const wchar_t* extension : {L".txt", L".rtf"}) SetDefaultValue(extension, kOpener);
}

}  // namespace

CTestDesktop::CTestDesktop(const QString& home) {
  qputenv("QT_FORCE_STDERR_LOGGING", "1");  // results for who runs the test, not for a debugger
  // Wine keeps variables of Qt's to itself, hence the other name.
  qputenv("QT_QPA_FONTDIR", qEnvironmentVariable("CARVELLO_FONTS", "C:/Windows/Fonts").toLocal8Bit());
  qputenv("TEMP", QDir::toNativeSeparators(home).toLocal8Bit());
  const HKEY classes = MakeKey(Branch() + L"\\classes");
  const HKEY user = MakeKey(Branch() + L"\\user");
  RegOverridePredefKey(HKEY_CLASSES_ROOT, classes);
  RegOverridePredefKey(HKEY_CURRENT_USER, user);
  RegCloseKey(classes);
  RegCloseKey(user);
  const std::string command = Format("\"%s\" %s \"%%1\"", platform::ProgramPath().c_str(), kOpenerOption);
  SetDefaultValue(std::wstring(kOpener) + L"\\shell\\open\\command", Wide(command));
  SetDefaultValue(L"Folder\\shell\\open\\command", Wide(command));
  SetDefaultValue(L"Folder\\shell\\explore\\command", Wide(command));
  AssociateFiles();
}

CTestDesktop::~CTestDesktop() {
  RegOverridePredefKey(HKEY_CURRENT_USER, nullptr);
  RegOverridePredefKey(HKEY_CLASSES_ROOT, nullptr);
  RegDeleteTreeW(HKEY_CURRENT_USER, Branch().c_str());
  RegDeleteKeyW(HKEY_CURRENT_USER, Branch().c_str());
}

std::optional<int> RunAsOpener(int argc, char** argv) {
  const std::vector<std::string> arguments = platform::ProgramArguments(argc, argv);
  if (arguments.size() != 3 || arguments[1] != kOpenerOption) return std::nullopt;
  QFile file(qEnvironmentVariable("TEMP") + "/opened");
  if (!file.open(QIODevice::Append)) return 1;
  return file.write(QByteArray::fromStdString(arguments[2] + "\n")) > 0 ? 0 : 1;
}

QStringList OpenedPaths() {
  QFile file(qEnvironmentVariable("TEMP") + "/opened");
  if (!file.open(QIODevice::ReadOnly)) return {};
  return QString::fromUtf8(file.readAll()).split('\n', Qt::SkipEmptyParts);
}

QString DataHome() {
  return qEnvironmentVariable("LOCALAPPDATA");
}

void ForgetSettings() {
  RegDeleteTreeW(HKEY_CURRENT_USER, L"Software");
}

void SetTimeZone(const char* zone) {
  qputenv("TZ", zone);
  _tzset();
}

void UseBerlinTime() {
  SetTimeZone("");
  TIME_ZONE_INFORMATION zone{};
  GetTimeZoneInformation(&zone);
  if (zone.Bias != -60 || zone.DaylightDate.wMonth != 3) qFatal("the machine's time zone is not that of Berlin");
}

QString DateText(int year, int month, int day) {
  return QLocale::system().toString(QDate(year, month, day), QLocale::ShortFormat);
}

QString TimeText(int hours, int minutes, int seconds) {
  return QLocale::system().toString(QTime(hours, minutes, seconds), QLocale::LongFormat);
}

QString MissingReason() {
  return QString::fromStdString(SystemErrorText(ERROR_FILE_NOT_FOUND));
}

CNoOpener::CNoOpener() {
  for (const wchar_t* extension : {L".txt", L".rtf"}) RegDeleteTreeW(HKEY_CLASSES_ROOT, extension);
}

CNoOpener::~CNoOpener() {
  AssociateFiles();
}

// Windows misses the program; Wine then tries to start the file itself.
QStringList CNoOpener::Reasons() {
  return {QString::fromStdString(SystemErrorText(ERROR_NO_ASSOCIATION)),
          QString::fromStdString(SystemErrorText(ERROR_BAD_EXE_FORMAT))};
}

}  // namespace carvello::test
