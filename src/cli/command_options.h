// The options of a command, as the command declares them. What parses the command line, the help and the completions of
// shells are all made of this; the parser itself stands behind command_line.h.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace carvello {

struct SOption {
  // Where the value goes; a bool belongs to an option without one. Strings with hyphens in their option's name take one
  // value each time, others all that follow; std::uint32_t is a number from 1 on.
  using Target =
      std::variant<bool*, std::string*, std::vector<std::string>*, std::uint32_t*, std::optional<std::size_t>*>;

  std::string strNames;  // "--centre,--centre-frequency"; without hyphens for a value that stands by itself
  Target target = static_cast<bool*>(nullptr);
  std::string strMeaning;
  std::string strValue;  // what stands for the value in the help
  std::string strGroup;  // heading in the help; empty for the usual one
  std::string strExcludes;
  bool bRequired = false;
  bool bShowsDefault = false;

  bool TakesValue() const { return !std::holds_alternative<bool*>(target); }
  SOption& Value(std::string name) { return Set(strValue, std::move(name)); }
  SOption& Group(std::string heading) { return Set(strGroup, std::move(heading)); }
  SOption& Excludes(std::string name) { return Set(strExcludes, std::move(name)); }
  SOption& Required() { return Set(bRequired, true); }
  SOption& ShowsDefault() { return Set(bShowsDefault, true); }

 private:
  template <typename T>
  SOption& Set(T& member, T value) {
    member = std::move(value);
    return *this;
  }
};

class CCommandOptions {
 public:
  // The names as in SOption. What is given back stays valid until the next call.
  SOption& Add(std::string names, SOption::Target target, std::string meaning) {
    SOption& option = m_options.emplace_back();
    option.strNames = std::move(names);
    option.target = target;
    option.strMeaning = std::move(meaning);
    return option;
  }
  void SetFooter(std::string text) { m_strFooter = std::move(text); }

  const std::vector<SOption>& All() const { return m_options; }
  const std::string& Footer() const { return m_strFooter; }  // of the help

 private:
  std::vector<SOption> m_options;
  std::string m_strFooter;
};

}  // namespace carvello
