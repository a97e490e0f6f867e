// Sets with XML metadata, found through their numbered names.
#include <cctype>
#include <filesystem>
#include <string>
#include <vector>

#include "input/input_fixture.h"
#include "input/lookup_cache.h"
#include "input/recording_set.h"
#include "support/platform.h"
#include "support/text.h"
#include "support/version.h"

namespace carvello::test {

namespace {

// Attributes of a recording of 1000 frames a second, 16 bit, begun on 21 November 2026 at 12:00:00 UTC.
constexpr const char* kFacts =
    "RadioCenterFreq=\"7100000\" SampleRate=\"1000\" BytesPerSecond=\"4000\" BitsPerSample=\"16\" "
    "UTCSeconds=\"1795262400\" XMLLevel=\"XMLLevel003\" ";

std::string Attributes(const std::string& firstFile, const std::string& more = {}) {
  return kFacts + more + "FirstFile=\"" + firstFile + "\"";
}

class NumberedSet : public InputTest {
 protected:
  // A member of a set that begins with `firstFile`. Sizes of members differ, so that every one is read.
  std::string WriteMember(const std::string& name, const std::string& firstFile, std::size_t dataBytes,
                          const std::string& more = {}) {
    return Write(name, PlainWave(dataBytes, XmlChunk(Attributes(firstFile, more))));
  }

  bool Analyse(const std::string& name) { return AnalyseRecordingSet(Path(name), m_set, m_log); }

  std::vector<std::string> Names() const {
    std::vector<std::string> names;
    for (const SRecordingFile& file : m_set.files) {
      EXPECT_EQ(file.strPath, Path(platform::NameOf(file.strPath)));
      names.push_back(platform::NameOf(file.strPath));
    }
    return names;
  }

  // The only line of the log that is an error.
  std::string Error() const {
    EXPECT_EQ(CountLines(m_log, "[ERROR]"), 1) << Joined(m_log);
    return m_log.IsEmpty() ? std::string() : m_log[m_log.Size() - 1];
  }

  bool FileSystemKnowsCase() {
    Write("case.tmp", "");
    const bool knows = !std::filesystem::exists(m_folder / "CASE.TMP");
    Remove("case.tmp");
    return knows;
  }

  CRecordingSet m_set;
  CMyStringArray m_log;
};

using Names = std::vector<std::string>;

}  // namespace

TEST_F(NumberedSet, IsDescribedAsOneRecording) {
  WriteMember("rec 000.wav", "rec 000.wav", 8000);
  WriteMember("rec 001.wav", "rec 000.wav", 8004, "RadioModel=\"second\" ");
  WriteMember("rec 002.wav", "rec 000.wav", 3996);
  ASSERT_TRUE(Analyse("rec 001.wav")) << Joined(m_log);
  EXPECT_EQ(Names(), (test::Names{"rec 000.wav", "rec 001.wav", "rec 002.wav"}));
  EXPECT_EQ(m_set.files[0].nDataBytes, 8000);
  EXPECT_EQ(m_set.files[1].nDataBytes, 8004);
  EXPECT_EQ(m_set.files[2].nDataBytes, 3996);
  EXPECT_EQ(m_set.files[1].tStart, 0u);
  EXPECT_EQ(m_set.TotalBytes(), 20'000);
  EXPECT_EQ(m_set.tStart, 1'795'262'400);
  EXPECT_EQ(m_set.tEnd, 1'795'262'405);
  EXPECT_DOUBLE_EQ(m_set.dDuration, 5.0);
  EXPECT_EQ(m_set.nRadioCenterFreq, 7'100'000);
  EXPECT_EQ(m_set.nSampleRate, 1000u);
  EXPECT_EQ(m_set.nBandwidth, 1000u);
  EXPECT_EQ(m_set.nBytesPerSecond, 4000u);
  EXPECT_EQ(m_set.nBitsPerSample, 16u);
  EXPECT_EQ(m_set.strSourceName, "Halvarn (V3)");
  EXPECT_FALSE(m_set.bFloat);
  EXPECT_FALSE(m_set.bRF64);
  EXPECT_FALSE(m_set.bFromSourceRecord);
  EXPECT_EQ(m_set.kind, MakeSampleKind(ENumber::Signed, 16));
  // The first file's, whichever was selected: outputs inherit from it.
  EXPECT_EQ(m_set.metadata.Find("RadioModel"), "");
  EXPECT_EQ(m_set.strMetadata.find("second"), std::string::npos);
  EXPECT_TRUE(m_log.IsEmpty()) << Joined(m_log);
}

TEST_F(NumberedSet, SelectingAnyMemberStartsAtTheFirstAndEndsAtTheFirstMissingNumber) {
  for (int i = 0; i <= 5; ++i) {
    WriteMember("rec 00" + std::to_string(i) + ".wav", "rec 000.wav", 4000 + 4 * static_cast<std::size_t>(i));
  }
  WriteMember("rec 007.wav", "rec 000.wav", 4000);
  ASSERT_TRUE(Analyse("rec 005.wav"));
  EXPECT_EQ(m_set.files.size(), 6u);
  EXPECT_EQ(Names().front(), "rec 000.wav");
  EXPECT_EQ(Names().back(), "rec 005.wav");
}

TEST_F(NumberedSet, AMissingNumberEndsTheSetEvenBeforeTheSelectedFile) {
  WriteMember("rec 000.wav", "rec 000.wav", 4000);
  const std::string selected = WriteMember("rec 002.wav", "rec 000.wav", 4004);
  ASSERT_TRUE(Analyse("rec 002.wav"));
  EXPECT_EQ(Names(), (test::Names{"rec 000.wav"}));
  EXPECT_TRUE(
      HasLine(m_log, "[WARNING] " + selected + ": not part of the set, which ends with " + Path("rec 000.wav")));
}

TEST_F(NumberedSet, TheSelectedFileStandsInForADeletedFirstFile) {
  WriteMember("rec 001.wav", "rec 000.wav", 4000, "UTCSeconds=\"1795262410\" ");
  WriteMember("rec 002.wav", "rec 000.wav", 4004);
  WriteMember("rec 003.wav", "rec 000.wav", 4008);
  ASSERT_TRUE(Analyse("rec 002.wav"));
  // Not 001 behind 002: the files would play out of order, one of them twice.
  EXPECT_EQ(Names(), (test::Names{"rec 002.wav", "rec 003.wav"}));
  EXPECT_EQ(m_set.tStart, 1'795'262'400);
  EXPECT_EQ(CountLines(m_log, "the selected file takes the place of the first one"), 1);
}

TEST_F(NumberedSet, ARenamedFirstFileIsFollowedByTheOthers) {
  WriteMember("renamed.wav", "rec 000.wav", 4000);
  WriteMember("rec 001.wav", "rec 000.wav", 4004);
  ASSERT_TRUE(Analyse("renamed.wav"));
  EXPECT_EQ(Names(), (test::Names{"renamed.wav", "rec 001.wav"}));
}

TEST_F(NumberedSet, AFirstFileThatIsNoRecordingIsReplacedToo) {
  Write("rec 000.wav", "");
  WriteMember("rec 001.wav", "rec 000.wav", 4000);
  ASSERT_TRUE(Analyse("rec 001.wav"));
  EXPECT_EQ(Names(), (test::Names{"rec 001.wav"}));
  EXPECT_TRUE(HasLine(m_log, "[WARNING] " + Path("rec 000.wav") +
                                 ": the file is empty; the selected file takes the place of the first one"));
}

TEST_F(NumberedSet, UpperCaseNamesAreFoundThroughUpperCaseNumbers) {
  WriteMember("REC 000.WAV", "REC 000.WAV", 4000);
  WriteMember("REC 001.WAV", "REC 000.WAV", 4004);
  WriteMember("REC 002.WAV", "REC 000.WAV", 4008);
  ASSERT_TRUE(Analyse("REC 001.WAV"));
  EXPECT_EQ(m_set.files.size(), 3u);
  EXPECT_EQ(m_set.TotalBytes(), 12'012);
}

TEST_F(NumberedSet, MembersOfAnUpperCaseSetMayHaveLowerCaseEndings) {
  WriteMember("REC 000.WAV", "REC 000.WAV", 4000);
  WriteMember("REC 001.wav", "REC 000.WAV", 4004);
  ASSERT_TRUE(Analyse("REC 000.WAV"));
  EXPECT_EQ(Names(), (test::Names{"REC 000.WAV", "REC 001.wav"}));
}

TEST_F(NumberedSet, ALowerCaseSetTakesNoFilesOfAnUpperCaseOne) {
  WriteMember("rec 000.wav", "rec 000.wav", 4000);
  WriteMember("rec 001.WAV", "rec 000.WAV", 4004);
  ASSERT_TRUE(Analyse("rec 000.wav"));
  // Where case does not matter there is only one name for both.
  EXPECT_EQ(m_set.files.size(), FileSystemKnowsCase() ? 1u : 2u);
}

TEST_F(NumberedSet, NumbersAbove999HaveFourDigits) {
  // Of equal size, so that only the first is read.
  for (int i = 0; i <= 1001; ++i) {
    std::string number = std::to_string(i);
    if (number.size() < 3) number.insert(0, 3 - number.size(), '0');
    WriteMember("rec " + number + ".wav", "rec 000.wav", 400);
  }
  ASSERT_TRUE(Analyse("rec 1001.wav"));
  EXPECT_EQ(m_set.files.size(), 1002u);
  EXPECT_EQ(Names().back(), "rec 1001.wav");
  EXPECT_EQ(m_set.TotalBytes(), 400'800);
}

TEST_F(NumberedSet, MembersOfEqualSizeAreNotReadTwice) {
  WriteMember("rec 000.wav", "rec 000.wav", 4000);
  WriteMember("rec 001.wav", "rec 000.wav", 4000);
  WriteMember("rec 002.wav", "rec 000.wav", 4000);
  WriteMember("rec 003.wav", "rec 000.wav", 2000);
  const std::uint64_t before = LookupCacheStatistics().nWalks;
  ASSERT_TRUE(Analyse("rec 000.wav"));
  EXPECT_EQ(LookupCacheStatistics().nWalks - before, 2u);
  EXPECT_EQ(m_set.TotalBytes(), 14'000);
}

TEST_F(NumberedSet, SelectingAnotherMemberOfASetAlreadySeenWalksNothing) {
  WriteMember("rec 000.wav", "rec 000.wav", 4000);
  WriteMember("rec 001.wav", "rec 000.wav", 4004);
  WriteMember("rec 002.wav", "rec 000.wav", 4008);
  ASSERT_TRUE(Analyse("rec 000.wav"));
  const std::uint64_t before = LookupCacheStatistics().nWalks;
  for (const char* name : {"rec 001.wav", "rec 002.wav", "rec 000.wav"}) {
    ASSERT_TRUE(Analyse(name));
    EXPECT_EQ(m_set.files.size(), 3u);
    EXPECT_EQ(m_set.tEnd, 1'795'262'403);
  }
  EXPECT_EQ(LookupCacheStatistics().nWalks, before);
}

// Members that are not read because of their size are known by the member before them.
TEST_F(NumberedSet, SelectingAMemberOfEqualSizeOfASetAlreadySeenWalksNothing) {
  for (const char* name : {"rec 000.wav", "rec 001.wav", "rec 002.wav"}) WriteMember(name, "rec 000.wav", 4000);
  WriteMember("rec 003.wav", "rec 000.wav", 8000);
  WriteMember("rec 004.wav", "rec 000.wav", 8000);
  ASSERT_TRUE(Analyse("rec 000.wav"));
  const std::uint64_t before = LookupCacheStatistics().nWalks;
  for (const char* name : {"rec 001.wav", "rec 002.wav", "rec 003.wav", "rec 004.wav", "rec 000.wav"}) {
    ASSERT_TRUE(Analyse(name)) << name;
    EXPECT_EQ(m_set.files.size(), 5u) << name;
    EXPECT_EQ(Names().front(), "rec 000.wav") << name;
    EXPECT_EQ(m_set.TotalBytes(), 28'000) << name;
    EXPECT_EQ(m_set.tEnd, 1'795'262'407) << name;
  }
  EXPECT_EQ(LookupCacheStatistics().nWalks, before);
  EXPECT_TRUE(m_log.IsEmpty()) << Joined(m_log);
}

TEST_F(NumberedSet, AMemberThatChangedSinceTheSetWasSeenIsRead) {
  for (const char* name : {"rec 000.wav", "rec 001.wav", "rec 002.wav"}) WriteMember(name, "rec 000.wav", 4000);
  ASSERT_TRUE(Analyse("rec 000.wav"));
  WriteMember("rec 002.wav", "rec 000.wav", 8000);
  const std::uint64_t before = LookupCacheStatistics().nWalks;
  ASSERT_TRUE(Analyse("rec 002.wav"));
  EXPECT_EQ(m_set.TotalBytes(), 16'000);
  EXPECT_EQ(LookupCacheStatistics().nWalks - before, 1u);
  const std::filesystem::path second = m_folder / "rec 001.wav";
  std::filesystem::last_write_time(second, std::filesystem::last_write_time(second) - std::chrono::hours(1));
  ASSERT_TRUE(Analyse("rec 001.wav"));
  EXPECT_EQ(m_set.files.size(), 3u);
  EXPECT_EQ(LookupCacheStatistics().nWalks - before, 2u);
}

TEST_F(NumberedSet, AMemberThatIsNewOrGoneSinceTheSetWasSeenCounts) {
  for (const char* name : {"rec 000.wav", "rec 001.wav", "rec 002.wav"}) WriteMember(name, "rec 000.wav", 4000);
  ASSERT_TRUE(Analyse("rec 000.wav"));
  WriteMember("rec 003.wav", "rec 000.wav", 4000);
  ASSERT_TRUE(Analyse("rec 001.wav"));
  EXPECT_EQ(m_set.files.size(), 4u);
  Remove("rec 002.wav");
  ASSERT_TRUE(Analyse("rec 001.wav"));
  EXPECT_EQ(m_set.files.size(), 2u);
  EXPECT_FALSE(Analyse("rec 002.wav"));
}

TEST_F(NumberedSet, AMemberThatStandsInForTheFirstFileOfASetAlreadySeenHasItsOwnTimes) {
  WriteMember("rec 000.wav", "rec 000.wav", 4000);
  // An attribute that comes twice would count once; this text is as long as the others, so the sizes are equal.
  Write("rec 001.wav", PlainWave(4000, XmlChunk(ReplaceAll(Attributes("rec 000.wav"), "1795262400", "1795262401"))));
  ASSERT_TRUE(Analyse("rec 000.wav"));
  ASSERT_EQ(m_set.files.size(), 2u);
  ASSERT_TRUE(Analyse("rec 001.wav"));
  EXPECT_EQ(m_set.tStart, 1'795'262'400);
  Remove("rec 000.wav");
  ASSERT_TRUE(Analyse("rec 001.wav"));
  EXPECT_EQ(m_set.tStart, 1'795'262'401);
}

TEST_F(NumberedSet, TheFractionOfTheEndIsKeptForShowing) {
  WriteMember("rec.wav", "rec.wav", 4000 + 4 * 250);
  ASSERT_TRUE(Analyse("rec.wav"));
  EXPECT_EQ(m_set.tEnd, 1'795'262'401);
  EXPECT_EQ(m_set.nEndMilliseconds, 250u);
}

TEST_F(NumberedSet, AMissingBitsPerSampleMeans16) {
  Write("rec.wav", PlainWave(4000, XmlChunk("SampleRate=\"1000\" BytesPerSecond=\"4000\" UTCSeconds=\"1\" "
                                            "RadioCenterFreq=\"5\" FirstFile=\"rec.wav\"")));
  ASSERT_TRUE(Analyse("rec.wav"));
  EXPECT_EQ(m_set.nBitsPerSample, 16u);
  EXPECT_TRUE(m_log.IsEmpty()) << Joined(m_log);
}

TEST_F(NumberedSet, AFirstNameWithoutANumberIsASetOfOneFile) {
  WriteMember("rec.wav", "rec.wav", 4000);
  WriteMember("rec 001.wav", "rec 000.wav", 4000);
  ASSERT_TRUE(Analyse("rec.wav"));
  EXPECT_EQ(Names(), (test::Names{"rec.wav"}));
}

TEST_F(NumberedSet, MetadataWithoutAFirstFileIsNoSet) {
  const std::string path = Write("rec.wav", PlainWave(4000, XmlChunk(kFacts)));
  EXPECT_FALSE(Analyse("rec.wav"));
  EXPECT_EQ(Error(), "[ERROR] " + path + ": the XML metadata names no first file (attribute FirstFile)");
}

TEST_F(NumberedSet, TheSourceNameComesFromTheXmlLevel) {
  const auto nameFor = [&](const std::string& level) {
    Write("rec.wav", PlainWave(4000, XmlChunk("FirstFile=\"rec.wav\" SampleRate=\"1000\"" + level)));
    m_set = {};
    EXPECT_TRUE(Analyse("rec.wav"));
    return m_set.strSourceName;
  };
  EXPECT_EQ(nameFor(" XMLLevel=\"XMLLevel002\""), "Halvarn (V2)");
  EXPECT_EQ(nameFor(" XMLLevel=\"XMLLevel003\" Other=\"\""), "Halvarn (V3)");
  EXPECT_EQ(nameFor(""), "Halvarn");
}

TEST_F(NumberedSet, AnEmptyRadioCenterFreqGivesWayToCenterFrequency) {
  Write("rec.wav", PlainWave(4000, XmlChunk("FirstFile=\"rec.wav\" SampleRate=\"1000\" RadioCenterFreq=\"\" "
                                            "CenterFrequency=\"10368000000\"")));
  ASSERT_TRUE(Analyse("rec.wav"));
  EXPECT_EQ(m_set.nRadioCenterFreq, 10'368'000'000);
}

TEST_F(NumberedSet, MissingNumbersComeFromTheFormatAndAreTold) {
  const std::string path = Write("rec.wav", PlainWave(8000, XmlChunk("FirstFile=\"rec.wav\"")));
  ASSERT_TRUE(Analyse("rec.wav"));
  EXPECT_EQ(m_set.nSampleRate, 1000u);
  EXPECT_EQ(m_set.nBytesPerSecond, 4000u);
  EXPECT_EQ(m_set.nRadioCenterFreq, 0);
  EXPECT_EQ(m_set.tStart, 0);
  EXPECT_EQ(m_set.tEnd, 2);
  EXPECT_TRUE(HasLine(m_log, "[WARNING] " + path + ": no usable SampleRate in the XML metadata, 1000 taken"));
  EXPECT_TRUE(HasLine(m_log, "[WARNING] " + path + ": no usable BytesPerSecond in the XML metadata, 4000 taken"));
  EXPECT_TRUE(HasLine(m_log, "[WARNING] " + path + ": no usable UTCSeconds in the XML metadata, 0 taken"));
  EXPECT_EQ(CountLines(m_log, "no centre frequency"), 1);
}

TEST_F(NumberedSet, NumbersThatCannotBeAreTreatedAsMissing) {
  Write("rec.wav", PlainWave(8000, XmlChunk("FirstFile=\"rec.wav\" SampleRate=\"-5\" BytesPerSecond=\"0\" "
                                            "UTCSeconds=\"x\" BitsPerSample=\"x\" "
                                            "RadioCenterFreq=\"1\" SizeInBytes=\"9999999\"")));
  ASSERT_TRUE(Analyse("rec.wav"));
  EXPECT_EQ(m_set.nSampleRate, 1000u);
  EXPECT_EQ(m_set.nBytesPerSecond, 4000u);
  EXPECT_EQ(m_set.tStart, 0);
  EXPECT_EQ(m_set.nBitsPerSample, 16u);
  EXPECT_EQ(m_set.TotalBytes(), 8000);
  EXPECT_EQ(CountLines(m_log, "SizeInBytes \"9999999\" cannot be"), 1);
}

TEST_F(NumberedSet, WhatContradictsTheFileIsWarnedOf) {
  const std::string path =
      Write("rec.wav", PlainWave(8000, XmlChunk("FirstFile=\"rec.wav\" SampleRate=\"+1000\" BytesPerSecond=\"8000\" "
                                                "UTCSeconds=\"+1\" RadioCenterFreq=\"7.05e6\" SizeInBytes=\"8004\"")));
  ASSERT_TRUE(Analyse("rec.wav"));
  EXPECT_EQ(m_set.nSampleRate, 1000u);
  EXPECT_EQ(m_set.tStart, 1);
  EXPECT_EQ(Joined(m_log), "[WARNING] " + path + ": BytesPerSecond is 8000, but the file's format says 4000\n" +
                               "[WARNING] " + path + ": RadioCenterFreq \"7.05e6\" is no whole number, 7 Hz taken\n" +
                               "[WARNING] " + path + ": SizeInBytes is 8004, but its data chunk holds 8000 bytes\n");
}

TEST_F(NumberedSet, MetadataThatIsCutShortIsCalledThat) {
  const std::string whole = XmlChunk("FirstFile=\"rec.wav\" SampleRate=\"1000\"").substr(8);
  for (const std::size_t length : {std::size_t{20}, whole.size() / 4 * 2, whole.size() - 10}) {
    const std::string path = Write("rec.wav", PlainWave(8000, Chunk("auxi", whole.substr(0, length))));
    m_log.Clear(0);
    EXPECT_FALSE(Analyse("rec.wav"));
    EXPECT_EQ(Error(), "[ERROR] " + path + ": the XML metadata is cut short") << length;
  }
}

TEST_F(NumberedSet, WhatIsWrongWithAMembersChunksIsWarnedOf) {
  const std::string xml = XmlChunk(Attributes("rec 000.wav"));
  const std::string first =
      Write("rec 000.wav", Riff(FormatChunk() + xml + ChunkHeader("data", 1'000'000) + std::string(4000, 'x')));
  const std::string second =
      Write("rec 001.wav", PlainWave(4004, xml + Chunk("rcvr", std::string((16u << 20) + 1, 'x'))));
  const std::string third = Write("rec 002.wav", ChunkHeader("RIFF", 0) + "WAVE" + FormatChunk() + xml +
                                                     ChunkHeader("data", 0xFFFFFFFF) + std::string(4008, 'x'));
  ASSERT_TRUE(Analyse("rec 000.wav"));
  EXPECT_EQ(Joined(m_log), "[WARNING] " + first +
                               ": chunk \"data\": Data size 1000000 exceeds the 4000 bytes that the file holds, the "
                               "samples end there\n[WARNING] " +
                               second +
                               ": chunk \"rcvr\": Size 16777217, at most 16777216 bytes and "
                               "67108864 in all are read, ignored\n[WARNING] " +
                               third +
                               ": chunk \"data\": Data size 4294967295 (0xFFFFFFFF) was "
                               "never made final, the samples are read to the file's end, 4008 bytes\n");
  EXPECT_EQ(m_set.TotalBytes(), 12'012);
}

TEST_F(NumberedSet, BitsThatNoSampleHasAreTreatedAsMissing) {
  for (const char* bits : {"-1", "4294967312", "65", "1e3x"}) {
    Write("rec.wav", PlainWave(8000, XmlChunk(Attributes("rec.wav", std::string("BitsPerSample=\"") + bits + "\" "))));
    ASSERT_TRUE(Analyse("rec.wav")) << bits;
    EXPECT_EQ(m_set.nBitsPerSample, 16u) << bits;
  }
}

TEST_F(NumberedSet, ARateOfZeroEverywhereIsAnError) {
  const std::string path =
      Write("rec.wav", Riff(FormatChunk({.nRate = 0}) + XmlChunk("FirstFile=\"rec.wav\"") + Chunk("data", "ABCD")));
  EXPECT_FALSE(Analyse("rec.wav"));
  EXPECT_EQ(Error(), "[ERROR] " + path +
                         ": no sample rate, neither in the XML metadata (attribute SampleRate) nor in the format");
}

TEST_F(NumberedSet, TheMetadataWinsOverTheFormatWithAWarning) {
  const std::string path = Write("rec.wav", PlainWave(8000, XmlChunk(Attributes("rec.wav", "A=\"\" "))));
  Write("rec.wav",
        Riff(FormatChunk({.nRate = 2000}) + XmlChunk(Attributes("rec.wav")) + Chunk("data", std::string(8000, 'x'))));
  ASSERT_TRUE(Analyse("rec.wav"));
  EXPECT_EQ(m_set.nSampleRate, 1000u);
  EXPECT_TRUE(HasLine(m_log, "[WARNING] " + path + ": SampleRate is 1000, but the file's format says 2000"));
}

TEST_F(NumberedSet, SizeInBytesIsTakenFromTheMetadata) {
  WriteMember("rec 000.wav", "rec 000.wav", 8000, "SizeInBytes=\"7996\" ");
  ASSERT_TRUE(Analyse("rec 000.wav"));
  EXPECT_EQ(m_set.files[0].nDataBytes, 7996);
}

TEST_F(NumberedSet, TextsOfTheMetadataCannotMoveATerminalsCursor) {
  const std::string path =
      Write("a.wav", PlainWave(4000, XmlChunk("SampleRate=\"1000\" FirstFile=\"a.wav\" SizeInBytes=\"-1&#27;[2J\"")));
  CRecordingSet set;
  CMyStringArray log;
  ASSERT_TRUE(AnalyseRecordingSet(path, set, log)) << Joined(log);
  EXPECT_TRUE(
      HasLine(log, "[WARNING] " + path + ": SizeInBytes \"-1\\x1B[2J\" cannot be, the size of its data chunk is taken"))
      << Joined(log);
}

TEST_F(NumberedSet, TotalsAreKeptAsMillionsAndARemainder) {
  for (int i = 0; i < 3; ++i) {
    const std::string name = "rec 00" + std::to_string(i) + ".wav";
    WriteMember(name, "rec 000.wav", 100, "SizeInBytes=\"1\" ");
  }
  CRecordingSet set;
  set.AddFile({"a", 1'700'000, 0});
  EXPECT_EQ(set.nTotalMillions, 1);
  EXPECT_EQ(set.nTotalRemainder, 700'000);
  set.AddFile({"b", 2'800'000, 0});
  EXPECT_EQ(set.nTotalMillions, 4);
  EXPECT_EQ(set.nTotalRemainder, 500'000);
  EXPECT_EQ(set.TotalBytes(), 4'500'000);
}

TEST_F(NumberedSet, TheLengthIsCutToWholeSeconds) {
  WriteMember("rec 000.wav", "rec 000.wav", 7996);
  ASSERT_TRUE(Analyse("rec 000.wav"));
  EXPECT_DOUBLE_EQ(m_set.dDuration, 1.999);
  EXPECT_EQ(m_set.tEnd, m_set.tStart + 1);
}

TEST_F(NumberedSet, AMemberThatIsNoRecordingEndsTheSet) {
  WriteMember("rec 000.wav", "rec 000.wav", 4000);
  const std::string text = Write("rec 001.wav", "Not a recording.");
  WriteMember("rec 002.wav", "rec 000.wav", 4004);
  ASSERT_TRUE(Analyse("rec 000.wav"));
  EXPECT_EQ(Names(), (test::Names{"rec 000.wav"}));
  EXPECT_TRUE(HasLine(m_log, "[WARNING] " + text + ": not a RIFF or RF64 file; the set ends before it"));
}

TEST_F(NumberedSet, AMemberThatIsAFolderEndsTheSet) {
  WriteMember("rec 000.wav", "rec 000.wav", 4000);
  MakeFolder("rec 001.wav");
  ASSERT_TRUE(Analyse("rec 000.wav"));
  EXPECT_EQ(Names(), (test::Names{"rec 000.wav"}));
  EXPECT_TRUE(HasLine(m_log, "[WARNING] " + Path("rec 001.wav") +
                                 ": this is a folder, a recording file is needed; the set ends before it"));
}

TEST_F(NumberedSet, AMemberOfAnotherFormatEndsTheSet) {
  WriteMember("rec 000.wav", "rec 000.wav", 4000);
  Write("rec 001.wav", Riff(FormatChunk({.nTag = 3, .nBits = 32}) + XmlChunk(Attributes("rec 000.wav")) +
                            Chunk("data", std::string(400, 'x'))));
  ASSERT_TRUE(Analyse("rec 000.wav"));
  EXPECT_EQ(Names(), (test::Names{"rec 000.wav"}));
  EXPECT_EQ(CountLines(m_log, "its sample format differs"), 1);
}

TEST_F(NumberedSet, AFirstFileWithAFolderInItsNameIsLookedForBesideTheSelectedFile) {
  WriteMember("rec 000.wav", "D:\\IQ\\rec 000.wav", 4000);
  WriteMember("rec 001.wav", "../IQ/rec 000.wav", 4004);
  for (const char* selected : {"rec 000.wav", "rec 001.wav"}) {
    ASSERT_TRUE(Analyse(selected));
    EXPECT_EQ(Names(), (test::Names{"rec 000.wav", "rec 001.wav"}));
  }
}

TEST_F(NumberedSet, MembersAreFoundInAFolderWithAUnicodeName) {
  const std::string folder = "\xD0\x97\xD0\xB0\xD0\xBF\xD0\xB8\xD1\x81\xD1\x8C \xF0\x9F\x93\xA1";
  MakeFolder(folder);
  WriteMember(folder + "/\xC3\xA9t\xC3\xA9 000.wav", "\xC3\xA9t\xC3\xA9 000.wav", 4000);
  const std::string utf16Name = Utf16("FirstFile=\"") + "\xE9" + Le16(0).substr(1) + Utf16("t") + "\xE9" +
                                Le16(0).substr(1) + Utf16(" 000.wav\"");
  const std::string xml = Utf16("<?xml version=\"1.0\"?><SDR-XML-Root><Definition SampleRate=\"1000\" ") + utf16Name +
                          Utf16("/></SDR-XML-Root>") + Le16(0);
  for (const char* number : {"000", "001"}) {
    const std::string bytes(number[2] == '0' ? 4000 : 4004, 'x');
    Write(folder + "/\xC3\xA9t\xC3\xA9 " + number + ".wav",
          Riff(FormatChunk() + Chunk("auxi", xml) + Chunk("data", bytes)));
  }
  ASSERT_TRUE(Analyse(folder + "/\xC3\xA9t\xC3\xA9 001.wav")) << Joined(m_log);
  EXPECT_EQ(m_set.files.size(), 2u);
  EXPECT_EQ(m_set.TotalBytes(), 8004);
}

TEST_F(NumberedSet, FloatSamplesOfOurOwnStandAt16BitFullScale) {
  const auto scaleFor = [&](const std::string& softwareName, const SFormatBytes& format) {
    Write("rec.wav", Riff(FormatChunk(format) +
                          XmlChunk("SampleRate=\"1000\" FirstFile=\"rec.wav\" SoftwareName=\"" + softwareName + "\"") +
                          Chunk("data", std::string(800 + 8 * softwareName.size(), 'x'))));
    CMyStringArray log;
    EXPECT_TRUE(AnalyseRecordingSet(Path("rec.wav"), m_set, log));
    EXPECT_EQ(m_set.bFloat, format.nTag == 3);
    return m_set.bFloat && m_set.kind.dFullScale == 32'768;
  };
  const std::string own = VersionValue("ProductName");
  ASSERT_NE(own, "");
  EXPECT_TRUE(scaleFor(own, {.nTag = 3, .nBits = 32}));
  EXPECT_FALSE(scaleFor("Another program", {.nTag = 3, .nBits = 32}));
  EXPECT_FALSE(scaleFor(own + "!", {.nTag = 3, .nBits = 32}));
  EXPECT_FALSE(scaleFor(own, {.nTag = 1, .nBits = 32}));
}

TEST_F(NumberedSet, AnRf64FileIsDescribed) {
  const std::string chunks =
      FormatChunk() + XmlChunk(Attributes("rec.wav")) + ChunkHeader("data", 0xFFFFFFFF) + std::string(4000, 'x');
  Write("rec.wav", Rf64(36 + chunks.size() + 4, 4000, chunks));
  ASSERT_TRUE(Analyse("rec.wav"));
  EXPECT_TRUE(m_set.bRF64);
  EXPECT_EQ(m_set.TotalBytes(), 4000);
}

TEST_F(NumberedSet, ARecordingStillGrowingIsDescribedAsItIsNow) {
  const std::string head = ChunkHeader("RIFF", 0) + "WAVE" + FormatChunk() + XmlChunk(Attributes("rec.wav")) +
                           ChunkHeader("data", 0xFFFFFFFF);
  Write("rec.wav", head + std::string(4000, 'x'));
  ASSERT_TRUE(Analyse("rec.wav"));
  EXPECT_EQ(m_set.tEnd - m_set.tStart, 1);
  Append("rec.wav", std::string(8000, 'x'));
  ASSERT_TRUE(Analyse("rec.wav"));
  EXPECT_EQ(m_set.tEnd - m_set.tStart, 3);
}

TEST_F(NumberedSet, ARecordingCutShortHasItsTrueLength) {
  Write("rec.wav", Riff(FormatChunk() + XmlChunk(Attributes("rec.wav")) + ChunkHeader("data", 400'000'000) +
                        std::string(8000, 'x')));
  ASSERT_TRUE(Analyse("rec.wav"));
  EXPECT_EQ(m_set.TotalBytes(), 8000);
  EXPECT_EQ(m_set.tEnd - m_set.tStart, 2);
}

TEST_F(NumberedSet, FilesThatAreNoRecordingAreNamedWithTheReason) {
  MakeFolder("folder.wav");
  EXPECT_FALSE(Analyse("folder.wav"));
  EXPECT_EQ(Error(), "[ERROR] " + Path("folder.wav") + ": this is a folder, a recording file is needed");
  m_log.Clear(1);
  Write("empty.wav", "");
  EXPECT_FALSE(Analyse("empty.wav"));
  EXPECT_EQ(Error(), "[ERROR] " + Path("empty.wav") + ": the file is empty");
  m_log.Clear(1);
  Write("text.wav", "Not a recording, but long enough for every header.");
  EXPECT_FALSE(Analyse("text.wav"));
  EXPECT_EQ(Error(), "[ERROR] " + Path("text.wav") + ": not a RIFF or RF64 file");
  m_log.Clear(1);
  EXPECT_FALSE(Analyse("missing.wav"));
  EXPECT_EQ(Error().find("[ERROR] " + Path("missing.wav") + ": "), 0u);
  EXPECT_GT(Error().size(), ("[ERROR] " + Path("missing.wav") + ": ").size());
}

TEST_F(NumberedSet, ALoopOfSymbolicLinksIsNamedWithTheReason) {
  // Where links may not be made the file is simply missing, which has a reason too.
  std::error_code ignored;
  std::filesystem::create_symlink(m_folder / "b.wav", m_folder / "a.wav", ignored);
  std::filesystem::create_symlink(m_folder / "a.wav", m_folder / "b.wav", ignored);
  EXPECT_FALSE(Analyse("a.wav"));
  EXPECT_EQ(Error().find("[ERROR] " + Path("a.wav") + ": "), 0u);
}

}  // namespace carvello::test
