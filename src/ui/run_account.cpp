#include "ui/run_account.h"

#include <algorithm>
#include <string_view>

#include "support/text.h"

namespace carvello {

namespace {

constexpr std::size_t kMostFailures = 10;    // named in the message box, which has to stay on the screen
constexpr std::size_t kLongestReason = 250;  // bytes of each, for the same reason
constexpr std::uint32_t kProgressPerCent = 100;

constexpr const char* kFailed = "failed: ";
constexpr std::string_view kBeforeCause = " - ";
constexpr std::string_view kAfterPath = ": ";

// The cause alone, which reasons name last: "Error writing 4096 bytes - No space left on device", or after a path:
// "/media/disk/cuts: No such file or directory".
std::string BriefOf(const std::string& reason) {
  std::string_view before = kBeforeCause;
  std::size_t found = reason.rfind(before);
  if (found == std::string::npos) {
    const std::size_t name = reason.find_last_of("/\\");
    before = kAfterPath;
    found = name == std::string::npos ? name : reason.find(before, name);
  }
  if (found == std::string::npos || found + before.size() == reason.size()) return {};
  return kFailed + reason.substr(found + before.size());
}

std::string Shortened(const std::string& text) {
  if (text.size() <= kLongestReason) return text;
  std::size_t end = kLongestReason;
  while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80) --end;  // no character is cut in two
  return text.substr(0, end) + "…";
}

// What failed, named as far as there is room; empty when nothing did. `outputs`: of so many.
std::string Account(const SFailure* failures, std::size_t count, std::size_t outputs) {
  if (count == 0) return {};
  std::string text = Format("%zu of %zu outputs failed:", count, outputs);
  const std::size_t named = std::min(count, kMostFailures);
  for (std::size_t i = 0; i < named; ++i) {
    text += "\n\n" + failures[i].strFile + ": " + Shortened(Printable(failures[i].strReason));
  }
  if (named < count) text += Format("\n\nand %zu more, which the list and the log name.", count - named);
  return text;
}

}  // namespace

void CRunAccount::Reset() {
  *this = CRunAccount();
}

void CRunAccount::BeginBatch(const std::vector<const OutputEntry*>& batch) {
  m_batch = batch;
  m_nBatchFailures = 0;
  for (const OutputEntry* entry : batch) m_states[entry] = {};
}

void CRunAccount::Update(const std::vector<SEntryState>& states) {
  if (states.empty()) return;
  m_existing.insert(m_batch.begin(), m_batch.end());
  for (const SEntryState& state : states) {
    m_states[state.pEntry] = state;
    m_existing.erase(state.pEntry);
  }
}

void CRunAccount::CountNotBegun(const std::vector<const OutputEntry*>& listed) {
  m_nNotBegun = static_cast<std::size_t>(std::count_if(
      listed.begin(), listed.end(), [this](const OutputEntry* entry) { return !m_states.contains(entry); }));
}

void CRunAccount::EndBatch(const std::vector<SEntryState>& states, bool stopped,
                           const std::vector<const OutputEntry*>& listed) {
  Update(states);
  CountNotBegun(listed);
  m_bStopped = false;
  m_nEntries += m_batch.size();
  for (const OutputEntry* entry : m_batch) {
    SEntryState& state = m_states[entry];
    if (m_existing.contains(entry)) {
      ++m_nExisting;
    } else if (state.state == EOutputState::Done) {
      ++m_nDone;
    } else if (stopped && state.state != EOutputState::Failed) {
      state.state = EOutputState::Stopped;
      m_bStopped = true;  // else everything had come to its end already
    } else {
      state.state = EOutputState::Failed;
      if (state.strReason.empty()) state.strReason = "not finished";
      m_failures.push_back({entry->strDisplayName, state.strReason});
      ++m_nBatchFailures;
      ++m_nFailed;
    }
  }
}

void CRunAccount::EndBatchOfExisting(const std::vector<const OutputEntry*>& listed) {
  CountNotBegun(listed);
  m_existing.insert(m_batch.begin(), m_batch.end());
  m_bStopped = false;
  m_nEntries += m_batch.size();
  m_nExisting += m_batch.size();
}

SToneText CRunAccount::StateOf(const OutputEntry* entry) const {
  const auto found = m_states.find(entry);
  if (found == m_states.end()) return {};
  if (m_existing.contains(entry)) return {"exists", ETone::Plain};
  const SEntryState& state = found->second;
  switch (state.state) {
    case EOutputState::Waiting:
      return {"waiting", ETone::Plain};
    case EOutputState::Running:
      return {Format("%u%%", static_cast<unsigned>(state.nProgress / kProgressPerCent)), ETone::Plain};
    case EOutputState::Done:
      return {"done", ETone::Good};
    case EOutputState::Stopped:
      return {"stopped", ETone::Caution};
    case EOutputState::Failed:
      break;
  }
  const std::string reason = Printable(state.strReason);
  return {kFailed + reason, ETone::Bad, BriefOf(reason)};
}

SToneText CRunAccount::Outcome() const {
  if (m_nEntries == 0) return {};
  std::string text = Format(m_bStopped ? "Stopped: %zu of %zu outputs complete" : "%zu of %zu outputs written", m_nDone,
                            m_nEntries + m_nNotBegun);
  if (m_nFailed > 0) text += Format(", %zu failed", m_nFailed);
  if (m_nExisting > 0) text += Format(", %zu existed", m_nExisting);
  if (m_nNotBegun > 0) text += Format(", %zu not begun", m_nNotBegun);
  if (m_nFailed > 0) return {text, ETone::Bad};
  if (m_bStopped || m_nNotBegun > 0) return {text, ETone::Caution};
  return {text, m_nDone > 0 ? ETone::Good : ETone::Plain};
}

std::string CRunAccount::Failures() const {
  return Account(m_failures.data() + m_failures.size() - m_nBatchFailures, m_nBatchFailures, m_batch.size());
}

std::string CRunAccount::RunFailures(const std::string& obstacle) const {
  std::string text = Account(m_failures.data(), m_failures.size(), m_nEntries);
  if (obstacle.empty()) return text;
  if (!text.empty()) text += "\n\n";
  text += "The run could not go on: " + Shortened(Printable(obstacle));
  if (m_nNotBegun > 0) text += Format("\n\nOutputs not begun: %zu", m_nNotBegun);
  return text;
}

}  // namespace carvello
