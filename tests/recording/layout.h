// Bytes of files laid out by hand, and read back without any code under test.
#pragma once

#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace carvello::test {

inline std::string LittleEndian(std::uint64_t value, std::size_t bytes) {
  std::string text;
  for (std::size_t index = 0; index < bytes; ++index) text.push_back(static_cast<char>(value >> (8 * index) & 0xFF));
  return text;
}
inline std::string Le16(std::uint64_t value) {
  return LittleEndian(value, 2);
}
inline std::string Le32(std::uint64_t value) {
  return LittleEndian(value, 4);
}
inline std::string Le64(std::uint64_t value) {
  return LittleEndian(value, 8);
}

inline std::uint64_t NumberAt(std::string_view bytes, std::size_t offset, std::size_t size) {
  if (offset + size > bytes.size()) throw std::runtime_error("number behind the file's end");
  std::uint64_t value = 0;
  for (std::size_t index = size; index-- > 0;) {
    value = value << 8U | static_cast<std::uint8_t>(bytes[offset + index]);
  }
  return value;
}
inline std::uint64_t U16At(std::string_view bytes, std::size_t offset) {
  return NumberAt(bytes, offset, 2);
}
inline std::uint64_t U32At(std::string_view bytes, std::size_t offset) {
  return NumberAt(bytes, offset, 4);
}
inline std::uint64_t U64At(std::string_view bytes, std::size_t offset) {
  return NumberAt(bytes, offset, 8);
}

// ASCII as UTF-16LE, by hand.
inline std::string Utf16Bytes(std::string_view ascii) {
  std::string bytes;
  for (const char c : ascii) bytes += {c, '\0'};
  return bytes;
}

struct SChunk {
  std::string identifier;
  std::size_t offset = 0;  // of the identifier
  std::string body;
};

// The chunks of a finished file, which must fill it exactly. A "data" size of an RF64 file comes from its "ds64".
inline std::vector<SChunk> ChunksOf(const std::string& file) {
  const bool rf64 = file.substr(0, 4) == "RF64";
  std::vector<SChunk> chunks;
  std::size_t offset = 12;
  while (offset < file.size()) {
    std::string identifier = file.substr(offset, 4);
    std::uint64_t size = U32At(file, offset + 4);
    if (rf64 && identifier == "data") size = U64At(file, 28);
    if (size > file.size() - offset - 8) throw std::runtime_error("chunk " + identifier + " ends behind the file");
    chunks.push_back({identifier, offset, file.substr(offset + 8, size)});
    offset += 8 + size;
  }
  return chunks;
}

}  // namespace carvello::test
