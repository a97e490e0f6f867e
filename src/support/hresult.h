// Failure codes that travel as exceptions: impossible time conversions and exhausted memory only.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>

namespace carvello {

inline constexpr std::uint32_t kInvalidArgument = 0x80070057;  // E_INVALIDARG
inline constexpr std::uint32_t kFailure = 0x80004005;          // E_FAIL
inline constexpr std::uint32_t kOutOfMemory = 0x8007000E;      // E_OUTOFMEMORY
inline constexpr std::uint32_t kPointer = 0x80004003;          // E_POINTER

class CHResultError : public std::runtime_error {
 public:
  // detail: what was being done, for the user; may be empty.
  explicit CHResultError(std::uint32_t code, const std::string& detail = {});
  std::uint32_t Code() const { return m_nCode; }

 private:
  std::uint32_t m_nCode;
};

// Raises std::bad_alloc for the out-of-memory code, CHResultError for every other.
[[noreturn]] void ThrowHResult(std::uint32_t code, const std::string& detail = {});

}  // namespace carvello
