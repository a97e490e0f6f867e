// Names that only POSIX file systems allow.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <string>

#include "input/input_fixture.h"
#include "input/recording_set.h"

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

TEST_F(PosixNames, AMemberThatIsALoopOfLinksEndsTheSetWithALine) {
  Write("rec 000.wav", PlainWave(4000, XmlChunk("SampleRate=\"1000\" FirstFile=\"rec 000.wav\"")));
  std::filesystem::create_symlink("rec 001.wav", m_folder / "rec 001.wav");
  CRecordingSet set;
  CMyStringArray log;
  ASSERT_TRUE(AnalyseRecordingSet(Path("rec 000.wav"), set, log));
  EXPECT_EQ(set.files.size(), 1u);
  EXPECT_EQ(CountLines(log, "[WARNING] " + Path("rec 001.wav") + ": "), 1) << Joined(log);
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
