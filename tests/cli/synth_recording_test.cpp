#include "cli/synth_recording.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>

#include "input/recording_set.h"
#include "input/wave_file_reader.h"
#include "support/temp_folder.h"

namespace carvello::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class SynthRecording : public testing::Test {
 protected:
  SynthRecording() {
    m_settings.strPath = m_folder / "out.wav";
    m_settings.nSampleRate = 48'000;
    m_settings.nCentre = 7'100'000;
    m_settings.nFrames = 48'000;
    m_settings.tStart = 1'795'262'400;
    m_settings.stations = {{7'105'000, -6.0, false}};
    m_settings.nSeed = 1;
  }

  SSynthResult Write() {
    SSynthResult result = WriteSynthRecording(m_settings);
    EXPECT_EQ(result.strError, "");
    EXPECT_FALSE(result.bStopped);
    return result;
  }

  // The walk's log, which must hold no complaint.
  static std::string CleanLog(const std::string& file) {
    CWaveFileReader reader;
    SScanResult scan;
    EXPECT_TRUE(reader.ScanChunks(file, scan));
    std::string log;
    for (const std::string& line : reader.Log()) log += line + "\n";
    EXPECT_EQ(log.find("[WARNING]"), std::string::npos) << log;
    EXPECT_EQ(log.find("[ERROR]"), std::string::npos) << log;
    EXPECT_THAT(log, HasSubstr("Finished"));
    return log;
  }

  // The bytes of the data chunk.
  static std::string Samples(const std::string& file) {
    CWaveFileReader reader;
    WAVEFORMATEXTENSIBLE format;
    std::int64_t bytes = 0;
    EXPECT_TRUE(reader.Open(file));
    EXPECT_TRUE(reader.ParseWave(format, bytes));
    const std::string whole = ReadWholeFile(file);
    const auto start = static_cast<std::size_t>(reader.DataStart());
    reader.Close();
    return whole.substr(start, static_cast<std::size_t>(bytes));
  }

  CTempFolder m_folder;
  SSynthSettings m_settings;
};

TEST_F(SynthRecording, IsReadBackWithoutAComplaintInEveryFormat) {
  for (const ESynthFormat format :
       {ESynthFormat::Pcm8, ESynthFormat::Pcm16, ESynthFormat::Pcm24, ESynthFormat::Pcm32, ESynthFormat::Float32}) {
    for (const bool rf64 : {false, true}) {
      m_settings.format = format;
      m_settings.bRf64 = rf64;
      // The analysis keeps what it knows of a file by its name, so every format has a name of its own.
      m_settings.strPath = m_folder / (std::to_string(static_cast<int>(format)) + (rf64 ? "r" : "w") + ".wav");
      EXPECT_THAT(Write().files, ElementsAre(m_settings.strPath));
      CleanLog(m_settings.strPath);

      CRecordingSet set;
      CMyStringArray log;
      ASSERT_TRUE(AnalyseRecordingSet(m_settings.strPath, set, log));
      EXPECT_EQ(set.nBitsPerSample, BitsOf(format));
      EXPECT_EQ(set.bFloat, format == ESynthFormat::Float32);
      EXPECT_EQ(set.bRF64, rf64);
      EXPECT_EQ(set.kind, KindOfWave(set.format));
      EXPECT_EQ(set.nSampleRate, 48'000U);
      EXPECT_EQ(set.nRadioCenterFreq, 7'100'000);
      EXPECT_EQ(set.tStart, 1'795'262'400);
      EXPECT_EQ(set.dDuration, 1.0);
      EXPECT_EQ(set.TotalBytes(), 48'000 * 2 * BitsOf(format) / 8);
    }
  }
}

TEST_F(SynthRecording, HoldsTheSamplesOfTheSignal) {
  Write();
  const std::string bytes = Samples(m_settings.strPath);
  ASSERT_EQ(bytes.size(), 48'000U * 4);
  const double amplitude = 32768.0 * std::pow(10.0, -6.0 / 20.0);
  for (std::size_t n = 0; n < 48'000; n += 101) {
    std::int16_t frame[2];
    std::memcpy(frame, &bytes[4 * n], sizeof(frame));
    const double phase = 2.0 * 3.14159265358979323846 * static_cast<double>(5000 * n % 48'000) / 48'000.0;
    // Half a step of rounding.
    ASSERT_NEAR(frame[0], amplitude * std::cos(phase), 0.51) << n;
    ASSERT_NEAR(frame[1], amplitude * std::sin(phase), 0.51) << n;
  }
}

TEST_F(SynthRecording, IsOneSetOverSeveralFiles) {
  m_settings.nFrames = 100'001;
  m_settings.noise = -40.0;
  Write();
  const std::string whole = Samples(m_settings.strPath);

  m_settings.strPath = m_folder / "set.wav";
  m_settings.nFiles = 3;
  const SSynthResult result = Write();
  EXPECT_THAT(result.files, ElementsAre(m_folder / "set 000.wav", m_folder / "set 001.wav", m_folder / "set 002.wav"));
  std::string joined;
  for (const std::string& file : result.files) {
    CleanLog(file);
    joined += Samples(file);
  }
  EXPECT_EQ(joined, whole);

  CRecordingSet set;
  CMyStringArray log;
  ASSERT_TRUE(AnalyseRecordingSet(result.files[1], set, log));
  ASSERT_EQ(set.files.size(), 3U);
  EXPECT_EQ(set.files[0].nDataBytes, 33'334 * 4);
  EXPECT_EQ(set.files[2].nDataBytes, 33'333 * 4);
  EXPECT_EQ(set.TotalBytes(), 100'001 * 4);
}

TEST_F(SynthRecording, EveryFileOfASetTellsItsOwnStart) {
  m_settings.nFrames = 48'000 * 5;
  m_settings.nFiles = 2;
  const SSynthResult result = Write();
  CWaveFileReader reader;
  SScanResult scan;
  ASSERT_TRUE(reader.ScanChunks(result.files[1], scan));
  SMetadataLists metadata;
  ParseMetadataXml(scan.strXml, metadata);
  EXPECT_EQ(metadata.FindNumber("UTCSeconds"), 1'795'262'402);
  EXPECT_EQ(metadata.Find("FirstFile"), "out 000.wav");
  EXPECT_EQ(metadata.Find("PreviousFile"), "out 000.wav");
  EXPECT_EQ(metadata.FindNumber("Sequence"), 1);
}

TEST_F(SynthRecording, IsTheSameForTheSameSeedOnly) {
  m_settings.noise = -20.0;
  Write();
  const std::string first = Samples(m_settings.strPath);
  Write();
  EXPECT_EQ(Samples(m_settings.strPath), first);
  m_settings.nSeed = 2;
  Write();
  EXPECT_NE(Samples(m_settings.strPath), first);
}

TEST_F(SynthRecording, CountsValuesBeyondFullScale) {
  EXPECT_EQ(Write().nClipped, 0);
  m_settings.stations[0].dLevel = 6.0;
  EXPECT_GT(Write().nClipped, 10'000);
}

TEST_F(SynthRecording, FloatSamplesStandAtOne) {
  m_settings.format = ESynthFormat::Float32;
  m_settings.stations = {{7'100'000, 0.0, false}};
  Write();
  float frame[2];
  std::memcpy(frame, Samples(m_settings.strPath).data(), sizeof(frame));
  EXPECT_EQ(frame[0], 1.0F);
  EXPECT_EQ(frame[1], 0.0F);
}

TEST_F(SynthRecording, NamesTheFileThatCannotBeWritten) {
  m_settings.strPath = m_folder / "none/out.wav";
  const SSynthResult result = WriteSynthRecording(m_settings);
  EXPECT_THAT(result.strError, HasSubstr("out.wav: "));
  EXPECT_TRUE(result.files.empty());
}

}  // namespace
}  // namespace carvello::test
