#include "cli/job_file.h"

#include <nlohmann/json.hpp>
#include <optional>
#include <utility>

#include "support/file.h"
#include "support/formatting.h"
#include "support/text.h"

namespace carvello {
namespace {

using Json = nlohmann::ordered_json;

constexpr std::int64_t kLargestFile = std::int64_t{64} << 20;

// A value as --entry would have it. A bare number as a moment counts seconds from the recording's start. Nothing for
// what is neither a text nor a number.
std::optional<std::string> ValueText(const Json& value, std::string_view key) {
  if (value.is_string()) return value.get<std::string>();
  if (!value.is_number()) return std::nullopt;
  const bool isMoment = key == "start" || key == "end";
  return (isMoment ? "+" : "") + value.dump();
}

bool ParseJobEntry(const Json& object, SEntrySpec& spec, std::string& error) {
  if (!object.is_object()) {
    error = R"(not an object. Accepted: for example {"frequency": "7.1M", "bandwidth": 10000})";
    return false;
  }
  FieldTexts fields;
  for (const auto& [key, value] : object.items()) {
    const std::optional<std::string> text = ValueText(value, key);
    if (!text) {
      error = Format("\"%s\" is neither a text nor a number", key.c_str());
      return false;
    }
    fields.emplace_back(key, *text);
  }
  return SetEntryFields(fields, EFieldNames::JobFile, spec, error);
}

// Everything but the entries themselves.
bool CheckTopLevel(const Json& root, std::string& error) {
  if (!root.is_object()) {
    error = R"(not an object. Accepted: {"input": ..., "output": ..., "entries": [...]})";
    return false;
  }
  for (const auto& [key, value] : root.items()) {
    if (key == "input" || key == "output") {
      if (value.is_string()) continue;
      error = Format("\"%s\" is no text. Accepted: a path", key.c_str());
    } else if (key == "entries") {
      if (value.is_array()) continue;
      error = "\"entries\" is no list. Accepted: a list of objects";
    } else {
      error = Format("unknown key \"%s\". Accepted: input, output, entries", key.c_str());
    }
    return false;
  }
  return true;
}

}  // namespace

bool ParseJobFile(std::string_view text, const std::string& name, SJobFile& job, std::string& error) {
  Json root;
  try {
    root = Json::parse(text);
  } catch (const Json::exception& failure) {
    error = Format("%s: no JSON: %s", name.c_str(), failure.what());
    return false;
  }
  if (!CheckTopLevel(root, error)) {
    error.insert(0, name + ": ");
    return false;
  }
  job = SJobFile();
  job.strInput = root.value("input", "");
  job.strOutput = root.value("output", "");
  const Json entries = root.value("entries", Json::array());
  for (std::size_t i = 0; i < entries.size(); ++i) {
    SEntrySpec spec;
    spec.strLabel = Format("%s: entry %zu", name.c_str(), i + 1);
    if (!ParseJobEntry(entries[i], spec, error)) {
      error.insert(0, spec.strLabel + ": ");
      return false;
    }
    job.entries.push_back(std::move(spec));
  }
  return true;
}

bool ReadJobFile(const std::string& path, SJobFile& job, std::string& error) {
  CFile file;
  if (!file.Open(path, platform::EOpenMode::ReadShared)) {
    error = Format("--jobs %s: %s", path.c_str(), SystemErrorText().c_str());
    return false;
  }
  const std::int64_t length = file.Length();
  if (length < 0 || length >= kLargestFile) {
    error = Format("--jobs %s: too large for a job file. Accepted: less than 64 MiB", path.c_str());
    return false;
  }
  std::string text(static_cast<std::size_t>(length), '\0');
  text.resize(file.Read(text.data(), text.size()));
  return ParseJobFile(text, path, job, error);
}

}  // namespace carvello
