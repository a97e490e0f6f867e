// CRegistrySettings: settings as values of one registry key of the user's. Numbers are of the type REG_DWORD, texts
// REG_SZ and bytes REG_BINARY; a value of another type counts as missing.
#pragma once

#include <memory>
#include <string>

#include "support/settings_backing.h"

namespace carvello {

class CRegistrySettings : public ISettingsBacking {
 public:
  // `key`: below HKEY_CURRENT_USER; made at once when it is missing. If that fails, nothing can be written or read.
  explicit CRegistrySettings(const std::string& key);

  bool WriteInt(std::string_view name, std::uint32_t value) override;
  bool WriteText(std::string_view name, std::string_view value) override;
  bool WriteBytes(std::string_view name, const std::vector<std::uint8_t>& value) override;

  std::optional<std::uint32_t> ReadInt(std::string_view name) const override;
  std::optional<std::string> ReadText(std::string_view name) const override;
  std::optional<std::vector<std::uint8_t>> ReadBytes(std::string_view name) const override;

 private:
  struct CloseKey {
    void operator()(void* key) const;
  };
  std::unique_ptr<void, CloseKey> m_hKey;
};

}  // namespace carvello
