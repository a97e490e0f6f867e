// What holds on Windows only.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

// clang-format off
#include <windows.h>
// clang-format on

#include <array>
#include <cstdint>
#include <filesystem>

#include "support/file.h"
#include "support/formatting.h"
#include "support/platform.h"
#include "support/platform_windows_text.h"
#include "support/shell_open.h"
#include "support/temp_folder.h"
#include "support/text.h"

namespace carvello {
namespace {

using platform::EOpenMode;
using platform::Wide;
using test::CTempFolder;
using test::WriteWholeFile;

// A file that another program has open.
class CForeignHandle {
 public:
  CForeignHandle(const std::string& path, DWORD access, DWORD share)
      : m_handle(CreateFileW(Wide(path).c_str(), access, share, nullptr, OPEN_EXISTING, 0, nullptr)) {}
  ~CForeignHandle() {
    if (IsOpen()) CloseHandle(m_handle);
  }
  CForeignHandle(const CForeignHandle&) = delete;
  CForeignHandle& operator=(const CForeignHandle&) = delete;

  bool IsOpen() const { return m_handle != INVALID_HANDLE_VALUE; }
  bool Write(const std::string& bytes) const {
    DWORD count = 0;
    return WriteFile(m_handle, bytes.data(), static_cast<DWORD>(bytes.size()), &count, nullptr) != 0;
  }

 private:
  HANDLE m_handle;
};

class CCurrentFolder {
 public:
  explicit CCurrentFolder(const std::string& path) : m_before(std::filesystem::current_path()) {
    std::filesystem::current_path(test::PathOf(path));
  }
  ~CCurrentFolder() { std::filesystem::current_path(m_before); }
  CCurrentFolder(const CCurrentFolder&) = delete;
  CCurrentFolder& operator=(const CCurrentFolder&) = delete;

 private:
  std::filesystem::path m_before;
};

constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

// ---- shared access ---------------------------------------------------------------------------------------------

TEST(WindowsSharing, AFileThatAnotherProgramIsStillWritingCanBeRead) {
  const CTempFolder folder;
  WriteWholeFile(folder / "rec.wav", "");
  const CForeignHandle recorder(folder / "rec.wav", GENERIC_WRITE, FILE_SHARE_READ);
  ASSERT_TRUE(recorder.IsOpen());
  ASSERT_TRUE(recorder.Write("abc"));
  CFile file;
  ASSERT_TRUE(file.Open(folder / "rec.wav", EOpenMode::ReadShared));
  ASSERT_TRUE(recorder.Write("def"));
  std::string bytes(6, ' ');
  EXPECT_TRUE(file.ReadExactly(bytes.data(), bytes.size()));
  EXPECT_EQ(bytes, "abcdef");
  EXPECT_TRUE(platform::GetFileStatus(folder / "rec.wav"));
}

TEST(WindowsSharing, AFileBeingReadDeniesOthersNothing) {
  const CTempFolder folder;
  WriteWholeFile(folder / "rec.wav", "abc");
  CFile file;
  ASSERT_TRUE(file.Open(folder / "rec.wav", EOpenMode::ReadShared));
  EXPECT_TRUE(CForeignHandle(folder / "rec.wav", GENERIC_READ | GENERIC_WRITE | DELETE, kShareAll).IsOpen());
}

TEST(WindowsSharing, AFileBeingWrittenCanBeReadButNotWrittenByOthers) {
  const CTempFolder folder;
  CFile file;
  ASSERT_TRUE(file.Open(folder / "out.wav", EOpenMode::Replace));
  EXPECT_TRUE(CForeignHandle(folder / "out.wav", GENERIC_READ, kShareAll).IsOpen());
  EXPECT_FALSE(CForeignHandle(folder / "out.wav", GENERIC_WRITE, kShareAll).IsOpen());
}

TEST(WindowsSharing, AFileThatAnotherProgramKeepsToItselfIsRefusedWithAReason) {
  const CTempFolder folder;
  WriteWholeFile(folder / "rec.wav", "abc");
  const CForeignHandle other(folder / "rec.wav", GENERIC_READ, 0);
  CFile file;
  EXPECT_FALSE(file.Open(folder / "rec.wav", EOpenMode::ReadShared));
  EXPECT_EQ(platform::LastError(), static_cast<std::uint32_t>(ERROR_SHARING_VIOLATION));
}

// ---- times, names and paths ------------------------------------------------------------------------------------

TEST(WindowsFileStatus, TheCreationTimeIsTheOneOfTheSystem) {
  const CTempFolder folder;
  WriteWholeFile(folder / "a", "x");
  // 2001-02-03 04:05:06 UTC and, modified, a day later; in 100 ns since 1601.
  constexpr std::uint64_t kCreated = (981'173'106 + 11'644'473'600ULL) * 10'000'000;
  constexpr std::uint64_t kModified = kCreated + 86'400ULL * 10'000'000;
  FILETIME created{static_cast<DWORD>(kCreated), static_cast<DWORD>(kCreated >> 32U)};
  const FILETIME modified{static_cast<DWORD>(kModified), static_cast<DWORD>(kModified >> 32U)};
  const HANDLE handle = CreateFileW(Wide(folder / "a").c_str(), FILE_READ_ATTRIBUTES | FILE_WRITE_ATTRIBUTES, kShareAll,
                                    nullptr, OPEN_EXISTING, 0, nullptr);
  ASSERT_NE(handle, INVALID_HANDLE_VALUE);
  EXPECT_TRUE(SetFileTime(handle, &created, nullptr, &modified));
  // Wine's file systems keep no creation time of a program's choice, so the system is asked what it made of it.
  EXPECT_TRUE(GetFileTime(handle, &created, nullptr, nullptr));
  CloseHandle(handle);
  const std::uint64_t ticks = std::uint64_t{created.dwHighDateTime} << 32U | created.dwLowDateTime;
  const auto status = platform::GetFileStatus(folder / "a");
  ASSERT_TRUE(status);
  EXPECT_EQ(status->tCreated, static_cast<std::int64_t>(ticks / 10'000'000) - 11'644'473'600);
  EXPECT_EQ(status->tModified, 981'173'106 + 86'400);
}

TEST(WindowsPaths, LongOnesGetThePrefixThatLiftsTheLimit) {
  const std::wstring longName(250, L'x');
  const std::string narrow(250, 'x');
  EXPECT_EQ(platform::WidePath("C:\\a\\b.wav"), L"C:\\a\\b.wav");
  EXPECT_EQ(platform::WidePath("C:\\a\\" + narrow), L"\\\\?\\C:\\a\\" + longName);
  EXPECT_EQ(platform::WidePath("C:/a/./b/../" + narrow), L"\\\\?\\C:\\a\\" + longName);
  EXPECT_EQ(platform::WidePath("\\\\server\\share\\" + narrow), L"\\\\?\\UNC\\server\\share\\" + longName);
  EXPECT_EQ(platform::WidePath("//server/share/" + narrow), L"\\\\?\\UNC\\server\\share\\" + longName);
  EXPECT_EQ(platform::WidePath("\\\\?\\C:\\a\\" + narrow), L"\\\\?\\C:\\a\\" + longName);
  EXPECT_EQ(platform::WidePath("\\\\?\\UNC\\server\\share\\" + narrow), L"\\\\?\\UNC\\server\\share\\" + longName);
}

TEST(WindowsPaths, TheShellGetsThemWithoutThePrefix) {
  EXPECT_EQ(platform::ShellPath("C:\\a\\b.wav"), L"C:\\a\\b.wav");
  EXPECT_EQ(platform::ShellPath("C:/a/./b.wav"), L"C:\\a\\b.wav");
  EXPECT_EQ(platform::ShellPath("\\\\?\\C:\\a\\b.wav"), L"C:\\a\\b.wav");
  EXPECT_EQ(platform::ShellPath("\\\\?\\UNC\\server\\share\\b.wav"), L"\\\\server\\share\\b.wav");
  // Of such a length that the file functions get the prefix and the shell needs no short names.
  const std::wstring longName(250, L'x');
  EXPECT_EQ(platform::ShellPath("C:\\a\\" + std::string(250, 'x')), L"C:\\a\\" + longName);
  // No file of that name has a shorter one.
  const std::wstring longerName(300, L'x');
  EXPECT_EQ(platform::ShellPath("C:\\a\\" + std::string(300, 'x')), L"C:\\a\\" + longerName);
}

TEST(WindowsPaths, TheShellGetsShortNamesBeyond260Characters) {
  const CTempFolder folder;
  const std::string deep = platform::JoinPath(folder.Path(), std::string(100, 'd'));
  ASSERT_TRUE(CreateDirectoryW(platform::WidePath(deep).c_str(), nullptr));
  const std::string path = platform::JoinPath(deep, std::string(200, 'n') + ".wav");
  CFile file;
  ASSERT_TRUE(file.Open(path, EOpenMode::Replace));
  EXPECT_TRUE(file.Close());
  const std::wstring given = platform::ShellPath(path);
  if (GetShortPathNameW(platform::WidePath(path).c_str(), nullptr, 0) < MAX_PATH) {
    EXPECT_LT(given.size(), std::size_t{MAX_PATH});
    const auto status = platform::GetFileStatus(platform::Narrow(given));
    ASSERT_TRUE(status);
    EXPECT_EQ(status->nFileNumber, platform::GetFileStatus(path).value().nFileNumber);
  } else {  // a volume that gives none
    EXPECT_EQ(given, Wide(path));
  }
  EXPECT_TRUE(platform::RemoveFile(path));
}

TEST(WindowsPaths, FilesBeyond260CharactersAreMadeFoundReadAndRemoved) {
  const CTempFolder folder;
  std::string deep = folder.Path();
  for (int level = 0; level < 8; ++level) {
    deep = platform::JoinPath(deep, std::string(60, static_cast<char>('a' + level)));
    ASSERT_TRUE(CreateDirectoryW(platform::WidePath(deep).c_str(), nullptr)) << deep;
  }
  ASSERT_GT(deep.size(), 480U);
  const std::string path = platform::JoinPath(deep, "\xC3\xA4 \xE6\x97\xA5 \xF0\x9F\x93\xBB.wav");
  CFile file;
  ASSERT_TRUE(file.Open(path, EOpenMode::Replace));
  EXPECT_EQ(file.Write("abc", 3), 3U);
  EXPECT_TRUE(file.Close());
  EXPECT_TRUE(platform::IsReadable(path));
  EXPECT_TRUE(platform::IsWritableFolder(deep));
  EXPECT_EQ(platform::GetFileStatus(path).value().nSize, 3);
  EXPECT_THAT(platform::ListFolder(deep).value(), testing::ElementsAre(platform::NameOf(path)));
  ASSERT_TRUE(file.Open(path, EOpenMode::ReadShared));
  EXPECT_EQ(file.Length(), 3);
  file.Close();
  EXPECT_TRUE(platform::RemoveFile(path));
  EXPECT_FALSE(platform::IsReadable(path));
  // From the inside out: the standard library knows no such paths here.
  for (; deep != folder.Path(); deep = platform::FolderOf(deep)) {
    EXPECT_TRUE(RemoveDirectoryW(platform::WidePath(deep).c_str())) << deep;
  }
}

TEST(WindowsPaths, ARelativePathMayBeginInADeepFolder) {
  const CTempFolder folder;
  const std::string deep = platform::JoinPath(folder.Path(), std::string(100, 'd'));
  ASSERT_TRUE(CreateDirectoryW(Wide(deep).c_str(), nullptr));
  const CCurrentFolder here(deep);
  const std::string name(200, 'n');
  ASSERT_GT(deep.size() + name.size(), 260U);
  CFile file;
  EXPECT_TRUE(file.Open(name, EOpenMode::Replace)) << platform::LastError();
  file.Close();
  EXPECT_TRUE(platform::IsReadable(name));
  EXPECT_TRUE(platform::RemoveFile(name));
}

TEST(WindowsPaths, NamesDifferInMoreThanCase) {
  EXPECT_TRUE(platform::FileNamesEqual("\xC3\x84.WAV", "\xC3\xA4.wav"));
  EXPECT_FALSE(platform::FileNamesEqual("a.wav", "\xC3\xA4.wav"));
  EXPECT_EQ(platform::FileNameKey("C:\\\xC3\x84.WAV"), platform::FileNameKey("c:\\\xC3\xA4.wav"));
  EXPECT_NE(platform::FileNameKey("a.wav"), platform::FileNameKey("\xC3\xA4.wav"));
}

TEST(WindowsPaths, DrivesAndBothSlashesSeparate) {
  EXPECT_EQ(platform::FolderOf("C:\\a\\b.wav"), "C:\\a");
  EXPECT_EQ(platform::FolderOf("C:\\b.wav"), "C:\\");
  EXPECT_EQ(platform::FolderOf("C:b.wav"), "C:");
  EXPECT_EQ(platform::NameOf("C:b.wav"), "b.wav");
  EXPECT_EQ(platform::NameOf("C:\\a/b.wav"), "b.wav");
}

// ---- texts -----------------------------------------------------------------------------------------------------

TEST(WindowsErrors, TextsComeFromTheSystemOnOneLine) {
  SetLastError(ERROR_FILE_NOT_FOUND);
  const std::string text = SystemErrorText();
  EXPECT_NE(text, "");
  EXPECT_THAT(text, testing::Not(testing::HasSubstr("Unknown error")));
  EXPECT_EQ(text.find_first_of("\r\n"), std::string::npos);
}

TEST(WindowsErrors, AccessDeniedTellsWhoMayBeToBlame) {
  SetLastError(ERROR_ACCESS_DENIED);
  const std::string text = SystemErrorText();
  EXPECT_THAT(text, testing::EndsWith(" The device is held open by another program."));
  EXPECT_THAT(text, testing::Not(testing::HasSubstr("  ")));
}

TEST(WindowsErrors, AFileThatAnotherProgramKeepsToItselfIsToldAsSuch) {
  const CTempFolder folder;
  const std::string path = folder / "a";
  const HANDLE held = CreateFileW(Wide(path).c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, 0, nullptr);
  ASSERT_NE(held, INVALID_HANDLE_VALUE);
  EXPECT_FALSE(platform::IsReadable(path));
  EXPECT_EQ(GetLastError(), DWORD{ERROR_SHARING_VIOLATION});
  EXPECT_EQ(platform::RuntimeErrorText(ERROR_SHARING_VIOLATION), platform::ErrorText(ERROR_SHARING_VIOLATION));
  EXPECT_FALSE(platform::RemoveUnusedFile(path));
  CloseHandle(held);
  EXPECT_TRUE(platform::IsReadable(path));
  EXPECT_TRUE(platform::RemoveUnusedFile(path));
}

TEST(WindowsErrors, TextsCarryNoLineBreaks) {
  for (const DWORD code : {DWORD{ERROR_FILE_NOT_FOUND}, DWORD{ERROR_SHARING_VIOLATION}, DWORD{ERROR_DISK_FULL}}) {
    EXPECT_EQ(platform::ErrorText(code).value().find_first_of("\r\n"), std::string::npos);
  }
}

TEST(WindowsProcess, AStreamThatIsNoneIsForgotten) {
  const HANDLE kept = GetStdHandle(STD_ERROR_HANDLE);
  const CTempFolder folder;
  const HANDLE closed = CreateFileW(Wide(folder / "a").c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, 0, nullptr);
  ASSERT_NE(closed, INVALID_HANDLE_VALUE);
  CloseHandle(closed);
  SetStdHandle(STD_ERROR_HANDLE, closed);
  platform::PrepareProcess();
  EXPECT_EQ(GetStdHandle(STD_ERROR_HANDLE), nullptr);
  SetStdHandle(STD_ERROR_HANDLE, kept);
}

TEST(WindowsErrors, ACodeWithoutTextIsShownAsANumber) {
  EXPECT_EQ(SystemErrorText(0x2FFF'FFFF), "Unknown error 805306367");
}

TEST(WindowsCodePage, IsTheAnsiOne) {
  const std::string text = "J\xC3\xB6rg \xE6\x97\xA5";  // o-umlaut, and a character of the east
  const std::string bytes = platform::Utf8ToSystemCodePage(text);
  switch (GetACP()) {
    case 1252:
      EXPECT_EQ(bytes, "J\xF6rg ?");
      EXPECT_EQ(platform::SystemCodePageToUtf8("J\xF6rg \x80"), "J\xC3\xB6rg \xE2\x82\xAC");
      break;
    case CP_UTF8:
      EXPECT_EQ(bytes, text);
      EXPECT_EQ(platform::SystemCodePageToUtf8(text), text);
      break;
    default: {
      std::array<char, 16> expected{};
      WideCharToMultiByte(GetACP(), 0, L"J\u00F6rg \u65E5", -1, expected.data(), 16, nullptr, nullptr);
      EXPECT_EQ(bytes, expected.data());
      EXPECT_NE(bytes, text);
      std::array<wchar_t, 16> back{};
      MultiByteToWideChar(GetACP(), 0, expected.data(), -1, back.data(), 16);
      EXPECT_EQ(Wide(platform::SystemCodePageToUtf8(bytes)), back.data());
    }
  }
}

// ---- threads and desktop ---------------------------------------------------------------------------------

TEST(WindowsThreads, TheSystemTakesEveryPriorityOfTheWorkers) {
  for (const int priority : {15, 2, 1, -1, -2, -15, 0}) {
    EXPECT_TRUE(platform::SetCurrentThreadPriority(priority)) << priority;
    EXPECT_EQ(GetThreadPriority(GetCurrentThread()), priority);
  }
}

TEST(WindowsDesktop, TheProgramOfAFilesTypeIsStarted) {
  const CTempFolder folder;
  const std::string script = folder / "l\xC3\xA4uft.cmd";
  WriteWholeFile(script, "@echo done> \"%~dp0made.txt\"\r\n");
  std::string error;
  ASSERT_TRUE(ShellOpen(0, script, "open", error)) << error;
  // The script runs on its own; the time limit of the test ends a wait in vain.
  while (!platform::IsReadable(folder / "made.txt")) Sleep(20);
  SUCCEED();
}

TEST(WindowsDesktop, AMissingFileIsToldWithTheSystemsReason) {
  const CTempFolder folder;
  std::string error;
  EXPECT_FALSE(ShellOpen(0, folder / "none.txt", "open", error));
  EXPECT_THAT(error, testing::StartsWith("Error processing \"" + (folder / "none.txt") + "\" -\n \n"));
  EXPECT_THAT(error, testing::EndsWith(SystemErrorText(ERROR_FILE_NOT_FOUND)));
}

}  // namespace
}  // namespace carvello
