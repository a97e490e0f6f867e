// Desktop and console of POSIX systems.
#include <spawn.h>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <string>
#include <vector>

#include "support/platform.h"

namespace carvello::platform {

std::string TempFolder() {
  static const std::string folder = [] {
    for (const char* variable : {"TEMP", "TMPDIR"}) {
      const char* value = std::getenv(variable);
      if (value != nullptr && *value != '\0') return std::string(value);
    }
    return std::string("/tmp");
  }();
  return folder;
}

std::string UserCacheFolder() {
  // Only a path from the root on counts, by the rule for these variables.
  const auto value = [](const char* variable) {
    const char* const text = std::getenv(variable);
    return std::string(text != nullptr && *text == '/' ? text : "");
  };
  if (std::string folder = value("XDG_CACHE_HOME"); !folder.empty()) return folder;
  const std::string home = value("HOME");
  return home.empty() ? std::string() : JoinPath(home, ".cache");
}

namespace {

// Runs a script of the shell's with arguments $1, $2, … and waits for its end. Its exit code, or -1 when it could not
// be started; errno then tells why.
int RunShell(const char* script, const std::vector<std::string>& arguments) {
  std::vector<std::string> words = {"sh", "-c", script, "sh"};
  words.insert(words.end(), arguments.begin(), arguments.end());
  std::vector<char*> pointers;
  pointers.reserve(words.size() + 1);
  for (std::string& word : words) pointers.push_back(word.data());
  pointers.push_back(nullptr);
  pid_t child = 0;
  const int refusal = posix_spawnp(&child, "sh", nullptr, nullptr, pointers.data(), environ);
  if (refusal != 0) {
    errno = refusal;
    return -1;
  }
  int status = 0;
  pid_t ended = -1;
  do {
    ended = waitpid(child, &status, 0);
  } while (ended < 0 && errno == EINTR);
  if (ended != child) return -1;
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

}  // namespace

bool OpenWithDesktop(WindowId /*parent*/, const std::string& path, const std::string& /*verb*/) {
  if (access(path.c_str(), F_OK) != 0) return false;
  // The shell ends at once and leaves the opener, which can live as long as what it opens, to the system.
  const int code =
      RunShell("command -v xdg-open >/dev/null || exit 127; xdg-open \"$1\" </dev/null >/dev/null 2>&1 &", {path});
  if (code > 0) errno = ENOENT;
  return code == 0;
}

bool HasProgramFor(const std::string& /*path*/, const std::vector<std::string>& mediaTypes) {
  return RunShell("for type; do [ -n \"$(xdg-mime query default \"$type\" 2>/dev/null)\" ] && exit 0; done; exit 1",
                  mediaTypes) == 0;
}

bool IsTerminal(int standardStream) {
  return isatty(standardStream) != 0;
}

unsigned TerminalColumns() {
  winsize size{};
  if (ioctl(STDERR_FILENO, TIOCGWINSZ, &size) != 0 || size.ws_col == 0) return 80;
  return size.ws_col;
}

void UseUtf8Console() {
  // Terminals here speak UTF-8, or a locale of the user's choosing that is not ours to change.
}

}  // namespace carvello::platform
