// UTF-16 texts and paths for the calls into Windows. For the platform_windows*.cpp files only.
#pragma once

#include <string>
#include <string_view>

namespace carvello::platform {

std::wstring Wide(std::string_view text);
std::string Narrow(std::wstring_view text);
// A path as the file functions take it whatever its length: absolute and, when longer than the 260 characters that
// plain paths may have, with the prefix that lifts that limit.
std::wstring WidePath(const std::string& path);

}  // namespace carvello::platform
