// Numbers, times and errors as the texts that the dialog, the log and the recordings show.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace carvello {

// Hz to "999 Hz", "7 kHz", "7.100 kHz", "7 MHz", "14.200 MHz" or "7.000001 MHz".
std::string FormatFrequency(std::uint32_t frequency);
// The same with a sign, for 64 bits, and without a whole-MHz form: 7,000,000 gives "7.000 MHz". Deliberate: file names
// made with it keep one width per band.
std::string FormatFrequency64(std::int64_t frequency);
// Digits in groups of three with dots: 14200000 gives "14.200.000".
std::string GroupDigits(std::int64_t value);
// "1 part", "2 parts".
std::string CountOf(std::size_t count, const char* thing);

// Seconds to "H:MM:SS", "M:SS" below an hour.
std::string FormatDuration(double seconds);

// The system's text for an error code, on one line, at most 511 characters; "Unknown error %u" when it has none.
std::string SystemErrorText(std::uint32_t code);
// The same for the last error of the calling thread.
std::string SystemErrorText();

// "%s %sz": the user's short date of the local calendar date, and the UTC time "%H:%M:%S". Raises the invalid-argument
// error for a value that has no calendar date.
std::string FormatUtcDateTime(std::int64_t seconds);

}  // namespace carvello
