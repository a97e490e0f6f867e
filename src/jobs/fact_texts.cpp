#include "jobs/fact_texts.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <limits>

#include "jobs/quantities.h"
#include "support/readable.h"
#include "support/text.h"

namespace carvello {

namespace {

constexpr std::int64_t kLargest = std::numeric_limits<std::uint32_t>::max();
constexpr std::size_t kDecimals = 9;  // of a second

// Keeps what was there where there is nothing new.
template <class T>
bool Take(std::optional<T> parsed, std::optional<T>& fact) {
  if (!parsed) return false;
  fact = std::move(parsed);
  return true;
}

bool TakePart(const std::string& text, SGivenFacts& given) {
  const std::optional<std::int64_t> part = ParseWholeNumber(text);
  if (!part || *part < 1 || *part > kLargest) return false;
  given.nPart = static_cast<std::uint32_t>(*part);
  return true;
}

struct SFact {
  std::string_view name;
  const char* pszAccepted;
  bool (*pTake)(const std::string& text, SGivenFacts& given);
};

constexpr std::array<SFact, 6> kFacts = {{
    {"part", "a whole number from 1 on", TakePart},
    {"rate", kFrequencyForms,
     [](const std::string& text, SGivenFacts& given) { return Take(ParseSampleRate(text), given.nSampleRate); }},
    {"centre", kFrequencyForms,
     [](const std::string& text, SGivenFacts& given) { return Take(ParseFrequency(text), given.nCentre); }},
    {"start_time", kExactTimeForms,
     [](const std::string& text, SGivenFacts& given) { return Take(ParseExactTime(text), given.start); }},
    {"sample_type", kSampleTypeForms,
     [](const std::string& text, SGivenFacts& given) { return Take(ParseSampleKind(ToLowerAscii(text)), given.kind); }},
    {"time_zone", kTimeZoneForms,
     [](const std::string& text, SGivenFacts& given) { return Take(ParseTimeZone(text), given.zone); }},
}};

const SFact* FactOf(std::string_view name) {
  const auto found = std::find_if(kFacts.begin(), kFacts.end(), [&](const SFact& fact) { return fact.name == name; });
  return found == kFacts.end() ? nullptr : &*found;
}

std::string TimeZoneText(const STimeZone& zone) {
  if (zone.bLocal) return "local";
  const int minutes = std::abs(zone.nSecondsAhead) / 60;
  return Format("%c%02d:%02d", zone.nSecondsAhead < 0 ? '-' : '+', minutes / 60, minutes % 60);
}

}  // namespace

std::optional<std::uint32_t> ParseSampleRate(std::string_view text) {
  const std::optional<std::int64_t> rate = ParseFrequency(text);
  if (!rate || *rate < 1 || *rate > kLargest) return std::nullopt;
  return static_cast<std::uint32_t>(*rate);
}

// The decimals of the seconds are taken out of the text.
std::optional<SExactTime> ParseExactTime(std::string text) {
  SExactTime time;
  if (const std::size_t point = text.find('.'); point != std::string::npos) {
    const std::size_t end = std::min(text.find_first_not_of("0123456789", point + 1), text.size());
    std::string digits = text.substr(point + 1, end - point - 1);
    // Seconds stand in front of them: "12:00.5" has none.
    const bool hasSeconds = point >= 6 && text[point - 3] == ':' && text[point - 6] == ':';
    if (digits.empty() || digits.size() > kDecimals || !hasSeconds) return std::nullopt;
    digits.resize(kDecimals, '0');
    time.nNanoseconds = static_cast<std::uint32_t>(std::stoul(digits));
    text.erase(point, end - point);
  }
  const std::optional<std::int64_t> seconds = ParseDateTime(text);
  if (!seconds || *seconds < 0 || *seconds > kLargest) return std::nullopt;
  time.nSeconds = *seconds;
  return time;
}

std::optional<STimeZone> ParseTimeZone(const std::string& text) {
  const std::string lower = ToLowerAscii(text);
  if (lower == "utc") return STimeZone{};
  if (lower == "local") return STimeZone{true, 0};
  const std::optional<int> ahead = ParseZone(text);
  return ahead ? std::optional(STimeZone{false, *ahead}) : std::nullopt;
}

std::string ExactTimeText(const SExactTime& time) {
  std::string text = FormatIsoTime(time.nSeconds);
  if (time.nNanoseconds == 0) return text;
  std::string decimals = Format(".%09u", time.nNanoseconds);
  decimals.erase(decimals.find_last_not_of('0') + 1);
  return text.insert(text.size() - 1, decimals);
}

bool IsFactName(std::string_view name) {
  return FactOf(name) != nullptr;
}

bool TakeFact(std::string_view name, const std::string& text, SGivenFacts& given, const char*& accepted) {
  const SFact* const pFact = FactOf(name);
  if (pFact != nullptr && pFact->pTake(text, given)) return true;
  accepted = pFact == nullptr ? "" : pFact->pszAccepted;
  return false;
}

FactTexts TextsOfFacts(const SGivenFacts& given) {
  FactTexts texts;
  if (given.nPart > 0) texts.emplace_back("part", std::to_string(given.nPart));
  if (given.nSampleRate) texts.emplace_back("rate", std::to_string(*given.nSampleRate));
  if (given.nCentre) texts.emplace_back("centre", std::to_string(*given.nCentre));
  if (given.start) texts.emplace_back("start_time", ExactTimeText(*given.start));
  if (given.kind) texts.emplace_back("sample_type", SampleKindName(*given.kind));
  if (given.zone) texts.emplace_back("time_zone", TimeZoneText(*given.zone));
  return texts;
}

std::string FactsLine(const SGivenFacts& given) {
  std::string line;
  for (const auto& [name, text] : TextsOfFacts(given)) {
    if (!line.empty()) line += ',';
    line.append(name).append(1, '=').append(text);
  }
  return line;
}

SGivenFacts ParseFactsLine(std::string_view line) {
  SGivenFacts given;
  while (!line.empty()) {
    const std::string_view fact = line.substr(0, line.find(','));
    line.remove_prefix(std::min(fact.size() + 1, line.size()));
    const std::size_t equals = std::min(fact.find('='), fact.size());
    const std::string text(fact.substr(std::min(equals + 1, fact.size())));
    if (const char* accepted = nullptr; !TakeFact(fact.substr(0, equals), text, given, accepted)) return {};
  }
  return given;
}

}  // namespace carvello
