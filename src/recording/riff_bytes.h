// Bytes of RIFF files: little-endian numbers and chunks.
#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace carvello {

template <std::unsigned_integral Number>
void AppendLittleEndian(std::string& bytes, Number value) {
  for (std::size_t index = 0; index < sizeof(Number); ++index) {
    bytes.push_back(static_cast<char>(static_cast<std::uint8_t>(value >> (8 * index))));
  }
}

// Identifier, size and body.
inline std::string RiffChunk(std::string_view identifier, std::string_view body) {
  std::string chunk(identifier);
  AppendLittleEndian(chunk, static_cast<std::uint32_t>(body.size()));
  return chunk.append(body);
}

}  // namespace carvello
