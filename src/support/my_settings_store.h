// CMySettingsStore: the user's last choices, kept between runs. Gives values their types on top of a backing that knows
// numbers, texts and bytes only.
//
// All operations return true on success. A value that is missing or unreadable gives false and leaves the variable as
// it was, so that callers put their default there first. An indexed value is stored under "%03d-%s".
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "support/settings_backing.h"

namespace carvello {

// The key of all settings.
inline constexpr const char* kSettingsKey = "Software\\Halvarn (V3)\\Carvello";

// A value that makes its own bytes.
class ISettingsObject {
 public:
  virtual ~ISettingsObject() = default;
  virtual std::vector<std::uint8_t> ToBytes() const = 0;
  // False, and the object unchanged, for bytes that are none of its own.
  virtual bool FromBytes(const std::vector<std::uint8_t>& bytes) = 0;
};

struct SSettingsRect {
  std::int32_t nLeft = 0;
  std::int32_t nTop = 0;
  std::int32_t nRight = 0;
  std::int32_t nBottom = 0;
  bool operator==(const SSettingsRect&) const = default;
};

class CMySettingsStore {
 public:
  explicit CMySettingsStore(std::unique_ptr<ISettingsBacking> backing);

  bool Write(std::string_view name, const ISettingsObject* object);  // a null pointer is not written
  bool Write(std::string_view name, const ISettingsObject& object);
  bool Write(std::string_view name, const std::uint8_t* bytes, std::size_t length);
  bool Write(std::string_view name, const SSettingsRect& rect);  // four 32-bit numbers
  bool Write(std::string_view name, std::string_view text);
  bool Write(std::string_view name, const char* text);  // or a literal would be taken for a Boolean
  bool Write(std::string_view name, std::uint32_t value);
  bool Write(std::string_view name, int value);

  bool Read(std::string_view name, ISettingsObject*& object) const;  // a null pointer is not read into
  bool Read(std::string_view name, ISettingsObject& object) const;
  bool Read(std::string_view name, std::vector<std::uint8_t>& bytes) const;
  bool Read(std::string_view name, SSettingsRect& rect) const;
  bool Read(std::string_view name, std::string& text) const;
  bool Read(std::string_view name, std::uint32_t& value) const;
  bool Read(std::string_view name, int& value) const;

  bool Write(int index, std::string_view name, std::int64_t value);
  bool Write(int index, std::string_view name, const ISettingsObject* object);
  bool Write(int index, std::string_view name, const ISettingsObject& object);
  bool Write(int index, std::string_view name, const std::uint8_t* bytes, std::size_t length);
  bool Write(int index, std::string_view name, const SSettingsRect& rect);
  bool Write(int index, std::string_view name, std::string_view text);
  bool Write(int index, std::string_view name, const char* text);
  bool Write(int index, std::string_view name, std::uint32_t value);
  bool Write(int index, std::string_view name, int value);

  // Stored as bytes in little-endian order.
  bool Write(std::string_view name, std::int64_t value);
  bool Write(std::string_view name, double value);
  bool Write(std::string_view name, float value);
  // Stored as the number 0 or 1.
  bool Write(std::string_view name, bool value);

  bool Read(int index, std::string_view name, std::int64_t& value) const;
  bool Read(int index, std::string_view name, ISettingsObject*& object) const;
  bool Read(int index, std::string_view name, ISettingsObject& object) const;
  bool Read(int index, std::string_view name, std::vector<std::uint8_t>& bytes) const;
  bool Read(int index, std::string_view name, SSettingsRect& rect) const;
  bool Read(int index, std::string_view name, std::string& text) const;
  bool Read(int index, std::string_view name, std::uint32_t& value) const;
  bool Read(int index, std::string_view name, int& value) const;

  // A stored value longer than the type counts by its first bytes; a shorter one is rejected.
  bool Read(std::string_view name, std::int64_t& value) const;
  bool Read(std::string_view name, double& value) const;  // a stored NaN succeeds and changes nothing
  bool Read(std::string_view name, float& value) const;
  bool Read(std::string_view name, bool& value) const;  // true for every number but 0

 private:
  std::unique_ptr<ISettingsBacking> m_backing;
};

}  // namespace carvello
