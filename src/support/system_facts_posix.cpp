#include "support/system_facts.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <gnu/libc-version.h>
#include <sched.h>
#include <sys/stat.h>
#include <sys/utsname.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <climits>
#include <cstdlib>
#include <fstream>
#include <limits>
#include <memory>
#include <sstream>
#include <string_view>
#include <utility>
#include <vector>

#include "support/formatting.h"
#include "support/text.h"

namespace carvello::platform {

namespace {

constexpr std::int64_t kKibibyte = 1024;

std::string Variable(const char* name) {
  const char* const value = std::getenv(name);
  return value == nullptr ? "" : value;
}

// The folder that a variable names, else one in the home folder. Only a path from the root on counts, by the rule for
// these variables.
std::string FolderByRule(const char* variable, const char* inHome) {
  if (std::string folder = Variable(variable); folder.starts_with('/')) return folder;
  const std::string home = HomeFolder();
  return home.empty() ? home : JoinPath(home, inHome);
}

std::optional<std::int64_t> NumberAt(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(" \t"), text.size()));
  std::int64_t number = 0;
  if (std::from_chars(text.data(), text.data() + text.size(), number).ec != std::errc()) return std::nullopt;
  return number;
}

std::string FirstLine(const std::string& path) {
  std::ifstream file(path);
  std::string line;
  std::getline(file, line);
  return line;
}

// Without the quotes and backslashes that a shell would take off.
std::string Unquoted(std::string_view text) {
  if (text.size() >= 2 && (text.front() == '"' || text.front() == '\'') && text.back() == text.front()) {
    text = text.substr(1, text.size() - 2);
  }
  return ReplaceAll(text, "\\", "");
}

// The folders of the groups that limit this process, from its own up to the root's, for a controller of the first
// version of groups or, without a name, for the second.
std::vector<std::string> GroupFolders(const std::string& controller) {
  std::ifstream groups("/proc/self/cgroup");
  for (std::string line; std::getline(groups, line);) {
    const std::size_t names = line.find(':');
    const std::size_t path = names == std::string::npos ? names : line.find(':', names + 1);
    if (path == std::string::npos) continue;
    std::istringstream controllers(line.substr(names + 1, path - names - 1));
    bool found = controller.empty() && path == names + 1;
    for (std::string name; std::getline(controllers, name, ',');) found = found || name == controller;
    if (!found) continue;
    const std::string root = controller.empty() ? "/sys/fs/cgroup" : "/sys/fs/cgroup/" + controller;
    std::vector<std::string> folders;
    for (std::string group = line.substr(path + 1); group.size() > 1; group = FolderOf(group)) {
      folders.push_back(root + group);
    }
    folders.push_back(root);
    return folders;
  }
  return {};
}

std::optional<double> QuotaOf(const std::string& quota, const std::string& period) {
  const std::optional<std::int64_t> share = NumberAt(quota);
  const std::optional<std::int64_t> whole = NumberAt(period);
  if (!share || !whole || *share <= 0 || *whole <= 0) return std::nullopt;  // "max", or -1
  return static_cast<double>(*share) / static_cast<double>(*whole);
}

std::optional<double> ProcessorQuota() {
  std::optional<double> least;
  const auto note = [&least](const std::optional<double>& quota) {
    if (quota && (!least || *quota < *least)) least = quota;
  };
  for (const std::string& folder : GroupFolders("")) {
    const std::string line = FirstLine(folder + "/cpu.max");
    const std::size_t blank = line.find(' ');
    if (blank != std::string::npos) note(QuotaOf(line.substr(0, blank), line.substr(blank + 1)));
  }
  for (const std::string& folder : GroupFolders("cpu")) {
    note(QuotaOf(FirstLine(folder + "/cpu.cfs_quota_us"), FirstLine(folder + "/cpu.cfs_period_us")));
  }
  return least;
}

std::optional<std::int64_t> MemoryLimit() {
  constexpr std::int64_t kNone = std::int64_t{1} << 60;  // what the first version writes for none is above it
  std::optional<std::int64_t> least;
  for (const auto& [controller, name] : {std::pair{"", "/memory.max"}, std::pair{"memory", "/memory.limit_in_bytes"}}) {
    for (const std::string& folder : GroupFolders(controller)) {
      const std::optional<std::int64_t> limit = NumberAt(FirstLine(folder + name));
      if (limit && *limit < kNone && (!least || *limit < *least)) least = limit;
    }
  }
  return least;
}

// A path of the list of mounts, in which blanks and the like stand as octal numbers.
std::string MountPath(const std::string& text) {
  constexpr std::size_t kDigits = 3;
  std::string path;
  for (std::size_t i = 0; i < text.size(); ++i) {
    unsigned character = 0;
    const char* const digits = text.data() + i + 1;
    if (text[i] == '\\' && text.size() - i > kDigits &&
        std::from_chars(digits, digits + kDigits, character, 8).ptr == digits + kDigits) {
      path += static_cast<char>(character);
      i += kDigits;
    } else {
      path += text[i];
    }
  }
  return path;
}

bool IsBelow(const std::string& path, const std::string& folder) {
  return folder == "/" || path == folder || path.starts_with(folder + "/");
}

}  // namespace

Finding SystemName() {
  for (const char* path : {"/etc/os-release", "/usr/lib/os-release"}) {
    std::ifstream file(path);
    for (std::string line; std::getline(file, line);) {
      constexpr std::string_view kName = "PRETTY_NAME=";
      if (line.starts_with(kName)) return {Unquoted(Trim(line.substr(kName.size()))), ""};
    }
  }
  return {"", "neither /etc/os-release nor /usr/lib/os-release tells it"};
}

Finding KernelName() {
  utsname names{};
  if (uname(&names) != 0) return {"", SystemErrorText()};
  return {Format("%s %s, %s", names.sysname, names.release, names.machine), ""};
}

Finding RuntimeName() {
  return {std::string("glibc ") + gnu_get_libc_version(), ""};
}

Finding LocaleName() {
  for (const char* name : {"LC_ALL", "LC_TIME", "LANG"}) {
    if (const std::string value = Variable(name); !value.empty()) return {value, ""};
  }
  return {"", "none of LC_ALL, LC_TIME and LANG is set"};
}

Finding TimeZoneName() {
  if (const std::string zone = Variable("TZ"); !zone.empty()) return {zone, ""};
  constexpr std::string_view kZones = "/zoneinfo/";
  std::array<char, PATH_MAX> target{};
  const ssize_t length = readlink("/etc/localtime", target.data(), target.size());
  if (length > 0) {
    const std::string path(target.data(), static_cast<std::size_t>(length));
    if (const std::size_t at = path.find(kZones); at != std::string::npos) return {path.substr(at + kZones.size()), ""};
  }
  if (const std::string zone = FirstLine("/etc/timezone"); !zone.empty()) return {zone, ""};
  return {"", "neither TZ nor /etc/localtime nor /etc/timezone tells it"};
}

ProcessorLimits GetProcessorLimits() {
  constexpr int kMost = 1 << 16;
  ProcessorLimits limits;
  limits.nPresent = static_cast<unsigned>(std::max(0L, sysconf(_SC_NPROCESSORS_ONLN)));
  // The set must be as large as the system's own, which is not told.
  for (int size = CPU_SETSIZE; size <= kMost && limits.nAllowed == 0; size *= 4) {
    const std::unique_ptr<cpu_set_t, void (*)(cpu_set_t*)> set(CPU_ALLOC(static_cast<std::size_t>(size)),
                                                               [](cpu_set_t* all) { CPU_FREE(all); });
    const std::size_t bytes = CPU_ALLOC_SIZE(static_cast<std::size_t>(size));
    if (!set) break;
    if (sched_getaffinity(0, bytes, set.get()) == 0) {
      limits.nAllowed = static_cast<unsigned>(CPU_COUNT_S(bytes, set.get()));
    } else if (errno != EINVAL) {
      break;
    }
  }
  limits.quota = ProcessorQuota();
  limits.nGranted = GrantedProcessors(std::getenv("SLURM_CPUS_PER_TASK"));
  return limits;
}

MemoryFacts GetMemoryFacts() {
  MemoryFacts facts;
  std::ifstream file("/proc/meminfo");
  for (std::string line; std::getline(file, line);) {
    const std::size_t colon = line.find(':');
    if (colon == std::string::npos) continue;
    const std::optional<std::int64_t> number = NumberAt(std::string_view(line).substr(colon + 1));
    if (!number || *number > std::numeric_limits<std::int64_t>::max() / kKibibyte) continue;
    if (line.starts_with("MemTotal:")) facts.total = *number * kKibibyte;
    if (line.starts_with("MemAvailable:")) facts.available = *number * kKibibyte;
  }
  facts.limit = MemoryLimit();
  return facts;
}

Finding FileSystemOf(const std::string& folder) {
  const std::unique_ptr<char, void (*)(void*)> real(realpath(folder.c_str(), nullptr), std::free);
  if (!real) return {"", SystemErrorText()};
  const std::string path = real.get();
  std::ifstream mounts("/proc/self/mountinfo");
  std::string kind;
  std::string place;
  // What is mounted later stands later and hides what lies below.
  for (std::string line; std::getline(mounts, line);) {
    std::istringstream fields(line);
    std::array<std::string, 5> front;  // number, parent, device, root, place
    for (std::string& field : front) fields >> field;
    std::string field;
    while (fields >> field && field != "-") {
    }
    if (!(fields >> field)) continue;
    const std::string mounted = MountPath(front.back());
    if (!IsBelow(path, mounted) || mounted.size() < place.size()) continue;
    kind = field;
    place = mounted;
  }
  if (kind.empty()) return {"", "/proc/self/mountinfo does not tell it"};
  return {kind + " on " + place, ""};
}

std::string SettingsPlace() {
  const std::string folder = FolderByRule("XDG_CONFIG_HOME", ".config");
  return folder.empty() ? folder : JoinPath(folder, "Carvello/Carvello.ini");
}

std::string UserDataFolder() {
  return FolderByRule("XDG_DATA_HOME", ".local/share");
}

std::string HomeFolder() {
  std::string home = Variable("HOME");
  return home.starts_with('/') ? home : std::string();
}

std::string WhyNotLoaded(const std::string& library) {
  void* const loaded = dlopen(library.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (loaded != nullptr) {
    dlclose(loaded);
    return {};
  }
  const char* const reason = dlerror();
  return reason == nullptr ? "the system does not tell why" : reason;
}

FileHandle OpenScratchFile(const std::string& folder) {
  // One without a name where the file system knows such files; else its name goes at once.
  int descriptor = open(folder.c_str(), O_RDWR | O_TMPFILE | O_CLOEXEC, 0600);
  if (descriptor < 0 && (errno == EOPNOTSUPP || errno == EISDIR || errno == EINVAL)) {
    std::string path = JoinPath(folder, "carvello-XXXXXX");
    descriptor = mkostemp(path.data(), O_CLOEXEC);
    if (descriptor >= 0) unlink(path.c_str());
  }
  return descriptor < 0 ? kNoFile : descriptor + 1;
}

FileHandle OpenPastCache(FileHandle scratchFile) {
  const auto descriptor = static_cast<int>(scratchFile - 1);
  posix_fadvise(descriptor, 0, 0, POSIX_FADV_DONTNEED);
  const std::string path = "/proc/self/fd/" + std::to_string(descriptor);
  const int direct = open(path.c_str(), O_RDONLY | O_DIRECT | O_CLOEXEC);
  return direct < 0 ? kNoFile : direct + 1;
}

}  // namespace carvello::platform
