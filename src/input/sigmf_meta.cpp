#include "input/sigmf_meta.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <nlohmann/json.hpp>

#include "support/text.h"

namespace carvello {

namespace {

using Json = nlohmann::json;

constexpr std::size_t kDeepest = 64;
constexpr std::size_t kMostItems = 1'000'000;  // captures or annotations
constexpr std::size_t kLongestReason = 300;
constexpr double kLargestWhole = 9.2e18;

// Extensions that describe and change nothing of how samples are read.
constexpr std::array<std::string_view, 4> kKnownExtensions = {"antenna", "capture_details", "carvello", "signal"};

// A value of JSON that holds no others.
struct SScalar {
  std::string strText{};  // as it stands there, or the content of a text
  bool bText = false;
  std::optional<double> number{};
  std::optional<std::int64_t> whole{};
  std::optional<bool> truth{};
};

// Tells every value with the names that lead to it, as the parser comes upon it: nothing else is held in memory, and
// nothing has to be taken down.
class CJsonWalk : public nlohmann::json_sax<Json> {
 public:
  const std::string& Problem() const { return m_strProblem; }

  bool null() override { return Value({.strText = "null"}); }
  bool boolean(bool value) override { return Value({.strText = value ? "true" : "false", .truth = value}); }
  bool number_integer(number_integer_t value) override {
    return Value({.strText = std::to_string(value), .number = static_cast<double>(value), .whole = value});
  }
  bool number_unsigned(number_unsigned_t value) override {
    SScalar scalar{.strText = std::to_string(value), .number = static_cast<double>(value)};
    if (value <= INT64_MAX) scalar.whole = static_cast<std::int64_t>(value);
    return Value(std::move(scalar));
  }
  bool number_float(number_float_t value, const string_t& text) override {
    SScalar scalar{.strText = text, .number = value};
    if (std::abs(value) < kLargestWhole && value == std::floor(value)) scalar.whole = static_cast<std::int64_t>(value);
    return Value(std::move(scalar));
  }
  bool string(string_t& value) override { return Value({.strText = std::move(value), .bText = true}); }
  bool binary(binary_t& /*value*/) override { return false; }
  bool start_object(std::size_t /*elements*/) override { return Enter(false); }
  bool start_array(std::size_t /*elements*/) override { return Enter(true); }
  bool end_object() override { return Leave(); }
  bool end_array() override { return Leave(); }
  bool key(string_t& key) override {
    m_levels.back().strKey = std::move(key);
    return true;
  }
  bool parse_error(std::size_t /*position*/, const std::string& /*token*/, const Json::exception& failure) override {
    return Refuse("no JSON: " + Printable(CutUtf8(failure.what(), kLongestReason)));
  }

 protected:
  struct SLevel {
    bool bArray = false;
    std::size_t nItems = 0;  // of an array
    std::string strKey;      // of an object, the last one
  };

  // Of a value: Levels() tells where it stands. False ends the reading.
  virtual bool Scalar(SScalar value) = 0;
  // An object or array begins, or ended; the levels above it are told.
  virtual bool Begins(bool /*isArray*/) { return true; }

  const std::vector<SLevel>& Levels() const { return m_levels; }
  bool Refuse(const std::string& problem) {
    if (m_strProblem.empty()) m_strProblem = problem;
    return false;
  }

 private:
  bool Count() {
    if (m_levels.empty() || !m_levels.back().bArray) return true;
    return ++m_levels.back().nItems <= kMostItems || Refuse("a list of more than a million values");
  }
  bool Value(SScalar value) {
    if (m_levels.empty()) return Refuse("no JSON object");
    return Count() && Scalar(std::move(value));
  }
  bool Enter(bool array) {
    if (m_levels.size() >= kDeepest) return Refuse("values nested more than 64 deep");
    if (!Count() || !Begins(array)) return false;
    m_levels.push_back({.bArray = array, .nItems = 0, .strKey = {}});
    return true;
  }
  bool Leave() {
    m_levels.pop_back();
    return true;
  }

  std::vector<SLevel> m_levels;
  std::string m_strProblem;
};

class CMetaWalk : public CJsonWalk {
 public:
  explicit CMetaWalk(SSigMfMeta& meta) : m_meta(meta) {}

  bool HasGlobal() const { return m_bGlobal; }

 private:
  static bool IsListOfObjects(const std::string& top) { return top == "captures" || top == "annotations"; }
  bool RefuseItem(const std::string& top) { return Refuse(top + " holds what is no object"); }

  bool Begins(bool isArray) override {
    const auto& levels = Levels();
    if (levels.empty()) return !isArray || Refuse("no JSON object");
    const std::string& top = levels[0].strKey;
    if (levels.size() == 1) {
      if (top == "global") m_bGlobal = !isArray;
      if (top == "global" ? isArray : IsListOfObjects(top) && !isArray)
        return Refuse(Printable(top) + " is of the wrong kind");
      // Of keys that come twice the last counts.
      if (top == "captures") m_meta.captures.clear();
      if (top == "annotations") m_meta.annotations.clear();
    } else if (levels.size() == 2 && levels[1].bArray) {
      if (isArray && IsListOfObjects(top)) return RefuseItem(top);
      if (top == "captures") m_meta.captures.emplace_back();
      if (top == "annotations") m_meta.annotations.emplace_back();
    } else if (levels.size() == 3 && top == "global" && levels[1].strKey == "core:extensions") {
      m_strExtension.clear();
      m_bRequired = false;
    }
    return true;
  }

  bool Scalar(SScalar value) override {
    const auto& levels = Levels();
    const std::string& top = levels[0].strKey;
    if (levels.size() == 1) {
      return !(top == "global" || IsListOfObjects(top)) || Refuse(Printable(top) + " is of the wrong kind");
    }
    if (top == "global") return Global(std::move(value));
    if (levels.size() == 2 && IsListOfObjects(top)) return RefuseItem(top);
    if (levels.size() != 3) return true;
    if (top == "captures") return Capture(value);
    if (top == "annotations") return Annotation(value);
    return true;
  }

  bool Global(SScalar value) {
    const auto& levels = Levels();
    std::string name;
    for (std::size_t i = 1; i < levels.size(); ++i) {
      if (!name.empty()) name += '.';
      name += levels[i].bArray ? std::to_string(levels[i].nItems - 1) : levels[i].strKey;
    }
    if (name.starts_with("sdrangel:")) m_meta.bSdrangel = true;
    const bool taken = levels.size() == 2 ? Field(name, value) : Extension(value);
    m_meta.global.names.push_back(std::move(name));
    m_meta.global.values.push_back(std::move(value.strText));
    return taken;
  }

  bool Field(const std::string& name, const SScalar& value) {
    if (name == "core:datatype") return Text(value, m_meta.strDataType);
    if (name == "core:sample_rate") return Number(value, m_meta.sampleRate);
    if (name == "core:offset") return Count(value, m_meta.nOffset);
    if (name == "core:num_channels") return Count(value, m_meta.nChannels);
    if (name == "core:trailing_bytes") return Count(value, m_meta.nTrailingBytes);
    if (name == "core:dataset") return Text(value, m_meta.strDataset);
    if (name == "core:sha512") return Text(value, m_meta.strSha512);
    if (name == "core:recorder") return Text(value, m_meta.strRecorder);
    if (name == "carvello:full_scale") return Number(value, m_meta.fullScale);
    if (name == "carvello:sample_count") m_meta.sampleCount = value.whole;
    if (name == "core:metadata_only") m_meta.bMetadataOnly = value.truth.value_or(false);
    return true;
  }

  // Name and need of an extension come in any order.
  bool Extension(const SScalar& value) {
    const auto& levels = Levels();
    if (levels.size() != 4 || levels[1].strKey != "core:extensions") return true;
    if (levels[3].strKey == "name") m_strExtension = value.strText;
    if (levels[3].strKey == "optional") m_bRequired = value.truth == false;
    const bool known =
        std::find(kKnownExtensions.begin(), kKnownExtensions.end(), m_strExtension) != kKnownExtensions.end();
    if (m_bRequired && !known && !m_strExtension.empty()) {
      m_meta.required.push_back(m_strExtension);
      m_bRequired = false;
    }
    return true;
  }

  bool Capture(const SScalar& value) {
    SSigMfCapture& capture = m_meta.captures.back();
    const std::string& name = Levels()[2].strKey;
    if (name == "core:sample_start") return Count(value, capture.nSampleStart);
    if (name == "core:header_bytes") return Count(value, capture.nHeaderBytes);
    if (name == "core:datetime") return Text(value, capture.strDateTime);
    if (name == "core:frequency") return Number(value, capture.frequency);
    if (name == "sdrangel:sample_rate") return Number(value, capture.sampleRate);
    if (name != "core:global_index") return true;
    std::int64_t index = 0;
    if (!Count(value, index)) return false;
    capture.globalIndex = index;
    return true;
  }

  bool Annotation(const SScalar& value) {
    SSigMfAnnotation& annotation = m_meta.annotations.back();
    const std::string& name = Levels()[2].strKey;
    if (name == "core:sample_start") return Count(value, annotation.nSampleStart);
    if (name == "core:freq_lower_edge") return Number(value, annotation.lowerEdge);
    if (name == "core:freq_upper_edge") return Number(value, annotation.upperEdge);
    if (name == "core:label") return Text(value, annotation.strLabel);
    if (name == "core:comment") return Text(value, annotation.strComment);
    if (name != "core:sample_count" || value.strText == "null") return true;
    std::int64_t count = 0;
    if (!Count(value, count)) return false;
    annotation.sampleCount = count;
    return true;
  }

  bool Text(const SScalar& value, std::string& text) {
    if (!value.bText) return WrongKind("a text");
    text = value.strText;
    return true;
  }
  bool Number(const SScalar& value, std::optional<double>& number) {
    if (!value.number || !std::isfinite(*value.number)) return WrongKind("a number");
    number = value.number;
    return true;
  }
  bool Count(const SScalar& value, std::int64_t& count) {
    if (!value.whole || *value.whole < 0) return WrongKind("a whole number from 0 up");
    count = *value.whole;
    return true;
  }
  bool WrongKind(const char* wanted) {
    return Refuse(Format("%s is not %s", Printable(Levels().back().strKey).c_str(), wanted));
  }

  SSigMfMeta& m_meta;
  bool m_bGlobal = false;
  std::string m_strExtension;
  bool m_bRequired = false;
};

// Streams are lists of a name and a hash, or objects that have both.
class CCollectionWalk : public CJsonWalk {
 public:
  explicit CCollectionWalk(SigMfStreams& streams) : m_streams(streams) {}

 private:
  bool IsStream() const {
    const auto& levels = Levels();
    return levels.size() >= 3 && levels[0].strKey == "collection" && levels[1].strKey == "core:streams" &&
           levels[2].bArray;
  }
  bool Begins(bool isArray) override {
    if (Levels().empty()) return !isArray || Refuse("no JSON object");
    if (IsStream() && Levels().size() == 3) m_streams.emplace_back();
    return true;
  }
  bool Scalar(SScalar value) override {
    if (!IsStream() || Levels().size() != 4) return true;
    const auto& level = Levels()[3];
    if (level.bArray ? level.nItems == 1 : level.strKey == "name")
      m_streams.back().first = std::move(value.strText);
    else if (level.bArray ? level.nItems == 2 : level.strKey == "hash")
      m_streams.back().second = std::move(value.strText);
    return true;
  }

  SigMfStreams& m_streams;
};

// Takes so many digits from the front.
std::optional<int> TakeDigits(std::string_view& text, std::size_t count) {
  if (text.size() < count) return std::nullopt;
  int value = 0;
  for (std::size_t i = 0; i < count; ++i) {
    if (text[i] < '0' || text[i] > '9') return std::nullopt;
    value = value * 10 + (text[i] - '0');
  }
  text.remove_prefix(count);
  return value;
}

bool TakeOneOf(std::string_view& text, std::string_view characters) {
  if (text.empty() || characters.find(text.front()) == std::string_view::npos) return false;
  text.remove_prefix(1);
  return true;
}

// Days from 1970-01-01 in the Gregorian calendar.
std::int64_t DaysOf(int year, int month, int day) {
  const std::int64_t y = month <= 2 ? year - 1 : year;
  const std::int64_t era = (y >= 0 ? y : y - 399) / 400;
  const std::int64_t yearOfEra = y - era * 400;
  const std::int64_t dayOfYear = (153 * (month + (month > 2 ? -3 : 9)) + 2) / 5 + day - 1;
  return era * 146'097 + yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear - 719'468;
}

int DaysInMonth(int year, int month) {
  const int next = month == 12 ? 1 : month + 1;
  return static_cast<int>(DaysOf(month == 12 ? year + 1 : year, next, 1) - DaysOf(year, month, 1));
}

// Seconds that a zone's clocks are ahead of UTC; nothing for what is no zone.
std::optional<std::int64_t> ParseZone(std::string_view text) {
  if (text.empty() || text == "Z" || text == "z") return 0;
  const bool behind = text.front() == '-';
  if (!TakeOneOf(text, "+-")) return std::nullopt;
  const auto hours = TakeDigits(text, 2);
  TakeOneOf(text, ":");
  const auto minutes = text.empty() ? std::optional(0) : TakeDigits(text, 2);
  if (!hours || !minutes || *hours > 23 || *minutes > 59 || !text.empty()) return std::nullopt;
  const std::int64_t ahead = *hours * 3600 + *minutes * 60;
  return behind ? -ahead : ahead;
}

}  // namespace

std::optional<SSigMfTime> ParseSigMfTime(std::string_view text) {
  const auto year = TakeDigits(text, 4);
  TakeOneOf(text, "-");
  const auto month = TakeDigits(text, 2);
  TakeOneOf(text, "-");
  const auto day = TakeDigits(text, 2);
  if (!year || !month || !day || !TakeOneOf(text, "Tt ")) return std::nullopt;
  const auto hour = TakeDigits(text, 2);
  TakeOneOf(text, ":");
  const auto minute = TakeDigits(text, 2);
  TakeOneOf(text, ":");
  const auto second = TakeDigits(text, 2);
  if (!hour || !minute || !second || *month < 1 || *month > 12 || *day < 1 || *day > DaysInMonth(*year, *month) ||
      *hour > 23 || *minute > 59 || *second > 60) {  // 60 in a leap second
    return std::nullopt;
  }
  SSigMfTime time;
  if (TakeOneOf(text, ".,")) {
    if (text.empty() || text.front() < '0' || text.front() > '9') return std::nullopt;
    std::uint32_t weight = 100'000'000;
    for (; !text.empty() && text.front() >= '0' && text.front() <= '9'; text.remove_prefix(1)) {
      time.nNanoseconds += weight * static_cast<std::uint32_t>(text.front() - '0');
      weight /= 10;
    }
  }
  const auto ahead = ParseZone(text);
  if (!ahead) return std::nullopt;
  const std::int64_t minutes = std::int64_t{*hour} * 60 + *minute;
  time.nSeconds = DaysOf(*year, *month, *day) * 86'400 + minutes * 60 + *second - *ahead;
  return time;
}

bool ParseSigMfMeta(std::string_view text, SSigMfMeta& meta, std::string& error) {
  meta = SSigMfMeta();
  CMetaWalk walk(meta);
  if (!Json::sax_parse(text, &walk)) {
    error = walk.Problem().empty() ? "no JSON" : walk.Problem();
    return false;
  }
  if (!walk.HasGlobal() || meta.strDataType.empty()) {
    error = walk.HasGlobal() ? "core:datatype is missing" : "global is missing";
    return false;
  }
  return true;
}

bool ParseSigMfCollection(std::string_view text, SigMfStreams& streams, std::string& error) {
  streams.clear();
  CCollectionWalk walk(streams);
  if (!Json::sax_parse(text, &walk)) {
    error = walk.Problem().empty() ? "no JSON" : walk.Problem();
    return false;
  }
  if (!streams.empty()) return true;
  error = "the collection names no recordings";
  return false;
}

}  // namespace carvello
