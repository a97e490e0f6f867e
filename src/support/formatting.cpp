#include "support/formatting.h"

#include <algorithm>
#include <cmath>
#include <ctime>

#include "support/hresult.h"
#include "support/platform.h"
#include "support/system_time.h"
#include "support/text.h"

namespace carvello {

namespace {

constexpr unsigned kKilo = 1'000;
constexpr unsigned kMega = 1'000'000;
constexpr std::size_t kLongestErrorText = 511;  // characters, as UTF-16 counts them

std::string CutToCharacters(const std::string& text, std::size_t characters) {
  std::u16string wide = Utf8ToUtf16(text);
  if (wide.size() <= characters) return text;
  // A pair that the cut would break goes as a whole.
  if (wide[characters] >= 0xDC00 && wide[characters] <= 0xDFFF) --characters;
  wide.resize(characters);
  return Utf16ToUtf8(wide);
}

}  // namespace

std::string FormatFrequency(std::uint32_t frequency) {
  if (frequency < kKilo) return Format("%u Hz", frequency);
  if (frequency < kMega) {
    if (frequency % kKilo == 0) return Format("%u kHz", frequency / kKilo);
    return Format("%u.%03u kHz", frequency / kKilo, frequency % kKilo);
  }
  if (frequency % kMega == 0) return Format("%u MHz", frequency / kMega);
  if (frequency % kKilo == 0) return Format("%u.%03u MHz", frequency / kMega, frequency / kKilo % kKilo);
  return Format("%u.%06u MHz", frequency / kMega, frequency % kMega);
}

std::string FormatFrequency64(std::int64_t frequency) {
  // Negated as an unsigned number, which the smallest value of all survives too.
  const bool negative = frequency < 0;
  const auto bits = static_cast<unsigned long long>(frequency);
  const unsigned long long absolute = negative ? 0 - bits : bits;
  const auto belowMega = static_cast<unsigned>(absolute % kMega);
  std::string text;
  if (absolute < kKilo) {
    text = Format("%llu Hz", absolute);
  } else if (absolute < kMega) {
    text = belowMega % kKilo == 0 ? Format("%llu kHz", absolute / kKilo)
                                  : Format("%llu.%03u kHz", absolute / kKilo, belowMega % kKilo);
  } else {
    text = belowMega % kKilo == 0 ? Format("%llu.%03u MHz", absolute / kMega, belowMega / kKilo)
                                  : Format("%llu.%06u MHz", absolute / kMega, belowMega);
  }
  return negative ? "-" + text : text;
}

std::string GroupDigits(std::int64_t value) {
  std::string text = Format("%lld", static_cast<long long>(value));
  const std::size_t firstDigit = value < 0 ? 1 : 0;
  for (std::size_t end = text.size(); end > firstDigit + 3; end -= 3) text.insert(end - 3, 1, '.');
  return text;
}

std::string CountOf(std::size_t count, const char* thing) {
  return Format(count == 1 ? "%zu %s" : "%zu %ss", count, thing);
}

std::string FormatDuration(double seconds) {
  const long long whole = std::llround(std::clamp(seconds, 0.0, 1e15));
  if (whole < 3600) return Format("%lld:%02lld", whole / 60, whole % 60);
  return Format("%lld:%02lld:%02lld", whole / 3600, whole / 60 % 60, whole % 60);
}

std::string SystemErrorText(std::uint32_t code) {
  std::optional<std::string> text = platform::ErrorText(code);
  if (!text) return Format("Unknown error %u", code);
  std::string line = *text;
  if (platform::MeansHeldOpen(code)) line = TrimRight(line) + " The device is held open by another program.";
  return CutToCharacters(line, kLongestErrorText);
}

std::string SystemErrorText() {
  return SystemErrorText(platform::LastError());
}

std::string FormatUtcDateTime(std::int64_t seconds) {
  std::tm local{};
  if (!platform::LocalTime(seconds, local)) {
    ThrowHResult(kInvalidArgument, Format("The time value %lld has no calendar date", static_cast<long long>(seconds)));
  }
  return Format("%s %sz", platform::ShortDate(local).c_str(), FormatUtc("%H:%M:%S", seconds).c_str());
}

}  // namespace carvello
