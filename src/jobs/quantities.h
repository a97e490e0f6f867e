// Quantities as a user types them. Every function reads the whole text or gives nothing: no blanks, no rounding, no
// silent overflow. The constants beside them tell a user what is accepted.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "recording/output_format.h"

namespace carvello {

// A decimal number without sign or exponent, times 10^exponent, which must come out whole and not above `limit`:
// "7.1" with the exponent 6 gives 7100000. `exponent` is 0 to 9.
std::optional<std::int64_t> ParseDecimal(std::string_view text, unsigned exponent, std::int64_t limit);

inline constexpr const char* kWholeNumberForms = "a whole number";
std::optional<std::int64_t> ParseWholeNumber(std::string_view text);

// Hz. At most 1000 GHz either way.
inline constexpr const char* kFrequencyForms =
    "whole Hz, with the suffix k, M or G if wanted, for example 7100000, 7100k or 7.1M";
std::optional<std::int64_t> ParseFrequency(std::string_view text);

// A moment: seconds since 1970 UTC, or seconds from a recording's start.
struct SMoment {
  bool bFromStart = false;
  std::int64_t nSeconds = 0;

  // Seconds since 1970 for a recording that begins at `start`; nothing when that is beyond 64 bits.
  std::optional<std::int64_t> Resolve(std::int64_t start) const;
};

// "Z", "+HH:MM" or "+HHMM": the zone's lead over UTC in seconds.
std::optional<int> ParseZone(std::string_view text);

inline constexpr const char* kDateTimeForms =
    "a date and time with its zone, in whole seconds, for example 2026-11-21T12:00:00Z or 2026-11-21T14:00+02:00";
std::optional<std::int64_t> ParseDateTime(std::string_view text);  // seconds since 1970 UTC

inline constexpr const char* kMomentForms =
    "a date and time with its zone, in whole seconds, for example 2026-11-21T12:00:00Z or 2026-11-21T14:00+02:00, or "
    "+SECONDS from the recording's start, for example +90";
std::optional<SMoment> ParseMoment(std::string_view text);

inline constexpr const char* kDurationForms = "whole seconds, H:MM or H:MM:SS, for example 90, 1:30 or 0:01:30";
std::optional<std::uint32_t> ParseDuration(std::string_view text);  // seconds

// Units of 1,000,000 bytes; 0 for one RF64 file.
inline constexpr const char* kFileSizeForms = "100MB, 1GB or RF64";
std::optional<std::uint32_t> ParseFileSize(std::string_view text);

inline constexpr const char* kFormatForms = "wav or sigmf";
std::optional<EOutputFormat> ParseFormat(std::string_view text);

// Decibels, such as "-20" or "-3.5", from -400 to 400.
inline constexpr const char* kDecibelForms = "decibels, for example -20 or -3.5";
std::optional<double> ParseDecibels(std::string_view text);

}  // namespace carvello
