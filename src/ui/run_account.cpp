#include "ui/run_account.h"

#include <algorithm>

#include "support/text.h"

namespace carvello {

namespace {

constexpr std::size_t kMostFailures = 10;    // named in the message box, which has to stay on the screen
constexpr std::size_t kLongestReason = 250;  // bytes of each, for the same reason
constexpr std::uint32_t kProgressPerCent = 100;

std::string Shortened(const std::string& text) {
  if (text.size() <= kLongestReason) return text;
  std::size_t end = kLongestReason;
  while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80) --end;  // no character is cut in two
  return text.substr(0, end) + "…";
}

}  // namespace

void CRunAccount::Reset() {
  *this = CRunAccount();
}

void CRunAccount::BeginBatch(const std::vector<const OutputEntry*>& batch) {
  m_batch = batch;
  m_failures.clear();
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

void CRunAccount::EndBatch(const std::vector<SEntryState>& states, bool stopped) {
  Update(states);
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
      ++m_nFailed;
    }
  }
}

void CRunAccount::EndBatchOfExisting() {
  m_existing.insert(m_batch.begin(), m_batch.end());
  m_bStopped = false;
  m_nEntries += m_batch.size();
  m_nExisting += m_batch.size();
}

void CRunAccount::Retain(const std::vector<const OutputEntry*>& entries) {
  const std::set<const OutputEntry*> kept(entries.begin(), entries.end());
  std::erase_if(m_states, [&](const auto& item) { return !kept.contains(item.first); });
  std::erase_if(m_existing, [&](const OutputEntry* entry) { return !kept.contains(entry); });
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
  return {"failed: " + Printable(state.strReason), ETone::Bad};
}

SToneText CRunAccount::Outcome() const {
  if (m_nEntries == 0) return {};
  std::string text =
      Format(m_bStopped ? "Stopped: %zu of %zu outputs complete" : "%zu of %zu outputs written", m_nDone, m_nEntries);
  if (m_nFailed > 0) text += Format(", %zu failed", m_nFailed);
  if (m_nExisting > 0) text += Format(", %zu existed", m_nExisting);
  if (m_nFailed > 0) return {text, ETone::Bad};
  if (m_bStopped) return {text, ETone::Caution};
  return {text, m_nDone > 0 ? ETone::Good : ETone::Plain};
}

std::string CRunAccount::Failures() const {
  if (m_failures.empty()) return {};
  std::string text = Format("%zu of %zu outputs failed:", m_failures.size(), m_batch.size());
  const std::size_t named = std::min(m_failures.size(), kMostFailures);
  for (std::size_t i = 0; i < named; ++i) {
    text += "\n\n" + m_failures[i].strFile + ": " + Shortened(Printable(m_failures[i].strReason));
  }
  if (named < m_failures.size()) {
    text += Format("\n\nand %zu more, which the list and the log name.", m_failures.size() - named);
  }
  return text;
}

}  // namespace carvello
