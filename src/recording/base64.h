// CBase64: bytes as text in the standard base64 alphabet (RFC 4648).
#pragma once

#include <cstdint>
#include <span>
#include <string>

namespace carvello {

class CBase64 {
 public:
  // Padded with "=", without line breaks.
  static std::string Encode(std::span<const std::uint8_t> bytes);
};

}  // namespace carvello
