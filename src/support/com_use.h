// CComUse: COM for the thread, for as long as the object lives. For the *_windows.cpp files only.
#pragma once

// clang-format off
#include <windows.h>
#include <objbase.h>
// clang-format on

namespace carvello {

class CComUse {
 public:
  CComUse() : m_bStarted(SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) {}
  ~CComUse() {
    if (m_bStarted) CoUninitialize();
  }
  CComUse(const CComUse&) = delete;
  CComUse& operator=(const CComUse&) = delete;

 private:
  bool m_bStarted;
};

}  // namespace carvello
