// Names that only POSIX file systems allow.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <string>

#include "input/input_fixture.h"
#include "input/recording_set.h"
#include "input/wave_file_reader.h"

namespace carvello::test {
namespace {

class PosixNames : public InputTest {
 protected:
  void ExpectSetOfTwo(const std::string& toldFirstName) {
    for (int number = 0; number < 2; ++number) {
      Write("at 12:00:00 00" + std::to_string(number) + ".wav",
            PlainWave(4000, XmlChunk("SampleRate=\"1000\" FirstFile=\"" + toldFirstName + "\"")));
    }
    for (const char* selected : {"at 12:00:00 000.wav", "at 12:00:00 001.wav"}) {
      CRecordingSet set;
      CMyStringArray log;
      ASSERT_TRUE(AnalyseRecordingSet(Path(selected), set, log)) << Joined(log);
      ASSERT_EQ(set.files.size(), 2u) << toldFirstName;
      EXPECT_EQ(set.files[0].strPath, Path("at 12:00:00 000.wav"));
      EXPECT_EQ(set.files[1].strPath, Path("at 12:00:00 001.wav"));
    }
  }
};

TEST_F(PosixNames, ASetWithAColonInItsNameIsFoundByItsWholeName) {
  ExpectSetOfTwo("at 12:00:00 000.wav");
}

TEST_F(PosixNames, ASetWithAColonInItsNameIsFoundByWhatStandsBehindIt) {
  ExpectSetOfTwo("00 000.wav");
}

TEST_F(PosixNames, APipeIsNamedAsOneAndNotWaitedFor) {
  ASSERT_EQ(mkfifo(Path("pipe.wav").c_str(), 0600), 0);
  CRecordingSet set;
  CMyStringArray log;
  EXPECT_FALSE(AnalyseRecordingSet(Path("pipe.wav"), set, log));
  EXPECT_EQ(Joined(log),
            "[ERROR] " + Path("pipe.wav") + ": this is a pipe, socket or device, a recording file is needed\n");
}

TEST_F(PosixNames, AMemberThatIsALoopOfLinksIsAnErrorAndNotTheEndOfTheSet) {
  Write("rec 000.wav", PlainWave(4000, XmlChunk("SampleRate=\"1000\" FirstFile=\"rec 000.wav\"")));
  std::filesystem::create_symlink("rec 001.wav", m_folder / "rec 001.wav");
  CRecordingSet set;
  CMyStringArray log;
  EXPECT_FALSE(AnalyseRecordingSet(Path("rec 000.wav"), set, log));
  EXPECT_TRUE(set.bReadFailed);
  EXPECT_EQ(log[log.Size() - 1], "[ERROR] " + Path("rec 001.wav") + ": Too many levels of symbolic links");
}

TEST_F(PosixNames, AFirstFileThatIsALoopOfLinksIsAnErrorAndNotReplaced) {
  std::filesystem::create_symlink("rec 000.wav", m_folder / "rec 000.wav");
  Write("rec 001.wav", PlainWave(4000, XmlChunk("SampleRate=\"1000\" FirstFile=\"rec 000.wav\"")));
  CRecordingSet set;
  CMyStringArray log;
  EXPECT_FALSE(AnalyseRecordingSet(Path("rec 001.wav"), set, log));
  EXPECT_EQ(log[log.Size() - 1], "[ERROR] " + Path("rec 000.wav") + ": Too many levels of symbolic links");
}

TEST_F(PosixNames, AFirstFileOfANameThatNoFileCanHaveIsMissing) {
  const std::string name(300, 'n');
  Write("rec 001.wav", PlainWave(4000, XmlChunk("SampleRate=\"1000\" FirstFile=\"" + name + " 000.wav\"")));
  CRecordingSet set;
  CMyStringArray log;
  ASSERT_TRUE(AnalyseRecordingSet(Path("rec 001.wav"), set, log)) << Joined(log);
  EXPECT_EQ(CountLines(log, "the selected file takes the place of the first one"), 1);
}

TEST_F(PosixNames, ANeighbourThatCannotBeReadIsAnErrorWhenItIsNamedLikeTheSet) {
  Write("radio_0405.wav", PlainWave(4000));
  std::filesystem::create_symlink("Radio_17.WAV", m_folder / "Radio_17.WAV");
  CRecordingSet set;
  CMyStringArray log;
  EXPECT_FALSE(AnalyseRecordingSet(Path("radio_0405.wav"), set, log));
  EXPECT_TRUE(set.bReadFailed);
  EXPECT_EQ(log[log.Size() - 1],
            "[ERROR] " + Path("Radio_17.WAV") + ": Too many levels of symbolic links; it could belong to the set");
}

TEST_F(PosixNames, AnInfoTextThatIsNoUtf8IsReadAsWindows1252) {
  const std::string path = Write("a.wav", PlainWave(8, Chunk("LIST", "INFO" + InfoText("INAM", "J\xF6rg \x80\x81") +
                                                                         InfoText("IART", "J\xC3\xB6rg"))));
  SInfoTexts texts;
  ASSERT_TRUE(ReadInfoTexts(path, texts));
  EXPECT_EQ(texts.strINAM, "J\xC3\xB6rg \xE2\x82\xAC\xEF\xBF\xBD");
  EXPECT_EQ(texts.strIART, "J\xC3\xB6rg");
}

TEST_F(PosixNames, ANeighboursNameCannotMoveATerminalsCursor) {
  Write("a.wav", PlainWave(4000));
  Write("b\x1B[2J\n.wav", "");
  CRecordingSet set;
  CMyStringArray log;
  ASSERT_TRUE(AnalyseRecordingSet(Path("a.wav"), set, log));
  EXPECT_EQ(Joined(log), "[WARNING] " + Path("b\\x1B[2J\\n.wav") + ": the file is empty; left out of the set\n");
}

}  // namespace
}  // namespace carvello::test
