// Archives laid out by hand, byte by byte.
#include "input/tar_walk.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "input/hand_made_tar.h"
#include "support/temp_folder.h"

namespace carvello::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class TarWalk : public testing::Test {
 protected:
  bool Walk(const std::string& bytes) {
    WriteWholeFile(m_folder / "a.tar", bytes);
    CFile file;
    EXPECT_TRUE(file.Open(m_folder / "a.tar", platform::EOpenMode::ReadShared));
    return WalkTar(file, m_entries, m_strError);
  }
  // "name@offset+bytes" of all entries.
  std::vector<std::string> Found(const std::string& bytes) {
    EXPECT_TRUE(Walk(bytes)) << m_strError;
    std::vector<std::string> found;
    for (const STarEntry& each : m_entries) {
      found.push_back(each.strName + "@" + std::to_string(each.nOffset) + "+" + std::to_string(each.nBytes));
    }
    return found;
  }
  std::string Refusal(const std::string& bytes) {
    EXPECT_FALSE(Walk(bytes));
    return m_strError;
  }

  CTempFolder m_folder;
  std::vector<STarEntry> m_entries;
  std::string m_strError;
};

const std::string kEnd(1024, '\0');

TEST_F(TarWalk, FilesOfOddSizesStandBehindFullBlocks) {
  EXPECT_THAT(Found(TarFile("a", "") + TarFile("b", "x") + TarFile("c", std::string(512, 'y')) +
                    TarFile("d", std::string(513, 'z')) + TarFile("e", "1") + kEnd),
              ElementsAre("a@512+0", "b@1024+1", "c@2048+512", "d@3072+513", "e@4608+1"));
}

TEST_F(TarWalk, OtherKindsOfEntriesArePassedOver) {
  EXPECT_THAT(Found(TarFile("dir/", "", {.type = '5'}) + TarFile("link", "", {.type = '2'}) +
                    TarFile("old", "12", {.type = '\0'}) + TarFile("dir/f", "1") + kEnd),
              ElementsAre("old@1536+2", "dir/f@2560+1"));
}

TEST_F(TarWalk, EndsAtABlockOfZerosOrAtTheFilesEnd) {
  EXPECT_THAT(Found(TarFile("a", "1")), ElementsAre("a@512+1"));
  EXPECT_THAT(Found(TarFile("a", "1") + std::string(512, '\0') + TarFile("b", "1")), ElementsAre("a@512+1"));
  EXPECT_THAT(Found(TarFile("a", "1") + std::string(100, 'x')), ElementsAre("a@512+1"));
}

TEST_F(TarWalk, FolderOfALongNameStandsInItsPrefix) {
  EXPECT_THAT(Found(TarFile("f", "1", {.prefix = std::string(155, 'p')}) + kEnd),
              ElementsAre(std::string(155, 'p') + "/f@512+1"));
  // Before POSIX that place was used for other things.
  EXPECT_THAT(Found(TarFile("f", "1", {.prefix = "junk", .magic = std::string("ustar  \0", 8)}) + kEnd),
              ElementsAre("f@512+1"));
  EXPECT_THAT(Found(TarFile(std::string(100, 'n'), "1") + kEnd), ElementsAre(std::string(100, 'n') + "@512+1"));
}

TEST_F(TarWalk, SizesMayBeBytesInsteadOfDigits) {
  const std::string size = std::string("\x80", 1) + std::string(10, '\0') + "\x03";
  EXPECT_THAT(Found(TarFile("a", "123", {.size = size}) + TarFile("b", "4") + kEnd),
              ElementsAre("a@512+3", "b@1536+1"));
  // 2^40: more than there is.
  const std::string huge = std::string("\x80", 1) + std::string(5, '\0') + "\x01" + std::string(5, '\0');
  EXPECT_THAT(Found(TarFile("a", "123", {.size = huge})), ElementsAre("a@512+512"));
}

TEST_F(TarWalk, SizesThatCannotBeAreDamage) {
  for (const std::string& size : {std::string(12, '\xFF'), std::string("\x80\x7F") + std::string(10, '\xFF'),
                                  std::string("0000000008\0", 11), std::string("-0000000001"), std::string("size")}) {
    EXPECT_THAT(Refusal(TarFile("a", "123", {.size = size})), HasSubstr("no tar archive"));
    EXPECT_THAT(Refusal(TarFile("a", "1") + TarFile("b", "123", {.size = size})), HasSubstr("damaged at byte 1024"));
  }
}

TEST_F(TarWalk, PaxHeadersTellNamesAndSizesOfTheNextFileOnly) {
  EXPECT_THAT(Found(TarFile("x", "18 path=dir/n\xC3\xA4me\n12 mtime=12\n10 size=3\n", {.type = 'x'}) +
                    TarFile("short", "123", {.size = "00000000000"}) + TarFile("next", "12") + kEnd),
              ElementsAre("dir/n\xC3\xA4me@1536+3", "next@2560+2"));
}

TEST_F(TarWalk, PaxHeadersForAllGiveWayToThoseOfAFile) {
  EXPECT_THAT(Found(TarFile("g", "13 path=all1\n", {.type = 'g'}) + TarFile("a", "1") +
                    TarFile("x", "13 path=own1\n", {.type = 'x'}) + TarFile("b", "1") + kEnd),
              ElementsAre("all1@1536+1", "own1@3584+1"));
}

TEST_F(TarWalk, PaxLinesThatAreNoneEndTheHeader) {
  for (const char* text : {"path=x\n", "0 path=x\n", "5\n", "99 path=x\n", "999999999999 path=x\n", "3 \n",
                           "11 size=-1\n", "12 size=99x\n", "29 size=99999999999999999999\n", "8 size=\n"}) {
    EXPECT_THAT(Found(TarFile("x", text, {.type = 'x'}) + TarFile("a", "1") + kEnd), ElementsAre("a@1536+1")) << text;
  }
}

TEST_F(TarWalk, LongNamesOfOtherProgramsStandInAFileOfTheirOwn) {
  const std::string name = std::string(300, 'l') + ".sigmf-meta";
  EXPECT_THAT(
      Found(TarFile("././@LongLink", name + '\0', {.type = 'L'}) + TarFile("cut", "1") + TarFile("b", "") + kEnd),
      ElementsAre(name + "@1536+1", "b@2560+0"));
}

TEST_F(TarWalk, TruncatedArchiveHasTheBytesThatAreThere) {
  const std::string whole = TarFile("a", "1") + TarFile("b", std::string(2000, 'y')) + kEnd;
  EXPECT_THAT(Found(whole.substr(0, 1536 + 700)), ElementsAre("a@512+1", "b@1536+700"));
  EXPECT_THAT(Found(whole.substr(0, 1536)), ElementsAre("a@512+1", "b@1536+0"));
  EXPECT_THAT(Found(whole.substr(0, 1535)), ElementsAre("a@512+1"));
  EXPECT_THAT(Refusal(TarFile("x", "13 path=own1\n", {.type = 'x'}).substr(0, 600)), HasSubstr("no files"));
}

TEST_F(TarWalk, NamesThatLeadOutAreOnlyNames) {
  EXPECT_THAT(Found(TarFile("../../a", "1") + TarFile("/etc/b", "1") + kEnd),
              ElementsAre("../../a@512+1", "/etc/b@1536+1"));
}

TEST_F(TarWalk, WhatIsNoArchiveIsRefused) {
  EXPECT_THAT(Refusal(""), HasSubstr("empty"));
  EXPECT_THAT(Refusal(std::string(511, 'x')), HasSubstr("no files"));
  EXPECT_THAT(Refusal(std::string(2000, 'x')), HasSubstr("not compressed"));
  EXPECT_THAT(Refusal(kEnd), HasSubstr("no files"));
  std::string flipped = TarFile("a", "1");
  flipped[0] = 'b';  // the sum is that of another name
  EXPECT_THAT(Refusal(flipped), HasSubstr("no tar archive"));
}

}  // namespace
}  // namespace carvello::test
