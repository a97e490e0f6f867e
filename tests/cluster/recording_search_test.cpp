#include "cluster/recording_search.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "support/temp_folder.h"

namespace carvello::test {
namespace {

using testing::ElementsAre;
using testing::EndsWith;

class RecordingSearch : public testing::Test {
 protected:
  void Make(const std::string& name, const std::string& bytes = "x") {
    std::filesystem::create_directories(PathOf(m_folder / name).parent_path());
    WriteWholeFile(m_folder / name, bytes);
  }
  std::vector<std::string> Find(const std::vector<std::string>& named, const std::vector<std::string>& leftOut = {}) {
    SFoundFiles found;
    std::string error;
    EXPECT_TRUE(FindFiles(named, leftOut, found, error)) << error;
    m_reasons.clear();
    for (const SLeftOutFile& file : found.leftOut) m_reasons.push_back(file.strReason);
    std::vector<std::string> names;
    for (const SFoundFile& file : found.files) {
      std::string name = Utf8Of(std::filesystem::relative(PathOf(file.strPath), PathOf(m_folder / ".")));
      std::replace(name.begin(), name.end(), '\\', '/');  // as Windows has them between folders
      names.push_back(std::move(name));
      m_named.push_back(file.bNamed);
    }
    return names;
  }

  CTempFolder m_folder;
  std::vector<bool> m_named;
  std::vector<std::string> m_reasons;
};

TEST_F(RecordingSearch, FilesComeAsNamedAndThoseOfFoldersByName) {
  for (const char* const name : {"b.wav", "a.wav", "below/c.wav", "below/deeper/d.wav"}) Make(name);
  Make("empty.wav", "");
  EXPECT_THAT(Find({m_folder / "b.wav", m_folder / "."}),
              ElementsAre("b.wav", "a.wav", "b.wav", "below/c.wav", "below/deeper/d.wav"));
  EXPECT_THAT(m_named, ElementsAre(true, false, false, false, false));
  EXPECT_THAT(m_reasons, ElementsAre(EndsWith("empty.wav: is empty")));
}

TEST_F(RecordingSearch, PartsOfAnyPlanAreNoRecordings) {
  for (const char* const name : {"cuts/a.wav", "cuts/other.parts/r000000/t0000000-e000000.wav"}) Make(name);
  Make("cuts/t0000000-e000000.wav");  // a recording may be called so, elsewhere
  EXPECT_THAT(Find({m_folder / "cuts"}), ElementsAre("cuts/a.wav", "cuts/t0000000-e000000.wav"));
}

TEST_F(RecordingSearch, TheFolderOfTheOutputsCannotBeNamed) {
  Make("a.wav");
  SFoundFiles found;
  std::string error;
  EXPECT_FALSE(FindFiles({m_folder / "."}, {m_folder.Path()}, found, error));
  EXPECT_THAT(error, testing::HasSubstr("is the folder of the outputs"));
}

TEST_F(RecordingSearch, FoldersLeftOutAreNotLookedIntoWhateverTheyAreCalled) {
  for (const char* const name : {"a.wav", "out/b.wav", "out/below/c.wav"}) Make(name);
  for (const std::string leftOut : {"out", "out/", "./out/../out", "out/below/.."}) {
    EXPECT_THAT(Find({m_folder / "."}, {m_folder / leftOut}), ElementsAre("a.wav")) << leftOut;
  }
}

TEST_F(RecordingSearch, WhatIsNamedAndNotThereIsAnError) {
  SFoundFiles found;
  std::string error;
  EXPECT_FALSE(FindFiles({m_folder / "none.wav"}, {}, found, error));
  EXPECT_THAT(error, testing::HasSubstr("none.wav"));
}

TEST_F(RecordingSearch, AListHasANameALine) {
  std::vector<std::string> names = {"first"};
  std::string error;
  Make("list", "a b.wav\r\n\n-\nlast");
  EXPECT_TRUE(ReadNameList(m_folder / "list", names, error));
  EXPECT_THAT(names, ElementsAre("first", "a b.wav", "-", "last"));
  Make("marked",
       "\xEF\xBB\xBF"
       "b.wav\n");
  names.clear();
  EXPECT_TRUE(ReadNameList(m_folder / "marked", names, error));
  EXPECT_THAT(names, ElementsAre("b.wav"));
  EXPECT_FALSE(ReadNameList(m_folder / "none", names, error));
  EXPECT_THAT(error, testing::HasSubstr("none"));
}

}  // namespace
}  // namespace carvello::test
