// Which files an entry would write, and which are there already.
#include "engine/output_files.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "engine/engine_fixture.h"

namespace carvello::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class OutputFilesTest : public EngineTest {
 protected:
  OutputEntry Split() const {
    OutputEntry entry = MakeEntry("a, f=7 kHz.wav", 0, 0);
    entry.nFileSizeMB = 100;
    return entry;
  }
};

TEST_F(OutputFilesTest, NothingThereMeansNothingFound) {
  EXPECT_THAT(COutputFolders().ExistingOutputFiles(Split()), IsEmpty());
  EXPECT_THAT(COutputFolders().ExistingOutputFiles(MakeEntry("a.wav", 0, 0)), IsEmpty());
}

TEST_F(OutputFilesTest, SplitOutputIsFoundByAnyOfItsParts) {
  WriteNumbered("a, f=7 kHz 003.wav", 0, 1);
  WriteNumbered("a, f=7 kHz 1000.wav", 0, 1);
  for (const char* other :
       {"a, f=7 kHz 03.wav", "a, f=7 kHz 0x3.wav", "a, f=7 kHz 0003.wav", "a, f=7 kHz 00000000.wav",
        "a, f=7 kHz_003.wav", "ba, f=7 kHz 003.wav", "a, f=7 kHz 003.wave", "a, f=7 kHz (2) 003.wav"}) {
    WriteNumbered(other, 0, 1);
  }
  EXPECT_THAT(COutputFolders().ExistingOutputFiles(Split()),
              ElementsAre(Path("a, f=7 kHz 003.wav"), Path("a, f=7 kHz 1000.wav")));
}

TEST_F(OutputFilesTest, SplitOutputIsAlsoFoundByItsUnnumberedName) {
  WriteNumbered("a, f=7 kHz.wav", 0, 1);
  EXPECT_THAT(COutputFolders().ExistingOutputFiles(Split()), ElementsAre(Path("a, f=7 kHz.wav")));
  EXPECT_THAT(COutputFolders().ExistingParts(Split()), IsEmpty());
}

TEST_F(OutputFilesTest, SingleFileOutputIgnoresNumberedNeighbours) {
  WriteNumbered("a 000.wav", 0, 1);
  EXPECT_THAT(COutputFolders().ExistingOutputFiles(MakeEntry("a.wav", 0, 0)), IsEmpty());
}

TEST_F(OutputFilesTest, PartOfASplitOutputMayNotReplaceAnInputFile) {
  const std::string input = Path("a, f=7 kHz 000.wav");
  EXPECT_THAT(COutputFolders().InputFilesReplaced(Split(), {Path("other.wav"), input}), ElementsAre(input))
      << "by name alone";
}

TEST_F(OutputFilesTest, InputFileIsKnownUnderAnotherWayToWriteItsPath) {
  WriteNumbered("in.wav", 0, 1);
  OutputEntry entry = MakeEntry("in.wav", 0, 0);
  const std::string roundabout = (m_folder / "." / "in.wav").string();
  EXPECT_THAT(COutputFolders().InputFilesReplaced(entry, {roundabout}), ElementsAre(roundabout));
}

TEST_F(OutputFilesTest, InputFileIsKnownUnderAnotherNameOfTheSameFile) {
  const std::string input = WriteNumbered("in.wav", 0, 1);
  std::filesystem::create_hard_link(m_folder / "in.wav", m_folder / "out.wav");
  EXPECT_THAT(COutputFolders().InputFilesReplaced(MakeEntry("out.wav", 0, 0), {input}), ElementsAre(input));
}

TEST_F(OutputFilesTest, SameNameInAnotherFolderIsNoReplacement) {
  WriteNumbered("in.wav", 0, 1);
  std::filesystem::create_directory(m_folder / "sub");
  OutputEntry entry = MakeEntry("in.wav", 0, 0);
  entry.strFileName = (m_folder / "sub" / "in.wav").string();
  EXPECT_THAT(COutputFolders().InputFilesReplaced(entry, {Path("in.wav")}), IsEmpty());
}

}  // namespace
}  // namespace carvello::test
