// The desktop that a test program finds in the place of the user's: settings and folders of its own, and an opener of
// files that only notes what it is asked to open.
#pragma once

#include <QString>
#include <QStringList>
#include <optional>

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

// For as long as it lives, no program opens any file.
class CNoOpener {
 public:
  CNoOpener();
  ~CNoOpener();
  CNoOpener(const CNoOpener&) = delete;
  CNoOpener& operator=(const CNoOpener&) = delete;

  // What the system then says of a file.
  static QString Reason();

 private:
  QString m_kept;
};

}  // namespace carvello::test
