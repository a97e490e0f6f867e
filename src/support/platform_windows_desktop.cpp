// Desktop and console of Windows.
// clang-format off
#include <windows.h>
#include <shellapi.h>
// clang-format on

#include <array>
#include <cstdio>
#include <cstdlib>

#include "support/com_use.h"
#include "support/platform.h"
#include "support/platform_windows_text.h"

namespace carvello::platform {

namespace {

constexpr INT_PTR kLastErrorCode = 32;  // of the shell's functions; above it are codes of success

}  // namespace

std::string TempFolder() {
  static const std::string folder =
      Narrow(GrowingText([](wchar_t* buffer, DWORD size) { return GetEnvironmentVariableW(L"TEMP", buffer, size); }));
  return folder;
}

std::string UserCacheFolder() {
  return Narrow(
      GrowingText([](wchar_t* buffer, DWORD size) { return GetEnvironmentVariableW(L"LOCALAPPDATA", buffer, size); }));
}

bool OpenWithDesktop(WindowId parent, const std::string& path, const std::string& verb) {
  const CComUse com;  // extensions of the shell need it
  const std::wstring shellPath = ShellPath(path);
  const std::wstring wideVerb = Wide(verb);
  SHELLEXECUTEINFOW request{};
  request.cbSize = sizeof(request);
  // The caller tells the user. A thread that ends behind this call must not take a half-done one along.
  request.fMask = SEE_MASK_FLAG_NO_UI | SEE_MASK_NOASYNC;
  request.hwnd = reinterpret_cast<HWND>(parent);
  request.lpVerb = wideVerb.c_str();
  request.lpFile = shellPath.c_str();
  request.nShow = SW_SHOW;
  // Some programs take the file without the call telling so; the instance code then does.
  return ShellExecuteExW(&request) != 0 || reinterpret_cast<INT_PTR>(request.hInstApp) > kLastErrorCode;
}

bool HasProgramFor(const std::string& path, const std::vector<std::string>& /*mediaTypes*/) {
  std::array<wchar_t, MAX_PATH> program{};
  return reinterpret_cast<INT_PTR>(FindExecutableW(ShellPath(path).c_str(), nullptr, program.data())) > kLastErrorCode;
}

namespace {

HANDLE StandardStream(int number) {
  return GetStdHandle(number == 2 ? STD_ERROR_HANDLE : STD_OUTPUT_HANDLE);
}

}  // namespace

bool IsTerminal(int standardStream) {
  DWORD mode = 0;
  return GetConsoleMode(StandardStream(standardStream), &mode) != 0;
}

unsigned TerminalColumns() {
  CONSOLE_SCREEN_BUFFER_INFO information{};
  if (GetConsoleScreenBufferInfo(StandardStream(2), &information) == 0) return 80;
  return static_cast<unsigned>(information.srWindow.Right - information.srWindow.Left + 1);
}

void UseUtf8Console() {
  // The code page belongs to the console, which outlives the program.
  static const UINT before = GetConsoleOutputCP();
  if (before == 0) return;  // there is no console
  SetConsoleOutputCP(CP_UTF8);
  std::atexit([] { SetConsoleOutputCP(before); });
  // Whole texts in one piece: the runtime would tear characters of several bytes apart on their way to the console.
  for (const int stream : {1, 2}) {
    if (IsTerminal(stream)) std::setvbuf(stream == 1 ? stdout : stderr, nullptr, _IOFBF, BUFSIZ);
  }
}

}  // namespace carvello::platform
