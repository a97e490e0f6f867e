// What programs put into the names of their recordings.
#include "input/recording_names.h"

#include <gtest/gtest.h>

#include <string>

#include "support/text.h"

namespace carvello {
namespace {

// "program 2023-11-05 14:03:27.0 local centre rate kind"; "-" for what is not told.
std::string Told(const std::string& name) {
  const std::optional<SNameFacts> facts = ReadRecordingName(name);
  if (!facts) return "nothing";
  const SDateFields& date = facts->time->fields;
  const char* zone = facts->zone == ENameTime::Utc ? "utc" : facts->zone == ENameTime::Local ? "local" : "false-z";
  return Format("%s%s %04d-%02d-%02d %02d:%02d:%02d.%09u %s %lld %s %s", facts->pszProgram, facts->bGuess ? "?" : "",
                date.nYear, date.nMonth, date.nDay, date.nHour, date.nMinute, date.nSecond, facts->time->nNanoseconds,
                zone, static_cast<long long>(facts->nCentre.value_or(-1)),
                facts->nSampleRate ? std::to_string(*facts->nSampleRate).c_str() : "-",
                facts->kind ? SampleKindName(*facts->kind).c_str() : "-");
}

TEST(RecordingNames, EveryProgramsOwnName) {
  EXPECT_EQ(Told("baseband_100000000Hz_14-03-27_05-11-2023.wav"),
            "SDR++ 2023-11-05 14:03:27.000000000 local 100000000 - -");
  EXPECT_EQ(Told("rec0_2020-08-05T21_39_07_974.sdriq"), "SDRangel 2020-08-05 21:39:07.974000000 utc -1 - -");
  EXPECT_EQ(Told("test_2024-11-14T11_35_12_758.wav"), "SDRangel 2024-11-14 11:35:12.758000000 utc -1 - -");
  EXPECT_EQ(Told("gqrx_20231005_141500_100000000_1800000_fc.raw"),
            "gqrx 2023-10-05 14:15:00.000000000 utc 100000000 1800000 cf32_le");
  EXPECT_EQ(Told("20190226T183722Z_1440000_iq.wav"), "KiwiSDR 2019-02-26 18:37:22.000000000 utc 1440000 - -");
  EXPECT_EQ(Told("20190226T183722Z_1440000_my_place_iq.wav"), "KiwiSDR 2019-02-26 18:37:22.000000000 utc 1440000 - -");
  EXPECT_EQ(Told("kiwi.example.org_2019-02-26T18_37_22Z_1440.5_iq.wav"),
            "KiwiSDR 2019-02-26 18:37:22.000000000 utc 1440500 - -");
  EXPECT_EQ(Told("HackRF_20131128_101500Z_100000kHz_IQ.wav"),
            "HackRF 2013-11-28 10:15:00.000000000 false-z 100000000 - -");
  EXPECT_EQ(Told("AirSpy_20131128_101500Z_100000kHz_IQ.wav"),
            "AirSpy 2013-11-28 10:15:00.000000000 false-z 100000000 - -");
  EXPECT_EQ(Told("2024-01-19_12-00-00_2400000SPS_137100000Hz.cf32"),
            "SatDump 2024-01-19 12:00:00.000000000 utc 137100000 2400000 -");
  EXPECT_EQ(Told("2024-01-19_12-00-00-250_2400000SPS_137100000Hz.wav"),
            "SatDump 2024-01-19 12:00:00.250000000 utc 137100000 2400000 -");
  EXPECT_EQ(Told("SDRuno_20200907_184033Z_88110kHz.wav"), "SDRuno? 2020-09-07 18:40:33.000000000 utc 88110000 - -");
  EXPECT_EQ(Told("HDSDR_20171123_005716Z_1130kHz_RF.wav"), "HDSDR? 2017-11-23 00:57:16.000000000 utc 1130000 - -");
  EXPECT_EQ(Told("HDSDR_20171123_005716_1130kHz_RF.wav"), "HDSDR? 2017-11-23 00:57:16.000000000 local 1130000 - -");
  EXPECT_EQ(Told("SDRconnect_IQ_20250520_164031_137110000HZ.wav"),
            "SDRconnect? 2025-05-20 16:40:31.000000000 local 137110000 - -");
  EXPECT_EQ(Told("iq_pcm16_ch1_cf800000_sr2000000_dt20251123-154313.raw"),
            "WavViewDX? 2025-11-23 15:43:13.000000000 local 800000 2000000 ci16_le");
  EXPECT_EQ(Told("iq_pcm16_ch1_cf800000_sr2000000_dt20251123-154313z.raw"),
            "WavViewDX? 2025-11-23 15:43:13.000000000 utc 800000 2000000 ci16_le");
}

TEST(RecordingNames, OtherNamesAndTimesThatCannotBeTellNothing) {
  for (const char* name :
       {"", "capture.wav", "audio_100000000Hz_14-03-27_05-11-2023.wav", "HDSDR_20171123_005716Z_1130kHz_AF.wav",
        "baseband_100000000Hz_14-03-27_05-13-2023.wav", "baseband_100000000Hz_24-03-27_05-11-2023.wav",
        "baseband_100000000Hz_14-03-27_30-02-2023.wav", "gqrx_20231005_141500_100000000_0_fc.raw",
        "gqrx_20231005_141500_100000000_99999999999_fc.raw",
        "baseband_99999999999999999999Hz_14-03-27_05-11-2023.wav"}) {
    EXPECT_EQ(Told(name), "nothing") << name;
  }
}

TEST(RecordingNames, NumbersWithUnitsStandAnywhere) {
  const auto numbers = [](const char* name) {
    const SNameNumbers found = ReadNameNumbers(name);
    return Format("%lld %lld", static_cast<long long>(found.nCentre.value_or(-1)),
                  found.nSampleRate ? static_cast<long long>(*found.nSampleRate) : -1);
  };
  EXPECT_EQ(numbers("g001_433.92M_250k.cu8"), "433920000 250000");
  EXPECT_EQ(numbers("FM_100.5MHz_2.4Msps.cf32"), "100500000 2400000");
  EXPECT_EQ(numbers("x_868300kHz_48000sps.cs16"), "868300000 48000");
  EXPECT_EQ(numbers("1.2GHz 10ksps"), "1200000000 10000");
  EXPECT_EQ(numbers("capture1.cu8"), "-1 -1");
  EXPECT_EQ(numbers("v2k_test.cu8"), "-1 -1") << "a digit within a word";
  EXPECT_EQ(numbers("99999999999999999999M_0k.cu8"), "-1 -1");
}

TEST(RecordingNames, EndingsTellTheSamples) {
  const auto kind = [](const char* name) {
    const SRawEnding ending = ReadRawEnding(name);
    return !ending.bRaw ? std::string("no") : ending.kind ? SampleKindName(*ending.kind) : std::string("ask");
  };
  EXPECT_EQ(kind("a.CU8"), "cu8");
  EXPECT_EQ(kind("a.data"), "cu8");
  EXPECT_EQ(kind("a.complex16s"), "ci8");
  EXPECT_EQ(kind("a.complex32s"), "ci16_le");
  EXPECT_EQ(kind("a.complex32u"), "cu16_le");
  EXPECT_EQ(kind("a.C16"), "ci16_le");
  EXPECT_EQ(kind("a.c8"), "ci8");
  EXPECT_EQ(kind("a.cs32"), "ci32_le");
  EXPECT_EQ(kind("a.cfile"), "cf32_le");
  EXPECT_EQ(kind("a.fc64"), "cf64_le");
  EXPECT_EQ(kind("a.iq"), "ask");
  EXPECT_EQ(kind("a.bin"), "ask");
  EXPECT_EQ(kind("a.wav"), "no");
  EXPECT_EQ(kind("cu8"), "no");
}

}  // namespace
}  // namespace carvello
