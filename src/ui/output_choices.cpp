#include "ui/output_choices.h"

#include <QComboBox>
#include <QSignalBlocker>
#include <algorithm>

#include "engine/offered_bandwidths.h"
#include "ui/bandwidth_text.h"
#include "ui/english_texts.h"

namespace carvello {

namespace {

std::vector<SChoice> Numbers(std::int64_t last) {
  std::vector<SChoice> choices;
  for (std::int64_t number = 0; number <= last; ++number) {
    choices.push_back({std::to_string(number), static_cast<std::uint32_t>(number)});
  }
  return choices;
}

std::int64_t SecondsOf(const CRecordingSet& recording) {
  return std::max<std::int64_t>(recording.tEnd - recording.tStart, 0);
}

}  // namespace

std::vector<SChoice> BandwidthChoices(std::uint32_t sampleRate) {
  std::vector<SChoice> choices;
  for (const std::uint32_t value : OfferedBandwidths(sampleRate)) {
    choices.push_back({BandwidthText(value), value});
  }
  return choices;
}

std::vector<SChoice> FileSizeChoices() {
  return {{"100 MB", 100}, {"1 GB", 1000}, {"One file (RF64)", 0}, {"SigMF", kSigMfChoice}};
}

std::uint32_t FileSizeChoice(const OutputEntry& entry) {
  return entry.format == EOutputFormat::SigMf ? kSigMfChoice : entry.nFileSizeMB;
}

std::vector<SChoice> HourChoices(const CRecordingSet& recording) {
  return Numbers(std::min<std::int64_t>(SecondsOf(recording) / 3600, 23));
}

std::vector<SChoice> MinuteChoices(const CRecordingSet& recording) {
  return Numbers(std::min<std::int64_t>(SecondsOf(recording) / 60, 59));
}

void FillList(QComboBox& list, const std::vector<SChoice>& choices, ESelect select) {
  const QSignalBlocker blocker(&list);
  list.clear();
  for (const SChoice& choice : choices) list.addItem(InLanguage(choice.strText), choice.nValue);
  list.setCurrentIndex(select == ESelect::First && !choices.empty() ? 0 : -1);
}

void SelectByValue(QComboBox& list, std::uint32_t value) {
  const int index = list.findData(value);
  if (index >= 0) list.setCurrentIndex(index);
}

std::uint32_t SelectedValue(const QComboBox& list) {
  return list.currentIndex() < 0 ? 0 : list.currentData().toUInt();
}

}  // namespace carvello
