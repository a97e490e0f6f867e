#include "support/my_settings_store.h"

#include <array>
#include <bit>
#include <cmath>
#include <optional>
#include <type_traits>
#include <utility>

#include "support/text.h"

namespace carvello {

namespace {

std::string IndexedName(int index, std::string_view name) {
  return Format("%03d-%.*s", index, static_cast<int>(name.size()), name.data());
}

template <typename T>
using BitsOf = std::conditional_t<sizeof(T) == 8, std::uint64_t, std::uint32_t>;

template <typename T>
void AppendLittleEndian(std::vector<std::uint8_t>& bytes, T value) {
  const auto bits = std::bit_cast<BitsOf<T>>(value);
  for (std::size_t i = 0; i < sizeof(T); ++i) bytes.push_back(static_cast<std::uint8_t>(bits >> (8 * i)));
}

// The value whose bytes begin at `at`; nothing when they go beyond the end.
template <typename T>
std::optional<T> LittleEndianAt(const std::vector<std::uint8_t>& bytes, std::size_t at) {
  if (bytes.size() < at + sizeof(T)) return std::nullopt;
  BitsOf<T> bits = 0;
  for (std::size_t i = 0; i < sizeof(T); ++i) bits |= static_cast<BitsOf<T>>(bytes[at + i]) << (8 * i);
  return std::bit_cast<T>(bits);
}

template <typename T>
bool WriteBinary(ISettingsBacking& backing, std::string_view name, T value) {
  std::vector<std::uint8_t> bytes;
  AppendLittleEndian(bytes, value);
  return backing.WriteBytes(name, bytes);
}

template <typename T>
std::optional<T> ReadBinary(const ISettingsBacking& backing, std::string_view name) {
  const auto bytes = backing.ReadBytes(name);
  return bytes ? LittleEndianAt<T>(*bytes, 0) : std::nullopt;
}

// True when there is a value; the variable then takes it.
template <typename T, typename V>
bool Take(std::optional<T> found, V& value) {
  if (!found) return false;
  value = static_cast<V>(std::move(*found));
  return true;
}

}  // namespace

CMySettingsStore::CMySettingsStore(std::unique_ptr<ISettingsBacking> backing) : m_backing(std::move(backing)) {}

bool CMySettingsStore::Write(std::string_view name, const ISettingsObject* object) {
  return object != nullptr && Write(name, *object);
}

bool CMySettingsStore::Write(std::string_view name, const ISettingsObject& object) {
  return m_backing->WriteBytes(name, object.ToBytes());
}

bool CMySettingsStore::Write(std::string_view name, const std::uint8_t* bytes, std::size_t length) {
  return m_backing->WriteBytes(name, std::vector<std::uint8_t>(bytes, bytes + length));
}

bool CMySettingsStore::Write(std::string_view name, const SSettingsRect& rect) {
  std::vector<std::uint8_t> bytes;
  for (const std::int32_t edge : {rect.nLeft, rect.nTop, rect.nRight, rect.nBottom}) AppendLittleEndian(bytes, edge);
  return m_backing->WriteBytes(name, bytes);
}

bool CMySettingsStore::Write(std::string_view name, std::string_view text) {
  return m_backing->WriteText(name, text);
}

bool CMySettingsStore::Write(std::string_view name, const char* text) {
  return Write(name, std::string_view(text));
}

bool CMySettingsStore::Write(std::string_view name, std::uint32_t value) {
  return m_backing->WriteInt(name, value);
}

bool CMySettingsStore::Write(std::string_view name, int value) {
  return m_backing->WriteInt(name, static_cast<std::uint32_t>(value));
}

bool CMySettingsStore::Read(std::string_view name, ISettingsObject*& object) const {
  return object != nullptr && Read(name, *object);
}

bool CMySettingsStore::Read(std::string_view name, ISettingsObject& object) const {
  const auto bytes = m_backing->ReadBytes(name);
  return bytes && object.FromBytes(*bytes);
}

bool CMySettingsStore::Read(std::string_view name, std::vector<std::uint8_t>& bytes) const {
  return Take(m_backing->ReadBytes(name), bytes);
}

bool CMySettingsStore::Read(std::string_view name, SSettingsRect& rect) const {
  const auto bytes = m_backing->ReadBytes(name);
  if (!bytes) return false;
  std::array<std::int32_t, 4> edges{};
  for (std::size_t i = 0; i < edges.size(); ++i) {
    if (!Take(LittleEndianAt<std::int32_t>(*bytes, i * sizeof(std::int32_t)), edges[i])) return false;
  }
  rect = {edges[0], edges[1], edges[2], edges[3]};
  return true;
}

bool CMySettingsStore::Read(std::string_view name, std::string& text) const {
  return Take(m_backing->ReadText(name), text);
}

bool CMySettingsStore::Read(std::string_view name, std::uint32_t& value) const {
  return Take(m_backing->ReadInt(name), value);
}

bool CMySettingsStore::Read(std::string_view name, int& value) const {
  return Take(m_backing->ReadInt(name), value);
}

bool CMySettingsStore::Write(int index, std::string_view name, std::int64_t value) {
  return Write(IndexedName(index, name), value);
}

bool CMySettingsStore::Write(int index, std::string_view name, const ISettingsObject* object) {
  return Write(IndexedName(index, name), object);
}

bool CMySettingsStore::Write(int index, std::string_view name, const ISettingsObject& object) {
  return Write(IndexedName(index, name), object);
}

bool CMySettingsStore::Write(int index, std::string_view name, const std::uint8_t* bytes, std::size_t length) {
  return Write(IndexedName(index, name), bytes, length);
}

bool CMySettingsStore::Write(int index, std::string_view name, const SSettingsRect& rect) {
  return Write(IndexedName(index, name), rect);
}

bool CMySettingsStore::Write(int index, std::string_view name, std::string_view text) {
  return Write(IndexedName(index, name), text);
}

bool CMySettingsStore::Write(int index, std::string_view name, const char* text) {
  return Write(IndexedName(index, name), text);
}

bool CMySettingsStore::Write(int index, std::string_view name, std::uint32_t value) {
  return Write(IndexedName(index, name), value);
}

bool CMySettingsStore::Write(int index, std::string_view name, int value) {
  return Write(IndexedName(index, name), value);
}

bool CMySettingsStore::Write(std::string_view name, std::int64_t value) {
  return WriteBinary(*m_backing, name, value);
}

bool CMySettingsStore::Write(std::string_view name, double value) {
  return WriteBinary(*m_backing, name, value);
}

bool CMySettingsStore::Write(std::string_view name, float value) {
  return WriteBinary(*m_backing, name, value);
}

bool CMySettingsStore::Write(std::string_view name, bool value) {
  return Write(name, value ? 1 : 0);
}

bool CMySettingsStore::Read(int index, std::string_view name, std::int64_t& value) const {
  return Read(IndexedName(index, name), value);
}

bool CMySettingsStore::Read(int index, std::string_view name, ISettingsObject*& object) const {
  return Read(IndexedName(index, name), object);
}

bool CMySettingsStore::Read(int index, std::string_view name, ISettingsObject& object) const {
  return Read(IndexedName(index, name), object);
}

bool CMySettingsStore::Read(int index, std::string_view name, std::vector<std::uint8_t>& bytes) const {
  return Read(IndexedName(index, name), bytes);
}

bool CMySettingsStore::Read(int index, std::string_view name, SSettingsRect& rect) const {
  return Read(IndexedName(index, name), rect);
}

bool CMySettingsStore::Read(int index, std::string_view name, std::string& text) const {
  return Read(IndexedName(index, name), text);
}

bool CMySettingsStore::Read(int index, std::string_view name, std::uint32_t& value) const {
  return Read(IndexedName(index, name), value);
}

bool CMySettingsStore::Read(int index, std::string_view name, int& value) const {
  return Read(IndexedName(index, name), value);
}

bool CMySettingsStore::Read(std::string_view name, std::int64_t& value) const {
  return Take(ReadBinary<std::int64_t>(*m_backing, name), value);
}

bool CMySettingsStore::Read(std::string_view name, double& value) const {
  const auto found = ReadBinary<double>(*m_backing, name);
  if (!found) return false;
  if (!std::isnan(*found)) value = *found;
  return true;
}

bool CMySettingsStore::Read(std::string_view name, float& value) const {
  return Take(ReadBinary<float>(*m_backing, name), value);
}

bool CMySettingsStore::Read(std::string_view name, bool& value) const {
  const auto found = m_backing->ReadInt(name);
  if (!found) return false;
  value = *found != 0;
  return true;
}

}  // namespace carvello
