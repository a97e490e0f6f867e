// Where settings lie: three kinds of values by name, under one key of the user's. A settings file on Linux, the
// registry on Windows, a map in tests. CMySettingsStore gives the values their types.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace carvello {

class ISettingsBacking {
 public:
  virtual ~ISettingsBacking() = default;

  // False when the value could not be kept.
  virtual bool WriteInt(std::string_view name, std::uint32_t value) = 0;
  virtual bool WriteText(std::string_view name, std::string_view value) = 0;
  virtual bool WriteBytes(std::string_view name, const std::vector<std::uint8_t>& value) = 0;

  // Nothing when the value is missing or of another kind.
  virtual std::optional<std::uint32_t> ReadInt(std::string_view name) const = 0;
  virtual std::optional<std::string> ReadText(std::string_view name) const = 0;
  virtual std::optional<std::vector<std::uint8_t>> ReadBytes(std::string_view name) const = 0;
};

}  // namespace carvello
