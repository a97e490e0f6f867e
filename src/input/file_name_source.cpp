#include "input/file_name_source.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <optional>
#include <string_view>
#include <utility>

#include "input/calendar_time.h"
#include "input/format_chunk.h"
#include "input/source_recognition.h"
#include "support/platform.h"
#include "support/text.h"

namespace carvello {

namespace {

constexpr const char* kWhere = "start time in the file's name";
constexpr std::int64_t kMegahertz = 1'000'000;
constexpr std::int64_t kUnknownFrequency = 10'000'000;  // Hz
constexpr std::int64_t kMostBeforeUnit = std::numeric_limits<std::int64_t>::max() / kMegahertz;

constexpr std::string_view kDigits = "0123456789";

// Without what may stand before a number, blanks and a plus sign.
std::string_view FromDigits(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
  if (text.starts_with('+')) text.remove_prefix(1);
  return text;
}

// The digits that the text begins with, behind blanks and a plus sign; 0 when there are none or too many.
std::int64_t WholeNumber(std::string_view text) {
  const std::string_view digits = FromDigits(text);
  std::int64_t number = 0;
  std::from_chars(digits.data(), digits.data() + digits.size(), number);
  return number >= 0 && number <= kMostBeforeUnit ? number : 0;
}

// The same for the `count` characters at a position; they need not all be there.
int Digits(std::string_view text, std::size_t position, std::size_t count) {
  return position < text.size() ? static_cast<int>(WholeNumber(text.substr(position, count))) : 0;
}

// "7.0505" MHz as Hz, exactly; what is below 1 Hz is cut off.
std::int64_t MegahertzToHz(std::string_view text) {
  constexpr std::size_t kFractionDigits = 6;
  const std::string_view number = FromDigits(text);
  const std::int64_t hz = WholeNumber(number) * kMegahertz;
  const std::size_t point = number.find_first_not_of(kDigits);
  if (point == std::string_view::npos || number[point] != '.') return hz;
  std::string fraction(number.substr(point + 1, kFractionDigits));
  fraction.resize(std::min(fraction.find_first_not_of(kDigits), fraction.size()));
  fraction.resize(kFractionDigits, '0');
  return hz + WholeNumber(fraction);
}

double Duration(const RecordingSourceInfo& source) {
  const double bytesPerSecond = BytesPerSecond(source.format);
  return bytesPerSecond > 0 ? static_cast<double>(source.nDataBytes) / bytesPerSecond : 0;
}

// When the file came into being, or now where the file system does not know.
std::int64_t FileTime(const std::string& fileName, std::optional<std::int64_t> created) {
  if (created) return *created;
  const std::optional<platform::FileStatus> status = platform::GetFileStatus(fileName);
  return status ? status->tCreated : CurrentTime();
}

// "_23-04-17_19'45'10." behind the frequency of a Winradio name.
bool HasWinradioDate(std::string_view text) {
  constexpr std::size_t kLength = 19;
  if (text.size() < kLength) return false;
  return text[0] == '_' && text[3] == '-' && text[6] == '-' && text[9] == '_' && text[12] == '\'' && text[15] == '\'' &&
         (text[18] == '.' || text[18] == '-');
}

std::int64_t WinradioStart(std::string_view text) {
  SDateFields date{Digits(text, 1, 2),  Digits(text, 4, 2),  Digits(text, 7, 2),
                   Digits(text, 10, 2), Digits(text, 13, 2), Digits(text, 16, 2)};
  date.nYear += 2000;
  return LocalCalendarTime(date, kWhere);
}

// The NNN of a name that ends in "-^NNN.ddc"; 0 for any other.
std::int64_t ContinuationNumber(std::string_view name) {
  constexpr std::size_t kLength = 9;
  if (name.size() < kLength) return 0;
  const std::string_view end = name.substr(name.size() - kLength);
  const std::string_view digits = end.substr(2, 3);
  if (end.substr(0, 2) != "-^" || digits.find_first_not_of(kDigits) != std::string_view::npos) return 0;
  return WholeNumber(digits);
}

void ReadWinradioName(const std::string& fileName, std::optional<std::int64_t> created, std::string_view name,
                      RecordingSourceInfo& source) {
  source.strSourceName = kSourceWinradio;
  const std::size_t unit = name.find("mhz");
  const bool hasUnit = unit != std::string_view::npos && unit > 0;
  if (hasUnit) {
    const std::string_view before = name.substr(0, unit);
    source.nCentreFrequency = MegahertzToHz(before.substr(before.rfind('-') + 1));
  }
  const std::string_view behind = hasUnit ? name.substr(unit + 3) : std::string_view();
  std::int64_t start = HasWinradioDate(behind) ? WinradioStart(behind) : FileTime(fileName, created);
  const auto seconds = static_cast<std::int64_t>(std::ceil(Duration(source)));
  start += ContinuationNumber(name) * seconds;
  source.start = UtcSystemTime(start, kWhere);
  source.stop = AddSeconds(source.start, static_cast<double>(seconds));
}

// "..._20230415_194510z_7050000hz_iq.wav"
bool ReadSdrSharpName(std::string_view name, RecordingSourceInfo& source) {
  // The longer ones first: the shorter are contained in them.
  constexpr std::array<std::pair<std::string_view, std::int64_t>, 9> kUnits = {{{"mhz_iq", kMegahertz},
                                                                                {"khz_iq", 1000},
                                                                                {"hz_iq", 1},
                                                                                {"mhz_", kMegahertz},
                                                                                {"khz_", 1000},
                                                                                {"hz_", 1},
                                                                                {"mhz", kMegahertz},
                                                                                {"khz", 1000},
                                                                                {"hz", 1}}};
  constexpr std::size_t kFrequency = 17;
  for (const auto& [unit, multiplier] : kUnits) {
    const std::size_t position = name.find(unit);
    if (position == std::string_view::npos || position == 0) continue;
    std::size_t underscore = position;
    for (int i = 0; i < 3; ++i) {
      underscore = underscore == 0 ? std::string_view::npos : name.rfind('_', underscore - 1);
      if (underscore == std::string_view::npos) return false;
    }
    const std::string_view field = name.substr(underscore + 1, position - underscore - 1);
    const SDateFields date{Digits(field, 0, 4), Digits(field, 4, 2),  Digits(field, 6, 2),
                           Digits(field, 9, 2), Digits(field, 11, 2), Digits(field, 13, 2)};
    source.strSourceName = kSourceSdrSharp;
    source.nCentreFrequency = field.size() > kFrequency ? WholeNumber(field.substr(kFrequency)) * multiplier : 0;
    // The names are in UTC (the "z" behind the time), so no zone comes in.
    source.bNoStart = date.nYear < kFirstWrittenYear;
    if (source.bNoStart) source.strNote = NeverWritten(kWhere);
    const std::int64_t start = source.bNoStart ? 0 : UtcCalendarTime(date, kWhere);
    source.start = UtcSystemTime(start, kWhere);
    source.stop = AddSeconds(source.start, std::ceil(Duration(source)));
    return true;
  }
  return false;
}

std::int64_t FrequencyAtEnd(std::string_view name) {
  constexpr std::array<std::pair<std::string_view, std::int64_t>, 3> kEndings = {
      {{"khz.wav", 1000}, {"mhz.wav", kMegahertz}, {"hz.wav", 1}}};
  for (const auto& [ending, multiplier] : kEndings) {
    if (!name.ends_with(ending)) continue;
    const std::size_t underscore = name.rfind('_');
    if (underscore == std::string_view::npos || underscore == 0) break;
    return WholeNumber(name.substr(underscore + 1)) * multiplier;
  }
  return kUnknownFrequency;
}

bool ReadUnknownFile(const std::string& fileName, std::optional<std::int64_t> created, RecordingSourceInfo& source) {
  if (source.nDataBytes < 1 || source.format.nSamplesPerSec == 0 || source.format.nChannels != 2) return false;
  source.strSourceName = kSourceUnknown;
  source.nCentreFrequency = FrequencyAtEnd(platform::NameOf(fileName));
  source.start = UtcSystemTime(FileTime(fileName, created), "creation time of the file");
  source.stop = AddSeconds(source.start, std::floor(Duration(source)));
  return true;
}

}  // namespace

bool ReadFileName(const std::string& fileName, std::optional<std::int64_t> created, RecordingSourceInfo& source) {
  source.nBandwidth = source.format.nSamplesPerSec;
  const std::string name = ToLowerAscii(platform::NameOf(fileName));
  if (name.ends_with(".ddc")) {
    ReadWinradioName(fileName, created, name, source);
    return true;
  }
  if (name.starts_with("sdrsharp_") || name.starts_with("airspy_")) return ReadSdrSharpName(name, source);
  return ReadUnknownFile(fileName, created, source);
}

}  // namespace carvello
