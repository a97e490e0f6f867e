// Every way in which recordings break, in every format and with every kind of metadata: each is read as far as it goes,
// with the right words, or refused with them; and each that can be repaired is in order then, with the same samples.
#include <algorithm>
#include <functional>
#include <string>
#include <vector>

#include "input/file_repair.h"
#include "input/input_fixture.h"
#include "input/recording_set.h"
#include "support/sparse_file.h"

namespace carvello::test {

namespace {

constexpr std::uint64_t kWrap = std::uint64_t{1} << 32;
constexpr std::uint64_t kFrames = 1000;

// What a file is before it breaks.
struct SWhole {
  SFormatBytes format;
  std::string strName;
  std::string strBefore;  // chunks in front of the samples
  bool bXml = false;

  std::uint64_t FrameBytes() const { return format.nBits / 8 * 2; }
  std::uint64_t SampleBytes() const { return kFrames * FrameBytes(); }
  std::string Samples() const { return std::string(SampleBytes(), 'x'); }
  std::string Riff(std::uint64_t riff, std::uint64_t data) const {
    return ChunkHeader("RIFF", riff) + "WAVE" + FormatChunk(format) + strBefore + ChunkHeader("data", data);
  }
};

struct SBroken {
  std::string strBytes;
  std::uint64_t nLength = 0;  // with zeros behind the bytes; 0 for no more than them
  std::uint64_t nRead = 0;    // samples that are read
};

struct SDamage {
  const char* pszName;
  std::function<SBroken(const SWhole&)> make;
  const char* pszWords;              // of a warning
  std::vector<EFact> missing = {};   // what must be given
  const char* pszRefusal = nullptr;  // nothing can be done
  bool bNewFile = false;             // cannot be repaired in place
};

SBroken Sizes(const SWhole& whole, std::uint64_t riff, std::uint64_t data, const std::string& behind = {}) {
  return {whole.Riff(riff, data) + whole.Samples() + behind, 0, whole.SampleBytes()};
}

std::string List() {
  return Chunk("LIST", "INFO" + InfoText("INAM", "name"));
}

const std::vector<SDamage>& AllDamages() {
  static const std::vector<SDamage> damages = {
      {"NeverClosed", [](const SWhole& w) { return Sizes(w, 0, 0); }, "Data size 0 was never made final"},
      {"HeadOfAnEmptyFile", [](const SWhole& w) { return Sizes(w, 36, 0); }, "Data size 0 was never made final"},
      {"AllOnes", [](const SWhole& w) { return Sizes(w, 0xFFFFFFFF, 0xFFFFFFFF); },
       "Data size 4294967295 (0xFFFFFFFF) was never made final"},
      {"Pipe", [](const SWhole& w) { return Sizes(w, 0x7FFFF024, 0x7FFFF000); },
       "Data size 2147479552 (0x7FFFF000) was never made final"},
      {"Dashes", [](const SWhole& w) { return Sizes(w, 0x2D2D2D2D, 0x2D2D2D2D); },
       "Data size 757935405 (0x2D2D2D2D) was never made final"},
      {"CutShort", [](const SWhole& w) { return Sizes(w, 1'000'036, 1'000'000); }, "Data size 1000000 exceeds the "},
      {"MidFrame",
       [](const SWhole& w) {
         SBroken broken = Sizes(w, 0, 0, "x");
         ++broken.nRead;
         return broken;
       },
       "the last 1 are no whole frame"},
      {"TailKept", [](const SWhole& w) { return Sizes(w, 0xFFFFFFFF, 0xFFFFFFFF, List()); },
       "the samples are read to the chunks at the file's end"},
      {"Wrapped",
       [](const SWhole& w) {
         const std::uint64_t bytes = kWrap / w.FrameBytes() * w.FrameBytes() + 1'000'000 * w.FrameBytes();
         const std::string head = w.Riff((bytes + 36 + w.strBefore.size()) % kWrap, bytes % kWrap);
         return SBroken{head, head.size() + bytes, bytes};
       },
       "was counted past 4 GiB from 0 again",
       {},
       nullptr,
       true},
      {"LargeAndNeverClosed",
       [](const SWhole& w) {
         const std::uint64_t bytes = 3'000'000'000 * w.FrameBytes();
         const std::string head = w.Riff(0, 0);
         return SBroken{head, head.size() + bytes, bytes};
       },
       "Data size 0 was never made final",
       {},
       nullptr,
       true},
      {"NoDs64",
       [](const SWhole& w) {
         SBroken broken = Sizes(w, 0xFFFFFFFF, 0xFFFFFFFF);
         broken.strBytes.replace(0, 4, "RF64");
         return broken;
       },
       "Its ds64 chunk, which tells large sizes, is missing"},
      {"EmptyDs64",
       [](const SWhole& w) {
         return SBroken{Rf64(0, 0, FormatChunk(w.format) + w.strBefore + ChunkHeader("data", 0xFFFFFFFF)) + w.Samples(),
                        0, w.SampleBytes()};
       },
       "Data size 0 was never made final"},
      {"NoRate",
       [](SWhole w) {
         w.format.nRate = 0;
         return Sizes(w, 0, 0);
       },
       "Data size 0 was never made final",
       {EFact::SampleRate}},
      {"EmptyFormat",
       [](const SWhole& w) {
         SBroken broken = Sizes(w, 0, 0);
         broken.strBytes.replace(20, 16, std::string(16, '\0'));
         return broken;
       },
       "Format of zeros, it was never filled in",
       {EFact::SampleType, EFact::SampleRate}},
      {"EndsInItsHead",
       [](const SWhole& w) {
         const std::string head = w.Riff(0, 0);
         return SBroken{head.substr(0, head.size() - 8), 0, 0};
       },
       "",
       {},
       "no data chunk found"},
  };
  return damages;
}

// Every format with every way to tell what was recorded.
std::vector<SWhole> Wholes() {
  const std::string auxi =
      Chunk("auxi", Le16(2026) + Le16(11) + Le16(0) + Le16(16) + Le16(10) + Le16(0) + Le16(0) + Le16(0) +
                        std::string(16, '\0') + Le32(7'100'000) + std::string(128, '\0'));
  const std::string xml =
      XmlChunk("FirstFile=\"rec.wav\" SampleRate=\"1000\" UTCSeconds=\"1700000000\" RadioCenterFreq=\"7100000\"");
  std::vector<SWhole> wholes;
  for (const SFormatBytes& format :
       {SFormatBytes{1, 2, 1000, 8}, SFormatBytes{1, 2, 1000, 16}, SFormatBytes{1, 2, 1000, 24},
        SFormatBytes{1, 2, 1000, 32}, SFormatBytes{3, 2, 1000, 32}}) {
    wholes.push_back({format, "rec.wav", auxi});
    wholes.push_back({format, "rec.wav", xml, true});
    wholes.push_back({format, "baseband_100000000Hz_14-03-27_05-11-2023.wav", {}});
    wholes.push_back({format, "rec_7050khz.wav", {}});
  }
  return wholes;
}

class Damages : public InputTest, public testing::WithParamInterface<std::size_t> {
 protected:
  std::string Lay(const SWhole& whole, const SBroken& broken) const {
    const std::string path = Write(whole.strName, broken.strBytes);
    if (broken.nLength != 0) ExtendFile(path, broken.nLength);
    return path;
  }

  static bool Read(const std::string& path, CRecordingSet& set, CMyStringArray& log, const SGivenFacts& given) {
    log = CMyStringArray(100);
    return AnalyseRecordingSet(path, set, log, given);
  }
};

SGivenFacts GivenFor(const SWhole& whole, const SDamage& damage) {
  SGivenFacts given;
  const bool noFormat = damage.missing.size() > 1;
  if (!damage.missing.empty()) {
    given.nSampleRate = 1000;
    given.nCentre = 7'100'000;
    given.start = SExactTime{1'700'000'000, 0};
  }
  if (noFormat) {
    const ENumber number = whole.format.nTag == 3    ? ENumber::Float
                           : whole.format.nBits == 8 ? ENumber::Unsigned
                                                     : ENumber::Signed;
    given.kind = MakeSampleKind(number, whole.format.nBits);
  }
  return given;
}

}  // namespace

TEST_P(Damages, IsReadOrRefusedWithTheRightWordsAndRepaired) {
  const SDamage& damage = AllDamages()[GetParam()];
  for (const SWhole& whole : Wholes()) {
    SCOPED_TRACE(whole.strName + (whole.bXml ? ", XML, " : ", ") + std::to_string(whole.format.nBits) + " bits");
    const SBroken broken = damage.make(whole);
    const std::string path = Lay(whole, broken);
    CRecordingSet set;
    CMyStringArray log;
    const bool read = Read(path, set, log, {});
    if (damage.pszRefusal != nullptr) {
      EXPECT_FALSE(read);
      EXPECT_EQ(CountLines(log, damage.pszRefusal), 1) << Joined(log);
      EXPECT_EQ(PlanRepair(path).strProblem, damage.pszRefusal);
      continue;
    }
    SGivenFacts given = GivenFor(whole, damage);
    // XML metadata tells the rate itself; a format that it does not describe it cannot do without.
    const bool isEmpty = damage.missing.size() > 1;
    if (whole.bXml && isEmpty) {
      EXPECT_FALSE(read);
      EXPECT_EQ(CountLines(log, "its format holds zeros, it was never filled in"), 1) << Joined(log);
    } else if (damage.missing.empty() || whole.bXml) {
      EXPECT_TRUE(read) << Joined(log);
    } else {
      EXPECT_FALSE(read);
      for (const EFact fact : damage.missing) {
        EXPECT_NE(std::find(set.missing.begin(), set.missing.end(), fact), set.missing.end());
      }
    }
    if (!(whole.bXml && isEmpty)) {
      ASSERT_TRUE(Read(path, set, log, given)) << Joined(log);
      const std::uint64_t readWhole = broken.nRead / whole.FrameBytes() * whole.FrameBytes();
      EXPECT_EQ(static_cast<std::uint64_t>(set.TotalBytes()) / whole.FrameBytes() * whole.FrameBytes(), readWhole);
      EXPECT_EQ(set.nSampleRate, 1000u);
      EXPECT_EQ(CountLines(log, damage.pszWords), 1) << Joined(log);
    }

    const SRepairPlan plan = PlanRepair(path, given);
    ASSERT_EQ(plan.state, ERepairState::Broken) << plan.strProblem;
    EXPECT_EQ(plan.strOnlyAsNewFile.empty(), !damage.bNewFile);
    const SRepairResult result = RepairInPlace(path, given);
    if (damage.bNewFile) {
      EXPECT_EQ(result.outcome, ERepairOutcome::Refused);
      continue;
    }
    ASSERT_EQ(result.outcome, ERepairOutcome::Repaired) << result.strError;
    EXPECT_EQ(PlanRepair(path).state, ERepairState::Sound);
    ASSERT_TRUE(Read(path, set, log, {})) << Joined(log);
    EXPECT_EQ(set.TotalBytes(), static_cast<std::int64_t>(whole.SampleBytes()));
    EXPECT_EQ(CountLines(log, damage.pszWords), 0) << Joined(log);
  }
}

INSTANTIATE_TEST_SUITE_P(Of20Files, Damages, testing::Range(std::size_t{0}, AllDamages().size()),
                         [](const auto& damage) { return std::string(AllDamages()[damage.param].pszName); });

}  // namespace carvello::test
