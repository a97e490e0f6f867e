// Files that belong to nobody, beside the members of a set: each is told of, and none keeps the set from being found.
#include <filesystem>
#include <string>
#include <vector>

#include "input/foreign_recordings.h"
#include "input/input_fixture.h"
#include "input/recording_set.h"
#include "support/platform.h"

namespace carvello::test {

namespace {

class Neighbours : public InputTest {
 protected:
  Neighbours() {
    Write("a.wav", Member({.stop = {.nMinute = 1}}));
    Write("c.wav", Member({.start = {.nMinute = 1}, .stop = {.nMinute = 2}}));
  }

  static std::string Member(const SAuxi& auxi) { return SecondsOfWave(60, Chunk("auxi", AuxiBody(164, auxi))); }

  // Both members are found from both, and this is all there is to say.
  void ExpectSetAndLines(const std::vector<std::string>& lines) {
    for (const char* selected : {"a.wav", "c.wav"}) {
      CRecordingSet set;
      CMyStringArray log;
      ASSERT_TRUE(AnalyseRecordingSet(Path(selected), set, log)) << Joined(log);
      ASSERT_EQ(set.files.size(), 2u);
      EXPECT_EQ(set.files[0].strPath, Path("a.wav"));
      EXPECT_EQ(set.files[1].strPath, Path("c.wav"));
      EXPECT_EQ(log.Size(), lines.size()) << Joined(log);
      for (const std::string& line : lines) EXPECT_TRUE(HasLine(log, line)) << line << "\n" << Joined(log);
    }
  }
  void ExpectSetAndReason(const std::string& name, const std::string& reason) {
    ExpectSetAndLines({"[WARNING] " + Path(name) + ": " + reason + "; left out of the set"});
  }
};

}  // namespace

TEST_F(Neighbours, AnEmptyFile) {
  Write("b.wav", "");
  ExpectSetAndReason("b.wav", "the file is empty");
}

TEST_F(Neighbours, ATextFileNamedWav) {
  Write("b.WAV", "Not a recording.");
  ExpectSetAndReason("b.WAV", "not a RIFF or RF64 file");
}

TEST_F(Neighbours, AFolderNamedWav) {
  MakeFolder("b.wav");
  ExpectSetAndReason("b.wav", "this is a folder, a recording file is needed");
}

TEST_F(Neighbours, AFileThatEndsInItsHeader) {
  Write("b.wav", PlainWave(8).substr(0, 30));
  ExpectSetAndReason("b.wav", "chunk \"fmt \": Failed to read wave format descriptor from the file");
}

TEST_F(Neighbours, AnAuxiChunkOf100Bytes) {
  Write("b.wav", SecondsOfWave(60, Chunk("auxi", std::string(100, 'x'))));
  ExpectSetAndReason("b.wav", "its auxi chunk of 100 bytes is of no known program");
}

TEST_F(Neighbours, AMonoFile) {
  Write("b.wav", Riff(Chunk("fmt ", ExtensibleBody({.nChannels = 1}, 1)) + Chunk("data", std::string(8000, 'x'))));
  ExpectSetAndReason("b.wav", "1 channel, a recording needs two, I and Q");
}

TEST_F(Neighbours, AFileWithAnImpossibleDate) {
  Write("b.wav", Member({.start = {.nMonth = 13}, .stop = {.nMinute = 2}}));
  ExpectSetAndReason("b.wav", "start time 2023-13-15 12:00:00 cannot be");
}

TEST_F(Neighbours, ANameWithAnImpossibleDate) {
  Write("sdrsharp_20230230_120000z_7050000hz_iq.wav", SecondsOfWave(60));
  ExpectSetAndReason("sdrsharp_20230230_120000z_7050000hz_iq.wav",
                     "start time in the file's name 2023-02-30 12:00:00 is a day that does not exist: invalid argument "
                     "(error 80070057)");
}

// Nobody takes these for recordings, or they are recordings that belong to other sets.
TEST_F(Neighbours, FilesWithOtherNamesAndRecordingsOfOtherSetsAreNotWorthALine) {
  Write("notes.txt", "Not a recording.");
  Write("lock", "");
  MakeFolder("folder");
  Write("xml.wav", SecondsOfWave(60, XmlChunk("FirstFile=\"xml.wav\"")));
  Write("perseus.wav", SecondsOfWave(60, Chunk("rcvr", RcvrBody(7'050'000, 0, 1))));
  Write("frequency.wav", Member({.start = {.nMinute = 1}, .stop = {.nMinute = 2}, .nCentreFrequency = 1}));
  ExpectSetAndLines({});
}

TEST_F(Neighbours, ALoopOfSymbolicLinks) {
  std::error_code failed;
  std::filesystem::create_symlink(m_folder / "b.wav", m_folder / "loop.wav", failed);
  std::filesystem::create_symlink(m_folder / "loop.wav", m_folder / "b.wav", failed);
  if (failed) {  // where links may not be made there is nothing in the way
    ExpectSetAndLines({});
    return;
  }
  CRecordingSet set;
  CMyStringArray log;
  ASSERT_TRUE(AnalyseRecordingSet(Path("a.wav"), set, log));
  EXPECT_EQ(set.files.size(), 2u);
  EXPECT_EQ(CountLines(log, Path("b.wav") + ": "), 1);
  EXPECT_EQ(CountLines(log, Path("loop.wav") + ": "), 1);
  EXPECT_EQ(CountLines(log, "[WARNING]"), 2);
}

TEST_F(Neighbours, AnAuxiChunkOf100BytesOfTheSelectedFileIsToldOfToo) {
  const std::string path = Write("rec_7050khz.wav", SecondsOfWave(60, Chunk("auxi", std::string(100, 'x'))));
  CRecordingSet set;
  CMyStringArray log;
  ASSERT_TRUE(AnalyseRecordingSet(path, set, log)) << Joined(log);
  EXPECT_EQ(set.strSourceName, "UnknownFmt");
  EXPECT_EQ(set.nRadioCenterFreq, 7'050'000);
  EXPECT_TRUE(HasLine(log, "[WARNING] " + path + ": its auxi chunk of 100 bytes is of no known program"))
      << Joined(log);
}

}  // namespace carvello::test
