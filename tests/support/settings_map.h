// Settings in memory, for tests.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "support/settings_backing.h"

namespace carvello::test {

struct SSettingsMap {
  std::map<std::string, std::uint32_t> numbers;
  std::map<std::string, std::string> texts;
  std::map<std::string, std::vector<std::uint8_t>> bytes;
};

// Keeps values in a map that must outlive it.
class CSettingsInMemory : public ISettingsBacking {
 public:
  explicit CSettingsInMemory(SSettingsMap& map) : m_map(map) {}

  bool WriteInt(std::string_view name, std::uint32_t value) override { return Put(m_map.numbers, name, value); }
  bool WriteText(std::string_view name, std::string_view value) override {
    return Put(m_map.texts, name, std::string(value));
  }
  bool WriteBytes(std::string_view name, const std::vector<std::uint8_t>& value) override {
    return Put(m_map.bytes, name, value);
  }
  std::optional<std::uint32_t> ReadInt(std::string_view name) const override { return Get(m_map.numbers, name); }
  std::optional<std::string> ReadText(std::string_view name) const override { return Get(m_map.texts, name); }
  std::optional<std::vector<std::uint8_t>> ReadBytes(std::string_view name) const override {
    return Get(m_map.bytes, name);
  }

 private:
  template <typename T>
  static bool Put(std::map<std::string, T>& values, std::string_view name, const T& value) {
    values[std::string(name)] = value;
    return true;
  }
  template <typename T>
  static std::optional<T> Get(const std::map<std::string, T>& values, std::string_view name) {
    const auto found = values.find(std::string(name));
    return found != values.end() ? std::optional(found->second) : std::nullopt;
  }

  SSettingsMap& m_map;
};

}  // namespace carvello::test
