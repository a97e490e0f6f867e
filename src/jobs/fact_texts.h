// What users say of a recording that its files do not tell, or tell wrongly, as texts: of options, of keys of a job
// file, of fields in a form.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "input/given_facts.h"

namespace carvello {

inline constexpr const char* kSampleTypeForms =
    "ci8, ci16, ci24, ci32 (signed), cu8, cu16, cu24, cu32 (unsigned), cf32 or cf64, with _be behind it for big-endian";
inline constexpr const char* kTimeZoneForms = "utc, local, or hours and minutes ahead of UTC, for example +02:00";
inline constexpr const char* kExactTimeForms =
    "a date and time with its zone and up to 9 decimals, for example 2026-11-21T12:00:00.25Z";

// Hz, from 1 to what 32 bits hold.
std::optional<std::uint32_t> ParseSampleRate(std::string_view text);
// "2026-11-21T12:00:00.25Z"; not before 1970.
std::optional<SExactTime> ParseExactTime(std::string text);
std::optional<STimeZone> ParseTimeZone(const std::string& text);
std::string ExactTimeText(const SExactTime& time);

// The facts by name: part, rate, centre, start_time, sample_type, time_zone.
bool IsFactName(std::string_view name);
// False, and nothing changed, when the text cannot be read; `accepted` then tells what can.
bool TakeFact(std::string_view name, const std::string& text, SGivenFacts& given, const char*& accepted);
// Those that are given, with their names, as TakeFact reads them.
using FactTexts = std::vector<std::pair<const char*, std::string>>;
FactTexts TextsOfFacts(const SGivenFacts& given);

// All in one text, "rate=2400000,centre=7100000". What is none gives none.
std::string FactsLine(const SGivenFacts& given);
SGivenFacts ParseFactsLine(std::string_view line);

}  // namespace carvello
