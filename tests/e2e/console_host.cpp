// Runs a program in a console of its own and presses Ctrl-C in it for every line that comes on stdin. Output is handed
// through; the exit code is the program's.
//   console_host PROGRAM [ARGUMENT…]
// After the program's end it prints "code page BEFORE AFTER", of the console's output, as the last line on stderr.
// clang-format off
#include <windows.h>
// clang-format on

#include <cstdio>
#include <iostream>
#include <string>
#include <thread>

namespace {

// The command line behind this program's own name: the system's, so that nothing is quoted anew.
std::wstring CommandBehindOwnName() {
  const std::wstring line = GetCommandLineW();
  const std::size_t end = line.starts_with(L'"') ? line.find(L'"', 1) + 1 : line.find(L' ');
  return line.substr(line.find_first_not_of(L' ', end));
}

void PressCtrlCForEveryLine() {
  for (std::string line; std::getline(std::cin, line);) GenerateConsoleCtrlEvent(CTRL_C_EVENT, 0);
}

}  // namespace

int main() {
  STARTUPINFOW start{};
  start.cb = sizeof(start);
  start.dwFlags = STARTF_USESTDHANDLES;
  start.hStdOutput = GetStdHandle(STD_OUTPUT_HANDLE);
  start.hStdError = GetStdHandle(STD_ERROR_HANDLE);
  FreeConsole();
  if (AllocConsole() == 0) return 254;
  start.hStdInput = GetStdHandle(STD_INPUT_HANDLE);
  const UINT before = GetConsoleOutputCP();

  std::wstring command = CommandBehindOwnName();
  PROCESS_INFORMATION process{};
  if (CreateProcessW(nullptr, command.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &start, &process) == 0) {
    return 255;
  }
  // The key reaches all programs of the console.
  SetConsoleCtrlHandler([](DWORD) -> BOOL { return TRUE; }, TRUE);
  std::thread(PressCtrlCForEveryLine).detach();
  WaitForSingleObject(process.hProcess, INFINITE);
  DWORD code = 0;
  GetExitCodeProcess(process.hProcess, &code);
  std::fprintf(stderr, "code page %u %u\n", before, GetConsoleOutputCP());
  std::fflush(stderr);
  ExitProcess(code);
}
