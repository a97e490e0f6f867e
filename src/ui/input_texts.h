// What the main dialog tells about the input recording.
#pragma once

#include <cstdint>
#include <string>

#include "input/recording_set.h"

namespace carvello {

struct SInputTexts {
  std::string strCentre = "-";
  std::string strBandwidth = "-";
  std::string strSampleSize = "-";
  std::string strTotalFiles = "-";
  std::string strStart = "-";
  std::string strFinish = "-";
  std::string strTotal = "-";
  std::string strSource = "-";
};

SInputTexts InputTexts(const CRecordingSet& recording, bool utc);

// A moment as the lists show it: the user's short date and, in UTC, "%H:%M:%S" and "z"; else the user's own time
// format. "-" for a value that is no date.
std::string DateTimeText(std::int64_t seconds, bool utc);

}  // namespace carvello
