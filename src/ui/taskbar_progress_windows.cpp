// clang-format off
#include <windows.h>
#include <shobjidl.h>
// clang-format on

#include <QWidget>

#include "support/com_use.h"
#include "ui/taskbar_progress.h"

namespace carvello {

namespace {

struct ReleaseObject {
  void operator()(IUnknown* object) const { object->Release(); }
};
using TaskbarList = std::unique_ptr<ITaskbarList3, ReleaseObject>;

TaskbarList MakeTaskbarList() {
  void* object = nullptr;
  if (FAILED(CoCreateInstance(CLSID_TaskbarList, nullptr, CLSCTX_INPROC_SERVER, IID_ITaskbarList3, &object))) return {};
  TaskbarList list(static_cast<ITaskbarList3*>(object));
  return SUCCEEDED(list->HrInit()) ? std::move(list) : nullptr;
}

class CWindowsTaskbar : public CTaskbarProgress {
 public:
  explicit CWindowsTaskbar(QWidget* pMainWindow) : m_pMainWindow(pMainWindow), m_pList(MakeTaskbarList()) {}

  bool IsThere() const { return m_pList != nullptr; }
  void SetValue(std::uint64_t position, std::uint64_t total) override {
    m_pList->SetProgressValue(reinterpret_cast<HWND>(m_pMainWindow->winId()), position, total);
  }

 private:
  CComUse m_com;
  QWidget* m_pMainWindow;
  TaskbarList m_pList;
};

}  // namespace

std::unique_ptr<CTaskbarProgress> CreateTaskbarProgress(QWidget* pMainWindow) {
  auto taskbar = std::make_unique<CWindowsTaskbar>(pMainWindow);
  if (!taskbar->IsThere()) return nullptr;  // before Windows 7
  return taskbar;
}

}  // namespace carvello
