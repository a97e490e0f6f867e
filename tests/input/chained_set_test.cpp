// Sets of other programs, chained by time.
#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "input/foreign_recordings.h"
#include "input/input_fixture.h"
#include "input/lookup_cache.h"
#include "input/recording_set.h"
#include "support/platform.h"

namespace carvello::test {

namespace {

using FileNames = std::vector<std::string>;

constexpr std::int64_t kNoon = 1'681'560'000;  // 15 April 2023 12:00:00 UTC

class ChainedSet : public InputTest {
 protected:
  bool Analyse(const std::string& name) {
    m_log.Clear(10);
    return AnalyseRecordingSet(Path(name), m_set, m_log);
  }

  FileNames Names() const {
    FileNames names;
    for (const SRecordingFile& file : m_set.files) names.push_back(platform::NameOf(file.strPath));
    return names;
  }

  // A Winrad recording from noon + start to noon + stop, in seconds below an hour.
  void WriteWinrad(const std::string& name, std::uint32_t start, std::uint32_t stop,
                   std::uint32_t frequency = 7'050'000, const SFormatBytes& format = {}) {
    const SAuxi auxi{.start = {.nMinute = start / 60, .nSecond = start % 60},
                     .stop = {.nMinute = stop / 60, .nSecond = stop % 60},
                     .nCentreFrequency = frequency};
    Write(name, Riff(FormatChunk(format) + Chunk("auxi", AuxiBody(164, auxi)) +
                     Chunk("data", std::string(std::size_t{4000} * (stop - start), 'x'))));
  }

  std::string Error() const {
    EXPECT_EQ(CountLines(m_log, "[ERROR]"), 1) << Joined(m_log);
    return m_log.IsEmpty() ? std::string() : m_log[m_log.Size() - 1];
  }

  CRecordingSet m_set;
  CMyStringArray m_log;
};

}  // namespace

TEST_F(ChainedSet, ThreeSdrSharpFilesOfWhichOneIsOnAnotherFrequency) {
  Write("sdrsharp_20230415_115950z_7050000hz_iq.wav", SecondsOfWave(10));
  Write("sdrsharp_20230415_120003z_7050000hz_iq.wav", SecondsOfWave(20));
  Write("sdrsharp_20230415_120003z_9050000hz_iq.wav", SecondsOfWave(30));
  ASSERT_TRUE(Analyse("sdrsharp_20230415_120003z_7050000hz_iq.wav")) << Joined(m_log);
  EXPECT_EQ(Names(),
            (FileNames{"sdrsharp_20230415_115950z_7050000hz_iq.wav", "sdrsharp_20230415_120003z_7050000hz_iq.wav"}));
  EXPECT_EQ(m_set.strSourceName, "SDRSharp");
  EXPECT_TRUE(m_set.bFromSourceRecord);
  EXPECT_EQ(m_set.tStart, kNoon - 10);
  EXPECT_EQ(m_set.tEnd, kNoon + 23);
  EXPECT_DOUBLE_EQ(m_set.dDuration, 33.0);
  EXPECT_EQ(m_set.TotalBytes(), 120'000);
  EXPECT_EQ(m_set.files[0].nDataBytes, 40'000);
  EXPECT_EQ(m_set.files[0].tStart, kNoon - 10);
  EXPECT_EQ(m_set.files[1].tStart, kNoon + 3);
  EXPECT_EQ(m_set.nRadioCenterFreq, 7'050'000);
  EXPECT_EQ(m_set.nSampleRate, 1000u);
  EXPECT_EQ(m_set.nBandwidth, 1000u);
  EXPECT_EQ(m_set.nBytesPerSecond, 4000u);
  EXPECT_EQ(m_set.nBitsPerSample, 16u);
  EXPECT_EQ(m_set.strMetadata, "");
  EXPECT_EQ(m_set.kind, MakeSampleKind(ENumber::Signed, 16));
}

TEST_F(ChainedSet, AGapOf5SecondsHoldsAndOneOf6Breaks) {
  WriteWinrad("a.wav", 0, 60);
  WriteWinrad("b.wav", 65, 120);
  WriteWinrad("c.wav", 126, 180);
  for (const char* name : {"a.wav", "b.wav"}) {
    ASSERT_TRUE(Analyse(name));
    EXPECT_EQ(Names(), (FileNames{"a.wav", "b.wav"})) << name;
  }
  ASSERT_TRUE(Analyse("c.wav"));
  EXPECT_EQ(Names(), (FileNames{"c.wav"}));
}

TEST_F(ChainedSet, AnOverlapOf5SecondsHoldsAndOneOf6Breaks) {
  WriteWinrad("a.wav", 0, 60);
  WriteWinrad("b.wav", 55, 120);
  WriteWinrad("c.wav", 114, 180);
  ASSERT_TRUE(Analyse("b.wav"));
  EXPECT_EQ(Names(), (FileNames{"a.wav", "b.wav"}));
}

TEST_F(ChainedSet, TheWholeChainIsFoundFromAnyMember) {
  FileNames names;
  for (std::uint32_t i = 0; i < 12; ++i) {
    // Names in another order than times.
    names.push_back("file " + std::to_string((i * 5) % 12) + ".wav");
    WriteWinrad(names.back(), i * 60, i * 60 + 60);
  }
  for (const std::string& name : names) {
    ASSERT_TRUE(Analyse(name));
    EXPECT_EQ(Names(), names) << name;
    EXPECT_EQ(m_set.tStart, kNoon);
    EXPECT_EQ(m_set.tEnd, kNoon + 720);
  }
}

TEST_F(ChainedSet, RecordingsShorterThanTheGapStayInOrder) {
  FileNames names;
  for (std::uint32_t i = 0; i < 8; ++i) {
    names.push_back("file " + std::to_string(i) + ".wav");
    WriteWinrad(names.back(), i * 2, i * 2 + 2);
  }
  for (const std::string& name : names) {
    ASSERT_TRUE(Analyse(name));
    EXPECT_EQ(Names(), names) << name;
  }
}

TEST_F(ChainedSet, ACopyOfAMemberIsNotTakenTwiceAndTheSelectedOneIsPreferred) {
  WriteWinrad("a.wav", 0, 60);
  WriteWinrad("b.wav", 60, 120);
  WriteWinrad("b copy.wav", 60, 120);
  for (const char* name : {"b.wav", "b copy.wav"}) {
    ASSERT_TRUE(Analyse(name));
    EXPECT_EQ(Names(), (FileNames{"a.wav", name}));
  }
}

TEST_F(ChainedSet, AnotherRateSampleSizeOrProgramIsNotTaken) {
  WriteWinrad("a.wav", 0, 60);
  WriteWinrad("rate.wav", 60, 120, 7'050'000, {.nRate = 2000});
  WriteWinrad("bits.wav", 60, 120, 7'050'000, {.nBits = 32});
  Write("program.wav",
        SecondsOfWave(60, Chunk("auxi", AuxiBody(72, {.start = {.nMinute = 1}, .stop = {.nMinute = 2}}))));
  Write("airspy_20230415_120100z_7050000hz_iq.wav", SecondsOfWave(60));
  Write("g-7.050mhz_23-04-15_12'01'00.ddc", SecondsOfWave(60));
  ASSERT_TRUE(Analyse("a.wav"));
  EXPECT_EQ(Names(), (FileNames{"a.wav"}));
}

TEST_F(ChainedSet, VersionsOfSpectraVueAreOneFamily) {
  Write("a.wav", SecondsOfWave(60, Chunk("auxi", AuxiBody(44, {.stop = {.nMinute = 1}}))));
  Write("b.wav", SecondsOfWave(60, Chunk("auxi", AuxiBody(72, {.start = {.nMinute = 1}, .stop = {.nMinute = 2}}))));
  ASSERT_TRUE(Analyse("b.wav"));
  EXPECT_EQ(Names(), (FileNames{"a.wav", "b.wav"}));
  EXPECT_EQ(m_set.strSourceName, "SpectraVue 2");
}

TEST_F(ChainedSet, ARecordingWithoutAStopTimeHasItsLengthFromTheSamples) {
  Write("a.wav", SecondsOfWave(60, Chunk("auxi", ShortAuxiBody({}))));
  Write("b.wav", SecondsOfWave(60, Chunk("auxi", ShortAuxiBody({.start = {.nMinute = 1}}))));
  ASSERT_TRUE(Analyse("a.wav"));
  EXPECT_EQ(m_set.strSourceName, "SpectraVue 1");
  EXPECT_EQ(Names(), (FileNames{"a.wav", "b.wav"}));
  EXPECT_EQ(m_set.tEnd - m_set.tStart, 120);
}

TEST_F(ChainedSet, AStopTimeNeverWrittenIsReckonedFromTheSamples) {
  const SAuxi auxi{.stop = {.nYear = 0, .nMonth = 0, .nDay = 0, .nHour = 0}};
  Write("a.wav", SecondsOfWave(60, Chunk("auxi", AuxiBody(164, auxi))));
  ASSERT_TRUE(Analyse("a.wav"));
  EXPECT_EQ(m_set.tEnd, kNoon + 60);
}

TEST_F(ChainedSet, AFileCutShortEndsWithItsSamples) {
  const SAuxi auxi{.stop = {.nHour = 13}};
  Write("a.wav", Riff(FormatChunk() + Chunk("auxi", AuxiBody(164, auxi)) + ChunkHeader("data", 14'400'000) +
                      std::string(40'000, 'x')));
  ASSERT_TRUE(Analyse("a.wav"));
  EXPECT_EQ(m_set.tEnd, kNoon + 10);
  EXPECT_EQ(m_set.TotalBytes(), 40'000);
}

// Bytes per second of 1 in the format must not make one second out of 4000.
TEST_F(ChainedSet, AWrongBytesPerSecondFieldDoesNotChangeWhereSamplesEnd) {
  std::string format = FormatBody();
  format.replace(8, 4, Le32(1));
  const auto write = [&](const std::string& name, const std::string& auxi, std::uint32_t claimed) {
    Write(name,
          Riff(Chunk("fmt ", format) + Chunk("auxi", auxi) + ChunkHeader("data", claimed) + std::string(40'000, 'x')));
  };
  write("no stop.wav", ShortAuxiBody({}), 40'000);
  ASSERT_TRUE(Analyse("no stop.wav"));
  EXPECT_EQ(m_set.tEnd, kNoon + 10);
  write("cut short.wav", AuxiBody(164, {.stop = {.nHour = 13}}), 14'400'000);
  ASSERT_TRUE(Analyse("cut short.wav"));
  EXPECT_EQ(m_set.tEnd, kNoon + 10);
  EXPECT_EQ(m_set.nBytesPerSecond, 1u);  // as the format tells it
}

TEST_F(ChainedSet, MillisecondsOfStartAndEndAreKeptForShowing) {
  const SAuxi first{.start = {.nMilliseconds = 250}, .stop = {.nMinute = 1, .nMilliseconds = 500}};
  const SAuxi second{.start = {.nMinute = 1, .nMilliseconds = 750}, .stop = {.nMinute = 2, .nMilliseconds = 875}};
  Write("a.wav", SecondsOfWave(60, Chunk("auxi", AuxiBody(164, first))));
  Write("b.wav", SecondsOfWave(60, Chunk("auxi", AuxiBody(164, second))));
  ASSERT_TRUE(Analyse("b.wav"));
  EXPECT_EQ(m_set.tStart, kNoon);
  EXPECT_EQ(m_set.nStartMilliseconds, 250u);
  EXPECT_EQ(m_set.tEnd, kNoon + 120);
  EXPECT_EQ(m_set.nEndMilliseconds, 875u);
  EXPECT_DOUBLE_EQ(m_set.dDuration, 120.0);
}

TEST_F(ChainedSet, AnEndReckonedFromTheSamplesHasTheirFraction) {
  Write("a.wav", SecondsOfWave(2.75, Chunk("auxi", ShortAuxiBody({.start = {.nMilliseconds = 500}}))));
  ASSERT_TRUE(Analyse("a.wav"));
  EXPECT_EQ(m_set.tEnd, kNoon + 3);
  EXPECT_EQ(m_set.nEndMilliseconds, 250u);
}

TEST_F(ChainedSet, ASignalTimeThatIsNoTimeLeavesTheRestReadable) {
  const std::string path = Write("a.wav", SecondsOfWave(60, Chunk("meta", SignalInfoBody("complex", "yesterday"))));
  ASSERT_TRUE(Analyse("a.wav")) << Joined(m_log);
  EXPECT_EQ(m_set.strSourceName, "go2MONITOR");
  EXPECT_EQ(m_set.nRadioCenterFreq, 7'050'000);
  EXPECT_EQ(m_set.tStart, 0);
  EXPECT_EQ(m_set.tEnd, 60);
  EXPECT_TRUE(HasLine(m_log, "[WARNING] " + path +
                                 ": signaltime of the meta chunk is no time such as 2026-11-16T00:44:40.000Z, "
                                 "1970-01-01 taken"))
      << Joined(m_log);
}

TEST_F(ChainedSet, AStartThatWasNeverWrittenIs1970WithTheLengthOfItsSamples) {
  const SAuxi auxi{.start = {0, 0, 0, 0, 0, 0, 0}};
  const std::string path = Write("a.wav", SecondsOfWave(60, Chunk("auxi", AuxiBody(164, auxi))));
  ASSERT_TRUE(Analyse("a.wav")) << Joined(m_log);
  EXPECT_EQ(m_set.tStart, 0);
  EXPECT_EQ(m_set.tEnd, 60);
  EXPECT_EQ(Joined(m_log),
            "[WARNING] " + path + ": start time of the auxi chunk was never written, 1970-01-01 taken\n");
}

// Of two files that could both go on, the one that begins earlier does, however much closer the other one is.
TEST_F(ChainedSet, TheFirstThatFitsGoesOn) {
  WriteWinrad("a.wav", 0, 60);
  WriteWinrad("later.wav", 60, 120);
  WriteWinrad("overlapping.wav", 56, 110);
  ASSERT_TRUE(Analyse("a.wav"));
  EXPECT_EQ(Names(), (FileNames{"a.wav", "overlapping.wav"}));
}

// Seen from the first file, the other recording goes on. Whoever selects this one wants this one.
TEST_F(ChainedSet, TheSelectedFileIsPartOfItsSetEvenWhereAnotherOneGoesOn) {
  WriteWinrad("a.wav", 0, 60);
  WriteWinrad("other.wav", 58, 300);
  WriteWinrad("b.wav", 62, 120);
  WriteWinrad("c.wav", 120, 180);
  for (const char* name : {"b.wav", "c.wav"}) {
    ASSERT_TRUE(Analyse(name));
    EXPECT_EQ(Names(), (FileNames{"a.wav", "b.wav", "c.wav"})) << name;
    EXPECT_EQ(m_set.tEnd, kNoon + 180);
  }
  for (const char* name : {"a.wav", "other.wav"}) {
    ASSERT_TRUE(Analyse(name));
    EXPECT_EQ(Names(), (FileNames{"a.wav", "other.wav"})) << name;
  }
}

TEST_F(ChainedSet, PerseusFilesShowTheReceiversBandwidth) {
  Write("p.wav", SecondsOfWave(60, Chunk("rcvr", RcvrBody(7'050'000, 5, kNoon))));
  ASSERT_TRUE(Analyse("p.wav"));
  EXPECT_EQ(m_set.strSourceName, "Perseus");
  EXPECT_EQ(m_set.nBandwidth, 1'600'000u);
  EXPECT_EQ(m_set.nSampleRate, 1000u);
  EXPECT_EQ(m_set.tStart, kNoon);
}

TEST_F(ChainedSet, EveryFamilyIsDescribed) {
  const std::vector<std::pair<std::string, std::string>> chunks = {
      {"SpectraVue 1", Chunk("auxi", ShortAuxiBody({}))},
      {"SpectraVue 2", Chunk("auxi", AuxiBody(44, {.stop = {.nHour = 13}}))},
      {"SpectraVue 2.34", Chunk("auxi", AuxiBody(68, {.stop = {.nHour = 13}}))},
      {"SpectraVue 3.0", Chunk("auxi", AuxiBody(72, {.stop = {.nHour = 13}}))},
      {"Winrad", Chunk("auxi", AuxiBody(164, {.stop = {.nHour = 13}}))},
      {"ELAD", Chunk("elad", "ELAD") + Chunk("auxi", AuxiBody(164, {.stop = {.nHour = 13}}))},
      {"Perseus", Chunk("rcvr", RcvrBody(7'050'000, 0, kNoon))},
      {"go2MONITOR", Chunk("meta", SignalInfoBody("complex", "2023-04-15T12:00:00.000Z"))},
  };
  for (const auto& [source, chunk] : chunks) {
    const std::string name = source + ".wav";
    Write(name, SecondsOfWave(60, chunk));
    ASSERT_TRUE(Analyse(name)) << source << "\n" << Joined(m_log);
    EXPECT_EQ(m_set.strSourceName, source);
    EXPECT_EQ(m_set.nRadioCenterFreq, 7'050'000) << source;
  }
  for (const auto& [source, name] :
       std::vector<std::pair<std::string, std::string>>{{"Winradio", "g-7.050mhz_23-04-15_12'00'00.ddc"},
                                                        {"SDRSharp", "airspy_20230415_120000z_7050khz_iq.wav"},
                                                        {"UnknownFmt", "rec_7050khz.wav"}}) {
    Write(name, SecondsOfWave(60));
    ASSERT_TRUE(Analyse(name)) << source << "\n" << Joined(m_log);
    EXPECT_EQ(m_set.strSourceName, source);
    EXPECT_EQ(m_set.nRadioCenterFreq, 7'050'000) << source;
  }
}

TEST_F(ChainedSet, AMonoFileIsToldToNeedTwoChannels) {
  const std::string samples = Chunk("data", std::string(8000, 'x'));
  std::string path = Write("mono.wav", Riff(Chunk("fmt ", ExtensibleBody({.nChannels = 1}, 1)) + samples));
  EXPECT_FALSE(Analyse("mono.wav"));
  EXPECT_EQ(Error(), "[ERROR] " + path + ": 1 channel, a recording needs two, I and Q");
  path = Write("plain.wav", Riff(FormatChunk({.nChannels = 1}) + samples));
  m_log.Clear(0);
  EXPECT_FALSE(Analyse("plain.wav"));
  EXPECT_EQ(Error(), "[ERROR] " + path + ": chunk \"fmt \": 1 channel, a recording needs two, I and Q");
}

TEST_F(ChainedSet, AFileOfNoKnownProgramIsNamed) {
  const std::string path = Write("sdrsharp_x.wav", SecondsOfWave(5));
  EXPECT_FALSE(Analyse("sdrsharp_x.wav"));
  EXPECT_EQ(Error(),
            "[ERROR] " + path + ": no I/Q recording of a known program, and its name does not tell frequency and time");
}

TEST_F(ChainedSet, ASignalInfoDocumentOfRealSamplesIsNamed) {
  const std::string text =
      ": its meta chunk does not tell of complex samples (data_type) with sample_rate, rf_frequency and bandwidth";
  const std::string meta = Chunk("meta", SignalInfoBody("real", "2026-11-16T00:44:40.000Z"));
  const std::string path = Write("real.wav", SecondsOfWave(5, meta));
  EXPECT_FALSE(Analyse("real.wav"));
  EXPECT_EQ(Error(), "[ERROR] " + path + text);
  WriteWinrad("a.wav", 0, 60);
  ASSERT_TRUE(Analyse("a.wav"));
  EXPECT_TRUE(HasLine(m_log, "[WARNING] " + path + text + "; left out of the set")) << Joined(m_log);
}

TEST_F(ChainedSet, ARateOfZeroIsNamed) {
  const std::string path = Write("a.wav", Riff(FormatChunk({.nRate = 0}) + Chunk("auxi", AuxiBody(164, {})) +
                                               Chunk("data", std::string(8000, 'x'))));
  EXPECT_FALSE(Analyse("a.wav"));
  EXPECT_EQ(Error(), "[ERROR] " + path + ": no sample rate in the file's format");
}

TEST_F(ChainedSet, AFolderWithAUnicodeNameIsSearched) {
  const std::string folder = "\xD0\x97\xD0\xB0\xD0\xBF\xD0\xB8\xD1\x81\xD1\x8C \xF0\x9F\x93\xA1/";
  MakeFolder(folder);
  WriteWinrad(folder + "\xC3\xA9t\xC3\xA9 a.wav", 0, 60);
  WriteWinrad(folder + "\xC3\xA9t\xC3\xA9 b.wav", 60, 120);
  ASSERT_TRUE(Analyse(folder + "\xC3\xA9t\xC3\xA9 b.wav"));
  EXPECT_EQ(Names(), (FileNames{"\xC3\xA9t\xC3\xA9 a.wav", "\xC3\xA9t\xC3\xA9 b.wav"}));
}

TEST_F(ChainedSet, SelectingAnotherMemberWalksNothing) {
  for (std::uint32_t i = 0; i < 10; ++i) WriteWinrad("file " + std::to_string(i) + ".wav", i * 60, i * 60 + 60);
  ASSERT_TRUE(Analyse("file 0.wav"));
  const std::uint64_t before = LookupCacheStatistics().nWalks;
  ASSERT_TRUE(Analyse("file 7.wav"));
  EXPECT_EQ(m_set.files.size(), 10u);
  EXPECT_EQ(LookupCacheStatistics().nWalks, before);
}

TEST_F(ChainedSet, AFolderOf2000RecordingsIsWalkedOnce) {
  const std::string auxiTail(164 - 40, '\0');
  for (std::uint32_t i = 0; i < 2000; ++i) {
    const auto at = [](std::uint32_t second) {
      return SDate{.nHour = second / 3600, .nMinute = second / 60 % 60, .nSecond = second % 60};
    };
    const SAuxi auxi{.start = at(i * 10), .stop = at(i * 10 + 10)};
    Write("file " + std::to_string(i) + ".wav", PlainWave(400, Chunk("auxi", AuxiBody(164, auxi))));
  }
  const std::uint64_t before = LookupCacheStatistics().nWalks;
  ASSERT_TRUE(Analyse("file 1234.wav"));
  EXPECT_EQ(m_set.files.size(), 2000u);
  EXPECT_EQ(m_set.tEnd - m_set.tStart, 20'000);
  EXPECT_EQ(LookupCacheStatistics().nWalks - before, 2000u);
}

}  // namespace carvello::test
