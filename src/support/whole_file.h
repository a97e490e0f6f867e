// Files that are written as a whole or not at all, and folders for them.
#pragma once

#include <cstddef>
#include <string>

namespace carvello {

// Whether there can be a new file of that name, before work is begun that takes long; `error` tells why not.
bool CanWriteWholeFile(const std::string& path, std::string& error);

// Writes the bytes under another name beside it and gives the file its name once they stand on the disk: it is never
// seen half written, and one that it replaces stays until then. Without `replace` a file that stands there is left
// alone and the call fails; a link that leads to it stays one. On false `error` tells file and reason, and nothing is
// left, unless the reason is that its name may not outlast a loss of power.
bool WriteWholeFile(const std::string& path, const void* bytes, std::size_t count, bool replace, std::string& error);

// Creates the folder for this user alone, and those above it that are missing. On false LastError() tells why.
bool CreateFolders(const std::string& folder);

}  // namespace carvello
