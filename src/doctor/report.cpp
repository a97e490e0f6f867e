#include "doctor/report.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <type_traits>
#include <utility>

#include "support/json_text.h"
#include "support/text.h"

namespace carvello {

namespace {

SFact Fact(std::string_view key, std::string_view label, decltype(SFact::value) value, std::string_view shown) {
  return {std::string(key), std::string(label), std::move(value), std::string(shown), {}};
}

std::string Shown(const SFact& fact) {
  if (!fact.strShown.empty()) return fact.strShown;
  if (const auto* const text = std::get_if<std::string>(&fact.value)) return *text;
  if (const auto* const number = std::get_if<std::int64_t>(&fact.value)) return std::to_string(*number);
  return "not found";
}

std::string Line(const SFact& fact, std::size_t width) {
  std::string line = "  " + fact.strLabel + ":";
  line.append(width - fact.strLabel.size() + 1, ' ');
  line += Shown(fact);
  if (!fact.strProblem.empty()) line += " (" + fact.strProblem + ")";
  return Printable(line) + "\n";
}

void AddValue(CJsonText& json, const SFact& fact) {
  json.Key(fact.strKey);
  std::visit(
      [&json](const auto& value) {
        if constexpr (std::is_same_v<std::decay_t<decltype(value)>, std::monostate>) {
          json.AddNull();
        } else {
          json.Add(value);
        }
      },
      fact.value);
}

}  // namespace

void SReportSection::Text(std::string_view key, std::string_view label, std::string_view value) {
  facts.push_back(Fact(key, label, std::string(value), {}));
}

void SReportSection::Text(std::string_view key, std::string_view label, const platform::Finding& finding) {
  if (finding.strProblem.empty()) {
    Text(key, label, finding.strValue);
  } else {
    Missing(key, label, finding.strProblem);
  }
}

void SReportSection::Number(std::string_view key, std::string_view label, std::int64_t value, std::string_view shown) {
  facts.push_back(Fact(key, label, value, shown));
}

void SReportSection::Number(std::string_view key, std::string_view label, double value, std::string_view shown) {
  facts.push_back(Fact(key, label, value, shown));
}

void SReportSection::Flag(std::string_view key, std::string_view label, bool value, std::string_view shown) {
  facts.push_back(Fact(key, label, value, shown));
}

void SReportSection::None(std::string_view key, std::string_view label) {
  facts.push_back(Fact(key, label, {}, "none"));
}

void SReportSection::Missing(std::string_view key, std::string_view label, std::string_view problem) {
  facts.push_back(Fact(key, label, {}, {}));
  facts.back().strProblem = problem;
}

std::string ReportText(const SReport& report) {
  std::size_t width = 0;
  for (const SReportSection& section : report.sections) {
    for (const SFact& fact : section.facts) width = std::max(width, fact.strLabel.size());
  }
  std::string text;
  for (const SReportSection& section : report.sections) {
    if (!text.empty()) text += "\n";
    text += Printable(section.strTitle) + "\n";
    for (const SFact& fact : section.facts) text += Line(fact, width);
  }
  return text;
}

std::string ReportJson(const SReport& report) {
  CJsonText json;
  std::vector<std::pair<std::string, std::string>> problems;
  json.BeginObject();
  std::size_t index = 0;
  for (std::size_t i = 0; i < report.sections.size(); ++i) {
    const SReportSection& section = report.sections[i];
    const bool goesOn = i > 0 && section.bOneOfMany && report.sections[i - 1].strKey == section.strKey;
    const bool isLast = i + 1 == report.sections.size() || report.sections[i + 1].strKey != section.strKey;
    index = goesOn ? index + 1 : 0;
    const std::string place = section.bOneOfMany ? Format("%s[%zu]", section.strKey.c_str(), index) : section.strKey;
    if (!goesOn) json.Key(section.strKey);
    if (section.bOneOfMany && !goesOn) json.BeginArray();
    json.BeginObject();
    for (const SFact& fact : section.facts) {
      AddValue(json, fact);
      if (!fact.strProblem.empty()) problems.emplace_back(place + "." + fact.strKey, fact.strProblem);
    }
    json.EndObject();
    if (section.bOneOfMany && isLast) json.EndArray();
  }
  json.Key("problems");
  json.BeginObject();
  for (const auto& [place, problem] : problems) json.Member(place, problem);
  json.EndObject();
  json.Member("sound", report.bSound);
  json.EndObject();
  return json.Document();
}

std::string ShownBytes(double bytes) {
  constexpr std::array kUnits = {"bytes", "kB", "MB", "GB", "TB", "PB"};
  constexpr double kStep = 1000.0;
  constexpr double kWithoutDecimals = 99.95;
  std::size_t unit = 0;
  while (bytes >= kStep && unit + 1 < kUnits.size()) {
    bytes /= kStep;
    ++unit;
  }
  return Format(unit == 0 || bytes >= kWithoutDecimals ? "%.0f %s" : "%.1f %s", bytes, kUnits[unit]);
}

std::string WithoutHome(const std::string& path, const std::string& home) {
  constexpr std::size_t kRoot = 3;  // "/" or "C:\"
  if (home.size() <= 1 || (home.size() <= kRoot && home.find(':') != std::string::npos)) return path;
  if (path.size() < home.size() || !platform::FileNamesEqual(path.substr(0, home.size()), home)) return path;
  const std::string rest = path.substr(home.size());
  return rest.empty() || rest[0] == '/' || rest[0] == '\\' ? "~" + rest : path;
}

}  // namespace carvello
