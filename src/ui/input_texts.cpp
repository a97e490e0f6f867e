#include "ui/input_texts.h"

#include <algorithm>

#include "support/formatting.h"
#include "support/platform.h"
#include "support/text.h"

namespace carvello {

SInputTexts InputTexts(const CRecordingSet& recording, bool utc) {
  const std::int64_t total = std::max<std::int64_t>(recording.tEnd - recording.tStart, 0);
  SInputTexts texts;
  texts.strCentre = FormatFrequency64(recording.nRadioCenterFreq);
  texts.strBandwidth = FormatFrequency(recording.nSampleRate);
  texts.strSampleSize = Format("%d bit", static_cast<int>(recording.nBitsPerSample));
  texts.strTotalFiles = Format("%d ", static_cast<int>(recording.files.size()));
  texts.strStart = DateTimeText(recording.tStart, utc);
  texts.strFinish = DateTimeText(recording.tEnd, utc);
  texts.strTotal = Format("%dd %02d:%02d:%02d", static_cast<int>(total / 86400), static_cast<int>(total / 3600 % 24),
                          static_cast<int>(total / 60 % 60), static_cast<int>(total % 60));
  texts.strSource = recording.strSourceName;
  return texts;
}

std::string DateTimeText(std::int64_t seconds, bool utc) {
  std::tm fields{};
  if (!(utc ? platform::UtcTime(seconds, fields) : platform::LocalTime(seconds, fields))) return "-";
  const std::string date = platform::ShortDate(fields);
  if (utc) return Format("%s %sz", date.c_str(), platform::FormatTime("%H:%M:%S", fields).c_str());
  return Format("%s %s", date.c_str(), platform::LocaleTime(fields).c_str());
}

}  // namespace carvello
