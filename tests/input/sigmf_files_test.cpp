// Where the files of SigMF recordings are looked for, and where never.
#include "input/sigmf_files.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "input/container_sigmf.h"
#include "input/hand_made_tar.h"
#include "support/temp_folder.h"

namespace carvello::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

const std::string kMeta = R"({"global": {"core:datatype": "ci16_le", "core:sample_rate": 1000, "core:version": "1.2.5"},
  "captures": [{"core:sample_start": 0, "core:frequency": 7e6, "core:datetime": "2024-03-30T12:00:00Z"}]})";

std::string With(const std::string& members) {
  return R"({"global": {"core:datatype": "ci16_le", )" + members + "}}";
}

class SigMfFiles : public testing::Test {
 protected:
  std::string Write(const std::string& name, const std::string& bytes) {
    WriteWholeFile(m_folder / name, bytes);
    return m_folder / name;
  }
  bool Find(const std::string& path) {
    m_warnings.clear();
    m_problem = {};
    return FindSigMfFiles(path, m_found, m_warnings, m_problem);
  }
  std::string Refusal(const std::string& path) {
    EXPECT_FALSE(Find(path));
    return m_problem.strText;
  }
  std::vector<std::string> Names() const {
    std::vector<std::string> names;
    for (const SSigMfFiles& each : m_found) names.push_back(each.strName);
    return names;
  }
  // The set that the recording becomes, and all that is said of it.
  bool Describe(const std::string& path, CRecordingSet& set) {
    set = CRecordingSet();
    CMyStringArray log;
    const bool described = DescribeSigMf(path, {}, set, log);
    m_strLog.clear();
    for (const std::string& line : log) m_strLog += line + "\n";
    return described;
  }

  CTempFolder m_folder;
  std::vector<SSigMfFiles> m_found;
  std::vector<std::string> m_warnings;
  SSigMfProblem m_problem;
  std::string m_strLog;
};

TEST_F(SigMfFiles, PairIsFoundByEitherFileInAnyLetters) {
  const std::string meta = Write("a.sigmf-meta", kMeta);
  const std::string data = Write("a.sigmf-data", std::string(40, 'x'));
  for (const std::string& path : {meta, data}) {
    ASSERT_TRUE(Find(path)) << m_problem.strText;
    ASSERT_EQ(m_found.size(), 1U);
    EXPECT_EQ(m_found[0].strName, "a.sigmf-meta");
    EXPECT_EQ(m_found[0].strPath, data);
    EXPECT_EQ(m_found[0].nOffset, 0);
    EXPECT_EQ(m_found[0].nBytes, 40);
    ASSERT_EQ(m_found[0].describedBy.size(), 1U);
    EXPECT_EQ(m_found[0].describedBy[0].strPath, meta);
  }
}

TEST_F(SigMfFiles, FileThatIsMissingIsNamed) {
  EXPECT_THAT(Refusal(m_folder / "a.sigmf-meta"), HasSubstr("a.sigmf-meta"));
  EXPECT_THAT(Refusal(Write("b.sigmf-data", "x")), HasSubstr("b.sigmf-meta"));
  EXPECT_THAT(Refusal(Write("c.sigmf-meta", kMeta)), HasSubstr("c.sigmf-data"));
  std::filesystem::create_directory(PathOf(m_folder / "d.sigmf-data"));
  EXPECT_THAT(Refusal(Write("d.sigmf-meta", kMeta)), HasSubstr("d.sigmf-data"));
}

TEST_F(SigMfFiles, DatasetIsAFileOfTheSameFolderOnly) {
  Write("x.wav", std::string(10, 'x'));
  const std::string folder = std::filesystem::path(PathOf(m_folder.Path())).filename().string();
  ASSERT_TRUE(Find(Write("a.sigmf-meta", With(R"("core:dataset": "x.wav")")))) << m_problem.strText;
  EXPECT_EQ(m_found[0].strPath, m_folder / "x.wav");
  const std::string whole = PathOf(m_folder / "x.wav").generic_string();  // no backslashes, which JSON would read
  for (const std::string& name :
       {std::string("../") + folder + "/x.wav", std::string("./x.wav"), whole, std::string(".."), std::string("."),
        std::string("..\\\\x.wav"), std::string("C:x.wav"), std::string("x.wav\\u0000y")}) {
    EXPECT_THAT(Refusal(Write("b.sigmf-meta", With("\"core:dataset\": \"" + name + "\""))),
                HasSubstr("core:dataset is no file name"))
        << name;
  }
}

TEST_F(SigMfFiles, ArchiveHoldsPairsInAnyFolders) {
  const std::string path = Write("a.sigmf", TarFile("readme", "x") + TarFile("two/b.sigmf-data", "12345678") +
                                                TarFile("a.sigmf-meta", kMeta) + TarFile("../../a.sigmf-data", "no") +
                                                TarFile("a.sigmf-data", "1234") + TarFile("two/b.sigmf-meta", kMeta) +
                                                std::string(1024, '\0'));
  ASSERT_TRUE(Find(path)) << m_problem.strText;
  EXPECT_THAT(Names(), ElementsAre("a.sigmf-meta", "two/b.sigmf-meta"));
  EXPECT_EQ(m_found[0].strPath, path);
  EXPECT_EQ(m_found[0].nBytes, 4);
  EXPECT_EQ(m_found[1].nOffset, 1536);
  EXPECT_EQ(m_found[1].nBytes, 8);
  EXPECT_THAT(m_warnings, IsEmpty());
}

TEST_F(SigMfFiles, WhatAnArchiveLacksIsTold) {
  const std::string good = TarFile("a.sigmf-meta", kMeta) + TarFile("a.sigmf-data", "1234");
  ASSERT_TRUE(Find(Write("a.sigmf", good + TarFile("b.sigmf-meta", kMeta) + TarFile("c.sigmf-meta", "{") +
                                        TarFile("d.sigmf-meta", With(R"("core:dataset": "../a.sigmf-data")")))));
  EXPECT_THAT(Names(), ElementsAre("a.sigmf-meta"));
  EXPECT_THAT(m_warnings, ElementsAre(HasSubstr("b.sigmf-meta: its file of samples is not in the archive"),
                                      HasSubstr("c.sigmf-meta: no JSON"), HasSubstr("d.sigmf-meta: core:dataset")));
  EXPECT_THAT(Refusal(Write("b.sigmf", TarFile("b.sigmf-meta", kMeta))), HasSubstr("b.sigmf: "));
  EXPECT_THAT(Refusal(Write("c.sigmf", "\x1F\x8B" + std::string(1000, 'x'))), HasSubstr("not compressed"));
}

TEST_F(SigMfFiles, MetaFileOfATruncatedArchiveIsNoJson) {
  const std::string whole = TarFile("a.sigmf-data", "1234") + TarFile("a.sigmf-meta", kMeta);
  EXPECT_THAT(Refusal(Write("a.sigmf", whole.substr(0, 1536 + 20))), HasSubstr("no JSON"));
}

TEST_F(SigMfFiles, CollectionNamesFilesOfItsFolderOnly) {
  Write("a.sigmf-meta", kMeta);
  Write("a.sigmf-data", "1234");
  const auto collection = [this](const std::string& streams) {
    return Write("c.sigmf-collection", R"({"collection": {"core:streams": [)" + streams + "]}}");
  };
  ASSERT_TRUE(Find(collection(R"(["a", ""], ["../a", ""], ["gone", ""], {"name": "a", "hash": "00"})")))
      << m_problem.strText;
  EXPECT_THAT(Names(), ElementsAre("a.sigmf-meta", "a.sigmf-meta"));
  EXPECT_THAT(m_warnings, ElementsAre(HasSubstr("../a: is no file name"), HasSubstr("gone.sigmf-meta"),
                                      HasSubstr("not as it was")));
  EXPECT_THAT(Refusal(collection(R"(["../a", ""])")), HasSubstr("is no file name"));
  EXPECT_THAT(Refusal(collection("")), HasSubstr("names no recordings"));
}

TEST_F(SigMfFiles, HeaderBytesPastTheEndLeaveTheCapturesBeforeThem) {
  Write("a.sigmf-data", std::string(4000, 'x'));
  const auto meta = [this](const std::string& captures) {
    return Write("a.sigmf-meta", R"({"global": {"core:datatype": "ci16_le", "core:sample_rate": 1000}, "captures": [)" +
                                     captures + "]}");
  };
  const std::string first = R"({"core:sample_start": 0, "core:frequency": 7, "core:datetime": "2024-03-30T12:00:00Z")";
  CRecordingSet set;
  ASSERT_TRUE(Describe(meta(first + R"(}, {"core:sample_start": 500, "core:header_bytes": 4001})"), set)) << m_strLog;
  EXPECT_EQ(set.TotalBytes(), 500 * 4);
  EXPECT_FALSE(Describe(meta(first + R"(, "core:header_bytes": 9223372036854775807})"), set));
  EXPECT_THAT(m_strLog, HasSubstr("holds no samples"));
  ASSERT_TRUE(Describe(meta(first + R"(, "core:header_bytes": 3996}, {"core:sample_start": 9223372036854775807,
                                        "core:header_bytes": 1})"),
                       set))
      << m_strLog;
  EXPECT_EQ(set.TotalBytes(), 4);
}

TEST_F(SigMfFiles, CapturesOutOfOrderAreReadInTheOrderOfTheirSamples) {
  Write("a.sigmf-data", std::string(4000, 'x'));
  CRecordingSet set;
  ASSERT_TRUE(Describe(Write("a.sigmf-meta", R"({"global": {"core:datatype": "ci16_le", "core:sample_rate": 1000},
      "captures": [{"core:sample_start": 600, "core:frequency": 7, "core:global_index": 700},
                   {"core:sample_start": 0, "core:frequency": 7, "core:global_index": 0,
                    "core:datetime": "2024-03-30T12:00:00Z"}]})"),
                       set))
      << m_strLog;
  ASSERT_EQ(set.files.size(), 1U);
  ASSERT_EQ(set.files[0].layout.runs.size(), 3U);
  EXPECT_EQ(set.files[0].layout.runs[0].nFrames, 600);
  EXPECT_TRUE(set.files[0].layout.runs[1].IsSilence());
  EXPECT_EQ(set.files[0].layout.runs[1].nFrames, 100);
  EXPECT_EQ(set.files[0].layout.runs[2].nOffset, 2400);
  EXPECT_EQ(set.files[0].layout.runs[2].nFrames, 400);
  EXPECT_EQ(set.tStart, 1'711'800'000);
}

TEST_F(SigMfFiles, RequiredExtensionThatIsNotKnownIsNamed) {
  Write("a.sigmf-data", std::string(4000, 'x'));
  CRecordingSet set;
  EXPECT_FALSE(
      Describe(Write("a.sigmf-meta",
                     With(R"("core:extensions": [{"name": "sec\u0007ret", "version": "1.0.0", "optional": false}])")),
               set));
  EXPECT_THAT(m_strLog, HasSubstr("extension \"sec\\x07ret\", which is not known"));
}

}  // namespace
}  // namespace carvello::test
