// Every call to the system that the analysis makes fails once: the recording is then described as it is, or not at all,
// with the file and the system's reason, and never as another one. This program brings calls of its own that stand
// before the system's.
#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <functional>
#include <string>
#include <vector>

#include "input/foreign_recordings.h"
#include "input/hand_made_tar.h"
#include "input/input_fixture.h"
#include "input/recording_set.h"
#include "input/wave_file_reader.h"
#include "support/formatting.h"
#include "support/text.h"

namespace {

struct SFault {
  bool bArmed = false;
  int nCalls = 0;   // made since it was armed
  int nFailAt = 0;  // the number of the call that fails
  bool bForGood = false;
  int nError = 0;
};
SFault g_fault;

bool Fails() {
  if (!g_fault.bArmed) return false;
  ++g_fault.nCalls;
  if (g_fault.nCalls != g_fault.nFailAt && !(g_fault.bForGood && g_fault.nCalls > g_fault.nFailAt)) return false;
  errno = g_fault.nError;
  return true;
}

template <typename Function>
Function* System(Function* /*ours*/, const char* name) {
  return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

}  // namespace

extern "C" {
int open(const char* path, int flags, ...) {
  va_list rest;
  va_start(rest, flags);
  const auto mode = va_arg(rest, mode_t);
  va_end(rest);
  static auto* const real = reinterpret_cast<int (*)(const char*, int, mode_t)>(dlsym(RTLD_NEXT, "open"));
  return Fails() ? -1 : real(path, flags, mode);
}
ssize_t read(int descriptor, void* buffer, size_t bytes) {
  static auto* const real = System(&read, "read");
  return Fails() ? -1 : real(descriptor, buffer, bytes);
}
off_t lseek(int descriptor, off_t offset, int whence) noexcept {
  static auto* const real = System(&lseek, "lseek");
  return Fails() ? -1 : real(descriptor, offset, whence);
}
int fstat(int descriptor, struct stat* status) noexcept {
  static auto* const real = System(&fstat, "fstat");
  return Fails() ? -1 : real(descriptor, status);
}
int statx(int folder, const char* path, int flags, unsigned mask, struct statx* status) noexcept {
  static auto* const real = System(&statx, "statx");
  return Fails() ? -1 : real(folder, path, flags, mask, status);
}
DIR* opendir(const char* path) {
  static auto* const real = System(&opendir, "opendir");
  return Fails() ? nullptr : real(path);
}
dirent* readdir(DIR* directory) {
  static auto* const real = System(&readdir, "readdir");
  return Fails() ? nullptr : real(directory);
}
}

namespace carvello::test {
namespace {

// What a description says, but for the folder and what is different in every copy of a file.
std::string Described(const CRecordingSet& set, const std::string& folder) {
  std::string text = set.strSourceName + " " + std::to_string(set.nRadioCenterFreq) + " Hz, " +
                     std::to_string(set.tStart) + " to " + std::to_string(set.tEnd) + ", " + set.strMetadata;
  for (const SRecordingPart& part : set.parts) text += ", " + part.strName;
  for (const SRecordingFile& file : set.files) {
    text += "\n" + file.strPath.substr(folder.size()) + " " + std::to_string(file.nDataBytes) + " " +
            std::to_string(file.nSampleBytes) + " " + std::to_string(file.stamp.nSize) + " " +
            std::to_string(file.stamp.nModified == 0) + std::to_string(file.stamp.nFileNumber == 0);
  }
  return text;
}

class ReadFaults : public InputTest {
 protected:
  // Writes the files of a set into the folder of that name.
  using Writer = std::function<void(const std::string& folder)>;

  struct SOutcome {
    bool bDescribed = false;
    std::string strDescription;
    CMyStringArray log;
    bool bReadFailed = false;
  };

  SOutcome Analyse(const std::string& folder, const std::string& selected) const {
    SOutcome outcome;
    CRecordingSet set;
    outcome.bDescribed = AnalyseRecordingSet(Path(folder + "/" + selected), set, outcome.log);
    outcome.strDescription = Described(set, Path(folder));
    outcome.bReadFailed = set.bReadFailed;
    return outcome;
  }

  void ExpectTheSameOrAnError(const Writer& write, const std::string& selected, std::size_t files,
                              int leastFailures = 40) {
    MakeFolder("healthy");
    write("healthy");
    const SOutcome healthy = Analyse("healthy", selected);
    ASSERT_TRUE(healthy.bDescribed) << Joined(healthy.log);
    ASSERT_EQ(static_cast<std::size_t>(std::count(healthy.strDescription.begin(), healthy.strDescription.end(), '\n')),
              files)
        << healthy.strDescription;
    int failures = 0;
    for (const int error : {EIO, EACCES}) {
      for (const bool forGood : {false, true}) {
        if (forGood && error != EIO) continue;
        for (int call = 1;; ++call) {
          // A folder of its own each time: what was read once is not read again.
          const std::string folder = Format("%d-%d-%d", error, forGood ? 1 : 0, call);
          MakeFolder(folder);
          write(folder);
          g_fault = {true, 0, call, forGood, error};
          const SOutcome outcome = Analyse(folder, selected);
          g_fault.bArmed = false;
          if (g_fault.nCalls < call) {
            EXPECT_TRUE(outcome.bDescribed) << Joined(outcome.log);
            break;
          }
          const std::string where = Format("call %d, error %d\n", call, error) + Joined(outcome.log);
          if (outcome.bDescribed) {
            EXPECT_EQ(outcome.strDescription, healthy.strDescription) << where;
          } else {
            ++failures;
            EXPECT_TRUE(outcome.bReadFailed) << where;
            const std::string last = outcome.log[outcome.log.Size() - 1];
            EXPECT_EQ(last.find("[ERROR] " + Path(folder)), 0u) << where;
            EXPECT_NE(last.find(SystemErrorText(static_cast<std::uint32_t>(error))), std::string::npos) << where;
          }
          // Nothing of a failed read is kept.
          EXPECT_EQ(Analyse(folder, selected).strDescription, healthy.strDescription) << where;
        }
      }
    }
    EXPECT_GT(failures, leastFailures);
  }
};

std::string SigMfMeta(int hour, const std::string& members = {}) {
  return R"({"global": {"core:datatype": "ci16_le", "core:sample_rate": 1000, "core:version": "1.2.5")" + members +
         R"(}, "captures": [{"core:sample_start": 0, "core:frequency": 7100000, "core:datetime": "2026-03-01T)" +
         Format("%02d", hour) + R"(:00:00Z"}], "annotations": []})";
}

std::string NumberedMember(std::size_t dataBytes) {
  const std::string list = Chunk("LIST", "INFO" + InfoText("INAM", "name"));
  return PlainWave(dataBytes,
                   XmlChunk("FirstFile=\"rec 000.wav\" SampleRate=\"1000\" BytesPerSecond=\"4000\" "
                            "UTCSeconds=\"1700000000\" RadioCenterFreq=\"7100000\" XMLLevel=\"XMLLevel003\""),
                   list);
}

}  // namespace

TEST_F(ReadFaults, OfANumberedSetEndInTheSameDescriptionOrAnError) {
  const auto write = [this](const std::string& folder) {
    Write(folder + "/rec 000.wav", NumberedMember(4000));
    Write(folder + "/rec 001.wav", NumberedMember(4000));
    Write(folder + "/rec 002.wav", NumberedMember(4004));
  };
  ExpectTheSameOrAnError(write, "rec 001.wav", 3);
}

TEST_F(ReadFaults, OfAChainedSetEndInTheSameDescriptionOrAnError) {
  const auto write = [this](const std::string& folder) {
    for (unsigned part = 0; part < 3; ++part) {
      const SAuxi auxi{.start = {.nSecond = 3 * part}, .stop = {.nSecond = 3 * part + 3}};
      Write(folder + "/radio_12" + std::to_string(part) + ".wav",
            SecondsOfWave(3, Chunk("elad", "x") + Chunk("auxi", AuxiBody(164, auxi))));
    }
  };
  ExpectTheSameOrAnError(write, "radio_121.wav", 3);
}

TEST_F(ReadFaults, OfASetFoundByItsNamesEndInTheSameDescriptionOrAnError) {
  const auto write = [this](const std::string& folder) {
    Write(folder + "/SDRSharp_20230415_120000Z_7050000Hz_IQ.wav", SecondsOfWave(3));
    Write(folder + "/SDRSharp_20230415_120003Z_7050000Hz_IQ.wav", SecondsOfWave(2));
  };
  ExpectTheSameOrAnError(write, "SDRSharp_20230415_120000Z_7050000Hz_IQ.wav", 2);
}

TEST_F(ReadFaults, OfBlocksInManyChunksEndInTheSameDescriptionOrAnError) {
  const auto write = [this](const std::string& folder) {
    const std::string kiwi = Chunk("kiwi", std::string("\x03\0", 2) + Le32(239'860) + Le32(125'000'000));
    Write(folder + "/20190226T183722Z_1440000_iq.wav", Riff(FormatChunk() + kiwi + Chunk("data", "AAAABBBB") + kiwi +
                                                            Chunk("data", "CCCCDDDD") + kiwi + Chunk("data", "EEEE")));
  };
  ExpectTheSameOrAnError(write, "20190226T183722Z_1440000_iq.wav", 1, 20);
}

TEST_F(ReadFaults, OfAHeadOfItsOwnEndInTheSameDescriptionOrAnError) {
  const auto write = [this](const std::string& folder) {
    const std::string head = Le32(48'000) + Le64(7'100'000) + Le64(1'700'000'000'000) + Le32(16) + Le32(0);
    Write(folder + "/rec.sdriq", head + Le32(0x51358137U) + std::string(4000, 'x'));
  };
  ExpectTheSameOrAnError(write, "rec.sdriq", 1, 5);
}

TEST_F(ReadFaults, OfAPairOfSigMfEndInTheSameDescriptionOrAnError) {
  const auto write = [this](const std::string& folder) {
    Write(folder + "/a.sigmf-meta", SigMfMeta(1));
    Write(folder + "/a.sigmf-data", std::string(4000, 'x'));
  };
  for (const char* const selected : {"a.sigmf-meta", "a.sigmf-data"}) ExpectTheSameOrAnError(write, selected, 1, 5);
}

TEST_F(ReadFaults, OfACollectionOfSigMfEndInTheSameDescriptionOrAnError) {
  const auto write = [this](const std::string& folder) {
    for (const char* const name : {"a", "b"}) {
      Write(folder + "/" + name + ".sigmf-meta", SigMfMeta(*name - 'a'));
      Write(folder + "/" + name + ".sigmf-data", std::string(4000, *name));
    }
    Write(folder + "/c.sigmf-collection", R"({"collection": {"core:streams": [["a", ""], ["b", ""]]}})");
  };
  ExpectTheSameOrAnError(write, "c.sigmf-collection", 1, 20);
}

// The second recording's files have names that do not fit their heads.
TEST_F(ReadFaults, OfAnArchiveOfSigMfEndInTheSameDescriptionOrAnError) {
  const auto named = [](const std::string& name, const std::string& content) {
    const std::string path = std::string(90, 'd') + "/" + name;
    const std::string line = Format("%zu path=%s\n", path.size() + 10, path.c_str());
    return TarFile("PaxHeaders/x", line, {.type = 'x'}) + TarFile("short", content) + TarFile("more.txt", "x");
  };
  const auto write = [&](const std::string& folder) {
    Write(folder + "/a.sigmf", TarFile("a.sigmf-meta", SigMfMeta(1)) + TarFile("a.sigmf-data", std::string(4000, 'a')) +
                                   named("b.sigmf-meta", SigMfMeta(2)) + named("b.sigmf-data", std::string(4000, 'b')) +
                                   std::string(1024, '\0'));
  };
  MakeFolder("whole");
  write("whole");
  EXPECT_NE(Analyse("whole", "a.sigmf").strDescription.find("/b.sigmf-meta"), std::string::npos);
  ExpectTheSameOrAnError(write, "a.sigmf", 1, 20);
}

TEST_F(ReadFaults, OfTheInfoTextsAreTold) {
  const std::string path = Write("a.wav", NumberedMember(4000));
  SInfoTexts texts;
  for (int call = 1;; ++call) {
    std::string problem;
    g_fault = {true, 0, call, false, EIO};
    const bool found = ReadInfoTexts(path, texts, &problem);
    g_fault.bArmed = false;
    EXPECT_TRUE(!problem.empty() || (found && texts.strINAM == "name")) << call;
    if (g_fault.nCalls < call) {
      EXPECT_TRUE(found);
      break;
    }
    EXPECT_NE(problem.find("Input/output error"), std::string::npos) << call << " " << problem;
  }
}

TEST_F(ReadFaults, OfAParseFailIt) {
  for (const std::string& bytes :
       {PlainWave(8, Chunk("junk", "xy")),
        Rf64(0, 8, FormatChunk() + Chunk("junk", "xy") + ChunkHeader("data", 0xFFFFFFFF) + "ABCDEFGH")}) {
    const std::string path = Write("a.wav", bytes);
    for (int call = 1;; ++call) {
      CWaveFileReader reader;
      WAVEFORMATEXTENSIBLE format;
      std::int64_t dataSize = 0;
      g_fault = {true, 0, call, false, EIO};
      const bool parsed = reader.Open(path) && reader.ParseWave(format, dataSize);
      g_fault.bArmed = false;
      const bool done = g_fault.nCalls < call;
      EXPECT_EQ(parsed, done) << call;
      if (!done) {
        EXPECT_EQ(CountLines(reader.Log(), "Input/output error"), 1) << call << "\n" << Joined(reader.Log());
      }
      if (done) break;
    }
  }
}

}  // namespace carvello::test
