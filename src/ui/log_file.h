// The log as a text file, for viewing.
#pragma once

#include <string>
#include <vector>

namespace carvello {

// "%s\\%s tmp.txt" of the user's temporary folder and the program's name; the same for the life of the process.
const std::string& LogFilePath();

// Replaces the file by the lines. False on failure; `error` then tells why.
bool WriteTextFile(const std::string& path, const std::vector<std::string>& lines, std::string& error);

}  // namespace carvello
