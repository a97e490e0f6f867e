#include "engine/job_control.h"

#include <algorithm>
#include <new>
#include <set>
#include <thread>
#include <utility>

#include "dsp/start_dsp.h"
#include "engine/background_thread_reader.h"
#include "engine/engine_choice.h"
#include "engine/input_frames.h"
#include "support/formatting.h"
#include "support/platform.h"
#include "support/text.h"

namespace carvello {

namespace {

constexpr int kReaderPriority = 1;  // above normal: reading is never starved by the writers
constexpr std::uint64_t kProgressTotal = 10'000;
constexpr std::chrono::milliseconds kPause{1};  // between two looks at what is waited for

}  // namespace

CJobControl::CJobControl(const DspBinding& dsp, IMessageTarget& target, IJobQuestions& questions, unsigned processors)
    : m_dsp(dsp),
      m_target(target),
      m_questions(questions),
      m_nProcessors(processors == 0 ? 1 : processors),
      m_nMaxEntries(UsualEntries()),
      m_pReader(std::make_unique<CBackgroundThreadReader>(dsp)) {
  m_pReader->SetGroups(m_nProcessors);
}

CJobControl::~CJobControl() {
  if (m_bJobRunning) Stop();
}

EStartResult CJobControl::Start(const CEntryList& entries, const CRecordingSet& recording, const SJobOptions& options) {
  std::shared_ptr<CJobPlan> pPlan;
  bool overwrite = false;
  EStartResult result = Plan(entries, recording, options, pPlan);
  if (result == EStartResult::Started) {
    pPlan->Look();
    result = AskAbout(*pPlan, overwrite);
  }
  if (result == EStartResult::Started) {
    pPlan->Choose(overwrite);
    result = Begin(*pPlan);
  }
  return result;
}

EStartResult CJobControl::WithMemory(const std::function<EStartResult()>& step) {
  try {
    return step();
  } catch (const std::bad_alloc&) {
    m_bJobRunning = false;
    m_pReader->Stop();
  }
  return Refuse(EStartResult::NoThread, kNotEnoughMemory);
}

EStartResult CJobControl::Refuse(EStartResult result, const std::string& reason) {
  m_questions.Ask(EJobQuestion::CannotStart, {"Start", reason, EButtons::Ok, EIcon::Stop});
  return result;
}

EStartResult CJobControl::Plan(const CEntryList& entries, const CRecordingSet& recording, const SJobOptions& options,
                               std::shared_ptr<CJobPlan>& pPlan) {
  return WithMemory([&] {
    if (!std::exchange(m_bContinues, false)) m_failed.clear();
    const bool tooMany = MoreThanOneBatch(entries);
    m_planned = Batch(entries);
    if (tooMany) {
      // The numbers stand in this order although the wording suggests the reverse; users know the text as it is.
      const SMessageBox box{"Start",
                            Format("The maximum entries which can be processed is %d, you have added %d.\n\nContinue?",
                                   static_cast<int>(entries.Size()), static_cast<int>(MaxEntries())),
                            EButtons::YesNo, EIcon::Stop};
      if (m_questions.Ask(EJobQuestion::TooManyEntries, box) != EAnswer::Yes) return EStartResult::Declined;
    }
    pPlan = std::make_shared<CJobPlan>(m_planned, recording, options);
    return EStartResult::Started;
  });
}

EStartResult CJobControl::AskAbout(const CJobPlan& plan, bool& overwrite) {
  return WithMemory([&] {
    if (m_dsp.bLoaded == 0) return Refuse(EStartResult::LibraryMissing, Printable(MissingLibraryText()));
    if (const auto& obstacle = plan.Obstacle()) return Refuse(obstacle->result, Printable(obstacle->strText));
    overwrite = false;
    if (plan.Existing() == 0) return EStartResult::Started;
    const std::string text = m_planned.size() == 1
                                 ? "The output file already exists, overwrite it?"
                                 : Format("%d of %d file(s) already exist, do you want to overwrite them?",
                                          static_cast<int>(plan.Existing()), static_cast<int>(m_planned.size()));
    const EAnswer answer =
        m_questions.Ask(EJobQuestion::OverwriteFiles, {"Start", text, EButtons::YesNoCancel, EIcon::Question});
    if (answer != EAnswer::Yes && answer != EAnswer::No) return EStartResult::Declined;
    overwrite = answer == EAnswer::Yes;
    return EStartResult::Started;
  });
}

EStartResult CJobControl::Begin(const CJobPlan& plan) {
  return WithMemory([&] {
    if (const auto& obstacle = plan.Obstacle()) return Refuse(obstacle->result, Printable(obstacle->strText));
    if (!BeginJob()) return Refuse(EStartResult::NoThread, "A thread could not be started");
    for (const std::string& note : plan.Notes()) Log(note);
    for (const CJobPlan::SLeftOut& leftOut : plan.LeftOut()) LeaveOut(*m_planned[leftOut.nEntry], leftOut.strReason);
    if (!plan.Chosen().empty()) {
      PostJob(plan);
      return EStartResult::Started;
    }
    if (m_leftOut.empty()) {
      m_questions.Ask(EJobQuestion::AllFilesExist,
                      {"Start", "All output files exist, processing not started.", EButtons::Ok, EIcon::Exclamation});
    }
    m_bJobRunning = false;
    m_pReader->Stop();
    return m_leftOut.empty() ? EStartResult::AllFilesExist : EStartResult::OutputUnwritable;
  });
}

void CJobControl::LeaveOut(const OutputEntry& entry, const std::string& reason) {
  Log(Format("[ERROR] %s: %s", entry.strFileName.c_str(), reason.c_str()));
  m_leftOut.push_back({.state = EOutputState::Failed, .strReason = reason, .pEntry = &entry});
}

bool CJobControl::BeginJob() {
  m_bJobRunning = true;
  m_jobEntries.clear();
  m_leftOut.clear();
  m_results.clear();
  m_pReader->SetOutputs({});
  m_questions.JobStarting();
  m_target.PostNumbers(RegisterMessage(kProgressMessageName), kProgressTotal, 0);
  Log("Ready");
  Log(LimitsText());
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
void CJobControl::PostJob(const CJobPlan& plan) {
  const CRecordingSet& recording = plan.Recording();
  std::vector<const OutputEntry*> entries;
  std::vector<SWritePolicy> policies;
  for (const CJobPlan::SChosen& chosen : plan.Chosen()) {
    entries.push_back(m_planned[chosen.nEntry]);
    policies.push_back(chosen.policy);
  }
  m_jobEntries = entries;
  m_pReader->SetListener(m_pListener);
  m_pReader->SetInput(recording.files, recording.kind, recording.format);
  m_pReader->SetOutputs(entries);
  m_pReader->SetPolicies(std::move(policies));
  SEngineChoice engines = ChooseEngines(entries, plan.Options().engine, CInputFrames(recording).Total());
  Log("Engine: " + engines.strReason);
  const auto grouped = std::count(engines.engines.begin(), engines.engines.end(), EEngine::Spectrum);
  const auto alone = static_cast<std::int64_t>(engines.engines.size()) - grouped;
  Log(Format("Threads: 1 reads, %d write", static_cast<int>(alone + std::min<std::int64_t>(grouped, m_nProcessors))));
  m_pReader->SetEngines(std::move(engines.engines));
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
  m_nStart = m_pReader->Posted();
  WaitUntil([this] { return m_pReader->HasHandled(m_nStart); });
}

bool CJobControl::WaitUntil(const std::function<bool()>& condition) const {
  const auto end = std::chrono::steady_clock::now() + m_patience;
  while (!condition()) {
    if (std::chrono::steady_clock::now() >= end) return false;
    std::this_thread::sleep_for(kPause);
  }
  return true;
}

void CJobControl::Stop() {
  if (!m_bJobRunning) return;
  m_pReader->PostStop();
  FinishJob();
}

bool CJobControl::StopSoon() {
  if (!m_bJobRunning) return true;
  m_pReader->PostStop();
  return WaitUntil([this] { return OnIdle(); });
}

// Until the reader has begun it does not run either.
bool CJobControl::OnIdle() {
  if (!m_bJobRunning || !m_pReader->HasHandled(m_nStart) || m_pReader->IsRunning()) return false;
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
  std::vector<SEntryState> states = m_pReader->EntryStates();
  states.insert(states.end(), m_leftOut.begin(), m_leftOut.end());
  return states;
}

std::uint64_t CJobControl::Steps() const {
  std::uint64_t steps = m_pReader->Steps();
  for (const SEntryState& state : m_pReader->EntryStates()) {
    steps += state.nProgress + (state.state == EOutputState::Running || state.state == EOutputState::Waiting ? 0 : 1);
  }
  return steps;
}

// The output that is behind the others holds them up.
std::string CJobControl::Place(const CRecordingSet& recording) const {
  const int file = m_pReader->FileWaitedFor();
  if (file >= 0 && static_cast<std::size_t>(file) < recording.files.size()) {
    return recording.files[static_cast<std::size_t>(file)].strPath;
  }
  std::vector<SEntryState> states = m_pReader->EntryStates();
  std::erase_if(states, [](const SEntryState& state) {
    return state.state != EOutputState::Running && state.state != EOutputState::Waiting;
  });
  const auto last = std::min_element(states.begin(), states.end(), [](const SEntryState& a, const SEntryState& b) {
    return a.nProgress < b.nProgress;
  });
  return last == states.end() ? std::string() : platform::FolderOf(last->pEntry->strFileName);
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

// With the usual number an entry may have a thread of its own. More of them share the threads that a job then tells of.
std::string CJobControl::LimitsText() const {
  return Format("Processors: %d, max %s: %d", static_cast<int>(m_nProcessors),
                m_nMaxEntries <= UsualEntries() ? "threads" : "entries", static_cast<int>(m_nMaxEntries));
}

void CJobControl::Log(const std::string& text) {
  m_target.PostTexts(RegisterMessage(kLogMessageName), {}, text);
}

}  // namespace carvello
