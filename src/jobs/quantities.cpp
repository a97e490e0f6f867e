#include "jobs/quantities.h"

#include <algorithm>
#include <chrono>
#include <limits>

#include "support/text.h"

namespace carvello {
namespace {

constexpr std::int64_t kLargestFrequency = 1'000'000'000'000;  // Hz
constexpr std::int64_t kLargest = std::numeric_limits<std::int64_t>::max();

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

bool AllDigits(std::string_view text) {
  return !text.empty() && std::all_of(text.begin(), text.end(), IsDigit);
}

// Appends one decimal digit. False when the number would pass the limit.
bool AppendDigit(std::int64_t& number, int digit, std::int64_t limit) {
  if (number > (limit - digit) / 10) return false;
  number = number * 10 + digit;
  return true;
}

// Takes exactly `count` digits from the front of the text.
std::optional<int> TakeDigits(std::string_view& text, std::size_t count) {
  if (text.size() < count || !AllDigits(text.substr(0, count))) return std::nullopt;
  int number = 0;
  for (const char c : text.substr(0, count)) number = number * 10 + (c - '0');
  text.remove_prefix(count);
  return number;
}

bool TakeCharacter(std::string_view& text, char c) {
  if (text.empty() || text.front() != c) return false;
  text.remove_prefix(1);
  return true;
}

}  // namespace

std::optional<int> ParseZone(std::string_view text) {
  if (text == "Z") return 0;
  if (text.empty() || (text.front() != '+' && text.front() != '-')) return std::nullopt;
  const int sign = text.front() == '-' ? -1 : 1;
  text.remove_prefix(1);
  const std::optional<int> hours = TakeDigits(text, 2);
  TakeCharacter(text, ':');
  const std::optional<int> minutes = TakeDigits(text, 2);
  if (!hours || !minutes || *hours > 23 || *minutes > 59 || !text.empty()) return std::nullopt;
  return sign * (*hours * 60 + *minutes) * 60;
}

std::optional<std::int64_t> ParseDecimal(std::string_view text, unsigned exponent, std::int64_t limit) {
  const std::size_t point = text.find('.');
  const std::string_view whole = text.substr(0, point);
  const std::string_view fraction = point == std::string_view::npos ? std::string_view() : text.substr(point + 1);
  if (!AllDigits(whole) || (point != std::string_view::npos && !AllDigits(fraction))) return std::nullopt;

  std::int64_t number = 0;
  for (const char c : whole) {
    if (!AppendDigit(number, c - '0', limit)) return std::nullopt;
  }
  for (std::size_t i = 0; i < exponent; ++i) {
    if (!AppendDigit(number, i < fraction.size() ? fraction[i] - '0' : 0, limit)) return std::nullopt;
  }
  const std::string_view rest = fraction.substr(std::min<std::size_t>(exponent, fraction.size()));
  if (rest.find_first_not_of('0') != std::string_view::npos) return std::nullopt;
  return number;
}

std::optional<std::int64_t> ParseWholeNumber(std::string_view text) {
  if (!AllDigits(text)) return std::nullopt;
  return ParseDecimal(text, 0, kLargest);
}

std::optional<std::int64_t> ParseFrequency(std::string_view text) {
  const bool negative = TakeCharacter(text, '-');
  unsigned exponent = 0;
  if (!text.empty()) {
    const std::size_t suffix = std::string_view("kMG").find(text.back());
    if (suffix != std::string_view::npos) {
      exponent = 3 * (static_cast<unsigned>(suffix) + 1);
      text.remove_suffix(1);
    }
  }
  const std::optional<std::int64_t> frequency = ParseDecimal(text, exponent, kLargestFrequency);
  if (frequency && negative) return -*frequency;
  return frequency;
}

std::optional<std::int64_t> SMoment::Resolve(std::int64_t start) const {
  if (!bFromStart) return nSeconds;
  std::int64_t seconds = 0;
  if (__builtin_add_overflow(start, nSeconds, &seconds)) return std::nullopt;
  return seconds;
}

std::optional<std::int64_t> ParseDateTime(std::string_view text) {
  const std::optional<int> year = TakeDigits(text, 4);
  if (!year || !TakeCharacter(text, '-')) return std::nullopt;
  const std::optional<int> month = TakeDigits(text, 2);
  if (!month || !TakeCharacter(text, '-')) return std::nullopt;
  const std::optional<int> day = TakeDigits(text, 2);
  if (!day || !TakeCharacter(text, 'T')) return std::nullopt;
  const std::optional<int> hour = TakeDigits(text, 2);
  if (!hour || !TakeCharacter(text, ':')) return std::nullopt;
  const std::optional<int> minute = TakeDigits(text, 2);
  if (!minute) return std::nullopt;
  std::optional<int> second = 0;
  if (TakeCharacter(text, ':')) second = TakeDigits(text, 2);
  if (!second) return std::nullopt;
  const std::optional<int> zone = ParseZone(text);
  if (!zone || *hour > 23 || *minute > 59 || *second > 59) return std::nullopt;

  const std::chrono::year_month_day date{std::chrono::year(*year), std::chrono::month(static_cast<unsigned>(*month)),
                                         std::chrono::day(static_cast<unsigned>(*day))};
  if (!date.ok()) return std::nullopt;
  const std::int64_t days = std::chrono::sys_days(date).time_since_epoch().count();
  const int secondOfDay = (*hour * 60 + *minute) * 60 + *second;
  return days * 86'400 + secondOfDay - *zone;
}

std::optional<SMoment> ParseMoment(std::string_view text) {
  const bool fromStart = TakeCharacter(text, '+');
  const std::optional<std::int64_t> seconds = fromStart ? ParseWholeNumber(text) : ParseDateTime(text);
  if (!seconds) return std::nullopt;
  return SMoment{fromStart, *seconds};
}

std::optional<std::uint32_t> ParseDuration(std::string_view text) {
  constexpr std::int64_t kLimit = std::numeric_limits<std::uint32_t>::max();
  const std::size_t colon = text.find(':');
  const std::optional<std::int64_t> first = ParseWholeNumber(text.substr(0, colon));
  if (!first || *first > kLimit) return std::nullopt;
  if (colon == std::string_view::npos) return static_cast<std::uint32_t>(*first);

  text.remove_prefix(colon + 1);
  const std::optional<int> minutes = TakeDigits(text, 2);
  std::optional<int> seconds = 0;
  if (TakeCharacter(text, ':')) seconds = TakeDigits(text, 2);
  if (!minutes || !seconds || *minutes > 59 || *seconds > 59 || !text.empty()) return std::nullopt;
  const std::int64_t total = (*first * 60 + *minutes) * 60 + *seconds;
  if (total > kLimit) return std::nullopt;
  return static_cast<std::uint32_t>(total);
}

std::optional<std::uint32_t> ParseFileSize(std::string_view text) {
  if (EqualsNoCaseAscii(text, "100MB")) return 100;
  if (EqualsNoCaseAscii(text, "1GB")) return 1000;
  if (EqualsNoCaseAscii(text, "RF64")) return 0;
  return std::nullopt;
}

std::optional<EOutputFormat> ParseFormat(std::string_view text) {
  if (EqualsNoCaseAscii(text, "wav")) return EOutputFormat::Wave;
  if (EqualsNoCaseAscii(text, "sigmf")) return EOutputFormat::SigMf;
  return std::nullopt;
}

std::optional<double> ParseDecibels(std::string_view text) {
  const bool negative = TakeCharacter(text, '-');
  const std::optional<std::int64_t> millionths = ParseDecimal(text, 6, 400'000'000);
  if (!millionths) return std::nullopt;
  const double decibels = static_cast<double>(*millionths) / 1e6;
  return negative ? -decibels : decibels;
}

}  // namespace carvello
