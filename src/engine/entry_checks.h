// What is wrong or odd with an entry, measured by its recording. The entry list refuses only what can be put right by
// its questions; the rest is judged here: the command line refuses it or warns of it, the dialog adds it with a hint.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "engine/entry_list.h"
#include "input/recording_set.h"

namespace carvello {

// Something that is wrong, and what would be right.
struct SEntryFault {
  std::string strCaption;  // as of a message box; empty where the problem tells what it is about
  std::string strProblem;
  std::string strAccepted;
};

// "Caption: problem", a line break, and what is accepted.
std::string FaultText(const SEntryFault& fault);

inline constexpr std::int64_t kSmallestBandwidth = 10;  // Hz

// A bandwidth that no output can have. Wider than 32 bits, for it is asked before the fields are filled.
std::optional<SEntryFault> BandwidthFault(std::int64_t bandwidth, const CRecordingSet& recording);
// A picked end that does not lie behind the start.
std::optional<SEntryFault> EndFault(const SEntryFields& fields, const CRecordingSet& recording);
// A picked start behind the last sample: files that are chained by time may leave gaps, so the recording's end can lie
// later than its samples reach.
std::optional<SEntryFault> StartFault(const SEntryFields& fields, const CRecordingSet& recording);
// The times that an entry can have, in words.
std::string AcceptedTimes(const CRecordingSet& recording);

enum class EBandPlace { Inside, PartlyOutside, WhollyOutside };

// Where the entry's band lies by the recorded one. What it takes from outside is noise and aliases at best.
EBandPlace BandPlace(const OutputEntry& entry);
// "partly outside 6.100 MHz to 8.100 MHz"; empty for a band inside.
std::string OutsideBandText(const OutputEntry& entry);

}  // namespace carvello
