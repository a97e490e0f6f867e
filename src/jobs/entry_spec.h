// SEntrySpec: one --entry, one --sequence or one entry of a job file, as the user asked for it. Nothing here knows the
// recording yet.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "jobs/quantities.h"
#include "recording/output_format.h"

namespace carvello {

// Centre frequencies from one end to the other, both included, in steps. All in Hz; the step is above 0.
struct SFrequencyRange {
  std::int64_t nFrom = 0;
  std::int64_t nTo = 0;  // may lie below nFrom
  std::int64_t nStep = 1;

  std::int64_t Count() const { return (nTo > nFrom ? nTo - nFrom : nFrom - nTo) / nStep + 1; }
};

struct SEntrySpec {
  std::string strLabel;                   // how messages name it, printable: `--entry 2 (f=7.1M,bw=10k)`
  std::optional<std::int64_t> frequency;  // Hz; nothing for a sequence
  std::optional<SFrequencyRange> range;   // of a sequence
  std::optional<std::int64_t> bandwidth;  // Hz
  std::optional<SMoment> start;           // nothing: at the recording's beginning
  std::optional<SMoment> end;             // nothing, and no duration: at the recording's end
  std::optional<std::uint32_t> duration;  // seconds
  std::uint32_t nFileSizeMB = 100;        // 100, 1000 or 0 (one RF64 file)
  EOutputFormat format = EOutputFormat::Wave;
  bool b32Bit = false;
  std::string strOutput;  // its own folder; empty for that of the job
  int nNameNumber = 0;    // among outputs of the same name; 0 for the lowest that is free
};

// No command line asks for more entries than this, sequences counted out.
inline constexpr std::int64_t kMostEntries = 100'000;

// Name and value as the user wrote them, in the user's order.
using FieldTexts = std::vector<std::pair<std::string, std::string>>;

// As many fields as there are kinds of them.
inline constexpr std::size_t kFieldCount = 10;

// The names that fields go by: f and bw in `--entry`, frequency and bandwidth in a job file, which alone can have
// output and number. The others are the same.
enum class EFieldNames { Entry, JobFile };

// Sets fields from texts. False when a name is unknown or comes twice, a value cannot be read, or end and duration are
// both there, or a size for SigMF, which has one file of samples; `error` then says what is accepted, printable on one
// line.
bool SetFields(const FieldTexts& fields, EFieldNames names, SEntrySpec& spec, std::string& error);
// The same for a whole entry, which must have a centre frequency and a bandwidth.
bool SetEntryFields(const FieldTexts& fields, EFieldNames names, SEntrySpec& spec, std::string& error);

// An entry written "f=7.1M,bw=10k,...". False as above.
bool ParseEntry(std::string_view text, SEntrySpec& spec, std::string& error);

// "FROM:TO:STEP", three frequencies. False when it is none, the step is not above 0 or it has too many entries.
bool ParseFrequencyRange(std::string_view text, SFrequencyRange& range, std::string& error);

}  // namespace carvello
