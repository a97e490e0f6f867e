#include "cluster/planned_recording.h"

#include <algorithm>
#include <optional>

#include "engine/engine_choice.h"
#include "engine/entry_checks.h"
#include "engine/job_control.h"
#include "engine/output_rate.h"
#include "jobs/spec_entries.h"
#include "support/formatting.h"
#include "support/platform.h"
#include "support/sha2.h"
#include "support/text.h"

namespace carvello {
namespace {

SPlannedFile PlannedFile(const std::string& path, const SFileStamp& stamp) {
  return {platform::AbsolutePath(path), stamp.nSize, stamp.nModified};
}

std::vector<SPlannedFile> FilesOf(const CRecordingSet& recording) {
  std::vector<SPlannedFile> files;
  for (const SRecordingFile& file : recording.files) {
    files.push_back(PlannedFile(file.strPath, file.stamp));
    for (const SDescribingFile& other : file.describedBy) {
      const SPlannedFile planned = PlannedFile(other.strPath, other.stamp);
      if (std::find(files.begin(), files.end(), planned) == files.end()) files.push_back(planned);
    }
  }
  return files;
}

}  // namespace

COpenRecording::EResult COpenRecording::Open(const SWorkPlan& plan, const std::string& input, std::uint32_t part,
                                             std::string& error) {
  SGivenFacts given = plan.job.given;
  if (part != 0) given.nPart = part;
  if (!ReadRecordingInput(input, m_input, error, given)) {
    return m_input.bUnread ? EResult::Unreadable : EResult::NoRecording;
  }
  if (const auto problem = InputProblem(m_input.recording)) {
    error = problem->strText;
    return problem->bUnread ? EResult::Unreadable : EResult::NoRecording;
  }
  if (m_input.recording.nSampleRate == 0) {
    error = input + ": its sample rate is not known";
    return EResult::NoRecording;
  }
  m_frames.emplace(m_input.recording);
  const EResult added = AddEntries(plan, error);
  if (added == EResult::Ok) ChooseJobs(plan.engine);
  return added;
}

COpenRecording::EResult COpenRecording::OpenPlanned(const SWorkPlan& plan, const SPlannedRecording& planned,
                                                    std::string& error) {
  // First of all, so that a folder that is not there is told from a recording that is another one.
  for (const SPlannedFile& file : planned.files) {
    const auto status = platform::GetFileStatus(file.strPath);
    if (!status) {
      error = file.strPath + ": " + SystemErrorText();
      return EResult::Unreadable;
    }
    if (PlannedFile(file.strPath, SFileStamp(*status)) == file) continue;
    const std::string what = file.nSize == status->nSize
                                 ? "its time of change is another"
                                 : Format("%lld bytes then, %lld now", static_cast<long long>(file.nSize),
                                          static_cast<long long>(status->nSize));
    error = Format("%s: changed since the plan was made (%s). Accepted: the file as it was, or a new plan",
                   file.strPath.c_str(), what.c_str());
    return EResult::Refused;
  }
  const EResult opened = Open(plan, planned.strInput, planned.nPart, error);
  if (opened != EResult::Ok) return opened;
  const SPlannedRecording now = Planned(planned.strInput, planned.nPart);
  if (now.files == planned.files && now.strEntries == planned.strEntries && now.nFrames == planned.nFrames) {
    return EResult::Ok;
  }
  error = Format(
      "%s: what is found here is not what was planned: %s. Accepted: the same files, version and time zone "
      "on every machine, or a new plan",
      planned.strInput.c_str(),
      now.files == planned.files && now.nFrames == planned.nFrames ? "its outputs would be others"
                                                                   : "the recording has other files");
  return EResult::Refused;
}

COpenRecording::EResult COpenRecording::AddEntries(const SWorkPlan& plan, std::string& error) {
  m_entries.SetRecording(m_input.recording, m_input.infoTexts);
  m_holds.assign(plan.job.entries.size(), false);
  m_nLeftOut = 0;
  for (std::size_t i = 0; i < plan.job.entries.size(); ++i) {
    const SEntrySpec& spec = plan.job.entries[i];
    SEntryFields fields;
    fields.bUtc = !plan.job.bLocalTime;
    fields.strOutputFolder = plan.job.strOutput;
    const std::size_t before = m_entries.Size();
    const auto reason = AddByCommandLine(spec, fields, m_input.recording, m_entries);
    if (reason && !plan.bAbsolute) {
      error = m_input.recording.files.front().strPath + ": " + spec.strLabel + ": " + *reason;
      return EResult::Refused;
    }
    if (!reason && (!plan.bAbsolute || BandPlace(m_entries[before]) == EBandPlace::Inside)) {
      m_holds[i] = true;
      continue;
    }
    if (!reason) m_entries.Remove({before});
    ++m_nLeftOut;
  }
  m_entries.Rebuild();
  return EResult::Ok;
}

// As many entries as one pass takes share where it begins and which road is cheaper.
void COpenRecording::ChooseJobs(EEngineSetting engine) {
  const std::vector<const OutputEntry*> all = m_entries.Pointers();
  m_engines.clear();
  m_jobs.clear();
  for (std::size_t begin = 0; begin < all.size(); begin += kMostEntriesOfAPass) {
    const std::size_t end = std::min<std::size_t>(all.size(), begin + kMostEntriesOfAPass);
    const std::vector<const OutputEntry*> pass(all.begin() + static_cast<std::ptrdiff_t>(begin),
                                               all.begin() + static_cast<std::ptrdiff_t>(end));
    const std::int64_t first = FirstFrame(pass);
    m_jobs.insert(m_jobs.end(), pass.size(), SWholeJob{first, m_frames->Late(first)});
    const SEngineChoice choice = ChooseEngines(pass, engine, m_frames->Total());
    m_engines.insert(m_engines.end(), choice.engines.begin(), choice.engines.end());
  }
}

SOutputRange COpenRecording::Range(std::size_t entry, std::int64_t fromSecond, std::int64_t toSecond) const {
  const OutputEntry& whole = m_entries[entry];
  const std::int64_t late = m_jobs[entry].llLate;
  const std::int64_t origin = whole.nStartSample + late;
  const std::int64_t span = m_frames->Due(whole, late);
  const auto samplesBefore = [&](std::int64_t second) {
    // A second beyond the recording's end is its end; no product is too large then.
    const std::int64_t rate = whole.nInputSampleRate;
    const std::int64_t frame = second > m_frames->Total() / rate ? m_frames->Total() : second * rate;
    return OutputFramesDue(std::clamp<std::int64_t>(frame - origin, 0, std::max<std::int64_t>(span, 0)),
                           whole.nInputSampleRate, whole.nOutputSampleRate);
  };
  return {samplesBefore(fromSecond), samplesBefore(toSecond)};
}

SPlannedRecording COpenRecording::Planned(const std::string& input, std::uint32_t part) const {
  return {.strInput = platform::AbsolutePath(input),
          .nPart = part,
          .files = FilesOf(m_input.recording),
          .nEntries = m_entries.Size(),
          .nFrames = m_frames->Total(),
          .nSampleRate = m_input.recording.nSampleRate,
          .strEntries = EntriesHash()};
}

std::string COpenRecording::EntriesHash() const {
  CSha256 hash;
  const auto add = [&hash](const std::string& text) { hash.Add(text.c_str(), text.size() + 1); };
  for (std::size_t i = 0; i < m_entries.Size(); ++i) {
    const OutputEntry& entry = m_entries[i];
    add(entry.strFileName);
    add(EngineName(m_engines[i]));
    for (const std::int64_t number :
         {entry.nOutputFrequency, std::int64_t{entry.nOutputSampleRate}, entry.nInputFrequency,
          std::int64_t{entry.nInputSampleRate}, entry.nStartSample, entry.nTotalSamples, entry.tStart,
          std::int64_t{entry.nStartNanoseconds}, std::int64_t{entry.nBitsPerSample}, std::int64_t{entry.nFileSizeMB},
          static_cast<std::int64_t>(entry.format), m_jobs[i].llReadFrom, m_jobs[i].llLate}) {
      add(std::to_string(number));
    }
  }
  return hash.Hex();
}

}  // namespace carvello
