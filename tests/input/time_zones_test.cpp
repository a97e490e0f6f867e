// Which UTC times the recordings of programs get that write local time, and of those that write UTC, in the time zone
// that the environment sets. Run once for each zone of the table.
#include <cstdlib>
#include <map>
#include <string>
#include <vector>

#include "input/calendar_time.h"
#include "input/foreign_recordings.h"
#include "input/input_fixture.h"
#include "input/recording_set.h"
#include "support/system_time.h"
#include "support/text.h"

namespace carvello::test {

namespace {

struct SMoment {
  SDate local;
  std::int64_t tUtc;  // seconds since 1970
};

struct SZone {
  // Winter, summer, and before, within and behind the hours that are left out (they count from the rule before them) or
  // come twice (they count as the first).
  std::vector<SMoment> moments;
  // Half a minute apart, in New York and Auckland across the hour that is left out.
  SDate last;
  SDate halfAMinuteLater;
};

const std::map<std::string, SZone> kZones = {
    {"UTC",
     {{{{2023, 1, 15, 12, 0, 0, 0}, 1'673'784'000},
       {{2023, 7, 15, 12, 0, 0, 0}, 1'689'422'400},
       {{2023, 3, 12, 2, 30, 0, 0}, 1'678'588'200}},
      {2023, 3, 12, 1, 59, 30, 0},
      {2023, 3, 12, 2, 0, 0, 0}}},
    {"America/New_York",
     {{{{2023, 1, 15, 12, 0, 0, 0}, 1'673'802'000},
       {{2023, 7, 15, 12, 0, 0, 0}, 1'689'436'800},
       {{2023, 3, 12, 1, 59, 59, 0}, 1'678'604'399},
       {{2023, 3, 12, 2, 30, 0, 0}, 1'678'606'200},
       {{2023, 3, 12, 3, 0, 0, 0}, 1'678'604'400},
       {{2023, 11, 5, 0, 59, 59, 0}, 1'699'160'399},
       {{2023, 11, 5, 1, 30, 0, 0}, 1'699'162'200},
       {{2023, 11, 5, 2, 0, 0, 0}, 1'699'167'600}},
      {2023, 3, 12, 1, 59, 30, 0},
      {2023, 3, 12, 3, 0, 0, 0}}},
    {"Asia/Kolkata",
     {{{{2023, 1, 15, 12, 0, 0, 0}, 1'673'764'200}, {{2023, 7, 15, 12, 0, 0, 0}, 1'689'402'600}},
      {2023, 3, 12, 1, 59, 30, 0},
      {2023, 3, 12, 2, 0, 0, 0}}},
    {"Pacific/Auckland",
     {{{{2023, 1, 15, 12, 0, 0, 0}, 1'673'737'200},
       {{2023, 7, 15, 12, 0, 0, 0}, 1'689'379'200},
       {{2023, 9, 24, 1, 59, 59, 0}, 1'695'477'599},
       {{2023, 9, 24, 2, 30, 0, 0}, 1'695'479'400},
       {{2023, 9, 24, 3, 0, 0, 0}, 1'695'477'600},
       {{2023, 4, 2, 1, 59, 59, 0}, 1'680'353'999},
       {{2023, 4, 2, 2, 30, 0, 0}, 1'680'355'800},
       {{2023, 4, 2, 3, 0, 0, 0}, 1'680'361'200}},
      {2023, 9, 24, 1, 59, 30, 0},
      {2023, 9, 24, 3, 0, 0, 0}}},
};

class TimeZone : public InputTest {
 protected:
  void SetUp() override {
    const char* zone = std::getenv("TZ");
    const auto known = kZones.find(zone == nullptr ? "" : zone);
    ASSERT_NE(known, kZones.end()) << "set TZ to a zone of the table, as ctest does";
    m_zone = known->second;
  }

  // Each file in a folder of its own, or moments that are close together would make a set.
  std::int64_t StartAlone(const std::string& name, const std::string& bytes) {
    const std::string folder = std::to_string(++m_nFolders);
    MakeFolder(folder);
    return StartOf(folder + "/" + name, bytes);
  }

  std::int64_t StartOf(const std::string& name, const std::string& bytes) {
    CMyStringArray log;
    EXPECT_TRUE(AnalyseRecordingSet(Write(name, bytes), m_set, log)) << Joined(log);
    return m_set.tStart;
  }

  SZone m_zone;
  int m_nFolders = 0;
  CRecordingSet m_set;
};

}  // namespace

TEST_F(TimeZone, SpectraVue234WritesLocalTime) {
  for (const SMoment& moment : m_zone.moments) {
    const SAuxi auxi{.start = moment.local, .stop = moment.local};
    EXPECT_EQ(StartAlone("a.wav", SecondsOfWave(5, Chunk("auxi", AuxiBody(68, auxi)))), moment.tUtc);
  }
}

TEST_F(TimeZone, WinradioNamesAreInLocalTime) {
  for (const SMoment& moment : m_zone.moments) {
    const SDate& date = moment.local;
    const std::string name = Format("g-7.050mhz_%02u-%02u-%02u_%02u'%02u'%02u.ddc", date.nYear - 2000, date.nMonth,
                                    date.nDay, date.nHour, date.nMinute, date.nSecond);
    EXPECT_EQ(StartAlone(name, SecondsOfWave(5)), moment.tUtc) << name;
  }
}

// A folder holds recordings of both seasons. What one of them is read as must not depend on those read before it.
TEST_F(TimeZone, ALocalTimeIsTheSameMomentWhateverWasReadBefore) {
  const auto seconds = [](const SDate& date) {
    const auto field = [](std::uint32_t value) { return static_cast<int>(value); };
    return LocalCalendarTime({field(date.nYear), field(date.nMonth), field(date.nDay), field(date.nHour),
                              field(date.nMinute), field(date.nSecond)},
                             "start");
  };
  for (const SMoment& before : m_zone.moments) {
    for (const SMoment& moment : m_zone.moments) {
      seconds(before.local);
      EXPECT_EQ(seconds(moment.local), moment.tUtc) << "behind " << before.tUtc;
    }
  }
}

TEST_F(TimeZone, AllOthersAreTakenAsUtc) {
  const SAuxi auxi{.start = {2023, 3, 12, 2, 30, 0, 0}, .stop = {2023, 3, 12, 2, 31, 0, 0}};
  const std::int64_t expected = 1'678'588'200;
  EXPECT_EQ(StartOf("28.wav", SecondsOfWave(5, Chunk("auxi", ShortAuxiBody(auxi)))), expected);
  for (const std::size_t size : {44u, 72u, 164u}) {
    EXPECT_EQ(StartOf(std::to_string(size) + ".wav", SecondsOfWave(5, Chunk("auxi", AuxiBody(size, auxi)))), expected);
  }
  EXPECT_EQ(StartOf("sdrsharp_20230312_023000z_7050000hz_iq.wav", SecondsOfWave(5)), expected);
  EXPECT_EQ(StartOf("perseus.wav", SecondsOfWave(5, Chunk("rcvr", RcvrBody(1, 0, expected)))), expected);
  EXPECT_EQ(StartOf("meta.wav", SecondsOfWave(5, Chunk("meta", SignalInfoBody("complex", "2023-03-12T02:30:00.000Z")))),
            expected);
}

TEST_F(TimeZone, AFilesCreationTimeIsItsCreationTime) {
  const std::int64_t before = CurrentTime();
  const std::int64_t start = StartOf("capture.wav", SecondsOfWave(5));
  EXPECT_GE(start, before - 2);  // file systems round
  EXPECT_LE(start, CurrentTime());
}

TEST_F(TimeZone, AChainOfLocalTimesGoesOnAcrossTheMissingHour) {
  SDate end = m_zone.halfAMinuteLater;
  end.nSecond += 30;
  const SAuxi first{.start = m_zone.last, .stop = m_zone.halfAMinuteLater};
  const SAuxi second{.start = m_zone.halfAMinuteLater, .stop = end};
  Write("a.wav", SecondsOfWave(30, Chunk("auxi", AuxiBody(68, first))));
  StartOf("b.wav", SecondsOfWave(30, Chunk("auxi", AuxiBody(68, second))));
  EXPECT_EQ(m_set.files.size(), 2u);
  EXPECT_EQ(m_set.tEnd - m_set.tStart, 60);
}

}  // namespace carvello::test
