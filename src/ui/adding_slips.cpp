#include "ui/adding_slips.h"

#include "support/text.h"

namespace carvello {

namespace {

constexpr std::size_t kMostLines = 20;

// A picked end at the start itself gives a length of 0 samples, which stands for all that is left.
std::string EndText(const SEntryFault& fault, const OutputEntry& entry) {
  return entry.nTotalSamples == 0 ? "The end time is the start time: it runs to the end." : fault.strProblem;
}

}  // namespace

void CAddingSlips::Added(const SEntryFields& fields, const CRecordingSet& recording, const OutputEntry& entry) {
  ++m_nAdded;
  if (const auto fault = BandwidthFault(fields.nBandwidth, recording))
    Note(Bandwidth, entry.strTitle, fault->strProblem);
  if (const auto fault = EndFault(fields, recording)) Note(End, entry.strTitle, EndText(*fault, entry));
  if (const auto fault = StartFault(fields, recording)) {
    Note(Start, entry.strTitle, fault->strProblem.substr(0, fault->strProblem.find(':')));
  }
  const EBandPlace place = BandPlace(entry);
  if (place == EBandPlace::Inside) return;
  Note(place == EBandPlace::WhollyOutside ? WhollyOutside : PartlyOutside, entry.strTitle, OutsideBandText(entry));
}

void CAddingSlips::Dropped(const SDroppedEntry& entry) {
  const std::string& others = entry.strNotTakenOver;
  Note(Duplicate, entry.strTitle, "in the list already" + (others.empty() ? "" : "; not taken over: " + others));
}

void CAddingSlips::Note(EKind kind, const std::string& title, const std::string& text) {
  if (m_kinds[kind].nEntries++ == 0) m_kinds[kind].strFirst = text;
  if (m_nSlips++ < kMostLines) m_lines.push_back(Format("[WARNING] %s: %s", title.c_str(), text.c_str()));
}

std::string CAddingSlips::Hint() const {
  // Of the gravest kind only: beside the button there is room for two lines.
  std::string hint;
  std::size_t kinds = 0;
  for (const SKind& kind : m_kinds) {
    if (kind.nEntries == 0 || kinds++ > 0) continue;
    if (m_nAdded > 1) hint = Format("%zu of %zu: ", kind.nEntries, m_nAdded);
    hint += kind.strFirst;
  }
  if (kinds > 1) hint += "; see the log";
  if (!hint.empty() && hint[0] >= 'a' && hint[0] <= 'z') hint[0] = static_cast<char>(hint[0] - 'a' + 'A');
  return hint;
}

std::vector<std::string> CAddingSlips::LogLines() const {
  std::vector<std::string> lines = m_lines;
  if (m_nSlips > kMostLines) lines.push_back(Format("[WARNING] ... and %zu more", m_nSlips - kMostLines));
  return lines;
}

}  // namespace carvello
