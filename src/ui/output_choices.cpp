#include "ui/output_choices.h"

#include <QComboBox>
#include <QSignalBlocker>
#include <algorithm>

#include "support/formatting.h"
#include "support/text.h"

namespace carvello {

namespace {

// From `start` down by `step` while at least one step remains above `floor`.
struct SBandwidthRow {
  std::uint32_t nStart;
  std::uint32_t nFloor;
  std::uint32_t nStep;
};
constexpr SBandwidthRow kRows[] = {
    {1'000'000, 250'000, 25'000}, {250'000, 20'000, 10'000}, {20'000, 2'000, 1'000}, {2'000, 200, 100}, {200, 0, 10}};

// Shorter than FormatFrequency: "1000 kHz", "1.9 kHz", "300 Hz".
std::string RowText(std::uint32_t value) {
  if (value % 1000 == 0) return Format("%d kHz", static_cast<int>(value / 1000));
  if (value < 1000) return Format("%d Hz", static_cast<int>(value));
  std::string text = Format("%d.%d", static_cast<int>(value / 1000), static_cast<int>(value % 1000));
  text.erase(text.find_last_not_of('0') + 1);
  return text + " kHz";
}

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
  for (std::uint32_t value = sampleRate; value > kUsualBandwidth; value >>= 1) {
    choices.push_back({FormatFrequency(value), value});
  }
  for (const SBandwidthRow& row : kRows) {
    for (std::uint32_t value = row.nStart; value >= row.nFloor + row.nStep; value -= row.nStep) {
      if (value <= sampleRate) choices.push_back({RowText(value), value});
    }
  }
  return choices;
}

std::vector<SChoice> FileSizeChoices() {
  return {{"100 MB", 100}, {"1 GB", 1000}, {"One file (RF64)", 0}};
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
  for (const SChoice& choice : choices) list.addItem(QString::fromStdString(choice.strText), choice.nValue);
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
