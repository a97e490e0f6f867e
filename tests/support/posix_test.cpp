// What holds on POSIX systems only.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <time.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <filesystem>
#include <latch>
#include <string>
#include <thread>

#include "support/file.h"
#include "support/formatting.h"
#include "support/platform.h"
#include "support/shell_open.h"
#include "support/system_time.h"
#include "support/temp_folder.h"
#include "support/text.h"
#include "support/whole_file.h"

namespace carvello {
namespace {

using platform::EOpenMode;

// The process's environment variable for as long as the object lives.
class CEnvironmentVariable {
 public:
  CEnvironmentVariable(const char* name, const char* value) : m_strName(name) {
    const char* old = getenv(name);
    m_bWasSet = old != nullptr;
    if (m_bWasSet) m_strOld = old;
    setenv(name, value, 1);
    tzset();
  }
  ~CEnvironmentVariable() {
    if (m_bWasSet) {
      setenv(m_strName.c_str(), m_strOld.c_str(), 1);
    } else {
      unsetenv(m_strName.c_str());
    }
    tzset();
  }
  CEnvironmentVariable(const CEnvironmentVariable&) = delete;
  CEnvironmentVariable& operator=(const CEnvironmentVariable&) = delete;

 private:
  std::string m_strName;
  std::string m_strOld;
  bool m_bWasSet = false;
};

class CZoneReader {
 public:
  explicit CZoneReader(const platform::TimeZoneRecord& record) : m_record(record) {}

  std::int32_t Bias() const { return Number32(0); }
  std::string StandardName() const { return Name(4); }
  std::string StandardDate() const { return Date(68); }
  std::int32_t StandardBias() const { return Number32(84); }
  std::string DaylightName() const { return Name(88); }
  std::string DaylightDate() const { return Date(152); }
  std::int32_t DaylightBias() const { return Number32(168); }

 private:
  unsigned Number16(std::size_t offset) const {
    return m_record.bytes[offset] | unsigned{m_record.bytes[offset + 1]} << 8U;
  }
  std::int32_t Number32(std::size_t offset) const {
    return static_cast<std::int32_t>(Number16(offset) | Number16(offset + 2) << 16);
  }
  std::string Name(std::size_t offset) const {
    const char* bytes = reinterpret_cast<const char*>(m_record.bytes.data());
    return Utf16ToUtf8(Utf16FromLittleEndian({bytes + offset, 64}));
  }
  // year/month/weekday/week hour:minute:second.milliseconds
  std::string Date(std::size_t offset) const {
    const auto field = [&](std::size_t index) { return Number16(offset + 2 * index); };
    return Format("%u/%u/%u/%u %u:%u:%u.%u", field(0), field(1), field(2), field(3), field(4), field(5), field(6),
                  field(7));
  }

  platform::TimeZoneRecord m_record;
};

TEST(PosixFiles, NumbersOfFilesLastUnlessTheFileSystemIsKnownToMakeThemUp) {
  EXPECT_TRUE(platform::KeepsFileNumbers("/proc/self/stat"));
  EXPECT_TRUE(platform::KeepsFileNumbers("/proc/none")) << "nothing is known of it";
}

TEST(PosixTimeZoneRecord, CarriesBothSeasonsOfAZone) {
  // The rules of central Europe, written out so that no zone database is needed.
  const CEnvironmentVariable zone("TZ", "CET-1CEST,M3.5.0/2,M10.5.0/3");
  const platform::TimeZoneRecord record = platform::GetTimeZoneRecord();
  const CZoneReader reader(record);
  EXPECT_EQ(reader.Bias(), -60);
  EXPECT_EQ(reader.StandardName(), "CET");
  EXPECT_EQ(reader.StandardDate(), "0/10/0/5 3:0:0.0");
  EXPECT_EQ(reader.StandardBias(), 0);
  EXPECT_EQ(reader.DaylightName(), "CEST");
  EXPECT_EQ(reader.DaylightDate(), "0/3/0/5 2:0:0.0");
  EXPECT_EQ(reader.DaylightBias(), -60);
  std::tm local{};
  ASSERT_TRUE(platform::LocalTime(CurrentTime(), local));
  EXPECT_EQ(record.nStatus, local.tm_isdst > 0 ? 2U : 1U);
}

TEST(PosixTimeZoneRecord, CountsWeeksFromTheMonthsStart) {
  const CEnvironmentVariable zone("TZ", "EST5EDT,M3.2.0/2,M11.1.0/2");
  const CZoneReader reader(platform::GetTimeZoneRecord());
  EXPECT_EQ(reader.Bias(), 300);
  EXPECT_EQ(reader.StandardDate(), "0/11/0/1 2:0:0.0");
  EXPECT_EQ(reader.DaylightDate(), "0/3/0/2 2:0:0.0");
}

TEST(PosixTimeZoneRecord, ServesTheSouthWhereSummerSpansTheYearsEnd) {
  const CEnvironmentVariable zone("TZ", "AEST-10AEDT,M10.1.0/2,M4.1.0/3");
  const CZoneReader reader(platform::GetTimeZoneRecord());
  EXPECT_EQ(reader.Bias(), -600);
  EXPECT_EQ(reader.StandardName(), "AEST");
  EXPECT_EQ(reader.StandardDate(), "0/4/0/1 3:0:0.0");
  EXPECT_EQ(reader.DaylightDate(), "0/10/0/1 2:0:0.0");
}

TEST(PosixTimeZoneRecord, AZoneWithoutSeasonsHasNoDates) {
  const CEnvironmentVariable zone("TZ", "<+0530>-5:30");
  const platform::TimeZoneRecord record = platform::GetTimeZoneRecord();
  const CZoneReader reader(record);
  EXPECT_EQ(record.nStatus, 0U);
  EXPECT_EQ(reader.Bias(), -330);
  EXPECT_EQ(reader.StandardName(), "+0530");
  EXPECT_EQ(reader.StandardDate(), "0/0/0/0 0:0:0.0");
  EXPECT_EQ(reader.DaylightDate(), "0/0/0/0 0:0:0.0");
}

// What ThreadSanitizer sees when this is the process's first look at its zone: the names come into the system's list
// with whichever conversion is the first.
TEST(PosixTimeZoneRecord, AZoneThatATimeInUtcMadeKnownIsReadOnAnotherThread) {
  std::latch both(2);
  std::thread utc([&both] {
    std::tm fields{};
    both.arrive_and_wait();
    EXPECT_TRUE(platform::UtcTime(86'400, fields));
    EXPECT_EQ(platform::UtcSeconds(fields), 86'400);
  });
  both.arrive_and_wait();
  const platform::TimeZoneRecord record = platform::GetTimeZoneRecord();
  utc.join();
  EXPECT_EQ(record.bytes, platform::GetTimeZoneRecord().bytes);
}

TEST(PosixFormatting, TheDateIsLocalAndTheTimeIsUtc) {
  const CEnvironmentVariable locale("LC_ALL", "C");
  const CEnvironmentVariable zone("TZ", "XXX-14");
  // 2026-11-21 12:34:56 UTC, the 22nd fourteen hours east; the C locale's short date is month/day/year.
  EXPECT_EQ(FormatUtcDateTime(1'795'264'496), "11/22/26 12:34:56z");
}

TEST(PosixFormatting, AMissingLocaleFallsBackToC) {
  const CEnvironmentVariable locale("LC_ALL", "xx_YY.none");
  const CEnvironmentVariable zone("TZ", "UTC0");
  EXPECT_EQ(FormatUtcDateTime(1'795'264'496), "11/21/26 12:34:56z");
}

TEST(PosixErrors, TextsNeedNoLocale) {
  EXPECT_EQ(SystemErrorText(ENOSPC), "No space left on device");
  EXPECT_EQ(SystemErrorText(EACCES), "Permission denied");
}

TEST(PosixErrors, ALockedFileIsToldToBeWrittenByAnotherProgram) {
  const test::CTempFolder folder;
  CFile one;
  ASSERT_TRUE(one.Open(folder / "a", EOpenMode::CreateNew));
  CFile other;
  EXPECT_FALSE(other.Open(folder / "a", EOpenMode::Replace));
  EXPECT_EQ(SystemErrorText(), "Another program is writing this file");
}

// Standard streams as a parent leaves them that has closed one. The program is a child of the test's, whose own streams
// stay as they are; its exit code tells the first thing that is wrong.
class PosixClosedStream : public testing::TestWithParam<int> {};

TEST_P(PosixClosedStream, IsNeverTakenByAFile) {
  const test::CTempFolder folder;
  const auto child = [&] {
    close(GetParam());
    CFile early;
    if (!early.Open(folder / "early", EOpenMode::CreateNew) || early.LogId() <= 3) return 1;
    platform::PrepareProcess();
    if (fcntl(GetParam(), F_GETFD) == -1) return 2;
    char byte = 0;
    if (GetParam() == 0 && read(0, &byte, 1) != 0) return 3;  // at its end
    if (GetParam() == 1 && write(1, "x", 1) != -1) return 4;  // a report would be lost
    if (GetParam() == 2 && write(2, "x", 1) != 1) return 5;   // nobody hears it
    CFile file;
    if (!file.Open(folder / "a", EOpenMode::CreateNew) || file.Write("abc", 3) != 3) return 6;
    return file.LogId() <= 3 ? 7 : 0;
  };
  EXPECT_EXIT(_exit(child()), testing::ExitedWithCode(0), "");
  EXPECT_EQ(test::ReadWholeFile(folder / "a"), "abc");
}

INSTANTIATE_TEST_SUITE_P(EachStream, PosixClosedStream, testing::Values(0, 1, 2));

TEST(PosixFile, AFileThatIsBeingWrittenIsNotRemoved) {
  const test::CTempFolder folder;
  CFile file;
  ASSERT_TRUE(file.Open(folder / "a", EOpenMode::CreateNew));
  EXPECT_FALSE(platform::RemoveUnusedFile(folder / "a"));
  EXPECT_EQ(SystemErrorText(), "Another program is writing this file");
  EXPECT_TRUE(platform::GetNameStatus(folder / "a"));
  file.Close();
  EXPECT_TRUE(platform::RemoveUnusedFile(folder / "a"));
  EXPECT_FALSE(platform::GetNameStatus(folder / "a"));
}

TEST(PosixFile, ALinkThatLeadsNowhereTakesItsNameAndIsNotFollowed) {
  const test::CTempFolder folder;
  std::filesystem::create_symlink(folder / "none", folder / "link");
  EXPECT_TRUE(platform::GetNameStatus(folder / "link"));
  EXPECT_FALSE(platform::GetFileStatus(folder / "link"));
  CFile file;
  EXPECT_FALSE(file.Open(folder / "link", EOpenMode::CreateNew));
  EXPECT_EQ(platform::LastError(), static_cast<std::uint32_t>(EEXIST));
  EXPECT_FALSE(platform::GetNameStatus(folder / "none"));
  EXPECT_TRUE(platform::RemoveUnusedFile(folder / "link"));
  EXPECT_FALSE(platform::GetNameStatus(folder / "link"));
}

TEST(PosixFile, AFileThatIsReplacedAsAWholeKeepsTheLinkToIt) {
  const test::CTempFolder folder;
  test::WriteWholeFile(folder / "file", "old");
  std::filesystem::create_symlink("file", folder / "link");
  std::filesystem::create_symlink("link", folder / "far");
  EXPECT_EQ(platform::LinkedPath(folder / "file"), folder / "file");
  std::string error;
  ASSERT_TRUE(WriteWholeFile(folder / "far", "new", 3, true, error)) << error;
  EXPECT_TRUE(std::filesystem::is_symlink(folder / "far"));
  EXPECT_TRUE(std::filesystem::is_symlink(folder / "link"));
  EXPECT_EQ(test::ReadWholeFile(folder / "file"), "new");
  EXPECT_FALSE(WriteWholeFile(folder / "far", "x", 1, false, error));
  std::filesystem::create_symlink("nowhere", folder / "lost");
  EXPECT_EQ(platform::LinkedPath(folder / "lost"), folder / "lost");
}

TEST(PosixPath, BecomesAbsoluteByThePresentFolder) {
  const std::string here = std::filesystem::current_path().string();
  EXPECT_EQ(platform::AbsolutePath("/a/./b"), "/a/./b");
  EXPECT_EQ(platform::AbsolutePath("cuts"), here + "/cuts");
  EXPECT_EQ(platform::AbsolutePath("./cuts"), here + "/cuts");
  EXPECT_EQ(platform::AbsolutePath("."), here);
  EXPECT_EQ(platform::AbsolutePath("./"), here);
  EXPECT_EQ(platform::AbsolutePath("../cuts"), here + "/../cuts");
}

TEST(PosixFile, AFullDeviceTakesNothing) {
  CFile file;
  while (!file.Open("/dev/full", EOpenMode::Replace)) {  // there is one for all, and another test may have it just now
    ASSERT_EQ(platform::LastError(), static_cast<std::uint32_t>(ETXTBSY));
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  EXPECT_EQ(file.Write("abc", 3), 0U);
  EXPECT_EQ(platform::LastError(), static_cast<std::uint32_t>(ENOSPC));
}

TEST(PosixFile, APipeIsRefusedInsteadOfWaitedFor) {
  const test::CTempFolder folder;
  ASSERT_EQ(mkfifo((folder / "pipe").c_str(), 0600), 0);
  CFile file;
  EXPECT_FALSE(file.Open(folder / "pipe", EOpenMode::ReadShared));
  EXPECT_FALSE(file.Open(folder / "pipe", EOpenMode::Replace));
}

TEST(PosixFile, AFolderIsRefusedByName) {
  const test::CTempFolder folder;
  CFile file;
  EXPECT_FALSE(file.Open(folder.Path(), EOpenMode::ReadShared));
  EXPECT_EQ(platform::LastError(), static_cast<std::uint32_t>(EISDIR));
}

TEST(PosixFolder, TheReasonOfARefusalIsToldApart) {
  const test::CTempFolder folder;
  EXPECT_FALSE(platform::IsWritableFolder(folder / "none"));
  EXPECT_EQ(platform::LastError(), static_cast<std::uint32_t>(ENOENT));
  test::WriteWholeFile(folder / "file", "");
  EXPECT_FALSE(platform::IsWritableFolder(folder / "file"));
  EXPECT_EQ(platform::LastError(), static_cast<std::uint32_t>(ENOTDIR));
}

TEST(PosixDesktop, AMissingPathIsNotOpened) {
  const test::CTempFolder folder;
  EXPECT_FALSE(platform::OpenWithDesktop(0, folder / "none", "open"));
  EXPECT_EQ(platform::LastError(), static_cast<std::uint32_t>(ENOENT));
}

TEST(PosixDesktop, AProgramForAFileIsAskedForByAllItsMediaTypes) {
  const test::CTempFolder folder;
  test::WriteWholeFile(folder / "xdg-mime",
                       "#!/bin/sh\n[ \"$1 $2 $3\" = 'query default text/x-known' ] && echo editor.desktop\n");
  ASSERT_EQ(chmod((folder / "xdg-mime").c_str(), 0700), 0);
  const std::string search = folder.Path() + ":" + getenv("PATH");
  const CEnvironmentVariable path("PATH", search.c_str());
  EXPECT_TRUE(platform::HasProgramFor("a.x", {"text/x-known"}));
  EXPECT_TRUE(platform::HasProgramFor("a.x", {"text/x-unknown", "text/x-known"}));
  EXPECT_FALSE(platform::HasProgramFor("a.x", {"text/x-unknown"}));
  EXPECT_FALSE(platform::HasProgramFor("a.x", {"text/x-unknown'; exit 0; '"}));
}

TEST(ShellOpen, AMissingFileIsToldWithTheSystemsReason) {
  std::string text;
  EXPECT_FALSE(ShellOpen(0, "/no such folder/x.txt", "open", text));
  EXPECT_EQ(text, "Error processing \"/no such folder/x.txt\" -\n \nNo such file or directory");
}

TEST(Threads, LowerLevelsComeLaterButStarveNobody) {
  // Three steps leave a thread half of what an ordinary program's gets of a processor that both want.
  std::thread([] {
    const auto nice = [] { return getpriority(PRIO_PROCESS, static_cast<id_t>(syscall(SYS_gettid))); };
    const int ordinary = nice();
    if (ordinary > 15) return;  // started so low that there is no room for levels
    ASSERT_TRUE(platform::SetCurrentThreadPriority(-1));
    const int belowNormal = nice();
    ASSERT_TRUE(platform::SetCurrentThreadPriority(-2));
    EXPECT_LT(ordinary, belowNormal);
    EXPECT_LT(belowNormal, nice());
    EXPECT_LE(nice(), ordinary + 3);
  }).join();
}

TEST(PosixTest, LimitOfOpenFilesIsRaisedAsFarAsTheSystemLetsIt) {
  rlimit old{};
  ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &old), 0);
  ASSERT_GE(old.rlim_max, 300U);
  const auto soft = [] {
    rlimit limit{};
    getrlimit(RLIMIT_NOFILE, &limit);
    return limit.rlim_cur;
  };
  const rlimit low{200, old.rlim_max};
  ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &low), 0);
  EXPECT_EQ(platform::AllowOpenFiles(100), 200U) << "is there already";
  EXPECT_EQ(soft(), 200U);
  EXPECT_EQ(platform::AllowOpenFiles(300), 300U);
  EXPECT_EQ(soft(), 300U);
  setrlimit(RLIMIT_NOFILE, &old);
  if (old.rlim_max != RLIM_INFINITY) {
    EXPECT_EQ(platform::AllowOpenFiles(old.rlim_max + 1), old.rlim_max);
    setrlimit(RLIMIT_NOFILE, &old);
  }
}

TEST(PosixTest, AFolderIsForThisUserAloneButASharedOneForWhomTheMaskLetsIn) {
  const test::CTempFolder folder;
  const mode_t old = umask(027);
  EXPECT_TRUE(platform::CreateFolder(folder / "own"));
  EXPECT_TRUE(platform::CreateSharedFolder(folder / "shared"));
  EXPECT_TRUE(platform::CreateSharedFolder(folder / "own"));
  umask(old);
  struct stat status {};
  ASSERT_EQ(stat((folder / "own").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777, 0700U);
  ASSERT_EQ(stat((folder / "shared").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777, 0750U);
}

TEST(PosixTest, CachesOfTheUserGoWhereTheEnvironmentSaysOrIntoTheHomeFolder) {
  const CEnvironmentVariable home("HOME", "/home/somebody");
  {
    const CEnvironmentVariable caches("XDG_CACHE_HOME", "/var/caches");
    EXPECT_EQ(platform::UserCacheFolder(), "/var/caches");
  }
  for (const char* const none : {"", "relative/folder"}) {
    const CEnvironmentVariable caches("XDG_CACHE_HOME", none);
    EXPECT_EQ(platform::UserCacheFolder(), "/home/somebody/.cache");
    const CEnvironmentVariable homeless("HOME", "");
    EXPECT_EQ(platform::UserCacheFolder(), "");
  }
}

}  // namespace
}  // namespace carvello
