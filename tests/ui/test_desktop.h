// The desktop that a test program finds in the place of the user's: settings and folders of its own, and an opener of
// files that only notes what it is asked to open.
#pragma once

#include <QDateTime>
#include <QString>
#include <QStringList>
#include <optional>
#include <string>

namespace carvello::test {

class CTestDesktop {
 public:
  // `home`: an empty folder for everything that is written.
  explicit CTestDesktop(const QString& home);
  ~CTestDesktop();
  CTestDesktop(const CTestDesktop&) = delete;
  CTestDesktop& operator=(const CTestDesktop&) = delete;
};

// Where the opener is the test program itself, started once more: its exit code when this is such a start.
std::optional<int> RunAsOpener(int argc, char** argv);

// What the desktop was asked to open so far, in this order.
QStringList OpenedPaths();

// The folder below which programs keep their data of the user.
QString DataHome();

void ForgetSettings();

// Local time from here on: in the form of POSIX, without seasons ("XXX-3": three hours ahead of UTC).
void SetTimeZone(const char* zone);
// Local time with seasons, from here on: that of Berlin. Where programs cannot choose it, local time is the machine's,
// and the result is false unless that is the same.
bool UseBerlinTime();
// What a clock on the wall shows at a moment of that local time, told by other means than the program's. The result's
// own zone, UTC, means nothing.
QDateTime WallClock(qint64 moment);

// A date and a time of day as the user's locale shows them.
QString DateText(int year, int month, int day);
QString TimeText(int hours, int minutes, int seconds);

// Whether the program has loaded the shared library.
bool IsLoaded(const std::string& library);

// What the system says of a file that does not exist.
QString MissingReason();

// For as long as it lives, no program opens any file.
class CNoOpener {
 public:
  CNoOpener();
  ~CNoOpener();
  CNoOpener(const CNoOpener&) = delete;
  CNoOpener& operator=(const CNoOpener&) = delete;

  // What systems then may say of a file.
  static QStringList Reasons();

 private:
  QString m_kept;
};

}  // namespace carvello::test
