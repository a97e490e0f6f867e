// Repair: wrong sizes in the heads of files become what the files hold, samples stay as they are, and nothing that
// goes wrong on the way leaves a file worse than it was.
#include "input/file_repair.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "input/input_fixture.h"
#include "input/repair_side_file.h"
#include "input/wave_file_reader.h"
#include "support/file.h"
#include "support/sparse_file.h"
#include "support/temp_folder.h"

namespace carvello::test {

namespace {

constexpr std::uint64_t kWrap = std::uint64_t{1} << 32;
constexpr std::int64_t kLongAgo = 1'400'000'000'123'456'700;

class FileRepair : public InputTest {
 protected:
  std::string Bytes(const std::string& path) const {
    std::ifstream file(PathOf(path), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }
  std::string Head(const std::string& path, std::size_t count) const {
    std::string bytes(count, '\0');
    std::ifstream(PathOf(path), std::ios::binary).read(bytes.data(), static_cast<std::streamsize>(count));
    return bytes;
  }
  std::string WriteOld(const std::string& name, const std::string& bytes) const {
    const std::string path = Write(name, bytes);
    SetOld(path);
    return path;
  }
  void SetOld(const std::string& path) const {
    CFile file;
    ASSERT_TRUE(file.Open(path, platform::EOpenMode::Change));
    ASSERT_TRUE(file.SetModifiedTime(kLongAgo));
  }
  static std::int64_t Modified(const std::string& path) { return platform::GetFileStatus(path)->nModified; }

  // The file becomes `right`, byte for byte, and is in order then.
  void ExpectRepaired(const std::string& broken, const std::string& right, const SGivenFacts& given = {}) {
    const std::string path = WriteOld("input.wav", broken);
    const SRepairPlan plan = PlanRepair(path, given);
    EXPECT_EQ(plan.state, ERepairState::Broken) << plan.strProblem;
    EXPECT_FALSE(plan.faults.empty());
    EXPECT_FALSE(plan.changes.empty());
    EXPECT_EQ(Bytes(path), broken) << "a plan changes nothing";
    const SRepairResult result = RepairInPlace(path, given);
    EXPECT_EQ(result.outcome, ERepairOutcome::Repaired) << result.strError;
    EXPECT_EQ(Bytes(path), right);
    EXPECT_EQ(Modified(path), kLongAgo);
    EXPECT_FALSE(IsRepairInterrupted(path));
    EXPECT_EQ(RepairInPlace(path).outcome, ERepairOutcome::Sound);
    EXPECT_EQ(Bytes(path), right);
  }
};

const std::string kSamples(4000, 'x');

std::string Wave(std::uint64_t riff, std::uint64_t data, const std::string& behind, const std::string& before = {},
                 const SFormatBytes& format = {}) {
  return ChunkHeader("RIFF", riff) + "WAVE" + before + FormatChunk(format) + ChunkHeader("data", data) + behind;
}

std::string List() {
  return Chunk("LIST", "INFO" + InfoText("INAM", "name"));
}

}  // namespace

TEST_F(FileRepair, SizesThatWereNeverMadeFinalBecomeThoseOfTheSamples) {
  const std::string right = Wave(4036, 4000, kSamples);
  ExpectRepaired(Wave(0, 0, kSamples), right);
  ExpectRepaired(Wave(36, 0, kSamples), right);
  ExpectRepaired(Wave(0xFFFFFFFF, 0xFFFFFFFF, kSamples), right);
  ExpectRepaired(Wave(0x7FFFF024, 0x7FFFF000, kSamples), right);
  ExpectRepaired(Wave(0x2D2D2D2D, 0x2D2D2D2D, kSamples), right);
  ExpectRepaired(Wave(9036, 9000, kSamples), right);
  ExpectRepaired(Wave(4000, 4036, kSamples), right);
  ExpectRepaired(Wave(0, 4000, kSamples), right);
}

TEST_F(FileRepair, ChunksBehindTheSamplesStayChunks) {
  const std::string tail = kSamples + List();
  ExpectRepaired(Wave(0, 0, tail), Wave(4036 + List().size(), 4000, tail));
  ExpectRepaired(Wave(0xFFFFFFFF, 0xFFFFFFFF, tail), Wave(4036 + List().size(), 4000, tail));
  ExpectRepaired(Wave(0, 4000, tail), Wave(4036 + List().size(), 4000, tail));
}

TEST_F(FileRepair, HalfAFrameAtTheEndIsLeftOut) {
  ExpectRepaired(Wave(0, 0, kSamples + "abc"), Wave(4036, 4000, kSamples + "abc"));
}

TEST_F(FileRepair, AnRf64FileGetsTheSizesOfDs64) {
  const auto rf64 = [](std::uint64_t riff, std::uint64_t data, std::uint64_t frames, std::uint64_t claim = 0xFFFFFFFF) {
    return ChunkHeader("RF64", 0xFFFFFFFF) + "WAVE" + Chunk("ds64", Le64(riff) + Le64(data) + Le64(frames) + Le32(0)) +
           FormatChunk() + ChunkHeader("data", claim) + kSamples;
  };
  ExpectRepaired(rf64(0, 0, 0), rf64(4072, 4000, 1000));
  ExpectRepaired(rf64(4108, 4036, 1009), rf64(4072, 4000, 1000));
  ExpectRepaired(rf64(0, 4000, 2000), rf64(4072, 4000, 2000));  // frames that another convention counts stay
}

TEST_F(FileRepair, AnRf64FileWithoutDs64BecomesARiffFileWhereThatHoldsIt) {
  const std::string room = Chunk("JUNK", std::string(28, '\0'));
  const std::string samples = ChunkHeader("data", 0xFFFFFFFF) + kSamples;
  const std::string head = ChunkHeader("RF64", 0xFFFFFFFF) + "WAVE";
  ExpectRepaired(head + FormatChunk() + samples, Wave(4036, 4000, kSamples));
  ExpectRepaired(head + room + FormatChunk() + samples, Wave(4072, 4000, kSamples, room));
}

TEST_F(FileRepair, ARateThatIsGivenIsWritten) {
  SGivenFacts given;
  given.nSampleRate = 2'000'000;
  const std::string broken = Wave(0, 0, kSamples, {}, {.nRate = 0});
  ExpectRepaired(broken, Wave(4036, 4000, kSamples, {}, {.nRate = 2'000'000}), given);
  ExpectRepaired(Wave(4036, 4000, kSamples), Wave(4036, 4000, kSamples, {}, {.nRate = 2'000'000}), given);
  const SRepairResult result = RepairInPlace(Write("input.wav", broken));
  EXPECT_EQ(result.outcome, ERepairOutcome::Refused);
  EXPECT_TRUE(result.plan.bNeedsRate);
  EXPECT_EQ(Bytes(Path("input.wav")), broken);
}

TEST_F(FileRepair, AFormatOfZerosIsFilledInByWhatIsGiven) {
  const auto with = [](const std::string& format, std::uint64_t riff, std::uint64_t data) {
    return ChunkHeader("RIFF", riff) + "WAVE" + Chunk("fmt ", format) + ChunkHeader("data", data) + kSamples;
  };
  const std::string broken = with(std::string(16, '\0'), 0, 0);
  SGivenFacts given;
  given.nSampleRate = 3'000'000;
  EXPECT_TRUE(PlanRepair(Write("input.wav", broken), given).bNeedsKind);
  given.kind = ParseSampleKind("ci16");
  ExpectRepaired(broken, with(FormatBody({.nRate = 3'000'000}), 4036, 4000), given);
  given.kind = ParseSampleKind("cf32");
  ExpectRepaired(broken, with(FormatBody({.nTag = 3, .nRate = 3'000'000, .nBits = 32}), 4036, 4000), given);
  given.kind = ParseSampleKind("ci16_be");
  EXPECT_EQ(PlanRepair(Write("input.wav", broken), given).strProblem,
            "a WAV file cannot hold samples of the type ci16_be");
}

TEST_F(FileRepair, AnEladRecordingGetsTheSizeThatItIsReadBy) {
  const std::string elad = Chunk("elad", "ELAD");
  ExpectRepaired(Wave(1048, 1000, kSamples, elad), Wave(4048, 4000, kSamples, elad));
}

TEST_F(FileRepair, WhatIsInOrderIsNotTouched) {
  const std::string room = Chunk("JUNK", std::string(28, '\0'));
  for (const std::string& bytes :
       {Wave(4036, 4000, kSamples), Wave(4044, 4000, kSamples), Wave(4072, 4000, kSamples, room),
        Wave(4036 + List().size(), 4000, kSamples + List()), Wave(36, 0, {}), Wave(4036, 4000, kSamples + "ab"),
        Rf64(4072, 4000, FormatChunk() + ChunkHeader("data", 0xFFFFFFFF) + kSamples),
        Rf64(4072, 4000, FormatChunk() + ChunkHeader("data", 4000) + kSamples)}) {
    const std::string path = WriteOld("input.wav", bytes);
    EXPECT_EQ(PlanRepair(path).state, ERepairState::Sound);
    EXPECT_EQ(RepairInPlace(path).outcome, ERepairOutcome::Sound);
    MakeFolder("to");
    EXPECT_EQ(RepairInto(path, Path("to")).outcome, ERepairOutcome::Sound);
    EXPECT_EQ(Bytes(path), bytes);
    EXPECT_EQ(Modified(path), kLongAgo);
    EXPECT_TRUE(platform::ListFolder(Path("to"))->empty());
  }
}

TEST_F(FileRepair, FilesWithoutSizesAreInOrder) {
  const SRepairPlan plan = PlanRepair(Write("capture.cs16", kSamples));
  EXPECT_EQ(plan.state, ERepairState::Sound);
  EXPECT_EQ(plan.strProblem, "a file of its kind tells no sizes that could be wrong");
}

TEST_F(FileRepair, WhatNobodyCanKnowIsRefusedWithTheReason) {
  const auto problem = [&](const std::string& bytes) {
    const SRepairPlan plan = PlanRepair(Write("input.wav", bytes));
    EXPECT_EQ(plan.state, ERepairState::Refused);
    EXPECT_EQ(RepairInPlace(plan.strPath).outcome, ERepairOutcome::Refused);
    EXPECT_EQ(Bytes(plan.strPath), bytes);
    return plan.strProblem;
  };
  EXPECT_EQ(problem("a text"), "not a RIFF or RF64 file");
  EXPECT_EQ(problem(""), "the file is empty");
  EXPECT_EQ(problem(Wave(0, 0, {}).substr(0, 30)),
            "chunk \"fmt \": Failed to read wave format descriptor from the file");
  EXPECT_EQ(problem(Wave(0, 0, {}).substr(0, 36)), "no data chunk found");
  EXPECT_EQ(problem(Rf64(4072, 2000, FormatChunk() + ChunkHeader("data", 3000) + kSamples)),
            "its data chunk tells 3000 bytes and ds64 2000: nobody can know which is right");
  EXPECT_EQ(PlanRepair(Path("missing.wav")).state, ERepairState::Refused);
}

TEST_F(FileRepair, MoreThan4GiBBecomeRf64WhereRoomWasKept) {
  for (const std::uint32_t room : {28U, 36U, 100U}) {
    SCOPED_TRACE(room);
    const std::string kept = Chunk("JUNK", std::string(room, 'j'));
    const std::string head = Wave((kWrap + 4036 + 8 + room) % kWrap, 4000, {}, kept);
    const std::string path = Write("input.wav", head);
    ExtendFile(path, head.size() + kWrap + 4000);
    SetOld(path);
    const SRepairResult result = RepairInPlace(path);
    ASSERT_EQ(result.outcome, ERepairOutcome::Repaired) << result.strError;
    const std::string sizes = Le64(head.size() + kWrap + 4000 - 8) + Le64(kWrap + 4000) + Le64((kWrap + 4000) / 4);
    const std::string rest = room > 28 ? ChunkHeader("JUNK", room - 36) + std::string(room - 36, 'j') : "";
    EXPECT_EQ(Head(path, head.size()), ChunkHeader("RF64", 0xFFFFFFFF) + "WAVE" + Chunk("ds64", sizes + Le32(0)) +
                                           rest + FormatChunk() + ChunkHeader("data", 0xFFFFFFFF));
    EXPECT_EQ(Modified(path), kLongAgo);
    CWaveFileReader reader;
    WAVEFORMATEXTENSIBLE format;
    std::int64_t dataSize = 0;
    ASSERT_TRUE(reader.Open(path) && reader.ParseWave(format, dataSize));
    EXPECT_EQ(dataSize, static_cast<std::int64_t>(kWrap + 4000));
    EXPECT_EQ(PlanRepair(path).state, ERepairState::Sound);
  }
}

TEST_F(FileRepair, MoreThan4GiBWithoutRoomNeedANewFile) {
  const std::string head = Wave(4036, 4000, {});
  const std::string path = Write("input.wav", head);
  ExtendFile(path, head.size() + kWrap + 4000);
  const SRepairPlan plan = PlanRepair(path);
  EXPECT_EQ(plan.state, ERepairState::Broken);
  EXPECT_NE(plan.strOnlyAsNewFile, "");
  const std::string sizes = Le64(kWrap + 4036 + 36) + Le64(kWrap + 4000) + Le64((kWrap + 4000) / 4) + Le32(0);
  EXPECT_EQ(plan.strRightHead, ChunkHeader("RF64", 0xFFFFFFFF) + "WAVE" + Chunk("ds64", sizes) + FormatChunk() +
                                   ChunkHeader("data", 0xFFFFFFFF));
  const SRepairResult result = RepairInPlace(path);
  EXPECT_EQ(result.outcome, ERepairOutcome::Refused);
  EXPECT_NE(result.strError.find("it can be repaired into another folder"), std::string::npos) << result.strError;
  EXPECT_EQ(Head(path, head.size()), head);
}

TEST_F(FileRepair, ARightCopyHasTheSamplesAndTheTimeOfTheFile) {
  const std::string broken = Wave(0, 0, kSamples + "ab");
  const std::string path = WriteOld("input.wav", broken);
  MakeFolder("to");
  const SRepairResult result = RepairInto(path, Path("to"));
  ASSERT_EQ(result.outcome, ERepairOutcome::Repaired) << result.strError;
  EXPECT_EQ(Bytes(result.strFile), Wave(4036, 4000, kSamples));
  EXPECT_EQ(Modified(result.strFile), kLongAgo);
  EXPECT_EQ(Bytes(path), broken);
  EXPECT_EQ(platform::ListFolder(Path("to"))->size(), 1u);
  EXPECT_EQ(RepairInto(path, Path("to")).outcome, ERepairOutcome::Exists);
  EXPECT_EQ(RepairInto(path, platform::FolderOf(path)).outcome, ERepairOutcome::Exists);
  EXPECT_EQ(Bytes(path), broken);
  EXPECT_EQ(RepairInto(path, Path("gone")).outcome, ERepairOutcome::Failed);
}

TEST_F(FileRepair, ACopyThatIsStoppedLeavesNothing) {
  const std::string path = Write("input.wav", Wave(0, 0, kSamples));
  MakeFolder("to");
  const auto stop = [](std::int64_t, std::int64_t) { return false; };
  EXPECT_EQ(RepairInto(path, Path("to"), {}, stop).outcome, ERepairOutcome::Stopped);
  EXPECT_TRUE(platform::ListFolder(Path("to"))->empty());
  // What a copy left that was killed does not stand in the way.
  Write("to/input.wav.part", "half");
  EXPECT_EQ(RepairInto(path, Path("to")).outcome, ERepairOutcome::Repaired);
  EXPECT_EQ(platform::ListFolder(Path("to"))->size(), 1u);
}

TEST_F(FileRepair, ARepairThatWasCutOffIsSettledByTheNextOne) {
  const std::string broken = Wave(0, 0, kSamples);
  const std::string right = Wave(4036, 4000, kSamples);
  const SKeptBytes kept{kLongAgo, 4044, {{4, Le32(0), Le32(4036)}, {40, Le32(0), Le32(4000)}}};
  const std::string half = right.substr(0, 8) + broken.substr(8);
  const std::string torn = right.substr(0, 5) + broken.substr(5);
  for (const std::string& found : {broken, half, torn, right}) {
    for (const bool inPlace : {true, false}) {
      const std::string path = Write("input.wav", found);
      std::string error;
      ASSERT_TRUE(WriteSideFile(RepairSidePath(path), kept, error)) << error;
      EXPECT_TRUE(IsRepairInterrupted(path));
      if (inPlace) {
        const SRepairResult result = RepairInPlace(path);
        EXPECT_NE(result.outcome, ERepairOutcome::Failed) << result.strError;
        EXPECT_TRUE(result.bFinishedEarlier);
        EXPECT_EQ(Bytes(path), right);
      } else {
        MakeFolder("to");
        EXPECT_NE(RepairInto(path, Path("to")).outcome, ERepairOutcome::Failed);
        EXPECT_EQ(Bytes(path), found == right ? right : broken);
        Remove("to/input.wav");
      }
      EXPECT_EQ(Modified(path), kLongAgo);
      EXPECT_FALSE(IsRepairInterrupted(path));
    }
  }
}

TEST_F(FileRepair, ASideFileThatWasNotFinishedCostsNothing) {
  const std::string path = WriteOld("input.wav", Wave(0, 0, kSamples));
  for (const std::string& bytes :
       {std::string(), std::string("Carve"), std::string("Carvello repair 1\nabc"), std::string(64, '\0')}) {
    Write("input.wav.carvello-repair", bytes);
    EXPECT_NE(RepairInPlace(path).outcome, ERepairOutcome::Failed);
    EXPECT_EQ(Bytes(path), Wave(4036, 4000, kSamples));
    EXPECT_FALSE(IsRepairInterrupted(path));
  }
}

TEST_F(FileRepair, ASideFileOfSomebodyElseIsLeftAlone) {
  const std::string broken = Wave(0, 0, kSamples);
  const std::string path = Write("input.wav", broken);
  Write("input.wav.carvello-repair", "my notes");
  const SRepairResult result = RepairInPlace(path);
  EXPECT_EQ(result.outcome, ERepairOutcome::Failed);
  EXPECT_NE(result.strError.find("is in the way"), std::string::npos) << result.strError;
  EXPECT_EQ(Bytes(path), broken);
  EXPECT_EQ(Bytes(Path("input.wav.carvello-repair")), "my notes");
}

TEST_F(FileRepair, AFileThatSomebodyElseChangedBehindAnInterruptedRepairIsLeftAlone) {
  const std::string other = Wave(1236, 1200, kSamples);
  const std::string path = Write("input.wav", other);
  std::string error;
  ASSERT_TRUE(WriteSideFile(RepairSidePath(path), {kLongAgo, 4044, {{40, Le32(0), Le32(4000)}}}, error));
  const SRepairResult result = RepairInPlace(path);
  EXPECT_EQ(result.outcome, ERepairOutcome::Failed);
  EXPECT_NE(result.strError.find("was changed by somebody else"), std::string::npos) << result.strError;
  EXPECT_EQ(Bytes(path), other);
  EXPECT_TRUE(IsRepairInterrupted(path));
}

TEST_F(FileRepair, AFileThatAnotherRepairWorksOnIsRefused) {
  const std::string broken = Wave(0, 0, kSamples);
  const std::string path = Write("input.wav", broken);
  CFile other;
  ASSERT_TRUE(other.Open(path, platform::EOpenMode::Change));
  EXPECT_EQ(RepairInPlace(path).outcome, ERepairOutcome::Failed);
  EXPECT_EQ(Bytes(path), broken);
  EXPECT_FALSE(IsRepairInterrupted(path));
  other.Close();
  EXPECT_EQ(RepairInPlace(path).outcome, ERepairOutcome::Repaired);
}

}  // namespace carvello::test
