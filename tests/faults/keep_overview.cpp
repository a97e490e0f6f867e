// Keeps an overview, or tells whether a kept one can be used: for faults in between.
//
//   keep-overview save FOLDER SEED    exit code 0 when it was kept
//   keep-overview load FOLDER         prints the seed of the overview that is kept there, "none" where there is none;
//   exit
//                                     code 1 when it is not what was saved
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "overview/overview_cache.h"

namespace {

using namespace carvello;

constexpr std::int64_t kRows = 600;  // some writes

CRecordingSet Recording() {
  CRecordingSet recording;
  recording.files.push_back(
      {.strPath = "/recording.wav", .nDataBytes = 0, .tStart = 0, .nSampleBytes = 0, .stamp = {}});
  return recording;
}

void Fill(CBaseLevels& base, int seed) {
  SCodeRow codes;
  codes.mean.resize(kBaseBins);
  codes.maximum.resize(kBaseBins);
  for (std::int64_t row = 0; row < kRows; ++row) {
    for (std::size_t i = 0; i < kBaseBins; ++i) {
      codes.mean[i] = static_cast<std::uint8_t>(static_cast<std::size_t>(seed) + i * static_cast<std::size_t>(row + 1));
      codes.maximum[i] = static_cast<std::uint8_t>(seed);
    }
    base.Restore(row, ERowState::Whole, codes.mean, codes.maximum);
  }
}

bool IsSame(const CBaseLevels& a, const CBaseLevels& b) {
  SCodeRow one;
  SCodeRow other;
  for (std::int64_t row = 0; row < kRows; ++row) {
    a.Copy(row, one);
    b.Copy(row, other);
    if (a.State(row) != b.State(row) || one.mean != other.mean || one.maximum != other.maximum) return false;
  }
  return true;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 3) return 2;
  const COverviewCache cache(argv[2], 1'000'000'000, Recording());
  CBaseLevels base(kRows * static_cast<std::int64_t>(kBaseBins));
  if (std::strcmp(argv[1], "save") == 0) {
    Fill(base, std::atoi(argv[3]));
    return cache.Save(base) ? 0 : 1;
  }
  if (!cache.Load(base)) {
    std::puts("none");
    return 0;
  }
  SCodeRow codes;
  base.Copy(0, codes);
  const int seed = codes.maximum[0];
  CBaseLevels expected(kRows * static_cast<std::int64_t>(kBaseBins));
  Fill(expected, seed);
  if (!IsSame(base, expected)) return 1;
  std::printf("%d\n", seed);
  return 0;
}
