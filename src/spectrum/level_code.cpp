#include "spectrum/level_code.h"

#include <array>
#include <bit>
#include <limits>

namespace carvello {
namespace {

// A power is looked up by the exponent and the first bits of the mantissa, which are the first bits of a float. A cell
// is at most 1/16 of an octave above its beginning, 0.26 dB, so no more than one step between two codes lies in it.
constexpr unsigned kCellShift = 19;  // leaves 4 bits of the mantissa
constexpr unsigned kCells = 0x7F80'0000u >> kCellShift;

struct SCell {
  float fNext = std::numeric_limits<float>::infinity();  // from here on the code is one higher
  std::uint8_t nCode = 1;
};

// By operations only that every system rounds in one way: the powers between two levels, one from the other.
constexpr std::array<SCell, kCells> MakeCells() {
  constexpr double kStep = 1.1481536214968827733;  // 0.6 dB
  double fNext = 1.0715193052376064174e-15;        // -149.7 dB, between the codes 1 and 2
  std::array<SCell, kCells> cells;
  std::uint8_t nCode = 1;
  for (std::uint32_t i = 0; i < kCells; ++i) {
    cells[i].nCode = nCode;
    const auto fEnd = std::bit_cast<float>((i + 1) << kCellShift);
    if (nCode == 255 || static_cast<float>(fNext) >= fEnd) continue;
    cells[i].fNext = static_cast<float>(fNext);
    ++nCode;
    fNext *= kStep;
  }
  return cells;
}

constexpr std::array<SCell, kCells> kLevelCells = MakeCells();

}  // namespace

std::uint8_t LevelCode(float power) noexcept {
  if (!(power > 0.0f)) return 1;
  const std::uint32_t nCell = std::bit_cast<std::uint32_t>(power) >> kCellShift;
  if (nCell >= kCells) return 255;
  const SCell& cell = kLevelCells[nCell];
  return static_cast<std::uint8_t>(cell.nCode + (power >= cell.fNext ? 1 : 0));
}

void LevelCodes(const float* power, std::size_t count, std::uint8_t* codes) noexcept {
  for (std::size_t i = 0; i < count; ++i) codes[i] = LevelCode(power[i]);
}

double CodeLevel(std::uint8_t code) noexcept {
  if (code == kUnknownLevel) return -std::numeric_limits<double>::infinity();
  return kLowestLevel + kLevelStep * (code - 1);
}

}  // namespace carvello
