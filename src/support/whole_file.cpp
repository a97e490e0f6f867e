#include "support/whole_file.h"

#include <optional>

#include "support/file.h"
#include "support/formatting.h"
#include "support/platform.h"
#include "support/text.h"

namespace carvello {
namespace {

constexpr int kNamesTried = 100;

// Opens a file beside the one that is to be, under a name that nothing has. Empty when there is none.
std::string OpenBeside(const std::string& path, CFile& file) {
  for (int i = 0; i < kNamesTried; ++i) {
    std::string strName = i == 0 ? path + ".part" : Format("%s.part%d", path.c_str(), i);
    if (file.Open(strName, platform::EOpenMode::CreateNew)) return strName;
    if (!platform::MeansExisting(platform::LastError())) break;
  }
  return {};
}

}  // namespace

bool CreateFolders(const std::string& folder) {
  if (platform::CreateFolder(folder)) return true;
  const std::string above = platform::FolderOf(folder);
  return above != folder && platform::MeansMissing(platform::LastError()) && CreateFolders(above) &&
         platform::CreateFolder(folder);
}

bool CanWriteWholeFile(const std::string& path, std::string& error) {
  const std::optional<platform::FileStatus> status = platform::GetFileStatus(path);
  if (status && !status->bRegular) {
    error = path + ": is no ordinary file";
    return false;
  }
  const std::string strFolder = platform::FolderOf(path);
  if (platform::IsWritableFolder(strFolder)) return true;
  error = path + ": " + SystemErrorText();
  return false;
}

bool WriteWholeFile(const std::string& given, const void* bytes, std::size_t count, bool replace, std::string& error) {
  const std::string path = replace ? platform::LinkedPath(given) : given;
  CFile file;
  const std::string strName = OpenBeside(path, file);
  if (strName.empty()) {
    error = path + ": " + SystemErrorText();
    return false;
  }
  bool bWritten = file.Write(bytes, count) == count && file.Sync();
  std::string strReason = bWritten ? "" : SystemErrorText();
  if (!file.Close() && bWritten) {
    bWritten = false;
    strReason = SystemErrorText();
  }
  if (bWritten && !platform::RenameFile(strName, path, replace)) {
    bWritten = false;
    strReason = SystemErrorText();
  }
  if (bWritten) {
    if (platform::SyncFolder(platform::FolderOf(path))) return true;
    error = path + ": " + SystemErrorText();
    return false;
  }
  platform::RemoveFile(strName);
  error = path + ": " + strReason;
  return false;
}

}  // namespace carvello
