// Dates that no calendar has, in every place where a recording can tell its time: the analysis refuses the file and
// names it and the place.
#include <string>
#include <vector>

#include "input/foreign_recordings.h"
#include "input/input_fixture.h"
#include "input/recording_set.h"
#include "support/text.h"

namespace carvello::test {

namespace {

struct SImpossible {
  SDate date;
  const char* text;
};

// Months, days and hours out of range, a day that its month does not have, and years before 1970.
const std::vector<SImpossible> kImpossible = {
    {{.nMonth = 13}, "2023-13-15 12:00:00"},
    {{.nMonth = 0}, "2023-00-15 12:00:00"},
    {{.nMonth = 2, .nDay = 30}, "2023-02-30 12:00:00"},
    {{.nDay = 0}, "2023-04-00 12:00:00"},
    {{.nMonth = 4, .nDay = 31}, "2023-04-31 12:00:00"},
    {{.nHour = 24}, "2023-04-15 24:00:00"},
    {{.nMinute = 60}, "2023-04-15 12:60:00"},
    {{.nSecond = 60}, "2023-04-15 12:00:60"},
    {{.nYear = 1955}, "1955-04-15 12:00:00"},
    {{.nYear = 1969}, "1969-04-15 12:00:00"},
};

class ImpossibleDates : public InputTest {
 protected:
  void ExpectRefusal(const std::string& name, const std::string& bytes, const std::string& reason) {
    // Each in a folder of its own: a file of the same name, size and second would be taken for the one before.
    const std::string folder = std::to_string(++m_nFolders);
    MakeFolder(folder);
    const std::string path = Write(folder + "/" + name, bytes);
    CRecordingSet set;
    CMyStringArray log;
    EXPECT_FALSE(AnalyseRecordingSet(path, set, log)) << name << " " << reason;
    EXPECT_EQ(CountLines(log, "[ERROR]"), 1) << Joined(log);
    EXPECT_EQ(CountLines(log, "[ERROR] " + path + ": " + reason), 1) << reason << "\n" << Joined(log);
  }

 private:
  int m_nFolders = 0;
};

}  // namespace

TEST_F(ImpossibleDates, OfABlockWithAStartAlone) {
  for (const auto& [date, text] : kImpossible) {
    ExpectRefusal("a.wav", SecondsOfWave(5, Chunk("auxi", ShortAuxiBody({.start = date}))),
                  Format("start time %s cannot be", text));
  }
}

TEST_F(ImpossibleDates, OfBlocksInUtc) {
  for (const std::size_t size : {44u, 72u, 164u}) {
    for (const auto& [date, text] : kImpossible) {
      ExpectRefusal("a.wav", SecondsOfWave(5, Chunk("auxi", AuxiBody(size, {.start = date}))),
                    Format("start time %s cannot be", text));
      ExpectRefusal("a.wav", SecondsOfWave(5, Chunk("auxi", AuxiBody(size, {.stop = date}))),
                    Format("stop time %s cannot be", text));
    }
  }
}

TEST_F(ImpossibleDates, OfAnEladBlock) {
  for (const auto& [date, text] : kImpossible) {
    ExpectRefusal("a.wav", SecondsOfWave(5, Chunk("elad", "x") + Chunk("auxi", AuxiBody(164, {.start = date}))),
                  Format("start time %s cannot be", text));
  }
}

TEST_F(ImpossibleDates, OfABlockInLocalTime) {
  for (const auto& [date, text] : kImpossible) {
    ExpectRefusal("a.wav", SecondsOfWave(5, Chunk("auxi", AuxiBody(68, {.start = date}))),
                  Format("start time of the auxi chunk %s is ", text));
    ExpectRefusal("a.wav", SecondsOfWave(5, Chunk("auxi", AuxiBody(68, {.stop = date}))),
                  Format("stop time of the auxi chunk %s is ", text));
  }
}

TEST_F(ImpossibleDates, OfAnSdrSharpName) {
  for (const auto& [date, text] : kImpossible) {
    const std::string name = Format("sdrsharp_%04u%02u%02u_%02u%02u%02uz_7050000hz_iq.wav", date.nYear, date.nMonth,
                                    date.nDay, date.nHour, date.nMinute, date.nSecond);
    ExpectRefusal(name, SecondsOfWave(5), Format("start time in the file's name %s is ", text));
  }
}

TEST_F(ImpossibleDates, OfAWinradioName) {
  for (const auto& [date, text] : kImpossible) {
    if (date.nYear < 2000) continue;  // its years have two digits
    const std::string name = Format("r-7.050mhz_%02u-%02u-%02u_%02u'%02u'%02u.ddc", date.nYear - 2000, date.nMonth,
                                    date.nDay, date.nHour, date.nMinute, date.nSecond);
    ExpectRefusal(name, SecondsOfWave(5), Format("start time in the file's name %s is ", text));
  }
}

TEST_F(ImpossibleDates, OfASignalInfoDocument) {
  for (const auto& [date, text] : kImpossible) {
    const std::string time = ReplaceAll(text, " ", "T") + ".000Z";
    ExpectRefusal("a.wav", SecondsOfWave(5, Chunk("meta", SignalInfoBody("complex", time))),
                  Format("signaltime of the meta chunk %s is ", text));
  }
}

TEST_F(ImpossibleDates, OfAPerseusBlock) {
  // Before 1970, behind the year 2106 that a list of files can hold, and beyond any calendar.
  ExpectRefusal("a.wav", SecondsOfWave(5, Chunk("rcvr", RcvrBody(1, 0, -441'763'200))),
                "start time of the rcvr chunk -441763200 (seconds since 1970) has no calendar date");
  ExpectRefusal("a.wav", SecondsOfWave(5, Chunk("rcvr", RcvrBody(1, 0, 4'294'967'296))),
                "start time 2106-02-07 06:28:16 cannot be");
  ExpectRefusal("a.wav", SecondsOfWave(5, Chunk("rcvr", RcvrBody(1, 0, std::int64_t{1} << 62))),
                "start time of the rcvr chunk 4611686018427387904");
}

TEST_F(ImpossibleDates, OfTheXmlMetadata) {
  for (const char* seconds : {"-441763200", "-1", "4294967296", "9223372036854775807", "99999999999999999999"}) {
    const std::string attributes =
        Format("FirstFile=\"rec.wav\" SampleRate=\"1000\" BytesPerSecond=\"4000\" UTCSeconds=\"%s\"", seconds);
    ExpectRefusal("rec.wav", PlainWave(4000, XmlChunk(attributes)),
                  Format("start time UTCSeconds \"%s\" of the XML metadata is no time from 1970 to 2106", seconds));
  }
}

TEST_F(ImpossibleDates, OfTheFirstFileAreNamedWhateverMemberIsSelected) {
  const std::string first =
      Write("rec 000.wav", PlainWave(4000, XmlChunk("FirstFile=\"rec 000.wav\" UTCSeconds=\"-1\"")));
  const std::string second =
      Write("rec 001.wav", PlainWave(4004, XmlChunk("FirstFile=\"rec 000.wav\" UTCSeconds=\"1\"")));
  CRecordingSet set;
  CMyStringArray log;
  EXPECT_FALSE(AnalyseRecordingSet(second, set, log));
  EXPECT_EQ(CountLines(log, "[ERROR] " + first + ": start time UTCSeconds \"-1\""), 1) << Joined(log);
}

}  // namespace carvello::test
