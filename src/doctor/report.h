// SReport: facts in sections, as a text for people and as JSON. What could not be found stands there with the reason.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "support/system_facts.h"

#include "support/platform.h"

namespace carvello {

struct SFact {
  std::string strKey;    // in JSON
  std::string strLabel;  // in the text
  // Nothing: there is none, or it could not be found, and the problem tells why.
  std::variant<std::monostate, std::string, std::int64_t, double, bool> value;
  std::string strShown;    // the value as the text shows it; empty: as it is
  std::string strProblem;  // may also stand beside a value
};

struct SReportSection {
  std::string strKey;
  std::string strTitle;
  std::vector<SFact> facts;
  bool bOneOfMany = false;  // sections of this key follow one another, and are an array in JSON

  void Text(std::string_view key, std::string_view label, std::string_view value);
  void Text(std::string_view key, std::string_view label, const platform::Finding& finding);
  // The text shows the number in words: "3.2 GB", "4 of 8".
  void Number(std::string_view key, std::string_view label, std::int64_t value, std::string_view shown = {});
  void Number(std::string_view key, std::string_view label, double value, std::string_view shown);
  void Flag(std::string_view key, std::string_view label, bool value, std::string_view shown);
  void None(std::string_view key, std::string_view label);
  void Missing(std::string_view key, std::string_view label, std::string_view problem);
};

struct SReport {
  std::vector<SReportSection> sections;
  bool bSound = true;  // nothing that was tried gave a wrong result
};

// Printable; ends with a line break.
std::string ReportText(const SReport& report);
// An object with an object for every section, or an array of them. A fact that was not found is null, and "problems"
// tells why by "section.key", "section[0].key" in an array.
std::string ReportJson(const SReport& report);

// Bytes as people read them: "64 GB", "1.5 MB", by thousands.
std::string ShownBytes(double bytes);
// A path in the user's home folder begins with "~": its name may be that of a person.
std::string WithoutHome(const std::string& path, const std::string& home = platform::HomeFolder());

}  // namespace carvello
