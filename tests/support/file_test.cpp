#include "support/file.h"

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <utility>

#include "support/temp_folder.h"

namespace carvello {
namespace {

using platform::EOpenMode;
using test::CTempFolder;
using test::ReadWholeFile;
using test::WriteWholeFile;

constexpr char kUnicodeName[] = "R\xC3\xA4ume \xE6\x97\xA5\xE6\x9C\xAC \xF0\x9F\x93\xBB.wav";

TEST(File, ReadsWhatStandsAtItsPosition) {
  const CTempFolder folder;
  WriteWholeFile(folder / "a", "0123456789");
  CFile file;
  ASSERT_TRUE(file.Open(folder / "a", EOpenMode::ReadShared));
  EXPECT_EQ(file.Length(), 10);
  std::array<char, 4> buffer{};
  ASSERT_TRUE(file.ReadExactly(buffer.data(), buffer.size()));
  EXPECT_EQ(std::string(buffer.data(), 4), "0123");
  EXPECT_EQ(file.Position(), 4);
  ASSERT_TRUE(file.Seek(8));
  EXPECT_EQ(file.Read(buffer.data(), buffer.size()), 2U);
  EXPECT_EQ(file.Position(), 10);
  EXPECT_FALSE(file.ReadExactly(buffer.data(), 1));
}

TEST(File, NegativePositionsAreRefused) {
  const CTempFolder folder;
  WriteWholeFile(folder / "a", "0123");
  CFile file;
  ASSERT_TRUE(file.Open(folder / "a", EOpenMode::ReadShared));
  ASSERT_TRUE(file.Seek(2));
  EXPECT_FALSE(file.Seek(-1));
  EXPECT_EQ(file.Position(), 2);
}

TEST(File, TakesAnyUnicodeName) {
  const CTempFolder folder;
  CFile file;
  ASSERT_TRUE(file.Open(folder / kUnicodeName, EOpenMode::Replace));
  EXPECT_EQ(file.Write("abc", 3), 3U);
  file.Close();
  EXPECT_EQ(ReadWholeFile(folder / kUnicodeName), "abc");
}

TEST(File, TakesPathsAbove260Characters) {
  const CTempFolder folder;
  // Three names of 120 characters, each folder made through its parent.
  std::string path = folder.Path();
  for (const char* letter : {"a", "b", "c"}) {
    path = platform::JoinPath(path, std::string(120, *letter));
    std::error_code error;
    std::filesystem::create_directory(test::PathOf(path), error);
    ASSERT_FALSE(error) << error.message();
  }
  const std::string name = platform::JoinPath(path, "file.wav");
  CFile file;
  ASSERT_TRUE(file.Open(name, EOpenMode::Replace));
  EXPECT_EQ(file.Write("abc", 3), 3U);
  file.Close();
  EXPECT_TRUE(platform::IsReadable(name));
  EXPECT_EQ(platform::GetFileStatus(name).value().nSize, 3);
  EXPECT_TRUE(platform::RemoveFile(name));
  EXPECT_FALSE(platform::IsReadable(name));
}

TEST(File, SeeksAndMeasuresAbove4GiB) {
  const CTempFolder folder;
  constexpr std::int64_t kFar = 5'000'000'000;
  CFile file;
  ASSERT_TRUE(file.Open(folder / "sparse", EOpenMode::Replace));
  ASSERT_TRUE(file.Seek(kFar));
  EXPECT_EQ(file.Write("end", 3), 3U);
  EXPECT_EQ(file.Position(), kFar + 3);
  file.Close();

  ASSERT_TRUE(file.Open(folder / "sparse", EOpenMode::ReadShared));
  EXPECT_EQ(file.Length(), kFar + 3);
  std::array<char, 3> buffer{};
  ASSERT_TRUE(file.Seek(kFar));
  ASSERT_TRUE(file.ReadExactly(buffer.data(), 3));
  EXPECT_EQ(std::string(buffer.data(), 3), "end");
}

TEST(File, ReplaceEmptiesAnExistingFile) {
  const CTempFolder folder;
  WriteWholeFile(folder / "a", "old contents");
  CFile file;
  ASSERT_TRUE(file.Open(folder / "a", EOpenMode::Replace));
  EXPECT_EQ(file.Length(), 0);
  file.Close();
  EXPECT_EQ(ReadWholeFile(folder / "a"), "");
}

TEST(File, WhatWriteAcceptedIsInTheFileAtOnce) {
  const CTempFolder folder;
  CFile file;
  ASSERT_TRUE(file.Open(folder / "a", EOpenMode::Replace));
  ASSERT_EQ(file.Write("abc", 3), 3U);
  EXPECT_EQ(ReadWholeFile(folder / "a"), "abc");
}

TEST(File, TruncateCutsTheEndAndKeepsThePosition) {
  const CTempFolder folder;
  CFile file;
  ASSERT_TRUE(file.Open(folder / "a", EOpenMode::Replace));
  ASSERT_EQ(file.Write("0123456789", 10), 10U);
  ASSERT_TRUE(file.Seek(2));
  EXPECT_TRUE(file.Truncate(5));
  EXPECT_EQ(file.Position(), 2);
  EXPECT_EQ(file.Write("xy", 2), 2U);
  file.Close();
  EXPECT_EQ(ReadWholeFile(folder / "a"), "01xy4");
}

TEST(File, SharedReadersSeeAFileThatIsBeingWritten) {
  const CTempFolder folder;
  WriteWholeFile(folder / "a", "abc");
  CFile first;
  CFile second;
  ASSERT_TRUE(first.Open(folder / "a", EOpenMode::ReadShared));
  ASSERT_TRUE(second.Open(folder / "a", EOpenMode::ReadShared));
  CFile writer;
  EXPECT_TRUE(writer.Open(folder / "a", EOpenMode::Replace));
}

TEST(File, MissingFilesAndFoldersAreRefusedWithAReason) {
  const CTempFolder folder;
  CFile file;
  EXPECT_FALSE(file.Open(folder / "none", EOpenMode::ReadShared));
  EXPECT_NE(platform::LastError(), 0U);
  EXPECT_FALSE(file.Open(folder.Path(), EOpenMode::ReadShared));
  EXPECT_NE(platform::LastError(), 0U);
  EXPECT_FALSE(file.Open(folder.Path(), EOpenMode::Replace));
  EXPECT_FALSE(file.IsOpen());
}

TEST(File, AClosedFileRefusesEverything) {
  CFile file;
  char byte = 0;
  EXPECT_EQ(file.Read(&byte, 1), 0U);
  EXPECT_EQ(file.Write(&byte, 1), 0U);
  EXPECT_FALSE(file.Seek(0));
  EXPECT_FALSE(file.Truncate(0));
  EXPECT_EQ(file.Length(), -1);
  EXPECT_EQ(file.LogId(), 0U);
}

TEST(File, MovingHandsTheOpenFileOver) {
  const CTempFolder folder;
  CFile first;
  ASSERT_TRUE(first.Open(folder / "a", EOpenMode::Replace));
  ASSERT_EQ(first.Write("ab", 2), 2U);
  CFile second(std::move(first));
  EXPECT_EQ(second.Position(), 2);
  CFile third;
  ASSERT_TRUE(third.Open(folder / "b", EOpenMode::Replace));
  third = std::move(second);
  EXPECT_EQ(third.Write("c", 1), 1U);
  EXPECT_EQ(ReadWholeFile(folder / "a"), "abc");
}

}  // namespace
}  // namespace carvello
