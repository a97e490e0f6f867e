// Recordings that no chunk describes: sdriq, raw, KiwiSDR's many data chunks, names, and what the user gives.
#include <cstdlib>
#include <string>
#include <vector>

#include "input/container_kiwi.h"
#include "input/foreign_recordings.h"
#include "input/input_fixture.h"
#include "input/recording_set.h"
#include "input/sample_file.h"
#include "support/platform.h"

namespace carvello::test {
namespace {

class ForeignSet : public InputTest {
 protected:
  bool Analyse(const std::string& name, const SGivenFacts& given = {}) {
    m_log.Clear(10);
    return AnalyseRecordingSet(Path(name), m_set, m_log, given);
  }

  static SGivenFacts All() {
    SGivenFacts given;
    given.kind = ParseSampleKind("ci16");
    given.nSampleRate = 1000;
    given.nCentre = 7'100'000;
    given.start = SExactTime{1'700'000'000, 250'000'001};
    return given;
  }

  // 28 bytes of an sdriq head, then the check sum that zlib would give.
  static std::string SdriqHead(std::uint32_t rate, std::uint64_t centre, std::uint64_t start, std::uint32_t bits,
                               std::uint32_t crc) {
    return Le32(rate) + Le64(centre) + Le64(start) + Le32(bits) + Le32(0) + Le32(crc);
  }

  // The bytes of all samples, as a job reads them.
  std::string Samples() {
    std::string samples;
    for (const SRecordingFile& file : m_set.files) {
      CSampleFile reader;
      EXPECT_TRUE(reader.Open(file.strPath));
      reader.Begin(m_set.kind, file.layout);
      std::string bytes(static_cast<std::size_t>(reader.Frames() * reader.FrameBytes()), '\0');
      std::int64_t done = 0;
      while (reader.Ahead().nFrames > 0) {
        const std::int64_t read = reader.Read(bytes.data() + done * reader.FrameBytes(), reader.Ahead().nFrames);
        if (read == 0) break;
        done += read;
      }
      EXPECT_EQ(done, reader.Frames());
      samples += bytes;
    }
    return samples;
  }

  CRecordingSet m_set;
  CMyStringArray m_log;
};

TEST_F(ForeignSet, SdriqCountsMillisecondsSinceVersion6) {
  // 48,000 frames/s at 100 MHz, 1700000000.123 s, 16 bits: check sum by zlib.
  Write("a.sdriq", SdriqHead(48'000, 100'000'000, 1'700'000'000'123, 16, 0xB76AF32D) + "AAAABBBBCCCC");
  ASSERT_TRUE(Analyse("a.sdriq")) << Joined(m_log);
  EXPECT_EQ(m_set.strSourceName, "SDRangel");
  EXPECT_EQ(m_set.strContainer, "sdriq");
  EXPECT_EQ(m_set.nSampleRate, 48'000U);
  EXPECT_EQ(m_set.nRadioCenterFreq, 100'000'000);
  EXPECT_EQ(m_set.tStart, 1'700'000'000);
  EXPECT_EQ(m_set.nStartNanoseconds, 123'000'000U);
  EXPECT_EQ(m_set.kind, *ParseSampleKind("ci16"));
  EXPECT_EQ(m_set.format.Format.nSamplesPerSec, 48'000U);
  EXPECT_EQ(m_set.TotalBytes(), 12);
  EXPECT_EQ(Samples(), "AAAABBBBCCCC");
  EXPECT_TRUE(m_log.IsEmpty()) << Joined(m_log);
}

TEST_F(ForeignSet, SdriqOfVersion4CountsSecondsAnd24BitsStandIn32) {
  Write("b.sdriq", SdriqHead(48'000, 5'000'000'000, 1'600'000'000, 24, 0xE62AF504) + std::string(24, 'x'));
  ASSERT_TRUE(Analyse("b.sdriq")) << Joined(m_log);
  EXPECT_EQ(m_set.tStart, 1'600'000'000);
  EXPECT_EQ(m_set.nRadioCenterFreq, 5'000'000'000);
  EXPECT_EQ(m_set.kind.nBits, 32U);
  EXPECT_EQ(m_set.kind.dFullScale, 8'388'608.0);
  EXPECT_EQ(m_set.files[0].layout.Frames(), 3);
  EXPECT_TRUE(m_log.IsEmpty()) << Joined(m_log);
}

TEST_F(ForeignSet, SdriqBeforeVersion4HasAShorterHeadWithoutCheckSum) {
  Write("c.sdriq", Le32(48'000) + Le64(100'000'000) + Le64(1'500'000'000) + Le32(77) + "AAAABBBBCCCC");
  ASSERT_TRUE(Analyse("c.sdriq")) << Joined(m_log);
  EXPECT_EQ(m_set.tStart, 1'500'000'000);
  EXPECT_EQ(Samples(), "AAAABBBBCCCC");
  EXPECT_EQ(CountLines(m_log, "no right check sum"), 1) << Joined(m_log);
}

TEST_F(ForeignSet, SdriqWhoseHeadWasDamagedIsToldOf) {
  Write("d.sdriq", SdriqHead(48'001, 100'000'000, 1'700'000'000'123, 16, 0xB76AF32D) + "AAAA");
  ASSERT_TRUE(Analyse("d.sdriq")) << Joined(m_log);
  EXPECT_EQ(Samples(), "AAAA");
  EXPECT_EQ(CountLines(m_log, "check sum of its head is wrong"), 1) << Joined(m_log);
}

TEST_F(ForeignSet, SdriqWithoutSamplesOrRateIsRefusedWithTheReason) {
  Write("e.sdriq", SdriqHead(48'000, 100'000'000, 1'700'000'000'123, 16, 0xB76AF32D));
  EXPECT_FALSE(Analyse("e.sdriq"));
  EXPECT_EQ(CountLines(m_log, "[ERROR]"), 1) << Joined(m_log);
  Write("f.sdriq", SdriqHead(0, 100'000'000, 1'700'000'000'123, 16, 1) + "AAAA");
  EXPECT_FALSE(Analyse("f.sdriq"));
  EXPECT_EQ(m_set.missing, std::vector<EFact>{EFact::SampleRate});
  SGivenFacts given;
  given.nSampleRate = 96'000;
  EXPECT_TRUE(Analyse("f.sdriq", given)) << Joined(m_log);
  EXPECT_EQ(m_set.nSampleRate, 96'000U);
}

TEST_F(ForeignSet, GqrxTellsAllInTheName) {
  Write("gqrx_20231005_141500_100000000_1000_fc.raw", std::string(8000 + 3, 'x'));
  ASSERT_TRUE(Analyse("gqrx_20231005_141500_100000000_1000_fc.raw")) << Joined(m_log);
  EXPECT_EQ(m_set.strSourceName, "gqrx");
  EXPECT_EQ(m_set.kind, *ParseSampleKind("cf32"));
  EXPECT_TRUE(m_set.bFloat);
  EXPECT_EQ(m_set.tStart, 1'696'515'300);
  EXPECT_EQ(m_set.tEnd, 1'696'515'301);
  EXPECT_EQ(m_set.TotalBytes(), 8000);
  EXPECT_EQ(CountLines(m_log, "last 3 bytes are no whole frame"), 1) << Joined(m_log);
}

TEST_F(ForeignSet, RawFileTellsWhatIsMissingAndTakesIt) {
  Write("x.iq", "AAAABBBB");
  EXPECT_FALSE(Analyse("x.iq"));
  EXPECT_EQ(m_set.missing, (std::vector<EFact>{EFact::SampleType, EFact::SampleRate, EFact::Centre, EFact::Start}));
  EXPECT_EQ(CountLines(m_log,
                       "it does not tell what its samples are, its sample rate, its centre frequency and when it "
                       "begins"),
            1)
      << Joined(m_log);
  ASSERT_TRUE(Analyse("x.iq", All())) << Joined(m_log);
  EXPECT_EQ(m_set.nSampleRate, 1000U);
  EXPECT_EQ(m_set.nRadioCenterFreq, 7'100'000);
  EXPECT_EQ(m_set.tStart, 1'700'000'000);
  EXPECT_EQ(m_set.nStartNanoseconds, 250'000'001U);
  EXPECT_EQ(Samples(), "AAAABBBB");
}

TEST_F(ForeignSet, FileOfAnyNameIsRawWhenItsSamplesAreGiven) {
  Write("samples.txt", "AAAABBBB");
  EXPECT_FALSE(Analyse("samples.txt"));
  EXPECT_TRUE(m_set.missing.empty()) << "nothing says that it is a recording";
  EXPECT_TRUE(Analyse("samples.txt", All())) << Joined(m_log);
  EXPECT_EQ(m_set.TotalBytes(), 8);
}

TEST_F(ForeignSet, Rtl433NameTellsCentreAndRateAndPortaPackATextBesideTheFile) {
  SGivenFacts start;
  start.start = SExactTime{1'700'000'000, 0};
  Write("g001_433.92M_250k.cu8", "AABB");
  EXPECT_FALSE(Analyse("g001_433.92M_250k.cu8"));
  EXPECT_EQ(m_set.missing, std::vector<EFact>{EFact::Start});
  ASSERT_TRUE(Analyse("g001_433.92M_250k.cu8", start)) << Joined(m_log);
  EXPECT_EQ(m_set.nRadioCenterFreq, 433'920'000);
  EXPECT_EQ(m_set.nSampleRate, 250'000U);
  EXPECT_EQ(m_set.kind, *ParseSampleKind("cu8"));

  Write("BBD_0001.C16", "AAAABBBB");
  Write("BBD_0001.TXT", "sample_rate=500000\r\ncenter_frequency=434000000\r\n");
  ASSERT_TRUE(Analyse("BBD_0001.C16", start)) << Joined(m_log);
  EXPECT_EQ(m_set.strSourceName, "PortaPack");
  EXPECT_EQ(m_set.nRadioCenterFreq, 434'000'000);
  EXPECT_EQ(m_set.nSampleRate, 500'000U);
}

TEST_F(ForeignSet, KiwiBlocksAreJoinedAndTheStampGivesTheFraction) {
  // 2019-02-26T18:37:22Z is second 239,860 of its GPS week.
  const std::string stamp = std::string("\x03\0", 2) + Le32(239'860) + Le32(125'000'000);
  const std::string kiwi = Chunk("kiwi", stamp);
  const std::string chunks = FormatChunk() + kiwi + Chunk("data", "AAAA") + kiwi + Chunk("data", "BBBBCCCC") + kiwi +
                             Chunk("data", "DDDDEEEE") + kiwi + Chunk("data", "FFFF");
  Write("20190226T183722Z_1440000_iq.wav", Riff(chunks));
  ASSERT_TRUE(Analyse("20190226T183722Z_1440000_iq.wav")) << Joined(m_log);
  EXPECT_EQ(m_set.strSourceName, "KiwiSDR");
  EXPECT_EQ(m_set.nRadioCenterFreq, 1'440'000);
  EXPECT_EQ(m_set.tStart, 1'551'206'242);
  EXPECT_EQ(m_set.nStartNanoseconds, 125'000'000U);
  EXPECT_EQ(Samples(), "AAAABBBBCCCCDDDDEEEEFFFF");
  EXPECT_EQ(m_set.files[0].layout.runs.size(), 2U);
  EXPECT_TRUE(m_log.IsEmpty()) << Joined(m_log);

  Write("20190226T183722Z_1440000_iq.wav", Riff(chunks).substr(0, Riff(chunks).size() - 2));
  ASSERT_TRUE(Analyse("20190226T183722Z_1440000_iq.wav")) << Joined(m_log);
  EXPECT_EQ(Samples(), "AAAABBBBCCCCDDDDEEEE");
  EXPECT_EQ(CountLines(m_log, "ends within a block"), 1) << Joined(m_log);
}

TEST_F(ForeignSet, KiwiBlockOfAWrongSizeIsReadUpToTheNextBlock) {
  const std::string kiwi = Chunk("kiwi", std::string("\x03\0", 2) + Le32(239'860) + Le32(125'000'000));
  const std::string blocks = kiwi + Chunk("data", "AAAABBBB") + kiwi + Chunk("data", "CCCCDDDD") + kiwi +
                             Chunk("data", "EEEEFFFF") + kiwi + Chunk("data", "GGGG");
  const std::string wave = Riff(FormatChunk() + blocks);
  const std::size_t size = wave.find("CCCC") - 4;
  // Too small, within the next head, exactly on the head of the block behind the next one, and behind the file's end.
  for (const std::uint32_t wrong : {0U, 4U, 12U, 8U + 18 + 16, 8U + 18 + 8 + 8 + 18 + 8, 4000U, 0xFFFFFFFFU}) {
    std::string damaged = wave;
    damaged.replace(size, 4, Le32(wrong));
    Write("20190226T183722Z_1440000_iq.wav", damaged);
    ASSERT_TRUE(Analyse("20190226T183722Z_1440000_iq.wav")) << wrong << Joined(m_log);
    EXPECT_EQ(Samples(), "AAAABBBBCCCCDDDDEEEEFFFFGGGG") << wrong;
    EXPECT_EQ(CountLines(m_log, "tell a wrong size: 1, the first at byte " + std::to_string(size + 4)), 1)
        << wrong << Joined(m_log);
  }
}

TEST_F(ForeignSet, KiwiStampIsBroughtToTheWeekOfTheName) {
  EXPECT_EQ(KiwiStart(1'551'206'242, {239'860, 5}), (SExactTime{1'551'206'242, 5}));
  EXPECT_EQ(KiwiStart(1'551'206'242, {239'863, 0}), (SExactTime{1'551'206'245, 0}));
  EXPECT_EQ(KiwiStart(1'551'206'242, {239'871, 0}), std::nullopt) << "of another moment";
  EXPECT_EQ(KiwiStart(1'551'206'242, {604'800, 0}), std::nullopt);
  EXPECT_EQ(KiwiStart(1'551'206'242, {239'860, 1'000'000'000}), std::nullopt);
  // A week ends within: 2019-03-02T23:59:43Z is second 1 of the next.
  EXPECT_EQ(KiwiStart(1'551'571'181, {1, 0}), (SExactTime{1'551'571'183, 0}));
  EXPECT_EQ(KiwiStart(1'551'571'183, {604'799, 0}), (SExactTime{1'551'571'181, 0}));
}

TEST_F(ForeignSet, WaveOfSdrPlusPlusIsTakenByItsNameInTheZoneThatIsGiven) {
  Write("baseband_100000000Hz_14-03-27_05-11-2023.wav", SecondsOfWave(2));
  SGivenFacts zone;
  zone.zone = STimeZone{false, 0};
  ASSERT_TRUE(Analyse("baseband_100000000Hz_14-03-27_05-11-2023.wav", zone)) << Joined(m_log);
  EXPECT_EQ(m_set.strSourceName, "SDR++");
  EXPECT_EQ(m_set.nRadioCenterFreq, 100'000'000);
  EXPECT_EQ(m_set.tStart, 1'699'193'007);
  EXPECT_EQ(m_set.tEnd, 1'699'193'009);
  EXPECT_EQ(m_set.files[0].container, EContainer::Wave);
  zone.zone = STimeZone{false, 7200};
  ASSERT_TRUE(Analyse("baseband_100000000Hz_14-03-27_05-11-2023.wav", zone)) << Joined(m_log);
  EXPECT_EQ(m_set.tStart, 1'699'193'007 - 7200);
}

TEST_F(ForeignSet, EightBitWavesOfNamedProgramsAreUnsigned) {
  const std::string wave = Riff(FormatChunk({.nBits = 8}) + Chunk("data", std::string(2000, '\x80')));
  Write("HackRF_20131128_101500Z_100000kHz_IQ.wav", wave);
  ASSERT_TRUE(Analyse("HackRF_20131128_101500Z_100000kHz_IQ.wav")) << Joined(m_log);
  EXPECT_EQ(m_set.kind.number, ENumber::Unsigned);
  EXPECT_EQ(m_set.kind.dZero, 128.0);
  Write("capture.wav", wave);
  ASSERT_TRUE(Analyse("capture.wav")) << Joined(m_log);
  EXPECT_EQ(m_set.kind.number, ENumber::Signed);
}

TEST_F(ForeignSet, SecondHandNamesAreToldOf) {
  Write("SDRconnect_IQ_20250520_164031_137110000HZ.wav", SecondsOfWave(1));
  ASSERT_TRUE(Analyse("SDRconnect_IQ_20250520_164031_137110000HZ.wav")) << Joined(m_log);
  EXPECT_EQ(CountLines(m_log, "as far as is known"), 1) << Joined(m_log);
}

TEST_F(ForeignSet, FilesThatGoOnAreOneRecordingAndOthersAreNot) {
  const auto name = [](const char* time, const char* centre) {
    return std::string("2024-01-19_") + time + "_1000SPS_" + centre + "Hz.cs16";
  };
  Write(name("12-00-00", "137100000"), std::string(40'000, 'a'));  // 10 seconds
  Write(name("12-00-12", "137100000"), std::string(40'000, 'b'));
  Write(name("12-00-22", "137200000"), std::string(40'000, 'c'));
  Write(name("12-00-28", "137100000"), std::string(40'000, 'd'));  // 6 seconds later
  for (const char* selected : {"12-00-00", "12-00-12"}) {
    ASSERT_TRUE(Analyse(name(selected, "137100000"))) << Joined(m_log);
    ASSERT_EQ(m_set.files.size(), 2U);
    EXPECT_EQ(platform::NameOf(m_set.files[1].strPath), name("12-00-12", "137100000"));
    EXPECT_EQ(m_set.tEnd - m_set.tStart, 22);
    EXPECT_EQ(m_set.TotalBytes(), 80'000);
  }
  SGivenFacts given;
  given.start = SExactTime{1'700'000'000, 0};
  ASSERT_TRUE(Analyse(name("12-00-12", "137100000"), given)) << Joined(m_log);
  EXPECT_EQ(m_set.tStart, 1'700'000'000);
  EXPECT_EQ(m_set.tEnd, 1'700'000'022);
}

TEST_F(ForeignSet, GivenFactsGoBeforeThoseOfDescribedRecordings) {
  Write("sdrsharp_20230415_120003z_7050000hz_iq.wav", SecondsOfWave(20));
  SGivenFacts given;
  given.zone = STimeZone{false, 3600};
  ASSERT_TRUE(Analyse("sdrsharp_20230415_120003z_7050000hz_iq.wav", given)) << Joined(m_log);
  EXPECT_EQ(m_set.strSourceName, "SDRSharp");
  EXPECT_EQ(m_set.tStart, 1'681'560'003 - 3600);
  EXPECT_EQ(m_set.tEnd - m_set.tStart, 20);
  given = All();
  given.nSampleRate = 2000;
  given.kind = ParseSampleKind("cu16");
  ASSERT_TRUE(Analyse("sdrsharp_20230415_120003z_7050000hz_iq.wav", given)) << Joined(m_log);
  EXPECT_EQ(m_set.nSampleRate, 2000U);
  EXPECT_EQ(m_set.nRadioCenterFreq, 7'100'000);
  EXPECT_EQ(m_set.tStart, 1'700'000'000);
  EXPECT_EQ(m_set.tEnd, 1'700'000'010);
  EXPECT_EQ(m_set.kind, *ParseSampleKind("cu16"));
  given.kind = ParseSampleKind("cf32");
  EXPECT_FALSE(Analyse("sdrsharp_20230415_120003z_7050000hz_iq.wav", given));
  EXPECT_EQ(CountLines(m_log, "its frames have 4 bytes, those of cf32_le have 8"), 1) << Joined(m_log);
}

TEST_F(ForeignSet, WaveWithoutARateTakesAGivenOne) {
  Write("AirSpy_20131128_101500Z_100000kHz_IQ.wav",
        Riff(FormatChunk({.nRate = 0}) + Chunk("data", std::string(4000, 'x'))));
  EXPECT_FALSE(Analyse("AirSpy_20131128_101500Z_100000kHz_IQ.wav"));
  EXPECT_EQ(m_set.missing, std::vector<EFact>{EFact::SampleRate});
  SGivenFacts given;
  given.nSampleRate = 1000;
  ASSERT_TRUE(Analyse("AirSpy_20131128_101500Z_100000kHz_IQ.wav", given)) << Joined(m_log);
  EXPECT_EQ(m_set.nRadioCenterFreq, 100'000'000);
  EXPECT_EQ(m_set.tEnd - m_set.tStart, 1);
}

TEST_F(ForeignSet, NameThatContradictsAChunkIsToldAndTheChunkHolds) {
  const SAuxi auxi{.start = {2024, 11, 14, 12, 35, 12, 758}, .stop = {2024, 11, 14, 12, 35, 13, 0}};
  Write("test_2024-11-14T11_35_12_758.wav",
        Riff(FormatChunk() + Chunk("auxi", AuxiBody(164, auxi)) + Chunk("data", std::string(4000, 'x'))));
  ASSERT_TRUE(Analyse("test_2024-11-14T11_35_12_758.wav")) << Joined(m_log);
  EXPECT_EQ(m_set.strSourceName, "Winrad");
  EXPECT_EQ(m_set.tStart, 1'731'587'712);
  EXPECT_EQ(CountLines(m_log, "its name tells the start 2024-11-14 11:35:12 UTC"), 1) << Joined(m_log);
}

}  // namespace
}  // namespace carvello::test
