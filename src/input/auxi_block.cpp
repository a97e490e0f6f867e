#include "input/auxi_block.h"

#include <cstring>
#include <string>

#include "input/calendar_time.h"
#include "input/source_recognition.h"

namespace carvello {

namespace {

constexpr std::size_t kStart = 0;
constexpr std::size_t kStop = 16;
// Of the shortest block, which has no stop time.
constexpr std::size_t kShortCentreFrequency = 16;
constexpr std::size_t kShortADFrequency = 20;
// Of all others.
constexpr std::size_t kCentreFrequency = 32;
constexpr std::size_t kADFrequency = 36;
constexpr std::size_t kIFFrequency = 40;
constexpr std::size_t kIQOffset = 48;
constexpr std::size_t kSpare = 52;

constexpr std::uint32_t kClockOf164 = 66'666'667;  // Hz, whatever the block says

template <class Value>
Value At(std::string_view auxi, std::size_t offset) {
  Value value{};
  std::memcpy(&value, auxi.data() + offset, sizeof(value));
  return value;
}

std::uint32_t Number(std::string_view auxi, std::size_t offset) {
  return At<std::uint32_t>(auxi, offset);
}

// Local time to UTC; the milliseconds stay. A time that was never written counts from 1970.
SYSTEMTIME LocalToUtc(const SYSTEMTIME& local, const std::string& where) {
  std::int64_t seconds = 0;
  if (local.wYear >= kFirstWrittenYear) {
    seconds =
        LocalCalendarTime({local.wYear, local.wMonth, local.wDay, local.wHour, local.wMinute, local.wSecond}, where);
  }
  SYSTEMTIME utc = UtcSystemTime(seconds, where);
  utc.wMilliseconds = local.wMilliseconds;
  return utc;
}

// Local time to UTC where the program writes local time. Times that were never written count from 1970.
void TakeTimes(bool local, RecordingSourceInfo& source) {
  source.bNoStart = source.start.wYear < kFirstWrittenYear;
  const bool noStop = source.stop.wYear < kFirstWrittenYear;
  if (source.bNoStart) source.strNote = NeverWritten("start time of the auxi chunk");
  if (local || source.bNoStart) source.start = LocalToUtc(source.start, "start time of the auxi chunk");
  if (local || noStop) source.stop = LocalToUtc(source.stop, "stop time of the auxi chunk");
}

void ReadMinorFrequencies(std::string_view auxi, RecordingSourceInfo& source) {
  source.nIFFrequency = Number(auxi, kIFFrequency);
  source.nIQOffset = Number(auxi, kIQOffset);
  source.nSpare = Number(auxi, kSpare);
}

}  // namespace

bool ReadAuxiBlock(std::string_view auxi, bool elad, RecordingSourceInfo& source) {
  switch (auxi.size()) {
    case 28:
      source.strSourceName = kSourceSpectraVue1;
      break;
    case 44:
      source.strSourceName = kSourceSpectraVue2;
      break;
    case 68:
      source.strSourceName = kSourceSpectraVue234;
      break;
    case 72:
      source.strSourceName = kSourceSpectraVue30;
      break;
    case 164:
      source.strSourceName = elad ? kSourceElad : kSourceWinrad;
      break;
    default:
      return false;
  }
  // The blocks that have a bandwidth do not fill it reliably.
  source.nBandwidth = source.format.nSamplesPerSec;
  source.start = At<SYSTEMTIME>(auxi, kStart);
  if (auxi.size() == 28) {
    source.stop = source.start;
    TakeTimes(false, source);
    source.nCentreFrequency = Number(auxi, kShortCentreFrequency);
    source.nADFrequency = Number(auxi, kShortADFrequency);
    return true;
  }
  source.stop = At<SYSTEMTIME>(auxi, kStop);
  source.nCentreFrequency = Number(auxi, kCentreFrequency);
  source.nADFrequency = auxi.size() == 164 ? kClockOf164 : Number(auxi, kADFrequency);
  if (auxi.size() == 68 || auxi.size() == 72) ReadMinorFrequencies(auxi, source);
  TakeTimes(auxi.size() == 68, source);
  return true;
}

}  // namespace carvello
