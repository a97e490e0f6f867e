// CSettingsFile: settings in an INI file of the user's.
#pragma once

#include <QSettings>
#include <QString>

#include "support/settings_backing.h"

namespace carvello {

class CSettingsFile : public ISettingsBacking {
 public:
  // `key`: groups separated by backslashes, as in kSettingsKey.
  CSettingsFile(const QString& path, std::string_view key);

  bool WriteInt(std::string_view name, std::uint32_t value) override;
  bool WriteText(std::string_view name, std::string_view value) override;
  bool WriteBytes(std::string_view name, const std::vector<std::uint8_t>& value) override;
  std::optional<std::uint32_t> ReadInt(std::string_view name) const override;
  std::optional<std::string> ReadText(std::string_view name) const override;
  std::optional<std::vector<std::uint8_t>> ReadBytes(std::string_view name) const override;

 private:
  bool Write(std::string_view name, const QVariant& value);

  QSettings m_settings;
};

}  // namespace carvello
