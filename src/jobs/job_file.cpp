#include "jobs/job_file.h"

#include <algorithm>
#include <array>
#include <nlohmann/json.hpp>
#include <optional>
#include <utility>

#include "jobs/fact_texts.h"
#include "support/file.h"
#include "support/formatting.h"
#include "support/text.h"

namespace carvello {
namespace {

using Json = nlohmann::json;

constexpr std::int64_t kLargestFile = std::int64_t{64} << 20;
constexpr std::size_t kLongestToken = 65'536;
constexpr std::size_t kLongestReason = 300;

constexpr std::array<std::string_view, 5> kTopKeys = {"input", "output", "local_time", "recorded", "entries"};
constexpr const char* kTopKeyNames =
    "input, output, local_time, recorded, part, rate, centre, start_time, sample_type, time_zone, entries";
constexpr const char* kAcceptedEntry = R"(Accepted: for example {"frequency": "7.1M", "bandwidth": 10000})";

// "line 3, column 5", counted from 1 in bytes.
std::string PlaceText(std::string_view text, std::size_t position) {
  const std::string_view before = text.substr(0, position);
  const auto line = std::count(before.begin(), before.end(), '\n') + 1;
  return Format("line %zu, column %zu", static_cast<std::size_t>(line), position - (before.rfind('\n') + 1) + 1);
}

// Where the first text, number or word begins that is longer than any that means something here. The parser would hold
// several copies of it before anybody could object.
std::optional<std::size_t> FindLongToken(std::string_view text) {
  constexpr std::string_view kBetween = " \t\r\n{}[],:";
  std::size_t begin = 0;
  bool quoted = false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    if (!quoted && kBetween.find(c) != std::string_view::npos) {
      begin = i + 1;
      continue;
    }
    if (i - begin >= kLongestToken) return begin;
    if (c == '"') {
      if (quoted) begin = i + 1;
      quoted = !quoted;
    } else if (quoted && c == '\\') {
      ++i;
    }
  }
  return std::nullopt;
}

// Takes the file as the parser comes upon it, so that what has no place in it ends the reading there and then, and no
// nesting or repetition is ever held in memory.
class CJobFileHandler : public nlohmann::json_sax<Json> {
 public:
  CJobFileHandler(std::string name, SJobFile& job, std::string& error)
      : m_strName(std::move(name)), m_job(job), m_error(error) {}

  bool null() override { return Value(std::nullopt, false); }
  bool boolean(bool value) override {
    if (m_place != EPlace::Top || m_strKey != "local_time") return Value(std::nullopt, false);
    m_job.bLocalTime = value;
    return true;
  }
  bool number_integer(number_integer_t value) override { return Value(std::to_string(value), false); }
  bool number_unsigned(number_unsigned_t value) override { return Value(std::to_string(value), false); }
  bool number_float(number_float_t value, const string_t& /*text*/) override {
    return Value(Json(value).dump(), false);
  }
  bool string(string_t& value) override { return Value(std::move(value), true); }
  bool binary(binary_t& /*value*/) override { return Value(std::nullopt, false); }

  bool start_object(std::size_t /*elements*/) override {
    if (m_place == EPlace::Begin) {
      m_place = EPlace::Top;
      return true;
    }
    if (m_place != EPlace::Entries) return Value(std::nullopt, false);
    m_place = EPlace::Entry;
    ++m_nEntries;
    m_fields.clear();
    if (m_nEntries <= static_cast<std::size_t>(kMostEntries)) return true;
    return Refuse(Format("one entry too many. Accepted: at most %lld", static_cast<long long>(kMostEntries)));
  }

  bool key(string_t& key) override {
    m_strKey = std::move(key);
    if (m_place == EPlace::Entry) return true;
    if (std::find(kTopKeys.begin(), kTopKeys.end(), m_strKey) == kTopKeys.end() && !IsFactName(m_strKey)) {
      return Refuse(Format("unknown key \"%s\". Accepted: %s", Printable(m_strKey).c_str(), kTopKeyNames));
    }
    if (std::find(m_seen.begin(), m_seen.end(), m_strKey) != m_seen.end()) {
      return Refuse(Format("\"%s\" is given twice", m_strKey.c_str()));
    }
    m_seen.push_back(m_strKey);
    return true;
  }

  bool end_object() override {
    if (m_place == EPlace::Top) return true;
    m_place = EPlace::Entries;
    return TakeEntry();
  }

  bool start_array(std::size_t /*elements*/) override {
    if (m_place != EPlace::Top || m_strKey != "entries") return Value(std::nullopt, false);
    m_place = EPlace::Entries;
    return true;
  }

  bool end_array() override {
    m_place = EPlace::Top;
    m_nEntries = 0;
    return true;
  }

  bool parse_error(std::size_t /*position*/, const std::string& /*token*/, const Json::exception& failure) override {
    const std::string_view reason = failure.what();
    const std::string_view front = CutUtf8(reason, kLongestReason);
    m_nEntries = 0;
    return Refuse("no JSON: " + Printable(front) + (front.size() < reason.size() ? "..." : ""));
  }

 private:
  enum class EPlace { Begin, Top, Entries, Entry };

  std::string Label() const {
    return m_nEntries == 0 ? m_strName : Format("%s: entry %zu", m_strName.c_str(), m_nEntries);
  }

  bool Refuse(const std::string& problem) {
    m_error = Label() + ": " + problem;
    return false;
  }

  // A value as --entry would have it; nothing for what is neither a text nor a number.
  bool Value(std::optional<std::string> text, bool quoted) {
    switch (m_place) {
      case EPlace::Begin:
        return Refuse(R"(not an object. Accepted: {"input": ..., "output": ..., "entries": [...]})");
      case EPlace::Top:
        return TakeTop(std::move(text), quoted);
      case EPlace::Entries:
        ++m_nEntries;
        return Refuse(std::string("not an object. ") + kAcceptedEntry);
      case EPlace::Entry:
        break;
    }
    return TakeField(std::move(text), quoted);
  }

  bool TakeTop(std::optional<std::string> text, bool quoted) {
    if (m_strKey == "entries") return Refuse("\"entries\" is no list. Accepted: a list of objects");
    if (m_strKey == "local_time") return Refuse("\"local_time\" is neither true nor false");
    if (m_strKey == "recorded") {
      if (quoted) m_job.recorded = ParseDateTime(*text);
      return m_job.recorded || Refuse(std::string("\"recorded\" cannot be read. Accepted: ") + kDateTimeForms);
    }
    if (IsFactName(m_strKey)) return TakeFactText(text);
    if (!quoted) return Refuse(Format("\"%s\" is no text. Accepted: a path", m_strKey.c_str()));
    if (text->find('\0') != std::string::npos) {
      return Refuse(Format("\"%s\" holds a character 0. Accepted: a path", m_strKey.c_str()));
    }
    (m_strKey == "input" ? m_job.strInput : m_job.strOutput) = std::move(*text);
    return true;
  }

  bool TakeFactText(const std::optional<std::string>& text) {
    if (!text) return Refuse(Format("\"%s\" is neither a text nor a number", m_strKey.c_str()));
    const char* accepted = nullptr;
    if (TakeFact(m_strKey, *text, m_job.given, accepted)) return true;
    const std::string_view front = CutUtf8(*text, kLongestReason);
    return Refuse(Format("%s \"%s\" cannot be read. Accepted: %s", m_strKey.c_str(),
                         (Printable(front) + (front.size() < text->size() ? "..." : "")).c_str(), accepted));
  }

  bool TakeField(std::optional<std::string> text, bool quoted) {
    if (!text) return Refuse(Format("\"%s\" is neither a text nor a number", Printable(m_strKey).c_str()));
    // A bare number as a moment counts seconds from the recording's start.
    const bool fromStart = !quoted && (m_strKey == "start" || m_strKey == "end");
    m_fields.emplace_back(m_strKey, (fromStart ? "+" : "") + *text);
    // One of so many is unknown or comes twice.
    return m_fields.size() <= kFieldCount || TakeEntry();
  }

  bool TakeEntry() {
    SEntrySpec spec;
    spec.strLabel = Label();
    std::string problem;
    if (!SetEntryFields(m_fields, EFieldNames::JobFile, spec, problem)) return Refuse(problem);
    m_job.entries.push_back(std::move(spec));
    return true;
  }

  std::string m_strName;
  SJobFile& m_job;
  std::string& m_error;
  EPlace m_place = EPlace::Begin;
  std::string m_strKey;             // the last one
  std::vector<std::string> m_seen;  // keys at the top
  std::size_t m_nEntries = 0;       // within the list of entries: their number so far
  FieldTexts m_fields;              // of the entry being read
};

}  // namespace

bool ParseJobFile(std::string_view text, const std::string& name, SJobFile& job, std::string& error) {
  job = SJobFile();
  const std::string shown = Printable(name);
  if (const auto place = FindLongToken(text)) {
    error = Format("%s: %s: a text or number of more than %zu bytes", shown.c_str(), PlaceText(text, *place).c_str(),
                   kLongestToken);
    return false;
  }
  CJobFileHandler handler(shown, job, error);
  return Json::sax_parse(text, &handler);
}

bool ReadJobText(const std::string& path, std::string& text, std::string& error) {
  const std::string shown = Printable(path);
  CFile file;
  if (!file.Open(path, platform::EOpenMode::ReadShared)) {
    error = Format("%s: %s", shown.c_str(), SystemErrorText().c_str());
    return false;
  }
  const std::int64_t length = file.Length();
  if (length < 0 || length >= kLargestFile) {
    error = Format("%s: too large for a job file. Accepted: less than 64 MiB", shown.c_str());
    return false;
  }
  text.assign(static_cast<std::size_t>(length), '\0');
  text.resize(file.Read(text.data(), text.size()));
  if (text.size() < static_cast<std::size_t>(length)) {
    const std::string reason = file.ReadError() == 0 ? "the file ends early" : SystemErrorText(file.ReadError());
    error = Format("%s: %s", shown.c_str(), reason.c_str());
    return false;
  }
  return true;
}

bool ReadJobFile(const std::string& path, SJobFile& job, std::string& error) {
  std::string text;
  return ReadJobText(path, text, error) && ParseJobFile(text, path, job, error);
}

}  // namespace carvello
