#include "ui/frequency_text.h"

#include <algorithm>
#include <array>
#include <cstdlib>

#include "support/text.h"

namespace carvello {

namespace {

constexpr std::size_t kMegahertzPlaces = 5;
constexpr std::int64_t kMaxFrequency = 99'999'999'999;  // eleven places
constexpr int kMegahertz = 6;                           // powers of ten
constexpr int kKilohertz = 3;

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

bool IsEmptyPlace(char c) {
  return c == ' ' || c == '_';
}

struct SUnit {
  std::string_view text;
  int nPower;  // of ten, in Hz
};
constexpr std::array<SUnit, 4> kUnits{{{"ghz", 9}, {"mhz", kMegahertz}, {"khz", kKilohertz}, {"hz", 0}}};

// Cuts a unit off the end of a lower-case text; nothing when it has none.
std::optional<int> TakeUnit(std::string& text) {
  for (const SUnit& unit : kUnits) {
    if (!text.ends_with(unit.text)) continue;
    text = Trim(text.substr(0, text.size() - unit.text.size()));
    return unit.nPower;
  }
  return std::nullopt;
}

// Whether every group of digits behind the first separator has three digits and the first one to three.
bool IsGrouped(std::string_view text, char separator) {
  std::size_t start = 0;
  for (std::size_t end = text.find(separator); end != std::string_view::npos; end = text.find(separator, start)) {
    const std::size_t digits = end - start;
    if (start == 0 ? digits < 1 || digits > 3 : digits != 3) return false;
    start = end + 1;
  }
  return text.size() - start == 3;
}

// Whether a single separator parts groups of three rather than a number from its fraction. A fraction of Hz makes no
// sense; a point before three digits of kHz or MHz is how frequencies are written here; "7,100 kHz" is how others write
// 7.1 MHz.
bool IsGroupSeparator(std::string_view text, char separator, std::optional<int> unit) {
  if (!unit || !IsGrouped(text, separator)) return false;
  return *unit == 0 || (*unit == kKilohertz && separator == ',');
}

// A number in digits, without separators.
struct SNumber {
  std::string whole;
  std::string fraction;
  bool bPoint = false;  // whether something separated the two
};

// Nothing for separators that part a number into anything else than groups of three and a fraction.
std::optional<SNumber> SplitNumber(const std::string& text, std::optional<int> unit) {
  const std::size_t last = text.find_last_of(".,");
  if (last == std::string::npos) return SNumber{text, {}, false};
  const char separator = text[last];
  const char other = separator == '.' ? ',' : '.';
  if (std::count(text.begin(), text.end(), separator) > 1 || IsGroupSeparator(text, separator, unit)) {
    if (text.find(other) != std::string::npos || !IsGrouped(text, separator)) return std::nullopt;
    return SNumber{ReplaceAll(text, std::string_view(&separator, 1), ""), {}, false};
  }
  const std::string whole = text.substr(0, last);
  if (whole.find(other) != std::string::npos && !IsGrouped(whole, other)) return std::nullopt;
  return SNumber{ReplaceAll(whole, std::string_view(&other, 1), ""), text.substr(last + 1), true};
}

// The number times ten to the power, to the nearest whole; nothing beyond eleven digits.
std::optional<std::int64_t> Scale(const SNumber& number, int power) {
  const auto shift = static_cast<std::size_t>(power);
  std::string digits = number.whole + number.fraction.substr(0, shift);
  digits.append(shift - std::min(shift, number.fraction.size()), '0');
  std::int64_t value = 0;
  for (const char digit : digits) {
    value = value * 10 + (digit - '0');
    if (value > kMaxFrequency) return std::nullopt;
  }
  if (number.fraction.size() > shift && number.fraction[shift] >= '5') ++value;
  return value <= kMaxFrequency ? std::optional(value) : std::nullopt;
}

}  // namespace

bool IsFrequencyFieldText(std::string_view text) {
  return std::equal(text.begin(), text.end(), kFrequencyMask.begin(), kFrequencyMask.end(),
                    [](char c, char place) { return place == 'd' ? IsDigit(c) || IsEmptyPlace(c) : c == place; });
}

std::string FrequencyTemplateText(std::uint64_t frequency) {
  std::string digits = std::to_string(frequency);
  std::string text(kFrequencyTemplate);
  for (auto place = text.rbegin(); place != text.rend() && !digits.empty(); ++place) {
    if (*place != '_') continue;
    *place = digits.back();
    digits.pop_back();
  }
  return text;
}

std::int64_t ReadFrequencyText(std::string_view text) {
  std::string digits;
  for (const char c : text) {
    if (c == '.') continue;
    digits.push_back(IsEmptyPlace(c) ? '0' : IsDigit(c) ? c : ' ');
  }
  digits = Trim(digits);
  digits.erase(0, digits.find_first_not_of('0'));
  return std::strtoll(digits.c_str(), nullptr, 10);
}

std::string AlignMegahertz(std::string_view text) {
  std::string aligned(text);
  const std::size_t end = std::min(aligned.find('.'), std::min(aligned.size(), kMegahertzPlaces));
  std::size_t used = end;
  while (used > 0 && IsEmptyPlace(aligned[used - 1])) --used;
  const auto begin = aligned.begin();
  std::rotate(begin, begin + static_cast<std::ptrdiff_t>(used), begin + static_cast<std::ptrdiff_t>(end));
  std::fill(begin, begin + static_cast<std::ptrdiff_t>(end - used), '_');
  return aligned;
}

std::optional<std::int64_t> ReadFrequency(std::string_view text) {
  if (IsFrequencyFieldText(text)) return ReadFrequencyText(AlignMegahertz(text));

  std::string digits = ToLowerAscii(text);
  // Places left empty in the field, and the blanks and apostrophes by which some write groups.
  for (const char* const ignored : {"_", " ", "\t", "\r", "\n", "'", "\xC2\xA0", "\xE2\x80\xAF", "\xE2\x80\x89"}) {
    digits = ReplaceAll(digits, ignored, "");
  }
  const std::optional<int> unit = TakeUnit(digits);
  if (digits.find_first_not_of("0123456789.,") != std::string::npos) return std::nullopt;

  const auto number = SplitNumber(digits, unit);
  if (!number || (number->whole.empty() && number->fraction.empty())) return std::nullopt;
  return Scale(*number, unit ? *unit : number->bPoint ? kMegahertz : 0);
}

}  // namespace carvello
