#include "engine/entry_checks.h"

#include <algorithm>

#include "engine/input_frames.h"
#include "support/formatting.h"
#include "support/system_time.h"
#include "support/text.h"

namespace carvello {

namespace {

struct SBand {
  std::int64_t nLowest;
  std::int64_t nHighest;
};

SBand BandOf(std::int64_t centre, std::uint32_t bandwidth) {
  return {centre - bandwidth / 2, centre + bandwidth / 2};
}

std::string TimeText(std::int64_t time) {
  return FormatUtc("%Y-%m-%dT%H:%M:%SZ", time);
}

}  // namespace

std::string FaultText(const SEntryFault& fault) {
  return (fault.strCaption.empty() ? "" : fault.strCaption + ": ") + fault.strProblem + "\n" + fault.strAccepted;
}

std::optional<SEntryFault> BandwidthFault(std::int64_t bandwidth, const CRecordingSet& recording) {
  if (bandwidth >= kSmallestBandwidth && bandwidth <= recording.nSampleRate) return std::nullopt;
  return SEntryFault{"", Format("The bandwidth %lld is out of range.", static_cast<long long>(bandwidth)),
                     Format("Accepted: whole Hz from %lld to the input's sample rate, %u",
                            static_cast<long long>(kSmallestBandwidth), recording.nSampleRate)};
}

// The entry list adds such an entry, for the user to see its times.
std::optional<SEntryFault> EndFault(const SEntryFields& fields, const CRecordingSet& recording) {
  const std::int64_t start = fields.startMode == EStartMode::At ? fields.tPickedStart : recording.tStart;
  if (fields.endMode != EEndMode::At || fields.tPickedEnd > start) return std::nullopt;
  return SEntryFault{"End Time", "The end time is before the start time.", AcceptedTimes(recording)};
}

std::optional<SEntryFault> StartFault(const SEntryFields& fields, const CRecordingSet& recording) {
  if (fields.startMode != EStartMode::At) return std::nullopt;
  const std::int64_t rate = std::max<std::int64_t>(recording.nSampleRate, 1);
  const std::int64_t seconds = (CInputFrames(recording).Total() + rate - 1) / rate;
  if (fields.tPickedStart - recording.tStart < seconds) return std::nullopt;
  return SEntryFault{"Start Time",
                     "The start time lies behind the last sample: the times of the files leave gaps, but their samples "
                     "follow each other as one stream.",
                     Format("Accepted: a start before +%lld", static_cast<long long>(seconds))};
}

std::string AcceptedTimes(const CRecordingSet& recording) {
  const std::string from = TimeText(recording.tStart);
  const std::string to = TimeText(recording.tEnd);
  return Format(
      "Accepted: a start from %s (+0) to before %s (+%lld), an end after the start and not after %s, a "
      "duration that is not 0 and ends before %s",
      from.c_str(), to.c_str(), static_cast<long long>(recording.tEnd - recording.tStart), to.c_str(), to.c_str());
}

EBandPlace BandPlace(const OutputEntry& entry) {
  const SBand recorded = BandOf(entry.nInputFrequency, entry.nInputSampleRate);
  const SBand wanted = BandOf(entry.nOutputFrequency, entry.nOutputSampleRate);
  if (wanted.nLowest >= recorded.nLowest && wanted.nHighest <= recorded.nHighest) return EBandPlace::Inside;
  const bool wholly = wanted.nHighest <= recorded.nLowest || wanted.nLowest >= recorded.nHighest;
  return wholly ? EBandPlace::WhollyOutside : EBandPlace::PartlyOutside;
}

std::string OutsideBandText(const OutputEntry& entry) {
  const EBandPlace place = BandPlace(entry);
  if (place == EBandPlace::Inside) return {};
  const SBand recorded = BandOf(entry.nInputFrequency, entry.nInputSampleRate);
  return Format("%s outside %s to %s", place == EBandPlace::WhollyOutside ? "wholly" : "partly",
                FormatFrequency64(recorded.nLowest).c_str(), FormatFrequency64(recorded.nHighest).c_str());
}

}  // namespace carvello
