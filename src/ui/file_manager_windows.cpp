// The file manager of Windows.
// clang-format off
#include <windows.h>
#include <shlobj.h>
// clang-format on

#include <QWidget>
#include <functional>
#include <memory>

#include "support/com_use.h"
#include "support/platform.h"
#include "support/platform_windows_text.h"
#include "ui/file_manager.h"
#include "ui/patient_work.h"

namespace carvello {

namespace {

struct FreeItem {
  void operator()(ITEMIDLIST* item) const { ILFree(item); }
};

bool SelectInFolder(const std::string& path) {
  const CComUse com;
  // Empty when there is no such file, or when its path is too long for the shell.
  const std::unique_ptr<ITEMIDLIST, FreeItem> item(ILCreateFromPathW(platform::ShellPath(path).c_str()));
  return item != nullptr && SUCCEEDED(SHOpenFolderAndSelectItems(item.get(), 0, nullptr, 0));
}

}  // namespace

void ShowFileInFolder(QWidget* pParent, const std::string& path, CPatientWork& work) {
  work.Run("Show", path, [pParent, path, &work]() -> std::function<void()> {
    if (SelectInFolder(path)) return [] {};
    return [pParent, path, &work] { OpenOrTell(pParent, platform::FolderOf(path), "Open Folder", "explore", work); };
  });
}

}  // namespace carvello
