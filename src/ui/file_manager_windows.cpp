// The file manager of Windows.
// clang-format off
#include <windows.h>
#include <shlobj.h>
// clang-format on

#include <memory>
#include <string>

#include "support/platform.h"
#include "support/platform_windows_text.h"
#include "ui/com_use.h"
#include "ui/file_manager.h"
#include "ui/wait_cursor.h"

namespace carvello {

namespace {

// The shell knows nothing of the prefix with which the file functions take long paths.
std::wstring WithoutPrefix(const std::wstring& path) {
  if (path.starts_with(L"\\\\?\\UNC\\")) return L"\\" + path.substr(7);
  return path.starts_with(L"\\\\?\\") ? path.substr(4) : path;
}

struct FreeItem {
  void operator()(ITEMIDLIST* item) const { ILFree(item); }
};
using Item = std::unique_ptr<ITEMIDLIST, FreeItem>;

// Empty where the shell cannot name the file: when there is none, or when its path is too long.
Item ItemOf(const std::string& path) {
  const std::wstring full = platform::WidePath(path);
  Item item(ILCreateFromPathW(WithoutPrefix(full).c_str()));
  if (item != nullptr) return item;
  // Many file systems give short names to files besides their own; the path made of them may not be too long.
  const std::wstring shortPath =
      platform::GrowingText([&](wchar_t* buffer, DWORD size) { return GetShortPathNameW(full.c_str(), buffer, size); });
  if (!shortPath.empty()) item.reset(ILCreateFromPathW(WithoutPrefix(shortPath).c_str()));
  return item;
}

bool SelectInFolder(const std::string& path) {
  const CWaitCursor wait;
  const CComUse com;
  const Item item = ItemOf(path);
  return item != nullptr && SUCCEEDED(SHOpenFolderAndSelectItems(item.get(), 0, nullptr, 0));
}

}  // namespace

void ShowFileInFolder(QWidget* pParent, const std::string& path) {
  if (!SelectInFolder(path)) OpenOrTell(pParent, platform::FolderOf(path), "Open Folder", "explore");
}

}  // namespace carvello
