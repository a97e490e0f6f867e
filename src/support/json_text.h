// CJsonText: puts a JSON text together, indented by two blanks.
//
// There is no tree of values in memory: taking one of the JSON library's down again needs memory, and where there is
// none ends the program. What it writes of single values is used.
#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace carvello {

class CJsonText {
 public:
  // A value, or the beginning of one, in an array or as the whole text. Bytes that are no UTF-8 become U+FFFD.
  void Add(std::string_view value);
  void Add(const char* value) { Add(std::string_view(value)); }
  void Add(const std::string& value) { Add(std::string_view(value)); }
  void Add(bool value);
  void Add(double value);
  void AddNull() { AddRaw("null"); }
  template <std::integral Number>
  void Add(Number value) {
    AddRaw(std::to_string(value));
  }
  template <typename Value>
  void Add(const std::vector<Value>& values) {
    BeginArray();
    for (const Value& value : values) Add(value);
    EndArray();
  }
  void BeginObject() { Begin('{'); }
  void EndObject() { End('}'); }
  void BeginArray() { Begin('['); }
  void EndArray() { End(']'); }

  // In an object: the name of the value that comes next, or with it.
  void Key(std::string_view name);
  template <typename Value>
  void Member(std::string_view name, const Value& value) {
    Key(name);
    Add(value);
  }

  const std::string& Text() const { return m_strText; }
  // As it leaves the program: printable whatever it tells, and with a line break at its end.
  std::string Document() const;

 private:
  void AddRaw(std::string_view text);
  void Begin(char bracket);
  void End(char bracket);
  void StartItem();
  void BreakLine();

  std::string m_strText;
  std::size_t m_nDepth = 0;
  bool m_bFirst = true;      // nothing stands yet between the innermost brackets
  bool m_bAfterKey = false;  // the value of a key comes next
};

}  // namespace carvello
