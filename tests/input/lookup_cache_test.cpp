#include "input/lookup_cache.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "input/input_fixture.h"
#include "support/platform.h"

namespace carvello::test {

namespace {

std::mutex traceLock;
std::vector<std::string> traceLines;

void KeepTrace(const std::string& line) {
  const std::lock_guard lock(traceLock);
  traceLines.push_back(line);
}

class LookupCaches : public InputTest {
 protected:
  LookupCaches() {
    traceLines.clear();
    SetLookupTrace(KeepTrace);
  }
  ~LookupCaches() override { SetLookupTrace(nullptr); }

  std::uint64_t Walks() const { return LookupCacheStatistics().nWalks - m_before.nWalks; }
  std::uint64_t Hits() const { return LookupCacheStatistics().nHits - m_before.nHits; }

 private:
  const SLookupStatistics m_before = LookupCacheStatistics();
};

}  // namespace

TEST_F(LookupCaches, AFileIsWalkedOnceForBothLookups) {
  const std::string path = Write("a.wav", PlainWave(8, XmlChunk("A=\"1\"")));
  const SFileFacts facts = LookupMetadata(path);
  EXPECT_TRUE(facts.bRecording);
  EXPECT_NE(facts.strXml.find("A=\"1\""), std::string::npos);
  EXPECT_EQ(facts.format.Format.nSamplesPerSec, 1000u);
  EXPECT_EQ(LookupDataSize(path), 8);
  EXPECT_EQ(LookupMetadata(path).strXml, facts.strXml);
  EXPECT_EQ(Walks(), 1u);
  EXPECT_EQ(Hits(), 2u);
}

TEST_F(LookupCaches, TheDataSizeLookupStoresTheMetadataToo) {
  const std::string path = Write("a.wav", PlainWave(8, XmlChunk("A=\"1\"")));
  EXPECT_EQ(LookupDataSize(path), 8);
  EXPECT_NE(LookupMetadata(path).strXml, "");
  EXPECT_EQ(Walks(), 1u);
}

TEST_F(LookupCaches, AFileWithoutXmlIsKeptWithAnEmptyText) {
  const std::string path = Write("a.wav", PlainWave(8));
  EXPECT_EQ(LookupMetadata(path).strXml, "");
  EXPECT_EQ(LookupMetadata(path).strXml, "");
  EXPECT_EQ(Walks(), 1u);
}

TEST_F(LookupCaches, TracesHitsAndMisses) {
  const std::string path = Write("a.wav", PlainWave(8));
  LookupMetadata(path);
  LookupMetadata(path);
  LookupDataSize(path);
  const std::vector<std::string> expected = {"Lookup status FAIL, filename " + path,
                                             "Lookup status OK, filename " + path,
                                             "Lookup status OK, filename " + path};
  EXPECT_EQ(traceLines, expected);
}

TEST_F(LookupCaches, AFileThatGrewIsWalkedAgain) {
  const std::string bytes = ChunkHeader("RIFF", 0) + "WAVE" + FormatChunk() + ChunkHeader("data", 0xFFFFFFFF);
  const std::string path = Write("a.wav", bytes + std::string(400, 'x'));
  EXPECT_EQ(LookupDataSize(path), 400);
  Append("a.wav", std::string(400, 'x'));
  EXPECT_EQ(LookupDataSize(path), 800);
  EXPECT_EQ(LookupDataSize(path), 800);
  EXPECT_EQ(Walks(), 2u);
}

TEST_F(LookupCaches, AFileWithAnotherModificationTimeIsWalkedAgain) {
  const std::string path = Write("a.wav", PlainWave(8));
  LookupDataSize(path);
  const std::filesystem::path file = m_folder / "a.wav";
  std::filesystem::last_write_time(file, std::filesystem::last_write_time(file) - std::chrono::hours(1));
  LookupDataSize(path);
  EXPECT_EQ(Walks(), 2u);
}

TEST_F(LookupCaches, WhatIsNoRecordingSaysWhy) {
  MakeFolder("folder.wav");
  EXPECT_EQ(LookupMetadata(Path("folder.wav")).strError, "this is a folder, a recording file is needed");
  EXPECT_EQ(LookupMetadata(Write("empty.wav", "")).strError, "the file is empty");
  EXPECT_NE(LookupMetadata(Path("missing.wav")).strError, "");
  EXPECT_EQ(LookupMetadata(Write("text.wav", "Not a recording.")).strError, "not a RIFF or RF64 file");
  EXPECT_EQ(LookupMetadata(Write("nodata.wav", Riff(FormatChunk()))).strError, "no data chunk found");
  EXPECT_EQ(LookupMetadata(Write("noformat.wav", Riff(Chunk("data", "ABCD")))).strError, "no format chunk found");
  EXPECT_EQ(LookupMetadata(Write("nosamples.wav", PlainWave(0, {}, Chunk("junk", "x")))).strError,
            "the data chunk is empty");
  EXPECT_EQ(LookupDataSize(Path("nosamples.wav")), 0);
  EXPECT_EQ(LookupDataSize(Path("missing.wav")), 0);
}

TEST_F(LookupCaches, SeveralThreadsMayLookAtOnce) {
  std::vector<std::string> paths;
  paths.reserve(20);
  for (int i = 0; i < 20; ++i) {
    paths.push_back(Write("file " + std::to_string(i) + ".wav", PlainWave(4 * static_cast<std::size_t>(i + 1))));
  }
  std::vector<std::thread> threads;
  threads.reserve(4);
  for (int t = 0; t < 4; ++t) {
    threads.emplace_back([&] {
      for (std::size_t i = 0; i < paths.size(); ++i) {
        EXPECT_EQ(LookupDataSize(paths[i]), static_cast<std::int64_t>(4 * (i + 1)));
        EXPECT_TRUE(LookupMetadata(paths[i]).bRecording);
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_GE(Walks(), 20u);
  EXPECT_LE(Walks(), 80u);
}

// The maps go down with the process, so this looks on from outside.
TEST(LookupCachesDeathTest, TheEndOfTheProcessTracesTheReset) {
  testing::GTEST_FLAG(death_test_style) = "threadsafe";
  EXPECT_EXIT(
      {
        // Any file does for the maps to be made; this one is always there.
        LookupDataSize(platform::ProgramPath());
        SetLookupTrace([](const std::string& line) { std::fprintf(stderr, "%s\n", line.c_str()); });
        std::exit(0);
      },
      testing::ExitedWithCode(0), "Reset cache\r?\nReset cache");
}

}  // namespace carvello::test
