// clang-format off
#include <windows.h>
// clang-format on

#include <QDir>
#include <QFile>
#include <QLocale>
#include <array>
#include <memory>

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
constexpr std::array kExtensions{L".txt", L".rtf"};

void Check(LSTATUS status) {
  if (status != ERROR_SUCCESS) qFatal("no registry: %s", SystemErrorText(static_cast<std::uint32_t>(status)).c_str());
}

// The part of the registry that the system takes for the user's settings and for those of all programs, for as long as
// this lives. The test changes nothing but through these keys: the user's own are safe whatever goes wrong.
class CTestBranch {
 public:
  CTestBranch() {
    Check(RegOpenKeyExW(HKEY_CURRENT_USER, L"Software", 0, KEY_ALL_ACCESS, &m_hSoftware));
    m_hUser = Make(L"user");
    m_hClasses = Make(L"classes");
    Check(RegOverridePredefKey(HKEY_CLASSES_ROOT, m_hClasses));
    Check(RegOverridePredefKey(HKEY_CURRENT_USER, m_hUser));
  }
  ~CTestBranch() {
    RegOverridePredefKey(HKEY_CURRENT_USER, nullptr);
    RegOverridePredefKey(HKEY_CLASSES_ROOT, nullptr);
    RegCloseKey(m_hUser);
    RegCloseKey(m_hClasses);
    RegDeleteTreeW(m_hSoftware, m_name.c_str());
    RegCloseKey(m_hSoftware);
  }
  CTestBranch(const CTestBranch&) = delete;
  CTestBranch& operator=(const CTestBranch&) = delete;

  void ForgetUser() const { Delete(m_hUser, L"Software"); }
  void ForgetClass(const wchar_t* name) const { Delete(m_hClasses, name); }
  void SetClass(const std::wstring& name, const std::wstring& value) const {
    const auto bytes = static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t));
    Check(RegSetKeyValueW(m_hClasses, name.c_str(), nullptr, REG_SZ, value.c_str(), bytes));
  }

 private:
  HKEY Make(const wchar_t* name) const {
    HKEY key = nullptr;
    Check(RegCreateKeyExW(m_hSoftware, (m_name + L"\\" + name).c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key,
                          nullptr));
    return key;
  }
  static void Delete(HKEY parent, const wchar_t* name) {
    const LSTATUS status = RegDeleteTreeW(parent, name);
    if (status != ERROR_FILE_NOT_FOUND) Check(status);
  }

  const std::wstring m_name = L"Carvello test " + std::to_wstring(GetCurrentProcessId());
  HKEY m_hSoftware = nullptr;
  HKEY m_hUser = nullptr;
  HKEY m_hClasses = nullptr;
};

std::unique_ptr<CTestBranch> g_pBranch;

CTestBranch& Branch() {
  if (g_pBranch == nullptr) qFatal("no desktop of the test's own");
  return *g_pBranch;
}

TIME_ZONE_INFORMATION MachineZone() {
  TIME_ZONE_INFORMATION zone{};
  if (GetTimeZoneInformation(&zone) == TIME_ZONE_ID_INVALID) qFatal("no time zone");
  return zone;
}

WORD Word(int value) {
  return static_cast<WORD>(value);
}

void AssociateFiles() {
  for (const wchar_t* extension : kExtensions) Branch().SetClass(extension, kOpener);
}

}  // namespace

CTestDesktop::CTestDesktop(const QString& home) {
  qputenv("QT_FORCE_STDERR_LOGGING", "1");  // results for who runs the test, not for a debugger
  // Wine keeps variables of Qt's to itself, hence the other name.
  qputenv("QT_QPA_FONTDIR", qEnvironmentVariable("CARVELLO_FONTS", "C:/Windows/Fonts").toLocal8Bit());
  qputenv("TEMP", QDir::toNativeSeparators(home).toLocal8Bit());
  g_pBranch = std::make_unique<CTestBranch>();
  const std::string command = Format("\"%s\" %s \"%%1\"", platform::ProgramPath().c_str(), kOpenerOption);
  Branch().SetClass(std::wstring(kOpener) + L"\\shell\\open\\command", Wide(command));
  Branch().SetClass(L"Folder\\shell\\open\\command", Wide(command));
  Branch().SetClass(L"Folder\\shell\\explore\\command", Wide(command));
  AssociateFiles();
}

CTestDesktop::~CTestDesktop() {
  g_pBranch.reset();
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
  Branch().ForgetUser();
}

void SetTimeZone(const char* zone) {
  qputenv("TZ", zone);
  _tzset();
}

bool UseBerlinTime() {
  SetTimeZone("");
  const TIME_ZONE_INFORMATION zone = MachineZone();
  const SYSTEMTIME& forward = zone.DaylightDate;
  const SYSTEMTIME& back = zone.StandardDate;
  return zone.Bias == -60 && forward.wMonth == 3 && forward.wDay == 5 && back.wMonth == 10 && back.wDay == 5;
}

// By the rules of this year for every year, as in the C runtime.
QDateTime WallClock(qint64 moment) {
  const QDateTime utc = QDateTime::fromSecsSinceEpoch(moment, Qt::UTC);
  const SYSTEMTIME asked{
      Word(utc.date().year()),   Word(utc.date().month()),  0, Word(utc.date().day()), Word(utc.time().hour()),
      Word(utc.time().minute()), Word(utc.time().second()), 0};
  const TIME_ZONE_INFORMATION zone = MachineZone();
  SYSTEMTIME local{};
  if (SystemTimeToTzSpecificLocalTime(&zone, &asked, &local) == 0) qFatal("no local time");
  return QDateTime(QDate(local.wYear, local.wMonth, local.wDay), QTime(local.wHour, local.wMinute, local.wSecond),
                   Qt::UTC);
}

QString DateText(int year, int month, int day) {
  return QLocale::system().toString(QDate(year, month, day), QLocale::ShortFormat);
}

QString TimeText(int hours, int minutes, int seconds) {
  return QLocale::system().toString(QTime(hours, minutes, seconds), QLocale::LongFormat);
}

bool IsLoaded(const std::string& library) {
  return GetModuleHandleW(Wide(library).c_str()) != nullptr;
}

QString MissingReason() {
  return QString::fromStdString(SystemErrorText(ERROR_FILE_NOT_FOUND));
}

CNoOpener::CNoOpener() {
  for (const wchar_t* extension : kExtensions) Branch().ForgetClass(extension);
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
