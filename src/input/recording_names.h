// What programs put into the names of their recordings: one row for each way of naming.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "input/calendar_time.h"
#include "recording/sample_kind.h"

namespace carvello {

// In which zone a program writes the times of its names.
enum class ENameTime {
  None,  // there is no time in them
  Utc,
  Local,
  FalseZ,  // local, though a "Z" stands behind it
};

// A time as it stands in a name; it exists, in the year 1970 at the earliest.
struct SNameTime {
  SDateFields fields;
  std::uint32_t nNanoseconds = 0;
};

struct SNameFacts {
  const char* pszProgram = "";
  bool bGuess = false;  // nobody has read it in the program's source
  ENameTime zone = ENameTime::None;
  std::optional<SNameTime> time;
  std::optional<std::int64_t> nCentre;       // Hz
  std::optional<std::uint32_t> nSampleRate;  // frames/s
  std::optional<SSampleKind> kind;           // where the program writes only one
};

// By the rows of known programs; `name` without folders, letters' case does not count. Nothing when no row fits, or the
// time in it cannot be. Nothing is thrown.
std::optional<SNameFacts> ReadRecordingName(std::string_view name);

// Frequency and rate as numbers with units anywhere in the name: "433.92M" and "100kHz" are centres, "250k" and "2Msps"
// rates.
struct SNameNumbers {
  std::optional<std::int64_t> nCentre;
  std::optional<std::uint32_t> nSampleRate;
};
SNameNumbers ReadNameNumbers(std::string_view name);

// What the samples of a file without any head are by the ending of its name.
struct SRawEnding {
  bool bRaw = false;                // such files have no head
  std::optional<SSampleKind> kind;  // nothing where the ending is used for any
};
SRawEnding ReadRawEnding(std::string_view name);
// All of them, without their point.
std::vector<std::string_view> RawEndings();

// What a file is whose ending is known and that nobody reads, for the user; nullptr for any other.
const char* UnreadKind(std::string_view name);

}  // namespace carvello
