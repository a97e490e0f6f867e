#include "support/hresult.h"

#include <new>

#include "support/text.h"

namespace carvello {

namespace {

std::string MessageOf(std::uint32_t code, const std::string& detail) {
  const char* meaning = "failure";
  if (code == kInvalidArgument) meaning = "invalid argument";
  if (code == kPointer) meaning = "invalid pointer";
  const std::string message = Format("%s (error %08X)", meaning, code);
  return detail.empty() ? message : detail + ": " + message;
}

}  // namespace

CHResultError::CHResultError(std::uint32_t code, const std::string& detail)
    : std::runtime_error(MessageOf(code, detail)), m_nCode(code) {}

void ThrowHResult(std::uint32_t code, const std::string& detail) {
  if (code == kOutOfMemory) throw std::bad_alloc();
  throw CHResultError(code, detail);
}

}  // namespace carvello
