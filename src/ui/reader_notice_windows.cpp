// UI Automation. The toolkit of before 6.8 tells it of new names of combo boxes alone, and of no alert, so the window's
// own notification is raised, which Windows has since version 1709.
// clang-format off
#include <windows.h>
#include <ole2.h>
#include <uiautomationcore.h>
// clang-format on

#include <QWidget>
#include <memory>

#include "ui/reader_notice.h"

namespace carvello {

namespace {

constexpr int kOther = 4;  // NotificationKind_Other
constexpr int kAll = 2;    // NotificationProcessing_All: one after the other, none is dropped

using FromWindow = HRESULT(WINAPI*)(HWND, IRawElementProviderSimple**);
using Raise = HRESULT(WINAPI*)(IRawElementProviderSimple*, int kind, int processing, BSTR text, BSTR activity);

struct SReleaseProvider {
  void operator()(IRawElementProviderSimple* provider) const { provider->Release(); }
};
struct SFreeText {
  void operator()(BSTR text) const { SysFreeString(text); }
};
using Text = std::unique_ptr<OLECHAR, SFreeText>;

Text TextOf(const QString& text) {
  return Text(SysAllocStringLen(reinterpret_cast<const OLECHAR*>(text.utf16()), static_cast<UINT>(text.size())));
}

template <typename Function>
Function Find(const char* name) {
  // Never freed: a reader may be talking to it.
  static const HMODULE library = LoadLibraryExW(L"uiautomationcore.dll", nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32);
  if (library == nullptr) return nullptr;
  return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(library, name)));
}

}  // namespace

void NotifyReaders(QWidget* pNotice, const QString& text) {
  const auto fromWindow = Find<FromWindow>("UiaHostProviderFromHwnd");
  const auto raise = Find<Raise>("UiaRaiseNotificationEvent");
  if (fromWindow == nullptr || raise == nullptr) return;
  IRawElementProviderSimple* pFound = nullptr;
  if (FAILED(fromWindow(reinterpret_cast<HWND>(pNotice->window()->winId()), &pFound)) || pFound == nullptr) return;
  const std::unique_ptr<IRawElementProviderSimple, SReleaseProvider> provider(pFound);
  const Text told = TextOf(text), activity = TextOf(QStringLiteral("Carvello"));
  if (told && activity) raise(provider.get(), kOther, kAll, told.get(), activity.get());
}

}  // namespace carvello
