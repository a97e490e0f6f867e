#include "input/recording_names.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <limits>

#include "support/text.h"

namespace carvello {

namespace {

constexpr std::int64_t kMostFrequency = 1'000'000'000'000;  // Hz
constexpr unsigned kFractionDigits = 9;

// A pattern is the whole name in lower case. Between braces stands what a program fills in: Y m d H M S with two digits
// each (Y four), f the digits of a fraction of a second, F a centre frequency in the unit of the row or with {u} one
// behind it, R a rate, n any digits, * anything. What stands between [ and ] may be missing; they do not nest.
struct SNameRow {
  const char* pszProgram;
  const char* pszPattern;
  ENameTime zone;
  std::int64_t nUnit;  // Hz
  bool bGuess;
  const char* pszKind;  // nullptr: as the file tells
};

constexpr std::array kRows = {
    SNameRow{"SDR++", "baseband_{F}hz_{H}-{M}-{S}_{d}-{m}-{Y}.wav", ENameTime::Local, 1, false, nullptr},
    SNameRow{"SDRangel", "{*}{Y}-{m}-{d}t{H}_{M}_{S}_{f}.sdriq", ENameTime::Utc, 1, false, nullptr},
    SNameRow{"SDRangel", "{*}{Y}-{m}-{d}t{H}_{M}_{S}_{f}.wav", ENameTime::Utc, 1, false, nullptr},
    SNameRow{"gqrx", "gqrx_{Y}{m}{d}_{H}{M}{S}_{F}_{R}_fc.raw", ENameTime::Utc, 1, false, "cf32_le"},
    SNameRow{"KiwiSDR", "{Y}{m}{d}t{H}{M}{S}z_{F}[_{*}]_iq.wav", ENameTime::Utc, 1, false, nullptr},
    SNameRow{"KiwiSDR", "{*}_{Y}-{m}-{d}t{H}_{M}_{S}z_{F}_iq.wav", ENameTime::Utc, 1000, false, nullptr},
    SNameRow{"HackRF", "hackrf_{Y}{m}{d}_{H}{M}{S}z_{F}khz_iq.wav", ENameTime::FalseZ, 1000, false, nullptr},
    SNameRow{"AirSpy", "airspy_{Y}{m}{d}_{H}{M}{S}z_{F}khz_iq.wav", ENameTime::FalseZ, 1000, false, nullptr},
    SNameRow{"SatDump", "{Y}-{m}-{d}_{H}-{M}-{S}[-{f}]_{R}sps_{F}hz.{*}", ENameTime::Utc, 1, false, nullptr},
    SNameRow{"SDRuno", "sdruno_{Y}{m}{d}_{H}{M}{S}z_{F}{u}.wav", ENameTime::Utc, 1, true, nullptr},
    SNameRow{"HDSDR", "hdsdr_{Y}{m}{d}_{H}{M}{S}z_{F}{u}_rf.wav", ENameTime::Utc, 1, true, nullptr},
    SNameRow{"HDSDR", "hdsdr_{Y}{m}{d}_{H}{M}{S}_{F}{u}_rf.wav", ENameTime::Local, 1, true, nullptr},
    SNameRow{"SDRconnect", "sdrconnect_iq_{Y}{m}{d}_{H}{M}{S}_{F}hz.wav", ENameTime::Local, 1, true, nullptr},
    SNameRow{"WavViewDX", "iq_pcm16_ch1_cf{F}_sr{R}_dt{Y}{m}{d}-{H}{M}{S}z.raw", ENameTime::Utc, 1, true, "ci16_le"},
    SNameRow{"WavViewDX", "iq_pcm16_ch1_cf{F}_sr{R}_dt{Y}{m}{d}-{H}{M}{S}.raw", ENameTime::Local, 1, true, "ci16_le"},
};

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

std::size_t DigitsAt(std::string_view text) {
  std::size_t count = 0;
  while (count < text.size() && IsDigit(text[count])) ++count;
  return count;
}

// "7.05" units as Hz, cut off below 1 Hz; nothing beyond any radio frequency.
std::optional<std::int64_t> ScaledNumber(std::string_view number, std::int64_t unit) {
  std::int64_t value = 0;
  std::size_t i = 0;
  for (; i < number.size() && IsDigit(number[i]); ++i) {
    value = value * 10 + (number[i] - '0') * unit;
    if (value > kMostFrequency * 10) return std::nullopt;
  }
  for (++i; i < number.size(); ++i) {
    unit /= 10;
    value += (number[i] - '0') * unit;
  }
  return value <= kMostFrequency ? std::optional(value) : std::nullopt;
}

// The length of digits that may have a point and more digits behind them.
std::size_t NumberAt(std::string_view text) {
  const std::size_t whole = DigitsAt(text);
  if (whole == 0 || whole >= text.size() || text[whole] != '.') return whole;
  const std::size_t fraction = DigitsAt(text.substr(whole + 1));
  return fraction == 0 ? whole : whole + 1 + fraction;
}

struct SUnit {
  std::string_view text;
  std::int64_t nHz;
};
// Longer ones first.
constexpr std::array<SUnit, 4> kUnits = {{{"ghz", 1'000'000'000}, {"mhz", 1'000'000}, {"khz", 1000}, {"hz", 1}}};

// Matches a name against the pattern of one row.
class CNameMatch {
 public:
  explicit CNameMatch(const SNameRow& row) : m_row(row) {}

  std::optional<SNameFacts> Match(std::string_view name) {
    m_nSteps = 0;
    if (!MatchFrom(m_row.pszPattern, name)) return std::nullopt;
    SNameFacts facts;
    facts.pszProgram = m_row.pszProgram;
    facts.bGuess = m_row.bGuess;
    facts.zone = m_row.zone;
    facts.time = m_time;
    facts.nCentre = m_centre;
    facts.nSampleRate = m_rate;
    if (m_row.pszKind != nullptr) facts.kind = ParseSampleKind(m_row.pszKind);
    const SDateFields& date = m_time.fields;
    const std::chrono::year_month_day day{std::chrono::year(date.nYear),
                                          std::chrono::month(static_cast<unsigned>(date.nMonth)),
                                          std::chrono::day(static_cast<unsigned>(date.nDay))};
    const bool exists = day.ok() && date.nYear >= 1970 && date.nHour < 24 && date.nMinute < 60 && date.nSecond < 60;
    return exists ? std::optional(facts) : std::nullopt;
  }

 private:
  static constexpr int kMostSteps = 10'000;  // names are short; made-up ones must not take for ever

  bool MatchFrom(std::string_view pattern, std::string_view name) {
    if (++m_nSteps > kMostSteps) return false;
    if (pattern.empty()) return name.empty();
    if (pattern[0] == '[') {
      const std::size_t end = pattern.find(']');
      const std::string with = std::string(pattern.substr(1, end - 1)) + std::string(pattern.substr(end + 1));
      return MatchFrom(pattern.substr(end + 1), name) || MatchFrom(with, name);
    }
    if (pattern[0] != '{')
      return !name.empty() && name[0] == pattern[0] && MatchFrom(pattern.substr(1), name.substr(1));
    const char field = pattern[1];
    const std::string_view rest = pattern.substr(3);
    if (field == '*') {
      for (std::size_t length = 0; length <= name.size(); ++length) {
        if (MatchFrom(rest, name.substr(length))) return true;
      }
      return false;
    }
    const std::size_t length = Take(field, name);
    return length > 0 && MatchFrom(rest, name.substr(length));
  }

  // Takes the field over; how many characters it has, 0 when it is not there.
  std::size_t Take(char field, std::string_view name) {
    SDateFields& date = m_time.fields;
    switch (field) {
      case 'Y':
        return TakeDigits(name, 4, date.nYear);
      case 'm':
        return TakeDigits(name, 2, date.nMonth);
      case 'd':
        return TakeDigits(name, 2, date.nDay);
      case 'H':
        return TakeDigits(name, 2, date.nHour);
      case 'M':
        return TakeDigits(name, 2, date.nMinute);
      case 'S':
        return TakeDigits(name, 2, date.nSecond);
      case 'f':
        return TakeFraction(name);
      case 'F':
        m_strNumber = std::string(name.substr(0, NumberAt(name)));
        m_centre = ScaledNumber(m_strNumber, m_row.nUnit);
        return m_centre ? m_strNumber.size() : 0;
      case 'u':
        return TakeUnit(name);
      case 'R':
        return TakeRate(name);
      default:
        return DigitsAt(name);
    }
  }

  static std::size_t TakeDigits(std::string_view name, std::size_t count, int& number) {
    if (DigitsAt(name) < count) return 0;
    number = 0;
    for (const char c : name.substr(0, count)) number = number * 10 + (c - '0');
    return count;
  }

  std::size_t TakeFraction(std::string_view name) {
    const std::size_t count = DigitsAt(name);
    if (count == 0 || count > kFractionDigits) return 0;
    m_time.nNanoseconds = 0;
    for (std::size_t i = 0; i < kFractionDigits; ++i) {
      m_time.nNanoseconds = m_time.nNanoseconds * 10 + (i < count ? static_cast<std::uint32_t>(name[i] - '0') : 0U);
    }
    return count;
  }

  std::size_t TakeUnit(std::string_view name) {
    for (const SUnit& unit : kUnits) {
      if (!name.starts_with(unit.text)) continue;
      m_centre = ScaledNumber(m_strNumber, unit.nHz);
      return m_centre ? unit.text.size() : 0;
    }
    return 0;
  }

  std::size_t TakeRate(std::string_view name) {
    const std::size_t count = DigitsAt(name);
    const std::optional<std::int64_t> rate = ScaledNumber(name.substr(0, count), 1);
    if (!rate || *rate == 0 || *rate > std::numeric_limits<std::uint32_t>::max()) return 0;
    m_rate = static_cast<std::uint32_t>(*rate);
    return count;
  }

  const SNameRow& m_row;
  int m_nSteps = 0;
  SNameTime m_time;
  std::string m_strNumber;
  std::optional<std::int64_t> m_centre;
  std::optional<std::uint32_t> m_rate;
};

struct SEnding {
  std::string_view text;
  const char* pszKind;  // nullptr where any is meant
};

constexpr std::array kEndings = {
    SEnding{"cu8", "cu8"},         SEnding{"uc8", "cu8"},         SEnding{"data", "cu8"},
    SEnding{"complex16u", "cu8"},  SEnding{"cs8", "ci8"},         SEnding{"sc8", "ci8"},
    SEnding{"c8", "ci8"},          SEnding{"ci8", "ci8"},         SEnding{"complex16s", "ci8"},
    SEnding{"cs16", "ci16"},       SEnding{"sc16", "ci16"},       SEnding{"c16", "ci16"},
    SEnding{"ci16", "ci16"},       SEnding{"complex32s", "ci16"}, SEnding{"cu16", "cu16"},
    SEnding{"complex32u", "cu16"}, SEnding{"cs32", "ci32"},       SEnding{"sc32", "ci32"},
    SEnding{"c32", "ci32"},        SEnding{"ci32", "ci32"},       SEnding{"cf32", "cf32"},
    SEnding{"fc32", "cf32"},       SEnding{"cfile", "cf32"},      SEnding{"complex", "cf32"},
    SEnding{"cf64", "cf64"},       SEnding{"fc64", "cf64"},       SEnding{"iq", nullptr},
    SEnding{"raw", nullptr},       SEnding{"bin", nullptr},       SEnding{"dat", nullptr},
};

// What stands behind a number in a name, up to where letters end.
struct SNumberUnit {
  std::string_view text;
  std::int64_t nUnit;
  bool bRate;
};
constexpr std::array kNumberUnits = {
    SNumberUnit{"hz", 1, false},          SNumberUnit{"khz", 1000, false},
    SNumberUnit{"mhz", 1'000'000, false}, SNumberUnit{"ghz", 1'000'000'000, false},
    SNumberUnit{"m", 1'000'000, false},   SNumberUnit{"k", 1000, true},
    SNumberUnit{"sps", 1, true},          SNumberUnit{"ksps", 1000, true},
    SNumberUnit{"msps", 1'000'000, true},
};

}  // namespace

std::optional<SNameFacts> ReadRecordingName(std::string_view name) {
  const std::string lower = ToLowerAscii(std::string(name));
  for (const SNameRow& row : kRows) {
    if (std::optional<SNameFacts> facts = CNameMatch(row).Match(lower)) return facts;
  }
  return std::nullopt;
}

SNameNumbers ReadNameNumbers(std::string_view name) {
  const std::string lower = ToLowerAscii(std::string(name));
  const std::string_view text = lower;
  SNameNumbers numbers;
  for (std::size_t i = 0; i < text.size();) {
    const std::size_t length = NumberAt(text.substr(i));
    if (length == 0) {
      ++i;
      continue;
    }
    const bool isWord = i > 0 && text[i - 1] >= 'a' && text[i - 1] <= 'z';
    const std::string_view number = text.substr(i, length);
    i += length;
    std::size_t end = i;
    while (end < text.size() && text[end] >= 'a' && text[end] <= 'z') ++end;
    const std::string_view unit = text.substr(i, end - i);
    const auto found = std::find_if(kNumberUnits.begin(), kNumberUnits.end(),
                                    [&](const SNumberUnit& known) { return known.text == unit; });
    if (isWord || found == kNumberUnits.end()) continue;
    const std::optional<std::int64_t> value = ScaledNumber(number, found->nUnit);
    if (!value || *value == 0) continue;
    if (!found->bRate) numbers.nCentre = value;
    if (found->bRate && *value <= std::numeric_limits<std::uint32_t>::max()) {
      numbers.nSampleRate = static_cast<std::uint32_t>(*value);
    }
  }
  return numbers;
}

std::vector<std::string_view> RawEndings() {
  std::vector<std::string_view> endings;
  endings.reserve(kEndings.size());
  for (const SEnding& known : kEndings) endings.push_back(known.text);
  return endings;
}

SRawEnding ReadRawEnding(std::string_view name) {
  const std::size_t point = name.rfind('.');
  if (point == std::string_view::npos) return {};
  const std::string ending = ToLowerAscii(std::string(name.substr(point + 1)));
  for (const SEnding& known : kEndings) {
    if (ending == known.text) return {true, known.pszKind != nullptr ? ParseSampleKind(known.pszKind) : std::nullopt};
  }
  return {};
}

const char* UnreadKind(std::string_view name) {
  const std::string lower = ToLowerAscii(std::string(name));
  if (lower.ends_with(".cs12") || lower.ends_with(".cu12")) return "packed 12-bit samples (cs12, cu12)";
  if (lower.ends_with(".ziq")) return "samples that SatDump has compressed (ziq)";
  return nullptr;
}

}  // namespace carvello
