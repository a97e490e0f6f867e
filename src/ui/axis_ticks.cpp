#include "ui/axis_ticks.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <ctime>

#include "support/platform.h"
#include "support/text.h"

namespace carvello {

namespace {

constexpr double kDay = 86'400.0;
constexpr int kMostDecimals = 9;
constexpr double kRounding = 1.0 - 1e-9;  // a third of 0.3 is 0.1
constexpr double kEdge = 1e-6;            // of a part: a mark this close to the end of a span is in it

// How far apart the texts stand, and into how many parts the way from one to the next is cut.
struct SStep {
  double dStep;
  int nParts;
};

// The nearest number to it, which the C library's pow() does not give everywhere.
double PowerOfTen(int exponent) {
  double power = 1.0;
  for (int i = 0; i < std::abs(exponent); ++i) power *= 10.0;
  return exponent < 0 ? 1.0 / power : power;
}

// 1, 2 or 5 of a power of ten.
SStep RoundStep(double length, int most) {
  const double least = length / std::max(most, 1) * kRounding;
  const double power = PowerOfTen(static_cast<int>(std::floor(std::log10(least))));
  if (power >= least) return {power, 5};
  if (2.0 * power >= least) return {2.0 * power, 4};
  if (5.0 * power >= least) return {5.0 * power, 5};
  return {10.0 * power, 5};
}

SStep ClockStep(double length, int most) {
  constexpr std::array<SStep, 19> kSteps = {{{1, 5},
                                             {2, 4},
                                             {5, 5},
                                             {10, 5},
                                             {15, 3},
                                             {30, 3},
                                             {60, 6},
                                             {120, 4},
                                             {300, 5},
                                             {600, 5},
                                             {900, 3},
                                             {1800, 3},
                                             {3600, 6},
                                             {7200, 4},
                                             {10800, 3},
                                             {21600, 6},
                                             {43200, 6},
                                             {86400, 6},
                                             {172800, 4}}};
  const double least = length / std::max(most, 1) * kRounding;
  if (least <= 0.5) return RoundStep(length, most);
  for (const SStep& step : kSteps) {
    if (step.dStep >= least) return step;
  }
  const SStep days = RoundStep(length / kDay, most);
  return {days.dStep * kDay, days.nParts};
}

// `text` tells of a number of parts from 0 on. Numbers are whole multiples of a part, so that no error adds up.
template <class TText>
std::vector<STick> Ticks(const SSpan& span, const SStep& step, double shift, const TText& text) {
  std::vector<STick> ticks;
  const double part = step.dStep / step.nParts;
  const auto first = static_cast<std::int64_t>(std::ceil((span.dFrom + shift) / part - kEdge));
  const auto last = static_cast<std::int64_t>(std::floor((span.dTo + shift) / part + kEdge));
  for (std::int64_t i = first; i <= last; ++i) {
    const double at = static_cast<double>(i) * part - shift;
    ticks.push_back({at, i % step.nParts == 0 ? text(at) : std::string()});
  }
  return ticks;
}

bool Breakdown(std::int64_t moment, bool utc, std::tm& fields) {
  return utc ? platform::UtcTime(moment, fields) : platform::LocalTime(moment, fields);
}

int Decimals(double step) {
  if (step <= 0.0) return kMostDecimals;
  return std::clamp(static_cast<int>(std::ceil(-std::log10(step) - 1e-9)), 0, kMostDecimals);
}

// Whole seconds, and the fraction in units of the last decimal, rounded together.
struct SMoment {
  std::int64_t nSeconds;
  std::int64_t nFraction;
};

SMoment Rounded(double seconds, int decimals) {
  const double unit = PowerOfTen(decimals);
  const double whole = std::floor(seconds);
  const auto fraction = static_cast<std::int64_t>(std::llround((seconds - whole) * unit));
  const auto carry = fraction >= static_cast<std::int64_t>(unit);
  return {static_cast<std::int64_t>(whole) + (carry ? 1 : 0), carry ? 0 : fraction};
}

std::string Fraction(const SMoment& moment, int decimals) {
  return decimals == 0 ? std::string() : Format(".%0*lld", decimals, static_cast<long long>(moment.nFraction));
}

std::string ClockText(double seconds, std::int64_t start, bool utc, double step) {
  const int decimals = step < 1.0 ? Decimals(step) : 0;
  const SMoment moment = Rounded(seconds, decimals);
  std::tm fields{};
  if (!Breakdown(start + moment.nSeconds, utc, fields)) return "-";
  if (step >= kDay) return platform::ShortDate(fields);
  const bool midnight = fields.tm_hour == 0 && fields.tm_min == 0 && fields.tm_sec == 0;
  if (step >= 60.0 && midnight) return platform::ShortDate(fields);
  if (step >= 60.0) return platform::FormatTime("%H:%M", fields);
  // Of what is shorter than a millisecond, the hours and minutes are the same all over.
  return platform::FormatTime(decimals > 3 ? ":%S" : "%H:%M:%S", fields) + Fraction(moment, decimals);
}

// How far the clock shown is ahead of UTC when the recording starts.
double ClockShift(std::int64_t start, bool utc) {
  std::tm fields{};
  if (!Breakdown(start, utc, fields)) return 0.0;
  const std::int64_t sinceMidnight = fields.tm_hour * 3600 + fields.tm_min * 60 + fields.tm_sec;
  return static_cast<double>(sinceMidnight);
}

std::string Trimmed(std::string number) {
  if (number.find('.') == std::string::npos) return number;
  number.erase(number.find_last_not_of('0') + 1);
  if (number.back() == '.') number.pop_back();
  return number;
}

}  // namespace

int MegahertzDecimals(double step) {
  return Decimals(step / 1e6);
}

std::vector<STick> FrequencyTicks(const SSpan& hertz, int most) {
  if (hertz.Length() <= 0.0) return {};
  const SStep step = RoundStep(hertz.Length(), most);
  const int decimals = MegahertzDecimals(step.dStep);
  return Ticks(hertz, step, 0.0, [decimals](double at) {
    // A number that rounds to zero has no sign.
    return Format("%.*f", decimals, std::abs(at) < 1e-6 ? 0.0 : at / 1e6);
  });
}

std::vector<STick> LevelTicks(const SSpan& decibels, int most) {
  if (decibels.Length() <= 0.0) return {};
  SStep step = RoundStep(decibels.Length(), most);
  const int decimals = Decimals(step.dStep);
  return Ticks(decibels, step, 0.0, [decimals](double at) {
    std::string text = Format("%.*f", decimals, std::abs(at) < 1e-6 ? 0.0 : at);
    if (text[0] == '-') text.replace(0, 1, "\xE2\x88\x92");
    return text;
  });
}

std::vector<STick> TimeTicks(const SSpan& seconds, std::int64_t start, bool utc, int most) {
  if (seconds.Length() <= 0.0) return {};
  const SStep step = ClockStep(seconds.Length(), most);
  // Below a second the marks stand on the recording's own seconds, which are whole ones of the clock.
  const double shift = step.dStep > 1.0 ? ClockShift(start, utc) : 0.0;
  return Ticks(seconds, step, shift, [&](double at) { return ClockText(at, start, utc, step.dStep); });
}

std::string FrequencyReading(double hertz, double step) {
  return Format("%.*f MHz", std::clamp(MegahertzDecimals(step), 3, 7), hertz / 1e6);
}

std::string TimeReading(double seconds, std::int64_t start, bool utc, double step) {
  const int decimals = std::min(Decimals(step), 6);
  const SMoment moment = Rounded(seconds, decimals);
  std::tm fields{};
  if (!Breakdown(start + moment.nSeconds, utc, fields)) return "-";
  return platform::ShortDate(fields) + " " + platform::FormatTime("%H:%M:%S", fields) + Fraction(moment, decimals) +
         (utc ? "z" : "");
}

std::string LengthText(double seconds) {
  if (seconds >= 86'400.0) {
    const auto hours = static_cast<long long>(std::llround(seconds / 3600.0));
    return Format("%lld d %02lld h", hours / 24, hours % 24);
  }
  if (seconds >= 3600.0) {
    const auto minutes = static_cast<long long>(std::llround(seconds / 60.0));
    return Format("%lld h %02lld min", minutes / 60, minutes % 60);
  }
  if (seconds >= 60.0) {
    const auto whole = static_cast<long long>(std::llround(seconds));
    return Format("%lld min %02lld s", whole / 60, whole % 60);
  }
  if (seconds >= 1.0) return Trimmed(Format("%.1f", seconds)) + " s";
  if (seconds >= 1e-3) return Trimmed(Format("%.1f", seconds * 1e3)) + " ms";
  return Trimmed(Format("%.1f", seconds * 1e6)) + " \xC2\xB5s";
}

std::string WidthText(double hertz) {
  if (hertz >= 1e6) return Trimmed(Format("%.3f", hertz / 1e6)) + " MHz";
  if (hertz >= 1e3) return Trimmed(Format("%.3f", hertz / 1e3)) + " kHz";
  return Trimmed(Format("%.2f", hertz)) + " Hz";
}

}  // namespace carvello
