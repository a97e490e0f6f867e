#include "engine/entry_list.h"

#include <algorithm>
#include <limits>
#include <set>
#include <tuple>

#include "support/formatting.h"
#include "support/platform.h"
#include "support/system_time.h"
#include "support/text.h"

namespace carvello {

namespace {

SEntryProblem Refusal(const char* caption, const char* text) {
  return {{caption, text, EButtons::Ok, EIcon::Stop}, SEntryProblem::EReset::None};
}

SEntryProblem ResetQuestion(const char* caption, const char* text, SEntryProblem::EReset reset) {
  return {{caption, text, EButtons::YesNo, EIcon::Stop}, reset};
}

// Two entries that produce the same samples. Sample size and file size do not count, so that a list never cuts one
// stretch of one channel twice.
bool SameOutput(const OutputEntry& a, const OutputEntry& b) {
  return a.nOutputFrequency == b.nOutputFrequency && a.nOutputSampleRate == b.nOutputSampleRate &&
         a.nStartSample == b.nStartSample && a.nTotalSamples == b.nTotalSamples;
}

// Input frames in a stretch of whole seconds. Held at the ends of the range: a damaged recording may claim any length.
std::int64_t FramesIn(std::int64_t seconds, std::int64_t rate) {
  std::int64_t frames = 0;
  if (!__builtin_mul_overflow(seconds, rate, &frames)) return frames;
  return seconds < 0 ? std::numeric_limits<std::int64_t>::min() : std::numeric_limits<std::int64_t>::max();
}

std::string StartText(std::int64_t start, bool utc) {
  return utc ? FormatUtc("%Y-%m-%d %H%Mz", start) : FormatLocal("%Y-%m-%d %H%M", start);
}

}  // namespace

void CEntryList::SetRecording(const CRecordingSet& recording, const SInfoTexts& infoTexts) {
  Reset();
  m_recording = recording;
  m_infoTexts = infoTexts;
}

std::optional<SEntryProblem> CEntryList::AddEntry(const SEntryFields& fields) {
  const std::int64_t recordingStart = m_recording.tStart;
  const std::int64_t recordingEnd = m_recording.tEnd;
  const std::int64_t rate = m_recording.nSampleRate;

  std::int64_t start = recordingStart;
  if (fields.startMode == EStartMode::At) {
    start = fields.tPickedStart;
    if (start < recordingStart || start >= recordingEnd) {
      return ResetQuestion("Start Time", "The start time is out of range. Reset the start time?",
                           SEntryProblem::EReset::StartToRecordingStart);
    }
  }

  std::int64_t end = recordingEnd;
  std::int64_t totalSamples = 0;
  if (fields.endMode == EEndMode::After) {
    const std::int64_t duration = fields.nDurationSeconds;
    if (duration == 0) return Refusal("End", "End duration cannot be zero.");
    if (start + duration >= recordingEnd) {
      return Refusal("End Time", "The start time + end duration is past the end of file, change the duration.");
    }
    totalSamples = FramesIn(duration, rate);
    // Counted from the recording's start, not from the entry's: deliberate. Only the finish time that lists show
    // depends on it; the length in samples is right.
    end = recordingStart + duration;
  } else if (fields.endMode == EEndMode::At) {
    end = fields.tPickedEnd;
    if (end < recordingStart || end > recordingEnd) {
      return ResetQuestion("End Time", "The end time is out of range. Reset the end time?",
                           SEntryProblem::EReset::EndToRecordingEnd);
    }
    totalSamples = FramesIn(end - start, rate);
  }

  auto entry = std::make_unique<OutputEntry>();
  entry->nFlags = fields.nBandwidth == 0 ? 1 : 0;
  entry->nBitsPerSample = fields.b32Bit ? 32 : 16;
  entry->nFileSizeMB = fields.nFileSizeMB;
  entry->tStart = start;
  entry->tEnd = end;
  entry->strMetadata = m_recording.strMetadata;
  entry->strInfo1 = m_infoTexts.strIPRD;
  entry->strInfo2 = m_infoTexts.strIART;
  entry->strInfo3 = m_infoTexts.strICMT;
  entry->strInfo4 = m_infoTexts.strICOP;
  entry->nStartSample = FramesIn(start - recordingStart, rate);
  entry->nTotalSamples = totalSamples;
  entry->nInputFrequency = m_recording.nRadioCenterFreq;
  entry->nInputSampleRate = m_recording.nSampleRate;
  entry->nOutputFrequency = fields.nFrequency;
  entry->nOutputSampleRate = fields.nBandwidth;

  const std::string frequencyText = FormatFrequency64(fields.nFrequency);
  const std::string bandwidthText = FormatFrequency(fields.nBandwidth);
  entry->strTitle = Format("%s, BW %s", frequencyText.c_str(), bandwidthText.c_str());
  NameEntry(
      *entry,
      Format("%s, f=%s, bw=%s", StartText(start, fields.bUtc).c_str(), frequencyText.c_str(), bandwidthText.c_str()),
      fields.strOutputFolder);
  m_byFrequency.emplace(entry->nOutputFrequency, entry.get());
  m_entries.push_back(std::move(entry));
  return std::nullopt;
}

// Names tell the minute, so two stretches of one channel within a minute would share a file. The later one gets a
// number; a duplicate does not, since it is removed anyway.
void CEntryList::NameEntry(OutputEntry& entry, const std::string& stem, const std::string& folder) const {
  const auto [first, last] = m_byFrequency.equal_range(entry.nOutputFrequency);
  const auto taken = [&, first = first, last = last](const std::string& path) {
    return std::any_of(first, last, [&](const auto& other) {
      return other.second->strFileName == path && !SameOutput(*other.second, entry);
    });
  };
  entry.strDisplayName = stem + ".wav";
  entry.strFileName = platform::JoinPath(folder, entry.strDisplayName);
  for (int number = 2; taken(entry.strFileName); ++number) {
    entry.strDisplayName = Format("%s (%d).wav", stem.c_str(), number);
    entry.strFileName = platform::JoinPath(folder, entry.strDisplayName);
  }
}

void CEntryList::AddSequence(SEntryFields fields, std::int64_t from, std::int64_t to, std::int64_t step,
                             const std::function<void(const SEntryProblem&)>& onProblem) {
  if (step < 1) return;
  if (from > to) std::swap(from, to);
  for (std::int64_t frequency = from;; frequency += step) {
    fields.nFrequency = frequency;
    if (const auto problem = AddEntry(fields)) onProblem(*problem);
    if (to - frequency < step) break;  // compared this way round, the sum cannot overflow
  }
}

void CEntryList::Rebuild() {
  const auto key = [](const OutputEntry& entry) {
    return std::tie(entry.nOutputFrequency, entry.nOutputSampleRate, entry.nStartSample, entry.nTotalSamples);
  };
  const auto less = [&](const OutputEntry* a, const OutputEntry* b) { return key(*a) < key(*b); };
  std::set<const OutputEntry*, decltype(less)> seen(less);
  std::erase_if(m_entries, [&](const auto& entry) { return !seen.insert(entry.get()).second; });
  IndexEntries();

  std::stable_sort(m_entries.begin(), m_entries.end(), [](const auto& a, const auto& b) {
    return std::tie(a->nOutputFrequency, a->nOutputSampleRate) < std::tie(b->nOutputFrequency, b->nOutputSampleRate);
  });
}

void CEntryList::IndexEntries() {
  m_byFrequency.clear();
  for (const auto& entry : m_entries) m_byFrequency.emplace(entry->nOutputFrequency, entry.get());
}

void CEntryList::Reset() {
  m_byFrequency.clear();
  m_entries.clear();
}

void CEntryList::Remove(const std::vector<std::size_t>& indices) {
  for (const std::size_t index : indices) {
    if (index < m_entries.size()) m_entries[index].reset();
  }
  std::erase(m_entries, nullptr);
  IndexEntries();
}

std::vector<const OutputEntry*> CEntryList::Pointers() const {
  std::vector<const OutputEntry*> pointers;
  pointers.reserve(m_entries.size());
  for (const auto& entry : m_entries) pointers.push_back(entry.get());
  return pointers;
}

}  // namespace carvello
