// UTF-16 texts and paths for the calls into Windows. For the platform_windows*.cpp files and their like only.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace carvello::platform {

std::wstring Wide(std::string_view text);
std::string Narrow(std::wstring_view text);
// A path as the file functions take it whatever its length: absolute and, when longer than the 260 characters that
// plain paths may have, with the prefix that lifts that limit.
std::wstring WidePath(const std::string& path);
// A path as the shell takes it, which knows nothing of that prefix and of longer paths: absolute and, when it is
// longer, made of short names, where the file system gives files such names besides their own.
std::wstring ShellPath(const std::string& path);

// Calls a Windows function that fills a buffer of the given number of characters and gives the length it used, or one
// as long as the buffer when that is too short.
template <typename Call>
std::wstring GrowingText(Call call) {
  std::wstring text(260, L'\0');
  for (;;) {
    const std::size_t length = call(text.data(), static_cast<unsigned long>(text.size()));
    if (length < text.size()) {
      text.resize(length);
      return text;
    }
    text.resize(text.size() * 2);
  }
}

}  // namespace carvello::platform
