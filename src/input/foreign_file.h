// SForeignFile: what a file of a program that the recognisers of chunks do not know tells of itself, by its head, its
// name or both.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "input/given_facts.h"
#include "input/recording_names.h"
#include "input/sample_layout.h"
#include "input/scan_result.h"
#include "recording/sample_kind.h"

namespace carvello {

// Of a receiver with GPS: within the week, on the scale of GPS.
struct SGpsTime {
  std::uint32_t nSeconds = 0;
  std::uint32_t nNanoseconds = 0;
};

// What is not told stays empty, for the user to give.
struct SForeignFile {
  std::string strSource;     // the program, or what kind of file it is
  std::string strContainer;  // "sdriq", "raw", "kiwi"; empty for a file whose samples a WAV parse finds
  std::optional<SSampleKind> kind;
  std::optional<std::uint32_t> nSampleRate;
  std::optional<std::int64_t> nCentre;
  // One of them, or none: a moment, or a time that depends on a zone.
  std::optional<SExactTime> start;
  std::optional<SNameTime> zonedStart;
  ENameTime zone = ENameTime::None;  // of zonedStart
  std::optional<SGpsTime> gpsStart;  // the name must tell the week
  // Where samples lie, unless a WAV parse finds them: all bytes from one place on, or runs that the file tells itself.
  std::int64_t nDataOffset = 0;
  std::int64_t nDataBytes = 0;
  std::optional<SSampleLayout> layout;
  std::vector<std::string> warnings;
  std::uint32_t nError = 0;  // the system's code when the file could not be read: nothing else counts then
};

// Looks at a file behind the recognisers of chunks, which gave `scan`: a WAV that none of them knows, or a file of
// another kind. `isRaw`: the user says that it holds samples and nothing else, whatever its name. Nothing when it tells
// nothing of itself.
std::optional<SForeignFile> ReadForeignFile(const std::string& path, const SScanResult& scan, bool isRaw = false);

// What the name of a recording that chunks describe tells otherwise, for the user to know; empty when nothing.
std::string NameContradiction(const std::string& path, const RecordingSourceInfo& source);

}  // namespace carvello
