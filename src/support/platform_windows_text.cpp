// Texts of Windows.
#include "support/platform_windows_text.h"

// clang-format off
#include <windows.h>
// clang-format on

#include <algorithm>

#include "support/platform.h"

namespace carvello::platform {

namespace {

// A character of the system code page or of UTF-8 for every UTF-16 text.
std::string FromWide(UINT codePage, std::wstring_view text) {
  const int length = static_cast<int>(text.size());
  const int size = WideCharToMultiByte(codePage, 0, text.data(), length, nullptr, 0, nullptr, nullptr);
  std::string bytes(static_cast<std::size_t>(std::max(size, 0)), '\0');
  WideCharToMultiByte(codePage, 0, text.data(), length, bytes.data(), size, nullptr, nullptr);
  return bytes;
}

std::wstring ToWide(UINT codePage, std::string_view bytes) {
  const int length = static_cast<int>(bytes.size());
  const int size = MultiByteToWideChar(codePage, 0, bytes.data(), length, nullptr, 0);
  std::wstring text(static_cast<std::size_t>(std::max(size, 0)), L'\0');
  MultiByteToWideChar(codePage, 0, bytes.data(), length, text.data(), size);
  return text;
}

}  // namespace

std::wstring Wide(std::string_view text) {
  return ToWide(CP_UTF8, text);
}

std::string Narrow(std::wstring_view text) {
  return FromWide(CP_UTF8, text);
}

std::wstring WidePath(const std::string& path) {
  // Folders need room for a short file name behind them, hence 12 less than the limit for files.
  constexpr std::size_t kPlainLimit = MAX_PATH - 12;
  std::wstring wide = Wide(path);
  if (wide.starts_with(L"\\\\?\\")) return wide;
  // The limit holds for the whole path: a relative one counts with the present folder before it.
  std::wstring full =
      GrowingText([&](wchar_t* buffer, DWORD size) { return GetFullPathNameW(wide.c_str(), size, buffer, nullptr); });
  if (full.empty()) return wide;
  if (full.size() < kPlainLimit || full.starts_with(L"\\\\?\\") || full.starts_with(L"\\\\.\\")) return full;
  if (full.starts_with(L"\\\\")) return L"\\\\?\\UNC" + full.substr(1);
  return L"\\\\?\\" + full;
}

namespace {

std::wstring WithoutPrefix(const std::wstring& path) {
  if (path.starts_with(L"\\\\?\\UNC\\")) return L"\\" + path.substr(7);
  return path.starts_with(L"\\\\?\\") ? path.substr(4) : path;
}

}  // namespace

std::wstring ShellPath(const std::string& path) {
  const std::wstring full = WidePath(path);
  std::wstring plain = WithoutPrefix(full);
  if (plain.size() < MAX_PATH) return plain;
  const std::wstring shortNames =
      GrowingText([&](wchar_t* buffer, DWORD size) { return GetShortPathNameW(full.c_str(), buffer, size); });
  return shortNames.empty() ? plain : WithoutPrefix(shortNames);
}

std::string Utf8ToSystemCodePage(std::string_view text) {
  return FromWide(CP_ACP, Wide(text));
}

std::string SystemCodePageToUtf8(std::string_view bytes) {
  return Narrow(ToWide(CP_ACP, bytes));
}

}  // namespace carvello::platform
