#include "engine/job_control.h"

#include <algorithm>
#include <new>
#include <set>
#include <utility>

#include "dsp/start_dsp.h"
#include "engine/background_thread_reader.h"
#include "engine/block_reader.h"
#include "engine/existing_output.h"
#include "input/wave_file_reader.h"
#include "support/formatting.h"
#include "support/platform.h"
#include "support/text.h"

namespace carvello {

namespace {

constexpr int kReaderPriority = 1;  // above normal: reading is never starved by the writers
constexpr std::uint64_t kProgressTotal = 10'000;

}  // namespace

CJobControl::CJobControl(const DspBinding& dsp, IMessageTarget& target, IJobQuestions& questions, unsigned processors)
    : m_dsp(dsp),
      m_target(target),
      m_questions(questions),
      m_nProcessors(processors == 0 ? 1 : processors),
      m_pReader(std::make_unique<CBackgroundThreadReader>(dsp)) {}

CJobControl::~CJobControl() {
  if (m_bJobRunning) Stop();
}

EStartResult CJobControl::Start(const CEntryList& entries, const CRecordingSet& recording, const SJobOptions& options) {
  try {
    return StartJob(entries, recording, options);
  } catch (const std::bad_alloc&) {
    m_bJobRunning = false;
    m_pReader->Stop();
  }
  m_questions.Ask(EJobQuestion::CannotStart, {"Start", kNotEnoughMemory, EButtons::Ok, EIcon::Stop});
  return EStartResult::NoThread;
}

EStartResult CJobControl::StartJob(const CEntryList& entries, const CRecordingSet& recording,
                                   const SJobOptions& options) {
  if (!std::exchange(m_bContinues, false)) m_failed.clear();
  const bool tooMany = MoreThanOneBatch(entries);
  const std::vector<const OutputEntry*> batch = Batch(entries);
  COutputFolders folders;
  if (tooMany) {
    // The numbers stand in this order although the wording suggests the reverse; users know the text as it is.
    const SMessageBox box{"Start",
                          Format("The maximum entries which can be processed is %d, you have added %d.\n\nContinue?",
                                 static_cast<int>(entries.Size()), static_cast<int>(MaxEntries())),
                          EButtons::YesNo, EIcon::Stop};
    if (m_questions.Ask(EJobQuestion::TooManyEntries, box) != EAnswer::Yes) return EStartResult::Declined;
  }
  if (const auto obstacle = FindObstacle(batch, recording, folders)) {
    m_questions.Ask(EJobQuestion::CannotStart, {"Start", Printable(obstacle->strText), EButtons::Ok, EIcon::Stop});
    return obstacle->result;
  }

  const auto exists = [&](const OutputEntry* entry) { return !folders.ExistingOutputFiles(*entry).empty(); };
  const auto count = batch.size();
  const auto existing = static_cast<std::size_t>(std::count_if(batch.begin(), batch.end(), exists));
  bool overwrite = false;
  if (existing >= 1) {
    const std::string text = count == 1 ? "The output file already exists, overwrite it?"
                                        : Format("%d of %d file(s) already exist, do you want to overwrite them?",
                                                 static_cast<int>(existing), static_cast<int>(count));
    const EAnswer answer =
        m_questions.Ask(EJobQuestion::OverwriteFiles, {"Start", text, EButtons::YesNoCancel, EIcon::Question});
    if (answer != EAnswer::Yes && answer != EAnswer::No) return EStartResult::Declined;
    overwrite = answer == EAnswer::Yes;
  }
  const SChosen chosen = Choose(batch, recording, folders, overwrite, options);
  if (!BeginJob()) {
    m_questions.Ask(EJobQuestion::CannotStart, {"Start", "A thread could not be started", EButtons::Ok, EIcon::Stop});
    return EStartResult::NoThread;
  }
  for (const std::string& note : chosen.notes) Log(note);
  if (chosen.entries.empty()) {
    m_questions.Ask(EJobQuestion::AllFilesExist,
                    {"Start", "All output files exist, processing not started.", EButtons::Ok, EIcon::Exclamation});
    m_bJobRunning = false;
    m_pReader->Stop();
    return EStartResult::AllFilesExist;
  }
  PostJob(chosen, recording);
  return EStartResult::Started;
}

// With consent everything is replaced. Without, only what an earlier job has not finished: that is of no use to
// anybody.
CJobControl::SChosen CJobControl::Choose(const std::vector<const OutputEntry*>& entries, const CRecordingSet& recording,
                                         COutputFolders& folders, bool overwrite, const SJobOptions& options) {
  SChosen chosen;
  for (const OutputEntry* entry : entries) {
    const SExistingOutput existing = overwrite ? SExistingOutput() : FindExistingOutput(*entry, recording, folders);
    const bool again = existing.kind == EExistingOutput::Incomplete;
    if (again) chosen.notes.push_back("[WARNING] " + existing.strReason + ", it is done again");
    if (existing.kind == EExistingOutput::Other) chosen.notes.push_back("[WARNING] " + existing.strReason);
    if (existing.kind != EExistingOutput::None && !again) continue;
    chosen.entries.push_back(entry);
    chosen.policies.push_back({.bReplace = overwrite || again, .bSync = options.bSync});
  }
  return chosen;
}

// What makes a job impossible from the outset, found before anything is read or created.
std::optional<CJobControl::SObstacle> CJobControl::FindObstacle(const std::vector<const OutputEntry*>& entries,
                                                                const CRecordingSet& recording,
                                                                COutputFolders& folders) const {
  if (m_dsp.bLoaded == 0) {
    return SObstacle{EStartResult::LibraryMissing, MissingLibraryText()};
  }
  if (const auto problem = InputProblem(recording)) return SObstacle{EStartResult::InputUnsupported, *problem};

  std::vector<std::string> inputFiles;
  for (const SRecordingFile& file : recording.files) inputFiles.push_back(file.strPath);
  std::set<std::string> names;
  for (const OutputEntry* entry : entries) {
    const auto replaced = folders.InputFilesReplaced(*entry, inputFiles);
    if (!replaced.empty()) {
      return SObstacle{EStartResult::OutputIsInput, Format("%s would replace the input file %s",
                                                           entry->strFileName.c_str(), replaced.front().c_str())};
    }
    names.insert(platform::FolderOf(entry->strFileName));
  }
  for (const std::string& folder : names) {
    if (!platform::IsWritableFolder(folder)) {
      return SObstacle{EStartResult::OutputUnwritable, Format("%s: %s", folder.c_str(), SystemErrorText().c_str())};
    }
  }
  return std::nullopt;
}

bool CJobControl::BeginJob() {
  m_bJobRunning = true;
  m_jobEntries.clear();
  m_results.clear();
  m_pReader->SetOutputs({});
  m_questions.JobStarting();
  m_target.PostNumbers(RegisterMessage(kProgressMessageName), kProgressTotal, 0);
  Log("Ready");
  Log(Format("Processors: %d, max threads: %d", static_cast<int>(m_nProcessors), static_cast<int>(MaxEntries())));
  if (!m_bReaderConfigured) {
    m_pReader->SetTarget(&m_target, RegisterMessage(kLogMessageName));
    m_pReader->SetProgressTarget(&m_target, RegisterMessage(kProgressMessageName));
    m_pReader->SetName("Reader");
    m_pReader->SetPriority(kReaderPriority);
    m_bReaderConfigured = true;
  }
  m_bJobRunning = m_pReader->Start();
  return m_bJobRunning;
}

// All requests are made before the first is posted: a job without memory for them does not begin.
void CJobControl::PostJob(const SChosen& chosen, const CRecordingSet& recording) {
  const std::vector<const OutputEntry*>& entries = chosen.entries;
  m_jobEntries = entries;
  m_pReader->SetInput(recording.files, recording.format, recording.bFloatScale);
  m_pReader->SetOutputs(entries);
  m_pReader->SetPolicies(chosen.policies);
  auto create = m_pReader->TakeRequest(request::kCreateWriters);
  create->nParam1 = static_cast<std::int32_t>(entries.size());
  std::vector<CBackgroundThreadReader::RequestPtr> give;
  for (std::size_t i = 0; i < entries.size(); ++i) {
    give.push_back(m_pReader->TakeRequest(request::kGiveEntry));
    give.back()->nParam1 = static_cast<std::int32_t>(i);
    give.back()->pEntry = entries[i];
  }
  auto start = m_pReader->TakeRequest(request::kStartJob);
  start->strParam = recording.files.front().strPath;
  start->llParam1 = m_pReader->FirstFrame();
  start->llParam2 = recording.FileBytes();
  m_pReader->Post(std::move(create));
  for (auto& request : give) m_pReader->Post(std::move(request));
  m_pReader->Post(std::move(start));
  m_pReader->WaitIdle();
}

void CJobControl::Stop() {
  if (!m_bJobRunning) return;
  m_pReader->PostStop();
  FinishJob();
}

bool CJobControl::OnIdle() {
  if (!m_bJobRunning || m_pReader->IsRunning()) return false;
  FinishJob();
  return true;
}

void CJobControl::FinishJob() noexcept {
  m_bJobRunning = false;
  m_pReader->WaitIdle();
  m_pReader->Stop();
  m_results = m_pReader->TakeResults();
  m_nInputBytesRead = m_pReader->BytesRead();
}

std::vector<SEntryState> CJobControl::EntryStates() const {
  return m_pReader->EntryStates();
}

std::vector<const OutputEntry*> CJobControl::Batch(const CEntryList& entries) const {
  std::vector<const OutputEntry*> batch = entries.Pointers();
  std::erase_if(batch, [this](const OutputEntry* entry) { return m_failed.contains(entry); });
  if (batch.size() > MaxEntries()) batch.resize(MaxEntries());
  return batch;
}

bool CJobControl::MoreThanOneBatch(const CEntryList& entries) const {
  const auto pointers = entries.Pointers();
  const auto failed =
      std::count_if(pointers.begin(), pointers.end(), [this](const auto* entry) { return m_failed.contains(entry); });
  return pointers.size() - static_cast<std::size_t>(failed) > MaxEntries();
}

bool CJobControl::ContinueBatch(CEntryList& entries) {
  if (!MoreThanOneBatch(entries)) return false;
  const SMessageBox box{"Continue",
                        Format("%d of %d entries have been processed. Remove from list and continue?",
                               static_cast<int>(entries.Size()), static_cast<int>(MaxEntries())),
                        EButtons::YesNo, EIcon::Stop};
  if (m_questions.Ask(EJobQuestion::ContinueBatch, box) != EAnswer::Yes) return false;
  const std::vector<const OutputEntry*> batch = Batch(entries);
  std::set<const OutputEntry*> processed(batch.begin(), batch.end());
  for (const SEntryState& state : EntryStates()) {
    if (state.state == EOutputState::Done) continue;
    processed.erase(state.pEntry);
    m_failed.insert(state.pEntry);
  }
  std::vector<std::size_t> indices;
  for (std::size_t i = 0; i < entries.Size(); ++i) {
    if (processed.contains(&entries[i])) indices.push_back(i);
  }
  entries.Remove(indices);
  entries.Rebuild();
  m_bContinues = true;
  return true;
}

void CJobControl::Log(const std::string& text) {
  m_target.PostTexts(RegisterMessage(kLogMessageName), {}, text);
}

std::optional<std::string> InputProblem(const CRecordingSet& recording) {
  if (recording.files.empty()) return "The input holds no files";
  // Read as the job will read it: the analysis finds its way through files that a stream from front to back does not.
  const std::string& name = recording.files.front().strPath;
  CWaveFileReader file;
  WAVEFORMATEXTENSIBLE format;
  std::int64_t dataSize = 0;
  std::string reason;
  if (!file.Open(name) || !file.ParseWave(format, dataSize)) {
    reason = file.Log().IsEmpty() ? "cannot be read" : file.Log()[file.Log().Size() - 1];
  } else if (!CanConvert(format)) {
    reason = UnsupportedFormatText(format);
  }
  file.Close();
  if (reason.empty()) return std::nullopt;
  return Format("%s: %s", name.c_str(), reason.c_str());
}

}  // namespace carvello
