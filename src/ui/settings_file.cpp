#include "ui/settings_file.h"

#include <QByteArray>
#include <QVariant>

namespace carvello {

namespace {

QString ToQString(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

}  // namespace

CSettingsFile::CSettingsFile(const QString& path, std::string_view key) : m_settings(path, QSettings::IniFormat) {
  m_settings.beginGroup(ToQString(key).replace(QLatin1Char('\\'), QLatin1Char('/')));
}

bool CSettingsFile::WriteInt(std::string_view name, std::uint32_t value) {
  // As the file has it, so that reading does not depend on whether the file was written meanwhile.
  return Write(name, QString::number(value));
}

bool CSettingsFile::WriteText(std::string_view name, std::string_view value) {
  return Write(name, ToQString(value));
}

bool CSettingsFile::WriteBytes(std::string_view name, const std::vector<std::uint8_t>& value) {
  return Write(name, QByteArray(reinterpret_cast<const char*>(value.data()), static_cast<qsizetype>(value.size())));
}

bool CSettingsFile::Write(std::string_view name, const QVariant& value) {
  m_settings.setValue(ToQString(name), value);
  return m_settings.isWritable() && m_settings.status() == QSettings::NoError;
}

std::optional<std::uint32_t> CSettingsFile::ReadInt(std::string_view name) const {
  const auto digits = ReadText(name);
  bool bNumber = false;
  const std::uint32_t value = digits ? QString::fromStdString(*digits).toUInt(&bNumber) : 0;
  return bNumber ? std::optional(value) : std::nullopt;
}

std::optional<std::string> CSettingsFile::ReadText(std::string_view name) const {
  const QVariant value = m_settings.value(ToQString(name));
  if (value.typeId() != QMetaType::QString) return std::nullopt;
  return value.toString().toStdString();
}

std::optional<std::vector<std::uint8_t>> CSettingsFile::ReadBytes(std::string_view name) const {
  const QVariant value = m_settings.value(ToQString(name));
  if (value.typeId() != QMetaType::QByteArray) return std::nullopt;
  const QByteArray bytes = value.toByteArray();
  return std::vector<std::uint8_t>(bytes.begin(), bytes.end());
}

}  // namespace carvello
