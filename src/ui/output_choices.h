// The choices that the drop-down lists of the main dialog offer.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "engine/output_entry.h"
#include "input/recording_set.h"

class QComboBox;

namespace carvello {

struct SChoice {
  std::string strText;
  std::uint32_t nValue = 0;
  bool operator==(const SChoice&) const = default;
};

// Bandwidths in Hz that a recording of this sample rate can be cut to, from the widest down.
std::vector<SChoice> BandwidthChoices(std::uint32_t sampleRate);
// Megabytes at which an output is split; 0 is one file. Behind them SigMF, which is a choice of files, not of sizes.
inline constexpr std::uint32_t kSigMfChoice = 0xFFFFFFFF;
std::vector<SChoice> FileSizeChoices();
// What is chosen for an entry, or was.
std::uint32_t FileSizeChoice(const OutputEntry& entry);
// Whole hours and minutes of a duration within the recording.
std::vector<SChoice> HourChoices(const CRecordingSet& recording);
std::vector<SChoice> MinuteChoices(const CRecordingSet& recording);

// Replaces what the list offers. The first choice is selected, or nothing.
enum class ESelect { First, Nothing };
void FillList(QComboBox& list, const std::vector<SChoice>& choices, ESelect select);
// The selection stays when the list has no such value.
void SelectByValue(QComboBox& list, std::uint32_t value);
std::uint32_t SelectedValue(const QComboBox& list);  // 0 when nothing is selected

}  // namespace carvello
