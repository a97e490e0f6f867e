#include "input/signal_time.h"

#include <array>
#include <cctype>
#include <charconv>
#include <string_view>

#include "support/text.h"

namespace carvello {

namespace {

constexpr std::size_t kYearDigits = 4;
constexpr int kNoon = 12;

// Takes what the forms are made of off the front of a text.
class CTimeText {
 public:
  explicit CTimeText(std::string_view text) : m_text(text) {}

  bool IsAtEnd() const { return m_text.empty(); }
  void SkipBlanks() { m_text.remove_prefix(std::min(m_text.find_first_not_of(' '), m_text.size())); }

  // Digits and how many there are; none leaves `digits` 0.
  int Number(std::size_t& digits) {
    int number = 0;
    digits = std::min(m_text.find_first_not_of("0123456789"), m_text.size());
    std::from_chars(m_text.data(), m_text.data() + digits, number);
    m_text.remove_prefix(digits);
    return number;
  }
  bool Number(int& number) {
    std::size_t digits = 0;
    number = Number(digits);
    return digits > 0;
  }
  // One of the characters; 0 when another stands here.
  char OneOf(std::string_view characters) {
    if (m_text.empty() || characters.find(m_text.front()) == std::string_view::npos) return 0;
    const char taken = m_text.front();
    m_text.remove_prefix(1);
    return taken;
  }
  // Letters, in lower case.
  std::string Word() {
    std::size_t length = 0;
    while (length < m_text.size() && std::isalpha(static_cast<unsigned char>(m_text[length])) != 0) ++length;
    std::string word = ToLowerAscii(m_text.substr(0, length));
    m_text.remove_prefix(length);
    return word;
  }

 private:
  std::string_view m_text;
};

// By its English name or the first three letters of it.
bool Month(const std::string& word, int& month) {
  constexpr std::array<std::string_view, 12> kMonths = {"january",   "february", "march",    "april",
                                                        "may",       "june",     "july",     "august",
                                                        "september", "october",  "november", "december"};
  for (std::size_t i = 0; i < kMonths.size(); ++i) {
    if (word != kMonths[i] && word != kMonths[i].substr(0, 3)) continue;
    month = static_cast<int>(i) + 1;
    return true;
  }
  return false;
}

bool TakeDate(CTimeText& text, SDateFields& date) {
  constexpr std::string_view kBetween = " -,";
  std::size_t digits = 0;
  const int first = text.Number(digits);
  if (digits == 0) {
    // April 15, 2023
    if (!Month(text.Word(), date.nMonth) || text.OneOf(kBetween) == 0 || !text.Number(date.nDay)) return false;
    if (text.OneOf(kBetween) == 0) return false;
    text.SkipBlanks();
    return text.Number(date.nYear);
  }
  const char separator = text.OneOf("-/. ");
  if (separator == 0) return false;
  int second = 0;
  if (!text.Number(second)) {
    // 15 April 2023
    date.nDay = first;
    return Month(text.Word(), date.nMonth) && text.OneOf(kBetween) != 0 && text.Number(date.nYear);
  }
  if (separator == ' ' || text.OneOf(std::string_view(&separator, 1)) == 0) return false;
  std::size_t lastDigits = 0;
  const int last = text.Number(lastDigits);
  if (digits >= kYearDigits && lastDigits > 0) {
    date.nYear = first;
    date.nDay = last;
  } else if (separator == '.' && lastDigits >= kYearDigits) {
    date.nYear = last;
    date.nDay = first;
  } else {
    return false;
  }
  date.nMonth = second;
  return true;
}

bool TakeTime(CTimeText& text, SDateFields& date) {
  if (!text.Number(date.nHour) || text.OneOf(":") == 0 || !text.Number(date.nMinute)) return false;
  if (text.OneOf(":") != 0 && !text.Number(date.nSecond)) return false;
  int fraction = 0;
  if (text.OneOf(".") != 0) text.Number(fraction);
  text.SkipBlanks();
  const std::string half = text.Word();
  if (half == "am" || half == "pm") {
    // 13 PM stays what it cannot be.
    if (date.nHour < 1 || date.nHour > kNoon) return false;
    date.nHour = date.nHour % kNoon + (half == "pm" ? kNoon : 0);
  } else if (!half.empty() && half != "z") {
    return false;
  }
  return true;
}

}  // namespace

std::optional<SDateFields> ParseSignalTime(const std::string& text) {
  const std::string trimmed = Trim(text);
  CTimeText rest(trimmed);
  SDateFields date;
  if (!TakeDate(rest, date)) return std::nullopt;
  rest.OneOf("Tt");
  rest.OneOf("Zz");
  rest.SkipBlanks();
  if (!rest.IsAtEnd() && !TakeTime(rest, date)) return std::nullopt;
  return rest.IsAtEnd() ? std::optional(date) : std::nullopt;
}

}  // namespace carvello
