#include "support/platform_windows_registry.h"

// clang-format off
#include <windows.h>
// clang-format on

#include <cstring>

#include "support/platform_windows_text.h"

namespace carvello {

using platform::Narrow;
using platform::Wide;

namespace {

bool WriteValue(void* key, std::string_view name, DWORD type, const void* data, std::size_t bytes) {
  return key != nullptr && RegSetValueExW(static_cast<HKEY>(key), Wide(name).c_str(), 0, type,
                                          static_cast<const BYTE*>(data), static_cast<DWORD>(bytes)) == ERROR_SUCCESS;
}

// The value's bytes as they are stored; nothing when it is missing or of another type.
std::optional<std::vector<std::uint8_t>> ReadValue(void* key, std::string_view name, DWORD type) {
  if (key == nullptr) return std::nullopt;
  const std::wstring wideName = Wide(name);
  std::vector<std::uint8_t> bytes;
  for (;;) {  // until nobody has made the value longer between asking for its size and for itself
    DWORD size = 0;
    DWORD stored = REG_NONE;
    if (RegQueryValueExW(static_cast<HKEY>(key), wideName.c_str(), nullptr, nullptr, nullptr, &size) != ERROR_SUCCESS) {
      return std::nullopt;
    }
    bytes.resize(size);
    const LSTATUS status =
        RegQueryValueExW(static_cast<HKEY>(key), wideName.c_str(), nullptr, &stored, bytes.data(), &size);
    if (status == ERROR_MORE_DATA) continue;
    if (status != ERROR_SUCCESS || stored != type) return std::nullopt;
    bytes.resize(size);
    return bytes;
  }
}

}  // namespace

void CRegistrySettings::CloseKey::operator()(void* key) const {
  RegCloseKey(static_cast<HKEY>(key));
}

CRegistrySettings::CRegistrySettings(const std::string& key) {
  HKEY opened = nullptr;
  if (RegCreateKeyExW(HKEY_CURRENT_USER, Wide(key).c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE, KEY_READ | KEY_WRITE,
                      nullptr, &opened, nullptr) == ERROR_SUCCESS) {
    m_hKey.reset(opened);
  }
}

bool CRegistrySettings::WriteInt(std::string_view name, std::uint32_t value) {
  return WriteValue(m_hKey.get(), name, REG_DWORD, &value, sizeof(value));
}

bool CRegistrySettings::WriteText(std::string_view name, std::string_view value) {
  const std::wstring text = Wide(value);
  return WriteValue(m_hKey.get(), name, REG_SZ, text.c_str(), (text.size() + 1) * sizeof(wchar_t));
}

bool CRegistrySettings::WriteBytes(std::string_view name, const std::vector<std::uint8_t>& value) {
  return WriteValue(m_hKey.get(), name, REG_BINARY, value.data(), value.size());
}

std::optional<std::uint32_t> CRegistrySettings::ReadInt(std::string_view name) const {
  const auto bytes = ReadValue(m_hKey.get(), name, REG_DWORD);
  std::uint32_t value = 0;
  // Another program may have given any size to the number.
  if (!bytes || bytes->size() != sizeof(value)) return std::nullopt;
  std::memcpy(&value, bytes->data(), sizeof(value));
  return value;
}

std::optional<std::string> CRegistrySettings::ReadText(std::string_view name) const {
  const auto bytes = ReadValue(m_hKey.get(), name, REG_SZ);
  if (!bytes) return std::nullopt;
  // Up to the terminating zero, which the writer may have forgotten.
  std::wstring text(bytes->size() / sizeof(wchar_t), L'\0');
  if (!text.empty()) std::memcpy(text.data(), bytes->data(), text.size() * sizeof(wchar_t));
  return Narrow(text.substr(0, text.find(L'\0')));
}

std::optional<std::vector<std::uint8_t>> CRegistrySettings::ReadBytes(std::string_view name) const {
  return ReadValue(m_hKey.get(), name, REG_BINARY);
}

}  // namespace carvello
