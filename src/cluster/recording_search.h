// Which files may be recordings, in what a user names: files, folders, and lists of such.
#pragma once

#include <string>
#include <vector>

namespace carvello {

struct SFoundFile {
  std::string strPath;
  bool bNamed = false;  // by the user, who wants to know when it is none; others may be anything
};

enum class ELeftOut {
  NoRecording,
  Refused,  // a file that this user may not read
  Unread,   // what the system fails to read, and may hold recordings
};
// What stands in a folder and is passed over.
struct SLeftOutFile {
  std::string strPath;
  std::string strReason;  // with the path
  ELeftOut kind = ELeftOut::NoRecording;
};

struct SFoundFiles {
  std::vector<SFoundFile> files;
  std::vector<SLeftOutFile> leftOut;
};

// Files in the order in which they are named; those of folders, and of the folders in them, sorted by name. Folders in
// `outputs`, whatever they are named by, are not looked into, for outputs are recordings too, and neither are parts of
// any plan. What is empty, cannot be read or leads nowhere is left out. False when something named is not there, cannot
// be read, or is a folder of outputs; `error` names it.
bool FindFiles(const std::vector<std::string>& named, const std::vector<std::string>& outputs, SFoundFiles& found,
               std::string& error);

// The lines of the file, without what is empty; "-" is not special. False with `error`.
bool ReadNameList(const std::string& path, std::vector<std::string>& names, std::string& error);

}  // namespace carvello
