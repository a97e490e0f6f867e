#include "support/platform.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <limits>

#include "support/system_time.h"
#include "support/temp_folder.h"
#include "support/text.h"

namespace carvello {
namespace {

using test::CTempFolder;
using test::WriteWholeFile;

TEST(FileStatus, TellsSizeKindAndTimes) {
  const CTempFolder folder;
  WriteWholeFile(folder / "a", "12345");
  const auto file = platform::GetFileStatus(folder / "a");
  ASSERT_TRUE(file);
  EXPECT_EQ(file->nSize, 5);
  EXPECT_FALSE(file->bDirectory);
  EXPECT_TRUE(file->bRegular);
  // The file system's clock can lag a little behind the program's.
  EXPECT_NEAR(static_cast<double>(file->tCreated), static_cast<double>(CurrentTime()), 60);
  EXPECT_NEAR(static_cast<double>(file->tModified), static_cast<double>(CurrentTime()), 60);

  const auto status = platform::GetFileStatus(folder.Path());
  ASSERT_TRUE(status);
  EXPECT_TRUE(status->bDirectory);
  EXPECT_FALSE(status->bRegular);
  EXPECT_FALSE(platform::GetFileStatus(folder / "none"));
  EXPECT_TRUE(platform::MeansMissing(platform::LastError()));
}

TEST(CreateFolder, MakesOneFolderAndIsContentWithOneThatIsThere) {
  const CTempFolder folder;
  EXPECT_TRUE(platform::CreateFolder(folder / "new"));
  EXPECT_TRUE(platform::GetFileStatus(folder / "new")->bDirectory);
  EXPECT_TRUE(platform::CreateFolder(folder / "new"));
  EXPECT_FALSE(platform::CreateFolder(folder / "none/new"));
  EXPECT_TRUE(platform::MeansMissing(platform::LastError()));
  WriteWholeFile(folder / "file", "1");
  EXPECT_FALSE(platform::CreateFolder(folder / "file"));
  EXPECT_TRUE(platform::MeansExisting(platform::LastError()));
}

TEST(RenameFile, LeavesWhatStandsUnderTheNewNameUnlessItIsToBeReplaced) {
  const CTempFolder folder;
  WriteWholeFile(folder / "new", "new");
  WriteWholeFile(folder / "old", "old");
  EXPECT_FALSE(platform::RenameFile(folder / "new", folder / "old", false));
  EXPECT_TRUE(platform::MeansExisting(platform::LastError()));
  EXPECT_EQ(platform::GetFileStatus(folder / "new")->nSize, 3);
  EXPECT_EQ(test::ReadWholeFile(folder / "old"), "old");

  EXPECT_TRUE(platform::RenameFile(folder / "new", folder / "old", true));
  EXPECT_FALSE(platform::GetFileStatus(folder / "new"));
  EXPECT_EQ(test::ReadWholeFile(folder / "old"), "new");

  EXPECT_TRUE(platform::RenameFile(folder / "old", folder / "other", false));
  EXPECT_FALSE(platform::GetFileStatus(folder / "old"));
  EXPECT_EQ(test::ReadWholeFile(folder / "other"), "new");
  EXPECT_FALSE(platform::RenameFile(folder / "none", folder / "any", true));
  EXPECT_FALSE(platform::GetFileStatus(folder / "any"));
}

TEST(FileStatus, IdentifiesAFileWhateverItsPath) {
  const CTempFolder folder;
  WriteWholeFile(folder / "a", "x");
  WriteWholeFile(folder / "b", "x");
  const auto direct = platform::GetFileStatus(folder / "a").value();
  const auto detour = platform::GetFileStatus(platform::JoinPath(platform::JoinPath(folder.Path(), "."), "a")).value();
  const auto other = platform::GetFileStatus(folder / "b").value();
  EXPECT_EQ(direct.nVolume, detour.nVolume);
  EXPECT_EQ(direct.nFileNumber, detour.nFileNumber);
  EXPECT_NE(direct.nFileNumber, other.nFileNumber);
}

TEST(WritableFolder, MissingFoldersAndFilesAreNone) {
  const CTempFolder folder;
  EXPECT_TRUE(platform::IsWritableFolder(folder.Path()));
  EXPECT_FALSE(platform::IsWritableFolder(folder / "none"));
  EXPECT_NE(platform::LastError(), 0U);
  WriteWholeFile(folder / "file", "");
  EXPECT_FALSE(platform::IsWritableFolder(folder / "file"));
  EXPECT_NE(platform::LastError(), 0U);
}

TEST(FreeSpace, IsThatOfTheDiskThatTheFolderIsOn) {
  const CTempFolder folder;
  const auto bytes = platform::FreeSpace(folder.Path());
  ASSERT_TRUE(bytes);
  const auto told = static_cast<double>(std::filesystem::space(test::PathOf(folder.Path())).available);
  // Others write to the same disk meanwhile.
  EXPECT_NEAR(static_cast<double>(*bytes), told, 1e9);
  EXPECT_FALSE(platform::FreeSpace(folder / "none"));
}

TEST(ListFolder, GivesEveryNameButTheDots) {
  const CTempFolder folder;
  WriteWholeFile(folder / "a.wav", "");
  WriteWholeFile(folder / "\xC3\xA4 \xE6\x97\xA5.wav", "");
  WriteWholeFile(folder / ".hidden", "");
  const auto names = platform::ListFolder(folder.Path());
  ASSERT_TRUE(names);
  EXPECT_THAT(*names, testing::UnorderedElementsAre("a.wav", "\xC3\xA4 \xE6\x97\xA5.wav", ".hidden"));
  EXPECT_FALSE(platform::ListFolder(folder / "none"));
}

TEST(Paths, FolderAndNameJoinWithOneSeparator) {
  const std::string separator = platform::JoinPath("a", "b").substr(1, 1);
  EXPECT_EQ(platform::JoinPath("a", "b"), "a" + separator + "b");
  EXPECT_EQ(platform::JoinPath("a/", "b"), "a/b");
  EXPECT_EQ(platform::JoinPath("/", "b"), "/b");
  EXPECT_EQ(platform::JoinPath("", "b"), "b");
}

TEST(Paths, FolderAndNameComeApartAtTheLastSeparator) {
  EXPECT_EQ(platform::FolderOf("a/b/c.wav"), "a/b");
  EXPECT_EQ(platform::NameOf("a/b/c.wav"), "c.wav");
  EXPECT_EQ(platform::FolderOf("c.wav"), ".");
  EXPECT_EQ(platform::NameOf("c.wav"), "c.wav");
  EXPECT_EQ(platform::FolderOf("/c.wav"), "/");
  EXPECT_EQ(platform::NameOf("/c.wav"), "c.wav");
  EXPECT_EQ(platform::NameOf("a/"), "");
}

TEST(Program, KnowsItsOwnPathAndArguments) {
  EXPECT_TRUE(platform::IsReadable(platform::ProgramPath()));
  EXPECT_THAT(platform::NameOf(platform::ProgramPath()), testing::StartsWith("test_support"));
}

TEST(Program, MissingLibrariesDoNotLoad) {
  const CTempFolder folder;
  EXPECT_EQ(platform::LoadSharedLibrary(folder / platform::SharedLibraryFileName("None")), nullptr);
}

TEST(Machine, HasProcessorsUserAndName) {
  EXPECT_GE(platform::ProcessorCount(), 1U);
  EXPECT_NE(platform::UserName(), "");
  EXPECT_NE(platform::ComputerName(), "");
  EXPECT_NE(platform::TempFolder(), "");
  EXPECT_GE(platform::TerminalColumns(), 1U);
}

TEST(Machine, ProcessTimeGrowsWithWork) {
  const std::int64_t before = platform::ProcessCpuMilliseconds();
  volatile double sink = 1;
  // Until it shows; the time limit of the test ends a clock that stands still.
  while (platform::ProcessCpuMilliseconds() < before + 50) {
    for (int step = 0; step < 10'000; ++step) sink = sink * 1.0000001;
  }
  EXPECT_GE(platform::ProcessCpuMilliseconds(), before + 50);
}

TEST(Threads, PriorityCanBeLoweredAndUnknownOnesAreRefused) {
  EXPECT_TRUE(platform::SetCurrentThreadPriority(-1));
  EXPECT_FALSE(platform::SetCurrentThreadPriority(1234));
  EXPECT_EQ(platform::SetCurrentThreadPriority(1) && platform::SetCurrentThreadPriority(0),
            platform::CanRaiseThreadPriority());
}

TEST(Times, UtcGoesThereAndBack) {
  std::tm fields{};
  ASSERT_TRUE(platform::UtcTime(1'794'789'880, fields));
  EXPECT_EQ(fields.tm_year, 126);
  EXPECT_EQ(fields.tm_mon, 10);
  EXPECT_EQ(fields.tm_mday, 16);
  EXPECT_EQ(fields.tm_sec, 40);
  EXPECT_EQ(platform::UtcSeconds(fields), 1'794'789'880);
}

TEST(Times, LocalGoesThereAndBack) {
  std::tm fields{};
  ASSERT_TRUE(platform::LocalTime(1'794'789'880, fields));
  EXPECT_EQ(platform::LocalSeconds(fields), 1'794'789'880);
}

TEST(Times, ImpossibleValuesAreRefused) {
  std::tm fields{};
  EXPECT_FALSE(platform::UtcTime(std::numeric_limits<std::int64_t>::max(), fields));
  EXPECT_FALSE(platform::LocalTime(std::numeric_limits<std::int64_t>::max(), fields));
}

TEST(Times, UserFormatsGiveATextInTheUsersLocale) {
  std::tm fields{};
  ASSERT_TRUE(platform::UtcTime(1'794'789'880, fields));
  EXPECT_THAT(platform::ShortDate(fields), testing::HasSubstr("16"));
  EXPECT_THAT(platform::LocaleTime(fields), testing::HasSubstr("44"));
}

TEST(TimeZoneRecord, FitsTheDifferenceBetweenLocalTimeAndUtc) {
  const platform::TimeZoneRecord record = platform::GetTimeZoneRecord();
  const auto number = [&record](std::size_t offset) {
    std::uint32_t value = 0;
    for (std::size_t index = 4; index-- > 0;) value = value << 8U | record.bytes[offset + index];
    return static_cast<std::int32_t>(value);
  };
  ASSERT_LE(record.nStatus, 2U);
  const std::int32_t extra = record.nStatus == 2 ? number(168) : record.nStatus == 1 ? number(84) : 0;
  const std::int64_t now = CurrentTime();
  std::tm local{};
  ASSERT_TRUE(platform::LocalTime(now, local));
  // UTC = local time + bias
  EXPECT_EQ((now - platform::UtcSeconds(local)) / 60, number(0) + extra);
}

TEST(CodePage, AsciiIsTheSameInEveryCodePage) {
  EXPECT_EQ(platform::Utf8ToSystemCodePage("Out 000.wav"), "Out 000.wav");
  EXPECT_EQ(platform::SystemCodePageToUtf8("Out 000.wav"), "Out 000.wav");
  EXPECT_EQ(platform::Utf8ToSystemCodePage(""), "");
}

}  // namespace
}  // namespace carvello
