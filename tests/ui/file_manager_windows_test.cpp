// The shell's calls are replaced in the program's table of imports: no window of the file manager comes up.
// clang-format off
#include <windows.h>
#include <shlobj.h>
// clang-format on

#include <QDir>
#include <QWidget>
#include <array>
#include <filesystem>
#include <string>
#include <vector>

#include "support/file.h"
#include "support/platform.h"
#include "support/platform_windows_text.h"
#include "support/shell_open.h"
#include "support/temp_folder.h"
#include "ui/answers.h"
#include "ui/file_manager.h"
#include "ui/patient_work.h"
#include "ui/ui_test.h"

// What the program calls the shell through.
extern "C" decltype(&ILCreateFromPathW) __imp_ILCreateFromPathW;
extern "C" decltype(&SHOpenFolderAndSelectItems) __imp_SHOpenFolderAndSelectItems;

namespace carvello {
namespace {

template <class TFunction>
class CReplacedImport {
 public:
  CReplacedImport(TFunction& import, TFunction replacement) : m_import(import), m_original(import) { Set(replacement); }
  ~CReplacedImport() { Set(m_original); }
  CReplacedImport(const CReplacedImport&) = delete;
  CReplacedImport& operator=(const CReplacedImport&) = delete;

 private:
  void Set(TFunction function) {
    DWORD before = 0;
    if (VirtualProtect(&m_import, sizeof(m_import), PAGE_READWRITE, &before) == 0) qFatal("no way to the imports");
    m_import = function;
    VirtualProtect(&m_import, sizeof(m_import), before, &before);
  }

  TFunction& m_import;
  const TFunction m_original;
};

struct SSelection {
  std::string path;
  UINT nItems = 0;
  bool bComInUse = false;
};

std::vector<SSelection> g_selections;
HRESULT g_selectResult = S_OK;

HRESULT STDAPICALLTYPE NoteSelection(PCIDLIST_ABSOLUTE item, UINT count, PCUITEMID_CHILD_ARRAY, DWORD) {
  std::array<wchar_t, MAX_PATH> path{};
  SHGetPathFromIDListW(item, path.data());
  APTTYPE type{};
  APTTYPEQUALIFIER qualifier{};
  g_selections.push_back({platform::Narrow(path.data()), count, SUCCEEDED(CoGetApartmentType(&type, &qualifier))});
  return g_selectResult;
}

bool IsSameFile(const std::string& path, const std::string& other) {
  const auto status = platform::GetFileStatus(path);
  const auto otherStatus = platform::GetFileStatus(other);
  return status && otherStatus && status->nVolume == otherStatus->nVolume &&
         status->nFileNumber == otherStatus->nFileNumber;
}

std::vector<std::string> g_named;
LPITEMIDLIST g_item = nullptr;

// As on Windows, which takes no longer paths and no prefix. (Wine's shell does not take short names of long paths
// either.)
LPITEMIDLIST STDAPICALLTYPE NameShortPaths(LPCWSTR path) {
  const std::wstring_view view(path);
  if (view.empty() || view.size() >= MAX_PATH || view.starts_with(L"\\\\?\\")) return nullptr;
  g_named.push_back(platform::Narrow(view));
  return ILClone(g_item);
}

class FileManagerTest : public QObject {
  Q_OBJECT

 private slots:
  void init();
  void AFileIsSelectedInItsFolder();
  void AFileNamedFromTheCurrentFolderIsSelectedToo();
  void AFileBeyond260CharactersIsSelectedByItsShortName();
  void WithoutASelectionTheFolderIsOpened();
  void TheFolderOfAFileThatIsGoneIsOpened();
  void AFileWhoseFolderIsGoneIsTold();

 private:
  const test::CTempFolder m_folder;
  QWidget m_parent;
  CPatientWork m_work{std::chrono::minutes(10)};
  qsizetype m_nOpenedBefore = 0;
};

void FileManagerTest::init() {
  g_selections.clear();
  g_selectResult = S_OK;
  m_nOpenedBefore = test::OpenedPaths().size();
}

void FileManagerTest::AFileIsSelectedInItsFolder() {
  const CReplacedImport select(__imp_SHOpenFolderAndSelectItems, &NoteSelection);
  const std::string path = m_folder / "a 50 % \xE6\x97\xA5 recording #1.wav";
  test::WriteWholeFile(path, "abc");
  ShowFileInFolder(&m_parent, path, m_work);
  QCOMPARE(g_selections.size(), std::size_t{1});
  QVERIFY(IsSameFile(g_selections[0].path, path));
  QCOMPARE(g_selections[0].nItems, 0U);  // the item itself, and none in it
  QVERIFY(g_selections[0].bComInUse);
  QTest::qWait(200);
  QCOMPARE(test::OpenedPaths().size(), m_nOpenedBefore);
}

void FileManagerTest::AFileNamedFromTheCurrentFolderIsSelectedToo() {
  const CReplacedImport select(__imp_SHOpenFolderAndSelectItems, &NoteSelection);
  const std::string path = m_folder / "rec.wav";
  test::WriteWholeFile(path, "abc");
  const QString before = QDir::currentPath();
  QVERIFY(QDir::setCurrent(QString::fromStdString(m_folder.Path())));
  ShowFileInFolder(&m_parent, "rec.wav", m_work);
  QVERIFY(QDir::setCurrent(before));
  QCOMPARE(g_selections.size(), std::size_t{1});
  QVERIFY(IsSameFile(g_selections[0].path, path));
}

void FileManagerTest::AFileBeyond260CharactersIsSelectedByItsShortName() {
  const std::string folder = m_folder / std::string(100, 'd');
  test::WriteWholeFile(m_folder / "item", "");
  std::filesystem::create_directory(test::PathOf(folder));
  const std::string path = platform::JoinPath(folder, std::string(200, 'n').append(".wav"));
  CFile file;
  QVERIFY(file.Open(path, platform::EOpenMode::Replace));
  QVERIFY(file.Close());
  g_named.clear();
  g_item = ILCreateFromPathW(platform::Wide(m_folder / "item").c_str());
  {
    const CReplacedImport name(__imp_ILCreateFromPathW, &NameShortPaths);
    const CReplacedImport select(__imp_SHOpenFolderAndSelectItems, &NoteSelection);
    ShowFileInFolder(&m_parent, path, m_work);
  }
  ILFree(g_item);
  if (GetShortPathNameW(platform::WidePath(path).c_str(), nullptr, 0) < MAX_PATH) {
    QCOMPARE(g_named.size(), std::size_t{1});
    QVERIFY2(IsSameFile(g_named[0], path), g_named[0].c_str());
    QCOMPARE(g_selections.size(), std::size_t{1});
    QVERIFY(IsSameFile(g_selections[0].path, m_folder / "item"));
  } else {  // a volume that gives no short names
    QTRY_COMPARE(test::OpenedPaths().size(), m_nOpenedBefore + 1);
    QCOMPARE(test::OpenedPaths().last(), QString::fromStdString(folder));
  }
  QVERIFY(platform::RemoveFile(path));
}

void FileManagerTest::WithoutASelectionTheFolderIsOpened() {
  const CReplacedImport select(__imp_SHOpenFolderAndSelectItems, &NoteSelection);
  g_selectResult = E_FAIL;
  const std::string path = m_folder / "rec.wav";
  test::WriteWholeFile(path, "abc");
  ShowFileInFolder(&m_parent, path, m_work);
  QTRY_COMPARE(test::OpenedPaths().size(), m_nOpenedBefore + 1);
  QCOMPARE(test::OpenedPaths().last(), QString::fromStdString(m_folder.Path()));
  QCOMPARE(g_selections.size(), std::size_t{1});
}

void FileManagerTest::TheFolderOfAFileThatIsGoneIsOpened() {
  const CReplacedImport select(__imp_SHOpenFolderAndSelectItems, &NoteSelection);
  ShowFileInFolder(&m_parent, m_folder / "gone.wav", m_work);
  QTRY_COMPARE(test::OpenedPaths().size(), m_nOpenedBefore + 1);
  QCOMPARE(test::OpenedPaths().last(), QString::fromStdString(m_folder.Path()));
  QCOMPARE(g_selections.size(), std::size_t{0});
}

void FileManagerTest::AFileWhoseFolderIsGoneIsTold() {
  test::CAnswers answers;
  answers.Give(QMessageBox::Ok);
  ShowFileInFolder(&m_parent, m_folder / "gone\\rec.wav", m_work);
  QVERIFY(answers.AllUsed());
  QCOMPARE(answers.Shown()[0].caption, QString("Open Folder"));
  const std::string begin = ShellOpenErrorText(m_folder / "gone", "");
  QVERIFY2(answers.Shown()[0].text.toStdString().starts_with(begin), qPrintable(answers.Shown()[0].text));
  QVERIFY(answers.Shown()[0].text.size() > static_cast<qsizetype>(begin.size()));
}

}  // namespace
}  // namespace carvello

CARVELLO_UI_TEST(carvello::FileManagerTest)
#include "file_manager_windows_test.moc"
