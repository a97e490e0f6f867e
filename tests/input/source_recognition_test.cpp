#include "input/source_recognition.h"

#include <string>
#include <vector>

#include "input/calendar_time.h"
#include "input/foreign_recordings.h"
#include "input/input_fixture.h"
#include "input/wave_file_reader.h"
#include "support/hresult.h"
#include "support/platform.h"

namespace carvello::test {

namespace {

class SourceRecognition : public InputTest {
 protected:
  // Walks a file of these bytes and returns what was recognised.
  const RecordingSourceInfo& Recognise(const std::string& name, const std::string& bytes) {
    EXPECT_TRUE(m_reader.ScanChunks(Write(name, bytes), m_result)) << Joined(m_reader.Log());
    return m_result.source;
  }

  // The same, of a file whose recognition gave up; returns why.
  std::string Refusal(const std::string& name, const std::string& bytes) {
    EXPECT_EQ(Recognise(name, bytes).strSourceName, "");
    EXPECT_TRUE(HasLine(m_reader.Log(), "[ERROR] " + m_result.strError));
    return m_result.strError;
  }

  CWaveFileReader m_reader;
  SScanResult m_result;
};

std::string Start(const RecordingSourceInfo& source) {
  return DateText(source.start);
}
std::int64_t Seconds(const SYSTEMTIME& time) {
  std::int64_t seconds = -1;
  EXPECT_TRUE(SystemTimeToSeconds(time, seconds));
  return seconds;
}

std::string Stop(const RecordingSourceInfo& source) {
  return DateText(source.stop);
}

constexpr SDate kTwoOClock{.nHour = 14, .nMinute = 2, .nSecond = 3, .nMilliseconds = 456};

}  // namespace

// ---- binary auxi blocks

TEST_F(SourceRecognition, A28ByteBlockIsSpectraVue1) {
  const SAuxi auxi{.start = kTwoOClock};
  const RecordingSourceInfo& source = Recognise("a.wav", SecondsOfWave(5, Chunk("auxi", ShortAuxiBody(auxi))));
  EXPECT_EQ(source.strSourceName, "SpectraVue 1");
  EXPECT_EQ(Start(source), "2023-04-15 14:02:03");
  EXPECT_EQ(source.start.wMilliseconds, 456);
  EXPECT_EQ(Stop(source), "2023-04-15 14:02:03");
  EXPECT_EQ(source.nCentreFrequency, 7'050'000);
  EXPECT_EQ(source.nADFrequency, 122'880'000u);
  EXPECT_EQ(source.nIFFrequency, 0u);
  EXPECT_EQ(source.nBandwidth, 1000u);
  EXPECT_EQ(source.nDataBytes, 20'000);
  EXPECT_DOUBLE_EQ(source.dDuration, 5.0);
  EXPECT_EQ(source.format.nSamplesPerSec, 1000u);
  EXPECT_EQ(source.format.wFormatTag, 0xFFFE);
}

TEST_F(SourceRecognition, A44ByteBlockIsSpectraVue2) {
  const SAuxi auxi{.start = kTwoOClock, .stop = {.nHour = 15}, .nIFFrequency = 1};
  const RecordingSourceInfo& source = Recognise("a.wav", SecondsOfWave(5, Chunk("auxi", AuxiBody(44, auxi))));
  EXPECT_EQ(source.strSourceName, "SpectraVue 2");
  EXPECT_EQ(Start(source), "2023-04-15 14:02:03");
  EXPECT_EQ(Stop(source), "2023-04-15 15:00:00");
  EXPECT_EQ(source.nCentreFrequency, 7'050'000);
  EXPECT_EQ(source.nADFrequency, 122'880'000u);
  EXPECT_EQ(source.nIFFrequency, 0u);
}

TEST_F(SourceRecognition, A72ByteBlockIsSpectraVue30WithAllItsFrequencies) {
  const SAuxi auxi{.start = kTwoOClock,
                   .stop = {.nHour = 15},
                   .nIFFrequency = 455'000,
                   .nBandwidth = 77,
                   .nIQOffset = 12,
                   .nSpare = 34};
  const RecordingSourceInfo& source = Recognise("a.wav", SecondsOfWave(5, Chunk("auxi", AuxiBody(72, auxi))));
  EXPECT_EQ(source.strSourceName, "SpectraVue 3.0");
  EXPECT_EQ(Start(source), "2023-04-15 14:02:03");
  EXPECT_EQ(source.nIFFrequency, 455'000u);
  EXPECT_EQ(source.nIQOffset, 12u);
  EXPECT_EQ(source.nSpare, 34u);
  EXPECT_EQ(source.nBandwidth, 1000u);  // the file's rate, not the block's
}

TEST_F(SourceRecognition, A68ByteBlockIsSpectraVue234AndKeepsItsMilliseconds) {
  const SAuxi auxi{.start = kTwoOClock, .stop = {.nHour = 15}, .nIFFrequency = 455'000};
  const RecordingSourceInfo& source = Recognise("a.wav", SecondsOfWave(5, Chunk("auxi", AuxiBody(68, auxi))));
  EXPECT_EQ(source.strSourceName, "SpectraVue 2.34");
  EXPECT_EQ(source.start.wMilliseconds, 456);
  EXPECT_EQ(source.nIFFrequency, 455'000u);
}

TEST_F(SourceRecognition, TimesNeverWrittenIntoA68ByteBlockCountFrom1970) {
  const SAuxi auxi{.start = {.nYear = 0, .nMonth = 0, .nDay = 0, .nHour = 0},
                   .stop = {.nYear = 0, .nMonth = 0, .nDay = 0, .nHour = 0}};
  const RecordingSourceInfo& source = Recognise("a.wav", SecondsOfWave(5, Chunk("auxi", AuxiBody(68, auxi))));
  EXPECT_EQ(Start(source), "1970-01-01 00:00:00");
}

TEST_F(SourceRecognition, AStartNeverWrittenIntoAnyBlockCountsFrom1970) {
  // Zeros, and the first day of the calendar that such records are made from.
  for (const SDate& date : {SDate{0, 0, 0, 0, 0, 0, 0}, SDate{1601, 1, 1, 0, 0, 0, 0}}) {
    const auto bytes = [&](std::size_t size) {
      const SAuxi auxi{.start = date, .stop = date};
      return SecondsOfWave(5, Chunk("auxi", size == 28 ? ShortAuxiBody(auxi) : AuxiBody(size, auxi)));
    };
    for (const std::size_t size : {28u, 44u, 68u, 72u, 164u}) {
      const RecordingSourceInfo& source = Recognise("a.wav", bytes(size));
      EXPECT_EQ(Start(source), "1970-01-01 00:00:00") << size;
      EXPECT_TRUE(source.bNoStart) << size;
      EXPECT_EQ(source.strNote, "start time of the auxi chunk was never written, 1970-01-01 taken") << size;
      EXPECT_EQ(source.nCentreFrequency, 7'050'000) << size;
    }
  }
}

TEST_F(SourceRecognition, A164ByteBlockIsWinradWithAFixedClock) {
  const SAuxi auxi{.start = kTwoOClock, .stop = {.nHour = 15}, .nADFrequency = 1, .nIFFrequency = 455'000};
  const RecordingSourceInfo& source = Recognise("a.wav", SecondsOfWave(5, Chunk("auxi", AuxiBody(164, auxi))));
  EXPECT_EQ(source.strSourceName, "Winrad");
  EXPECT_EQ(source.nADFrequency, 66'666'667u);
  EXPECT_EQ(source.nIFFrequency, 0u);
}

TEST_F(SourceRecognition, A164ByteBlockInAFileWithAnEladChunkIsElad) {
  const SAuxi auxi{.start = kTwoOClock, .stop = {.nHour = 15}, .nIFFrequency = 455'000};
  for (const std::string& chunks : {Chunk("elad", "ELAD") + Chunk("auxi", AuxiBody(164, auxi)),
                                    Chunk("auxi", AuxiBody(164, auxi)) + Chunk("elad", "ELAD")}) {
    const RecordingSourceInfo& source = Recognise("a.wav", SecondsOfWave(5, chunks));
    EXPECT_EQ(source.strSourceName, "ELAD");
    EXPECT_EQ(source.nADFrequency, 66'666'667u);
    EXPECT_EQ(source.nIFFrequency, 0u);
  }
}

TEST_F(SourceRecognition, A100ByteBlockLeavesTheName) {
  const RecordingSourceInfo& source =
      Recognise("rec_7050khz.wav", SecondsOfWave(5, Chunk("auxi", std::string(100, '\x7F'))));
  EXPECT_EQ(source.strSourceName, "UnknownFmt");
  EXPECT_EQ(source.nCentreFrequency, 7'050'000);
}

TEST_F(SourceRecognition, ABlockIsFoundBehindTheDataToo) {
  const SAuxi auxi{.start = kTwoOClock};
  const RecordingSourceInfo& source = Recognise("a.wav", PlainWave(8000, {}, Chunk("auxi", AuxiBody(164, auxi))));
  EXPECT_EQ(source.strSourceName, "Winrad");
  EXPECT_EQ(source.nDataBytes, 8000);
}

TEST_F(SourceRecognition, XmlMetadataIsNoOtherProgramsRecording) {
  EXPECT_EQ(
      Recognise("sdrsharp_20230415_194510z_7050000hz_iq.wav", SecondsOfWave(5, XmlChunk("A=\"1\""))).strSourceName, "");
  EXPECT_NE(m_result.strXml, "");
}

TEST_F(SourceRecognition, TheDurationIsByTheFormatsOwnBytesPerSecond) {
  std::string format = FormatBody();
  format.replace(8, 4, Le32(8000));
  const std::string bytes =
      Riff(Chunk("fmt ", format) + Chunk("auxi", AuxiBody(164, {})) + Chunk("data", std::string(16'000, 'x')));
  EXPECT_DOUBLE_EQ(Recognise("a.wav", bytes).dDuration, 2.0);
  format.replace(8, 4, Le32(0));
  const std::string none =
      Riff(Chunk("fmt ", format) + Chunk("auxi", AuxiBody(164, {})) + Chunk("data", std::string(16'000, 'x')));
  EXPECT_DOUBLE_EQ(Recognise("a.wav", none).dDuration, 4.0);
}

// ---- Perseus

TEST_F(SourceRecognition, APerseusFileTellsItsRateByIndex) {
  const std::vector<std::uint32_t> rates = {125'000, 250'000, 500'000, 1'000'000, 2'000'000, 1'600'000, 1000, 1000};
  for (std::uint32_t index = 0; index < rates.size(); ++index) {
    const RecordingSourceInfo& source =
        Recognise("a.wav", SecondsOfWave(5, Chunk("rcvr", RcvrBody(7'050'000, index, 1'681'587'910))));
    EXPECT_EQ(source.strSourceName, "Perseus");
    EXPECT_EQ(source.nBandwidth, rates[index]) << index;
  }
}

TEST_F(SourceRecognition, APerseusFileIsDescribedToTheMillisecond) {
  const std::string bytes =
      Riff(FormatChunk({.nRate = 125'000, .nBits = 24}) + Chunk("rcvr", RcvrBody(7'050'000, 0, 1'681'587'910)) +
           Chunk("data", std::string(750'000 * 3 / 2, 'x')));
  const RecordingSourceInfo& source = Recognise("a.wav", bytes);
  EXPECT_EQ(source.nCentreFrequency, 7'050'000);
  EXPECT_EQ(source.nADFrequency, 80'000'000u);
  EXPECT_EQ(Start(source), "2023-04-15 19:45:10");
  EXPECT_DOUBLE_EQ(source.dDuration, 1.5);
  EXPECT_EQ(Stop(source), "2023-04-15 19:45:11");
  EXPECT_EQ(source.stop.wMilliseconds, 500);
}

TEST_F(SourceRecognition, AShortPerseusBlockIsReadAsFarAsItGoes) {
  const RecordingSourceInfo& source =
      Recognise("a.wav", SecondsOfWave(5, Chunk("rcvr", RcvrBody(7'050'000, 2, 1).substr(0, 8))));
  EXPECT_EQ(source.nCentreFrequency, 7'050'000);
  EXPECT_EQ(source.nBandwidth, 500'000u);
  EXPECT_EQ(Start(source), "1970-01-01 00:00:00");
}

TEST_F(SourceRecognition, APerseusStartThatHasNoDateIsRefused) {
  for (const std::int64_t start : {std::int64_t{-1}, std::int64_t{1} << 62}) {
    EXPECT_EQ(Refusal("a.wav", SecondsOfWave(5, Chunk("rcvr", RcvrBody(1, 0, start))))
                  .find("start time of the rcvr chunk " + std::to_string(start)),
              0u);
  }
}

// ---- signalinfo

TEST_F(SourceRecognition, ASignalInfoDocumentIsGo2Monitor) {
  const std::string meta = Chunk("meta", SignalInfoBody("complex", "2026-11-16T00:44:40.987Z"));
  const RecordingSourceInfo& source = Recognise("a.wav", SecondsOfWave(5.6, meta));
  EXPECT_EQ(source.strSourceName, "go2MONITOR");
  EXPECT_EQ(source.nCentreFrequency, 7'050'000);
  EXPECT_EQ(source.nIFFrequency, 455'000u);
  EXPECT_EQ(source.nBandwidth, 900u);
  EXPECT_EQ(Start(source), "2026-11-16 00:44:40");
  EXPECT_EQ(source.start.wMilliseconds, 0);
  EXPECT_EQ(Stop(source), "2026-11-16 00:44:46");  // to the nearest second
  EXPECT_DOUBLE_EQ(source.dDuration, 5.6);
}

TEST_F(SourceRecognition, SignalInfoElementsBelowBaseAreFound) {
  const std::string xml =
      "<?xml version='1.0' encoding='UTF-8'?>\r\n<signalinfo xml:lang=\"EN\"><base><bandwidth>1000.000</bandwidth>"
      "<data_type>complex</data_type><if_frequency>0</if_frequency><rf_frequency>7100000.000</rf_frequency>"
      "<sample_rate>1000.000</sample_rate><signaltime>2026-11-16T00:00:40.000Z</signaltime></base></signalinfo>";
  const RecordingSourceInfo& source =
      Recognise("a.wav", PlainWave(8000, {}, Chunk("meta", xml + std::string(4, '\0'))));
  EXPECT_EQ(source.strSourceName, "go2MONITOR");
  EXPECT_EQ(source.nCentreFrequency, 7'100'000);
  EXPECT_EQ(Start(source), "2026-11-16 00:00:40");
}

TEST_F(SourceRecognition, RealSamplesAreNoIQRecording) {
  const std::string meta = Chunk("meta", SignalInfoBody("real", "2026-11-16T00:44:40.000Z"));
  const RecordingSourceInfo& source = Recognise("rec_7050khz.wav", SecondsOfWave(5, meta));
  EXPECT_EQ(source.strSourceName, "");
  EXPECT_EQ(source.strNote,
            "its meta chunk does not tell of complex samples (data_type) with sample_rate, rf_frequency and bandwidth");
  EXPECT_EQ(m_result.strError, "");
}

TEST_F(SourceRecognition, AMetaChunkOfAnotherKindLeavesTheName) {
  for (const char* meta : {"", "<other/>", "no XML at all", "<signalinf"}) {
    EXPECT_EQ(Recognise("rec_7050khz.wav", SecondsOfWave(5, Chunk("meta", meta))).strSourceName, "UnknownFmt");
  }
}

TEST_F(SourceRecognition, SignalTimesOfLessPrecisionAreRead) {
  const auto start = [&](const char* text) {
    return Start(Recognise("a.wav", SecondsOfWave(5, Chunk("meta", SignalInfoBody("complex", text)))));
  };
  EXPECT_EQ(start("2026-11-16 00:44:40"), "2026-11-16 00:44:40");
  EXPECT_EQ(start(" 2026-11-16T00:44Z "), "2026-11-16 00:44:00");
  EXPECT_EQ(start("2026-11-16"), "2026-11-16 00:00:00");
}

TEST_F(SourceRecognition, SignalTimesOfOtherFormsAreRead) {
  for (const char* text : {"2023/04/15 19:45:10", "2023.04.15 19:45:10", "15.04.2023 19:45:10", "15.4.2023 19:45:10.5",
                           "15 Apr 2023 19:45:10", "15-april-2023 7:45:10 PM", "April 15, 2023 19:45:10",
                           "2023-4-15T19:45:10Z", "2023/04/15T19:45:10.123Z"}) {
    const RecordingSourceInfo& source =
        Recognise("a.wav", SecondsOfWave(5, Chunk("meta", SignalInfoBody("complex", text))));
    EXPECT_EQ(Start(source), "2023-04-15 19:45:10") << text;
    EXPECT_EQ(source.strNote, "") << text;
  }
  EXPECT_EQ(Start(Recognise("a.wav", SecondsOfWave(5, Chunk("meta", SignalInfoBody("complex", "1.5.2023 12:07 AM"))))),
            "2023-05-01 00:07:00");
}

TEST_F(SourceRecognition, NumbersMayHaveAPlusSign) {
  std::string meta = SignalInfoBody("complex", "2023-04-15");
  const std::size_t frequency = meta.find("<rf_frequency>") + 14;
  meta.insert(frequency, "+");
  EXPECT_EQ(Recognise("a.wav", SecondsOfWave(5, Chunk("meta", meta))).nCentreFrequency, 7'050'000);
  EXPECT_EQ(Recognise("rec_+7050khz.wav", SecondsOfWave(5)).nCentreFrequency, 7'050'000);
  EXPECT_EQ(Recognise("g-+7.050mhz_23-04-17_19'45'10.ddc", SecondsOfWave(5)).nCentreFrequency, 7'050'000);
}

TEST_F(SourceRecognition, ASignalTimeThatIsNoDateAtAllIsDateZero) {
  for (const char* text :
       {"", "yesterday", "2026-11", "2026-11-16T00:44:40+01:00", "04/05/2023 19:45:10", "15 Foo 2023", "15.04.2023 25",
        "2023-04/15", "15.04.2023 19:45:10 XM", "15.04.2023 13:00 PM"}) {
    const RecordingSourceInfo& source =
        Recognise("a.wav", SecondsOfWave(5, Chunk("meta", SignalInfoBody("complex", text))));
    EXPECT_EQ(source.strSourceName, "go2MONITOR") << text;
    EXPECT_EQ(source.nCentreFrequency, 7'050'000) << text;
    EXPECT_DOUBLE_EQ(source.dDuration, 5.0) << text;
    EXPECT_EQ(Start(source), "1899-12-30 00:00:00") << text;
    EXPECT_EQ(Stop(source), "1899-12-30 00:00:05") << text;
    EXPECT_EQ(source.strNote.find("signaltime of the meta chunk is no time"), 0u) << text;
    EXPECT_EQ(m_result.strError, "") << text;
  }
}

TEST_F(SourceRecognition, SignalTimesThatCannotBeAreRefused) {
  for (const char* text :
       {"2026-13-16T00:44:40Z", "2026-02-30T00:44:40Z", "1955-11-16T00:44:40Z", "2026-11-16T24:00:00Z"}) {
    const std::string refusal = Refusal("a.wav", SecondsOfWave(5, Chunk("meta", SignalInfoBody("complex", text))));
    EXPECT_EQ(refusal.find("signaltime of the meta chunk "), 0u) << text << ": " << refusal;
  }
}

// ---- names: Winradio

TEST_F(SourceRecognition, AWinradioNameTellsItsFrequencyExactly) {
  const auto centre = [&](const std::string& frequency) {
    return Recognise("g39-" + frequency + "mhz_23-04-17_19'45'10.ddc", SecondsOfWave(5)).nCentreFrequency;
  };
  EXPECT_EQ(centre("7.050"), 7'050'000);
  EXPECT_EQ(centre("14.234567"), 14'234'567);
  EXPECT_EQ(centre("14.2345678"), 14'234'567);
  EXPECT_EQ(centre("145"), 145'000'000);
  EXPECT_EQ(centre("5800.000001"), 5'800'000'001);
  EXPECT_EQ(m_result.source.strSourceName, "Winradio");
}

TEST_F(SourceRecognition, BlanksBeforeANumberInANameDoNotCount) {
  const auto centre = [&](const char* name) { return Recognise(name, SecondsOfWave(5)).nCentreFrequency; };
  EXPECT_EQ(centre("G39 - 7.050 MHz_23-04-17_19'45'10.ddc"), 7'050'000);
  EXPECT_EQ(centre("rec_ 7050khz.wav"), 7'050'000);
  EXPECT_EQ(centre("sdrsharp_20230415_194510z_ 7050khz_iq.wav"), 7'050'000);
}

TEST_F(SourceRecognition, AWinradioNameWithoutANumberIsAt0Hz) {
  const auto centre = [&](const std::string& frequency) {
    return Recognise(frequency + "mhz_23-04-17_19'45'10.ddc", SecondsOfWave(5)).nCentreFrequency;
  };
  for (const char* text : {"g39_7.050", "g39-", "g39-.", "g39-x.5", "g39- ", "g39-99999999999999999999"}) {
    EXPECT_EQ(centre(text), 0) << text;
  }
  EXPECT_EQ(centre("g39-.5"), 500'000);
  EXPECT_EQ(centre("g39-7x.5"), 7'000'000);
}

TEST_F(SourceRecognition, AWinradioNameWithoutADateTakesTheFilesCreationTime) {
  for (const char* name : {"rec.ddc", "rec-7.050mhz.ddc", "rec-7.050mhz_23.04.17_19'45'10.ddc", "mhz.ddc"}) {
    const RecordingSourceInfo& source = Recognise(name, SecondsOfWave(5));
    EXPECT_EQ(source.strSourceName, "Winradio");
    EXPECT_EQ(Seconds(source.start), platform::GetFileStatus(Path(name))->tCreated) << name;
  }
}

TEST_F(SourceRecognition, AWinradioContinuationFileStartsLater) {
  // 4.2 seconds are counted as 5.
  const RecordingSourceInfo first = Recognise("r-7.050MHz_23-04-17_19'45'10.ddc", SecondsOfWave(4.2));
  const RecordingSourceInfo third = Recognise("r-7.050MHz_23-04-17_19'45'10-^002.ddc", SecondsOfWave(4.2));
  EXPECT_EQ(Seconds(first.stop) - Seconds(first.start), 5);
  EXPECT_EQ(Seconds(third.start) - Seconds(first.start), 10);
  EXPECT_EQ(Seconds(third.stop) - Seconds(third.start), 5);
  EXPECT_DOUBLE_EQ(third.dDuration, 4.2);
}

TEST_F(SourceRecognition, WinradioDatesThatCannotBeAreRefused) {
  EXPECT_EQ(Refusal("r-7mhz_23-13-17_19'45'10.ddc", SecondsOfWave(5))
                .find("start time in the file's name 2023-13-17 19:45:10 is no date from 1970 on"),
            0u);
  EXPECT_EQ(Refusal("r-7mhz_23-02-30_19'45'10.ddc", SecondsOfWave(5))
                .find("start time in the file's name 2023-02-30 19:45:10 is a day that does not exist"),
            0u);
}

// ---- names: SDRSharp

TEST_F(SourceRecognition, AnSdrSharpNameTellsTimeAndFrequency) {
  const RecordingSourceInfo& source = Recognise("SDRSharp_20230415_194510Z_7050000Hz_IQ.wav", SecondsOfWave(4.2));
  EXPECT_EQ(source.strSourceName, "SDRSharp");
  EXPECT_EQ(source.nCentreFrequency, 7'050'000);
  EXPECT_EQ(Start(source), "2023-04-15 19:45:10");
  EXPECT_EQ(Stop(source), "2023-04-15 19:45:15");
  EXPECT_DOUBLE_EQ(source.dDuration, 4.2);
}

TEST_F(SourceRecognition, AnAirspyNameIsSdrSharpToo) {
  const RecordingSourceInfo& source = Recognise("airspy_20230415_194510z_145500khz_iq.wav", SecondsOfWave(5));
  EXPECT_EQ(source.strSourceName, "SDRSharp");
  EXPECT_EQ(source.nCentreFrequency, 145'500'000);
}

TEST_F(SourceRecognition, EveryUnitOfAnSdrSharpNameIsKnown) {
  const auto centre = [&](const std::string& end) {
    return Recognise("sdrsharp_20230415_194510z_" + end, SecondsOfWave(5)).nCentreFrequency;
  };
  EXPECT_EQ(centre("7mhz_iq.wav"), 7'000'000);
  EXPECT_EQ(centre("7050khz_iq.wav"), 7'050'000);
  EXPECT_EQ(centre("7050000hz_iq.wav"), 7'050'000);
  EXPECT_EQ(centre("7mhz_2.wav"), 7'000'000);
  EXPECT_EQ(centre("7050khz_2.wav"), 7'050'000);
  EXPECT_EQ(centre("7050000hz_2.wav"), 7'050'000);
  EXPECT_EQ(centre("7mhz.wav"), 7'000'000);
  EXPECT_EQ(centre("7050khz.wav"), 7'050'000);
  EXPECT_EQ(centre("7050000hz.wav"), 7'050'000);
  EXPECT_EQ(centre("10368000000hz_iq.wav"), 10'368'000'000);
}

TEST_F(SourceRecognition, AnSdrSharpNameThatTellsNothingIsNotRecognised) {
  for (const char* name : {"sdrsharp_recording.wav", "sdrsharp_7050000hz.wav", "airspy_194510z_7050000hz_iq.wav"}) {
    EXPECT_EQ(Recognise(name, SecondsOfWave(5)).strSourceName, "") << name;
    EXPECT_EQ(m_result.strError, "");
  }
}

TEST_F(SourceRecognition, ThePrefixMustBeginTheNameAndNotTheFolder) {
  MakeFolder("sdrsharp_old");
  EXPECT_EQ(Recognise("sdrsharp_old/capture.wav", SecondsOfWave(5)).strSourceName, "UnknownFmt");
}

TEST_F(SourceRecognition, SdrSharpDatesThatCannotBeAreRefused) {
  for (const char* date : {"20231315_194510z", "20230230_194510z", "19550415_194510z", "20230415_244510z"}) {
    const std::string name = "sdrsharp_" + std::string(date) + "_7050000hz_iq.wav";
    EXPECT_EQ(Refusal(name, SecondsOfWave(5)).find("start time in the file's name "), 0u) << date;
  }
}

TEST_F(SourceRecognition, AnSdrSharpYearBefore1900IsNoDateAtAll) {
  EXPECT_EQ(Start(Recognise("sdrsharp_00010415_194510z_7050000hz_iq.wav", SecondsOfWave(5))), "1970-01-01 00:00:00");
}

// ---- names: anything else

TEST_F(SourceRecognition, AFileWithoutAnyMetadataIsUnknownAt10MHz) {
  const RecordingSourceInfo& source = Recognise("capture.wav", SecondsOfWave(4.9));
  EXPECT_EQ(source.strSourceName, "UnknownFmt");
  EXPECT_EQ(source.nCentreFrequency, 10'000'000);
  EXPECT_EQ(source.nBandwidth, 1000u);
  EXPECT_EQ(Seconds(source.start), platform::GetFileStatus(Path("capture.wav"))->tCreated);
  EXPECT_EQ(Seconds(source.stop) - Seconds(source.start), 4);  // cut to whole seconds
  EXPECT_DOUBLE_EQ(source.dDuration, 4.9);
}

TEST_F(SourceRecognition, TheEndingOfTheNameTellsTheFrequency) {
  const auto centre = [&](const char* name) { return Recognise(name, SecondsOfWave(5)).nCentreFrequency; };
  EXPECT_EQ(centre("rec_7050khz.wav"), 7'050'000);
  EXPECT_EQ(centre("rec_145mhz.wav"), 145'000'000);
  EXPECT_EQ(centre("rec_7050000hz.wav"), 7'050'000);
  EXPECT_EQ(centre("rec_7050kHz.wav"), 10'000'000);  // the case counts
  EXPECT_EQ(centre("7050khz.wav"), 10'000'000);
  EXPECT_EQ(centre("_7050khz.wav"), 10'000'000);
  EXPECT_EQ(centre("rec_999999999999999999999khz.wav"), 0);
  MakeFolder("in_a");
  EXPECT_EQ(centre("in_a/7050khz.wav"), 10'000'000);
}

TEST_F(SourceRecognition, AMonoFileIsNotRecognised) {
  const WAVEFORMATEXTENSIBLE mono = [] {
    WAVEFORMATEXTENSIBLE format;
    format.Format.nChannels = 1;
    format.Format.nSamplesPerSec = 1000;
    format.Format.wBitsPerSample = 16;
    return format;
  }();
  RecordingSourceInfo source;
  source.strSourceName = "as before";
  EXPECT_FALSE(RecogniseAuxi(Path("capture.wav"), {}, false, 8000, mono, source));
  EXPECT_EQ(source.strSourceName, "as before");
  EXPECT_EQ(Recognise("capture.wav",
                      Riff(Chunk("fmt ", ExtensibleBody({.nChannels = 1}, 1)) + Chunk("data", std::string(8000, 'x'))))
                .strSourceName,
            "");
}

TEST_F(SourceRecognition, AFileThatIsNotThereTakesThePresentTime) {
  WAVEFORMATEXTENSIBLE format;
  format.Format.nChannels = 2;
  format.Format.nSamplesPerSec = 1000;
  format.Format.wBitsPerSample = 16;
  RecordingSourceInfo source;
  const std::int64_t before = CurrentTime();
  ASSERT_TRUE(RecogniseAuxi(Path("gone.wav"), {}, false, 8000, format, source));
  const std::int64_t after = CurrentTime();
  EXPECT_GE(Seconds(source.start), before);
  EXPECT_LE(Seconds(source.start), after);
}

// ---- dates

TEST(CalendarTime, AnswersWithTheErrorCodeOfTheKind) {
  const auto code = [](const SDateFields& fields) {
    try {
      UtcCalendarTime(fields, "here");
    } catch (const CHResultError& error) {
      return error.Code();
    }
    return std::uint32_t{0};
  };
  EXPECT_EQ(code({1970, 1, 1, 0, 0, 0}), 0u);
  EXPECT_EQ(code({2024, 2, 29, 23, 59, 59}), 0u);
  EXPECT_EQ(code({1969, 12, 31, 23, 59, 59}), kFailure);
  EXPECT_EQ(code({2023, 0, 1, 0, 0, 0}), kFailure);
  EXPECT_EQ(code({2023, 13, 1, 0, 0, 0}), kFailure);
  EXPECT_EQ(code({2023, 1, 0, 0, 0, 0}), kFailure);
  EXPECT_EQ(code({2023, 1, 32, 0, 0, 0}), kFailure);
  EXPECT_EQ(code({2023, 1, 1, 24, 0, 0}), kFailure);
  EXPECT_EQ(code({2023, 1, 1, 0, 60, 0}), kFailure);
  EXPECT_EQ(code({2023, 1, 1, 0, 0, 60}), kFailure);
  EXPECT_EQ(code({2023, 2, 29, 0, 0, 0}), kInvalidArgument);
  EXPECT_EQ(code({2023, 4, 31, 0, 0, 0}), kInvalidArgument);
}

TEST(CalendarTime, AddsSecondsWithTheirFraction) {
  const SYSTEMTIME time{2024, 2, 4, 29, 23, 59, 59, 900};
  EXPECT_EQ(DateText(AddSeconds(time, 0.25)), "2024-03-01 00:00:00");
  EXPECT_EQ(AddSeconds(time, 0.25).wMilliseconds, 150);
  EXPECT_EQ(DateText(AddSeconds(time, 1e300)), DateText(time));
  EXPECT_EQ(DateText(AddSeconds({2023, 13, 0, 1, 0, 0, 0, 0}, 1)), "2023-13-01 00:00:00");
}

}  // namespace carvello::test
