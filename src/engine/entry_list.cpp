#include "engine/entry_list.h"

#include <algorithm>
#include <limits>
#include <map>
#include <tuple>

#include "recording/sigmf_writer.h"
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

// Input frames in a stretch of whole seconds. Held at the ends of the range: a damaged recording may claim any length.
std::int64_t FramesIn(std::int64_t seconds, std::int64_t rate) {
  std::int64_t frames = 0;
  if (!__builtin_mul_overflow(seconds, rate, &frames)) return frames;
  return seconds < 0 ? std::numeric_limits<std::int64_t>::min() : std::numeric_limits<std::int64_t>::max();
}

std::string StartText(std::int64_t start, bool utc) {
  return utc ? FormatUtc("%Y-%m-%d %H%Mz", start) : FormatLocal("%Y-%m-%d %H%M", start);
}

// What two entries of the same output have different all the same.
std::string Differences(const OutputEntry& a, const OutputEntry& b) {
  std::string text;
  const auto add = [&text](bool differs, const char* name) {
    if (differs) text += (text.empty() ? "" : ", ") + std::string(name);
  };
  add(platform::FolderOf(a.strFileName) != platform::FolderOf(b.strFileName), "folder");
  add(a.nBitsPerSample != b.nBitsPerSample, "sample size");
  add(a.nFileSizeMB != b.nFileSizeMB || a.format != b.format, "file size");
  return text;
}

}  // namespace

void CEntryList::SetRecording(const CRecordingSet& recording, const SInfoTexts& infoTexts) {
  Reset();
  m_input = {recording.tStart, recording.tEnd, recording.nRadioCenterFreq, recording.nSampleRate,
             recording.nStartNanoseconds};
  m_inputName = recording.files.empty() ? std::string() : platform::NameOf(recording.files.front().strPath);
  m_metadata = recording.strMetadata;
  m_info[0] = infoTexts.strIPRD;
  m_info[1] = infoTexts.strIART;
  m_info[2] = infoTexts.strICMT;
  m_info[3] = infoTexts.strICOP;
}

std::optional<SEntryProblem> CEntryList::AddEntry(const SEntryFields& fields) {
  const std::int64_t recordingStart = m_input.tStart;
  const std::int64_t recordingEnd = m_input.tEnd;
  const std::int64_t rate = m_input.nSampleRate;

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

  auto listed = std::make_shared<SListed>();
  OutputEntry& entry = listed->entry;
  entry.nFlags = fields.nBandwidth == 0 ? 1 : 0;
  entry.nBitsPerSample = fields.b32Bit ? 32 : 16;
  entry.nFileSizeMB = fields.nFileSizeMB;
  entry.format = fields.format;
  entry.tStart = start;
  entry.tEnd = end;
  entry.nStartNanoseconds = m_input.nStartNanoseconds;
  entry.strInputName = m_inputName;
  entry.strMetadata = m_metadata;
  entry.strInfo1 = m_info[0];
  entry.strInfo2 = m_info[1];
  entry.strInfo3 = m_info[2];
  entry.strInfo4 = m_info[3];
  entry.nStartSample = FramesIn(start - recordingStart, rate);
  entry.nTotalSamples = totalSamples;
  entry.nInputFrequency = m_input.nFrequency;
  entry.nInputSampleRate = m_input.nSampleRate;
  entry.nOutputFrequency = fields.nFrequency;
  entry.nOutputSampleRate = fields.nBandwidth;

  const std::string frequencyText = FormatFrequency64(fields.nFrequency);
  const std::string bandwidthText = FormatFrequency(fields.nBandwidth);
  entry.strTitle = Format("%s, BW %s", frequencyText.c_str(), bandwidthText.c_str());
  NameEntry(
      *listed,
      Format("%s, f=%s, bw=%s", StartText(start, fields.bUtc).c_str(), frequencyText.c_str(), bandwidthText.c_str()),
      fields.strOutputFolder, fields.nNameNumber);
  m_entries.push_back(std::move(listed));
  m_bRebuilt = false;
  return std::nullopt;
}

void CEntryList::NameEntry(SListed& listed, const std::string& name, const std::string& folder, int wanted) {
  OutputEntry& entry = listed.entry;
  const std::string whole = platform::AbsolutePath(folder.empty() ? "." : folder);
  listed.strStem = platform::JoinPath(whole, name);
  const int number = m_names.Take(listed.strStem, KeyOf(entry), wanted);
  listed.nNumber = number;
  entry.strDisplayName = number == 1 ? name : Format("%s (%d)", name.c_str(), number);
  entry.strDisplayName += entry.format == EOutputFormat::SigMf ? kSigMfDataExtension : ".wav";
  entry.strFileName = platform::JoinPath(whole, entry.strDisplayName);
}

void CEntryList::AddSequence(SEntryFields fields, std::int64_t from, std::int64_t to, std::int64_t step,
                             const std::function<void(const SEntryProblem&, SEntryFields&)>& onProblem) {
  if (step < 1) return;
  if (from > to) std::swap(from, to);
  for (std::int64_t frequency = from;; frequency += step) {
    fields.nFrequency = frequency;
    if (const auto problem = AddEntry(fields)) onProblem(*problem, fields);
    if (to - frequency < step) break;  // compared this way round, the sum cannot overflow
  }
}

std::vector<SDroppedEntry> CEntryList::Rebuild() {
  std::vector<SDroppedEntry> dropped;
  if (m_bRebuilt) return dropped;
  m_bRebuilt = true;
  std::map<OutputKey, const OutputEntry*> kept;
  std::vector<bool> duplicate;
  duplicate.reserve(m_entries.size());
  for (const auto& listed : m_entries) {
    const auto [earlier, isNew] = kept.emplace(KeyOf(listed->entry), &listed->entry);
    duplicate.push_back(!isNew);
    if (!isNew) dropped.push_back({listed->entry.strTitle, Differences(*earlier->second, listed->entry)});
  }
  Drop(duplicate);
  std::stable_sort(m_entries.begin(), m_entries.end(), [](const auto& a, const auto& b) {
    return std::tie(a->entry.nOutputFrequency, a->entry.nOutputSampleRate) <
           std::tie(b->entry.nOutputFrequency, b->entry.nOutputSampleRate);
  });
  return dropped;
}

void CEntryList::Drop(const std::vector<bool>& dropped) {
  for (std::size_t i = 0; i < m_entries.size(); ++i) {
    if (!dropped[i]) continue;
    m_names.GiveBack(m_entries[i]->strStem, KeyOf(m_entries[i]->entry));
    m_entries[i].reset();
  }
  std::erase(m_entries, nullptr);
}

void CEntryList::Take(std::vector<OutputEntry> entries) {
  Reset();
  for (OutputEntry& entry : entries) {
    auto listed = std::make_shared<SListed>();
    listed->entry = std::move(entry);
    m_entries.push_back(std::move(listed));
  }
}

void CEntryList::PutBack(const Saved& saved) {
  m_names.Clear();
  for (const auto& listed : saved) m_names.Take(listed->strStem, KeyOf(listed->entry), listed->nNumber);
  m_entries = saved;
  m_bRebuilt = true;
}

bool CEntryList::IsIn(const SListed& listed, const std::string& whole) {
  return listed.entry.strFileName == platform::JoinPath(whole, listed.entry.strDisplayName);
}

void CEntryList::MoveTo(const std::string& folder) {
  const std::string whole = platform::AbsolutePath(folder.empty() ? "." : folder);
  m_names.Clear();
  // Those that are there have their names before any that comes.
  for (const auto& listed : m_entries) {
    if (IsIn(*listed, whole)) m_names.Take(listed->strStem, KeyOf(listed->entry), listed->nNumber);
  }
  for (auto& listed : m_entries) {
    if (IsIn(*listed, whole)) continue;
    auto moved = std::make_shared<SListed>(*listed);
    NameEntry(*moved, platform::NameOf(listed->strStem), folder, listed->nNumber);
    listed = std::move(moved);
  }
}

std::size_t CEntryList::CountOutside(const std::string& folder) const {
  const std::string whole = platform::AbsolutePath(folder.empty() ? "." : folder);
  return static_cast<std::size_t>(std::count_if(m_entries.begin(), m_entries.end(),
                                                [&whole](const auto& listed) { return !IsIn(*listed, whole); }));
}

void CEntryList::Reset() {
  m_names.Clear();
  m_entries.clear();
  m_bRebuilt = true;
}

void CEntryList::Remove(const std::vector<std::size_t>& indices) {
  std::vector<bool> removed(m_entries.size());
  for (const std::size_t index : indices) {
    if (index < removed.size()) removed[index] = true;
  }
  Drop(removed);
}

std::vector<const OutputEntry*> CEntryList::Pointers() const {
  std::vector<const OutputEntry*> pointers;
  pointers.reserve(m_entries.size());
  for (const auto& listed : m_entries) pointers.push_back(&listed->entry);
  return pointers;
}

}  // namespace carvello
