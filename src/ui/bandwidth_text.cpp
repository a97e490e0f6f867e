#include "ui/bandwidth_text.h"

#include <algorithm>
#include <array>
#include <limits>

#include "support/formatting.h"
#include "support/text.h"

namespace carvello {

namespace {

constexpr std::uint32_t kWidestInKilohertz = 1'000'000;
constexpr std::uint64_t kLargest = std::numeric_limits<std::uint32_t>::max();
constexpr unsigned kMostDigits = 12;  // before the point, as behind it: no sum of them passes 64 bits

struct SUnit {
  const char* pName;  // in lower case
  unsigned nExponent;
};
constexpr std::array<SUnit, 5> kUnits = {{{"khz", 3}, {"mhz", 6}, {"hz", 0}, {"k", 3}, {"m", 6}}};

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

// Without blanks, in lower case, with a point for a comma.
std::string Tidied(std::string_view text) {
  std::string tidied;
  for (const char c : text) {
    if (c == ' ') continue;
    tidied += c == ',' ? '.' : c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  }
  return tidied;
}

// Digits with at most one point, times 10^exponent, which must be whole.
std::optional<std::uint64_t> Scaled(std::string_view whole, std::string_view fraction, unsigned exponent) {
  if (whole.size() > kMostDigits) return std::nullopt;
  std::uint64_t number = 0;
  for (const char c : whole) number = number * 10 + static_cast<std::uint64_t>(c - '0');
  for (std::size_t i = 0; i < exponent; ++i) {
    number = number * 10 + (i < fraction.size() ? static_cast<std::uint64_t>(fraction[i] - '0') : 0);
  }
  const std::string_view rest = fraction.substr(std::min<std::size_t>(exponent, fraction.size()));
  if (rest.find_first_not_of('0') != std::string_view::npos) return std::nullopt;
  return number;
}

}  // namespace

std::string BandwidthText(std::uint32_t bandwidth) {
  if (bandwidth > kWidestInKilohertz) return FormatFrequency(bandwidth);
  const auto kilohertz = static_cast<int>(bandwidth / 1000);
  const auto rest = static_cast<int>(bandwidth % 1000);
  if (bandwidth == 0 || kilohertz == 0) return Format("%d Hz", rest);
  if (rest == 0) return Format("%d kHz", kilohertz);
  std::string text = Format("%d.%03d", kilohertz, rest);
  text.erase(text.find_last_not_of('0') + 1);
  return text + " kHz";
}

std::optional<std::uint32_t> ParseBandwidth(std::string_view text) {
  const std::string tidied = Tidied(text);
  std::string_view number = tidied;
  std::optional<unsigned> exponent;
  for (const SUnit& unit : kUnits) {
    if (exponent || !number.ends_with(unit.pName)) continue;
    exponent = unit.nExponent;
    number.remove_suffix(std::string_view(unit.pName).size());
  }
  const std::size_t point = std::min(number.find('.'), number.size());
  const std::string_view whole = number.substr(0, point);
  const std::string_view fraction = number.substr(std::min(point + 1, number.size()));
  const auto digits = [](std::string_view part) { return std::all_of(part.begin(), part.end(), IsDigit); };
  if (!digits(whole) || !digits(fraction) || whole.size() + fraction.size() == 0) return std::nullopt;

  constexpr std::size_t kGroup = 3;
  // "12.500 Hz": no fraction of it is meant.
  if (exponent == 0U && fraction.size() == kGroup) exponent = 3;
  if (!exponent) {
    const auto alone = Scaled(whole, fraction, 0);
    exponent = alone && *alone >= 1000 ? 0 : 3;
  }
  const auto bandwidth = Scaled(whole, fraction, *exponent);
  if (!bandwidth || *bandwidth > kLargest) return std::nullopt;
  return static_cast<std::uint32_t>(*bandwidth);
}

}  // namespace carvello
