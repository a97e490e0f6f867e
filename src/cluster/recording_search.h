// Which files may be recordings, in what a user names: files, folders, and lists of such.
#pragma once

#include <string>
#include <vector>

namespace carvello {

struct SFoundFile {
  std::string strPath;
  bool bNamed = false;  // by the user, who wants to know when it is none; others may be anything
};

// Files in the order in which they are named; those of folders, and of the folders in them, sorted by name. Folders in
// `leftOut`, whatever they are named by, are not looked into: outputs are recordings too. False when something named is
// not there or a folder cannot be read; `error` names it.
bool FindFiles(const std::vector<std::string>& named, const std::vector<std::string>& leftOut,
               std::vector<SFoundFile>& found, std::string& error);

// The lines of the file, without what is empty; "-" is not special. False with `error`.
bool ReadNameList(const std::string& path, std::vector<std::string>& names, std::string& error);

}  // namespace carvello
