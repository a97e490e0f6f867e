// The taskbar of the system is replaced by one that keeps what it is told: COM gives out a program's own class before
// the system's.
// clang-format off
#include <windows.h>
#include <shobjidl.h>
// clang-format on

#include <QWidget>
#include <vector>

#include "ui/taskbar_progress.h"
#include "ui/ui_test.h"

namespace carvello {
namespace {

struct SProgress {
  HWND hWindow;
  ULONGLONG nDone;
  ULONGLONG nTotal;
  bool operator==(const SProgress&) const = default;
};

// COM's interfaces have no virtual destructor: their objects end by Release().
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"

// Lives as long as the test; what counts references does nothing.
class CTaskbar : public ITaskbarList3 {
 public:
  int m_nInits = 0;
  std::vector<SProgress> m_progress;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override {
    if (id != IID_IUnknown && id != IID_ITaskbarList3) return E_NOINTERFACE;
    *object = this;
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return 1; }
  ULONG STDMETHODCALLTYPE Release() override { return 1; }
  HRESULT STDMETHODCALLTYPE HrInit() override {
    ++m_nInits;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE SetProgressValue(HWND window, ULONGLONG done, ULONGLONG total) override {
    m_progress.push_back({window, done, total});
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE AddTab(HWND) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE DeleteTab(HWND) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE ActivateTab(HWND) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE SetActiveAlt(HWND) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE MarkFullscreenWindow(HWND, BOOL) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE SetProgressState(HWND, TBPFLAG) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE RegisterTab(HWND, HWND) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE UnregisterTab(HWND) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE SetTabOrder(HWND, HWND) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE SetTabActive(HWND, HWND, DWORD) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE ThumbBarAddButtons(HWND, UINT, LPTHUMBBUTTON) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE ThumbBarUpdateButtons(HWND, UINT, LPTHUMBBUTTON) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE ThumbBarSetImageList(HWND, HIMAGELIST) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE SetOverlayIcon(HWND, HICON, LPCWSTR) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE SetThumbnailTooltip(HWND, LPCWSTR) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE SetThumbnailClip(HWND, RECT*) override { return E_NOTIMPL; }
};

class CTaskbarFactory : public IClassFactory {
 public:
  explicit CTaskbarFactory(CTaskbar& taskbar) : m_taskbar(taskbar) {}

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override {
    if (id != IID_IUnknown && id != IID_IClassFactory) return E_NOINTERFACE;
    *object = this;
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return 1; }
  ULONG STDMETHODCALLTYPE Release() override { return 1; }
  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown*, REFIID id, void** object) override {
    return m_taskbar.QueryInterface(id, object);
  }
  HRESULT STDMETHODCALLTYPE LockServer(BOOL) override { return S_OK; }

 private:
  CTaskbar& m_taskbar;
};

class CTaskbarProgressTest : public QObject {
  Q_OBJECT

 private slots:
  void initTestCase() {
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    QVERIFY(SUCCEEDED(CoRegisterClassObject(CLSID_TaskbarList, &m_factory, CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE,
                                            &m_nRegistration)));
  }
  void cleanupTestCase() {
    CoRevokeClassObject(m_nRegistration);
    CoUninitialize();
  }

  void theButtonOfTheMainWindowShowsTheProgress() {
    QWidget window;
    const auto taskbar = CreateTaskbarProgress(&window);
    QVERIFY(taskbar != nullptr);
    QCOMPARE(m_taskbar.m_nInits, 1);
    taskbar->SetValue(456, 1000);
    taskbar->SetValue(1000, 1000);
    const auto handle = reinterpret_cast<HWND>(window.winId());
    QVERIFY((m_taskbar.m_progress == std::vector<SProgress>{{handle, 456, 1000}, {handle, 1000, 1000}}));
  }

 private:
  CTaskbar m_taskbar;
  CTaskbarFactory m_factory{m_taskbar};
  DWORD m_nRegistration = 0;
};

}  // namespace
}  // namespace carvello

CARVELLO_UI_TEST(carvello::CTaskbarProgressTest)
#include "taskbar_progress_windows_test.moc"
