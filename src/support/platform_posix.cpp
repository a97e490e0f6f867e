// Files, errors, modules, threads and texts of POSIX systems; times stand in platform_posix_time.cpp, desktop and
// console in platform_posix_desktop.cpp.
#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <linux/capability.h>
#include <pwd.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/statfs.h>
#include <sys/syscall.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <memory>
#include <new>

#include "support/platform.h"
#include "support/text.h"

namespace carvello::platform {

namespace {

// Linux transfers at most this much in one call, and some systems refuse more.
constexpr std::size_t kLargestTransfer = 0x7FFFF000;

int Descriptor(FileHandle file) {
  return static_cast<int>(file - 1);
}

// Repeats a call that a signal interrupts.
template <typename Call>
auto Uninterrupted(Call call) {
  auto result = call();
  while (result == -1 && errno == EINTR) result = call();
  return result;
}

// read(2) or write(2) until everything is transferred, the file ends or the system refuses.
template <typename Buffer, typename Call>
std::size_t TransferAll(Call call, int descriptor, Buffer* buffer, std::size_t bytes) {
  std::size_t done = 0;
  while (done < bytes) {
    const std::size_t part = std::min(bytes - done, kLargestTransfer);
    const ssize_t count = Uninterrupted([&] { return call(descriptor, buffer + done, part); });
    if (count == 0) errno = 0;  // an interruption before it is no reason
    if (count <= 0) break;
    done += static_cast<std::size_t>(count);
  }
  return done;
}

// A descriptor that is none of the standard streams: what the program, or a library of its, says on those must never
// find its way into a file. -1 when the system gives none.
int AboveStandardStreams(int descriptor) {
  if (descriptor < 0 || descriptor > STDERR_FILENO) return descriptor;
  const int above = fcntl(descriptor, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
  const int reason = errno;
  close(descriptor);
  errno = reason;
  return above;
}

int OpenDescriptor(const char* path, int access) {
  return AboveStandardStreams(Uninterrupted([&] { return open(path, access | O_CLOEXEC, 0666); }));
}

}  // namespace

// ---- files -----------------------------------------------------------------------------------------------------

FileHandle OpenFile(const std::string& path, EOpenMode mode) {
  // Without O_NONBLOCK a pipe with nobody at its other end would hold the caller for ever; on files it has no effect.
  int access = O_RDONLY;
  if (mode == EOpenMode::CreateNew) access = O_WRONLY | O_CREAT | O_EXCL;
  if (mode == EOpenMode::Replace) access = O_WRONLY | O_CREAT;
  if (mode == EOpenMode::Change) access = O_RDWR;
  const int descriptor = OpenDescriptor(path.c_str(), access | O_NONBLOCK);
  if (descriptor < 0) return kNoFile;
  // Changed only behind the lock: a file that another job is writing stays as it is. File systems that know no locks
  // do without.
  const auto lock = [&] { return flock(descriptor, LOCK_EX | LOCK_NB); };
  const bool used = mode != EOpenMode::ReadShared && Uninterrupted(lock) != 0 && errno == EWOULDBLOCK;
  struct stat status {};
  int refusal = used ? ETXTBSY : 0;
  if (!used && fstat(descriptor, &status) != 0) {
    refusal = errno;
    if (mode == EOpenMode::CreateNew) unlink(path.c_str());
  }
  if (S_ISDIR(status.st_mode)) refusal = EISDIR;
  if (S_ISFIFO(status.st_mode) || S_ISSOCK(status.st_mode)) refusal = ESPIPE;
  if (refusal == 0 && mode == EOpenMode::Replace && S_ISREG(status.st_mode)) {
    if (Uninterrupted([&] { return ftruncate(descriptor, 0); }) != 0) refusal = errno;
  }
  if (refusal != 0) {
    close(descriptor);
    errno = refusal;
    return kNoFile;
  }
  posix_fadvise(descriptor, 0, 0, POSIX_FADV_SEQUENTIAL);
  return static_cast<FileHandle>(descriptor) + 1;
}

bool CloseFile(FileHandle file) {
  const int kept = errno;
  // Not repeated after an interruption: the descriptor is gone by then.
  if (close(Descriptor(file)) != 0 && errno != EINTR) return false;
  errno = kept;
  return true;
}

std::size_t ReadFile(FileHandle file, void* buffer, std::size_t bytes, std::uint32_t& error) {
  errno = 0;
  const std::size_t done = TransferAll(read, Descriptor(file), static_cast<char*>(buffer), bytes);
  error = done < bytes ? LastError() : 0;
  return done;
}

std::size_t WriteFile(FileHandle file, const void* buffer, std::size_t bytes) {
  return TransferAll(write, Descriptor(file), static_cast<const char*>(buffer), bytes);
}

bool SeekFile(FileHandle file, std::int64_t position) {
  return lseek(Descriptor(file), position, SEEK_SET) >= 0;
}

bool TruncateFile(FileHandle file, std::int64_t length) {
  return Uninterrupted([&] { return ftruncate(Descriptor(file), length); }) == 0;
}

std::int64_t FileLength(FileHandle file) {
  struct stat status {};
  return fstat(Descriptor(file), &status) == 0 ? status.st_size : -1;
}

bool SetModifiedTime(FileHandle file, std::int64_t nanoseconds) {
  constexpr std::int64_t kSecond = 1'000'000'000;
  const std::int64_t fraction = (nanoseconds % kSecond + kSecond) % kSecond;
  std::array<timespec, 2> times{};
  times[0].tv_nsec = UTIME_OMIT;
  times[1].tv_sec = static_cast<std::time_t>((nanoseconds - fraction) / kSecond);
  times[1].tv_nsec = static_cast<long>(fraction);
  return futimens(Descriptor(file), times.data()) == 0;
}

bool SyncFile(FileHandle file) {
  // Devices and pipes have nothing to sync.
  return Uninterrupted([&] { return fsync(Descriptor(file)); }) == 0 || errno == EINVAL || errno == ENOTSUP;
}

bool SyncFileData(FileHandle file) {
  return Uninterrupted([&] { return fdatasync(Descriptor(file)); }) == 0 || errno == EINVAL || errno == ENOTSUP;
}

bool SyncFolder(const std::string& folder) {
  const int descriptor = OpenDescriptor(folder.c_str(), O_RDONLY | O_DIRECTORY);
  if (descriptor < 0) return errno == EACCES;  // a folder that may be written to and not listed
  const bool synced = SyncFile(static_cast<FileHandle>(descriptor) + 1);
  const int reason = errno;
  close(descriptor);
  errno = reason;
  return synced;
}

std::size_t AllowOpenFiles(std::size_t files) {
  rlimit limit{};
  if (getrlimit(RLIMIT_NOFILE, &limit) != 0) return files;
  const rlimit raised{std::min<rlim_t>(files, limit.rlim_max), limit.rlim_max};
  // The soft limit is there for programs that count on few; up to the hard one every program may go.
  if (limit.rlim_cur < raised.rlim_cur && setrlimit(RLIMIT_NOFILE, &raised) == 0) limit = raised;
  return static_cast<std::size_t>(std::min<rlim_t>(limit.rlim_cur, std::numeric_limits<std::size_t>::max()));
}

namespace {

std::optional<FileStatus> StatusOf(int folder, const char* path, int flags) {
  struct statx status {};
  const auto ask = [&] { return statx(folder, path, flags, STATX_BASIC_STATS | STATX_BTIME, &status); };
  if (Uninterrupted(ask) != 0) return std::nullopt;
  const bool hasBirth = (status.stx_mask & STATX_BTIME) != 0;
  FileStatus result;
  result.nSize = static_cast<std::int64_t>(status.stx_size);
  result.bDirectory = S_ISDIR(status.stx_mode);
  result.bRegular = S_ISREG(status.stx_mode);
  result.tCreated = hasBirth ? status.stx_btime.tv_sec : status.stx_ctime.tv_sec;
  result.tModified = status.stx_mtime.tv_sec;
  result.nModified = status.stx_mtime.tv_sec * 1'000'000'000LL + status.stx_mtime.tv_nsec;
  result.nVolume = makedev(status.stx_dev_major, status.stx_dev_minor);
  result.nFileNumber = status.stx_ino;
  return result;
}

}  // namespace

std::optional<FileStatus> GetFileStatus(const std::string& path) {
  return StatusOf(AT_FDCWD, path.c_str(), 0);
}

std::optional<FileStatus> GetFileStatus(FileHandle file) {
  return StatusOf(Descriptor(file), "", AT_EMPTY_PATH);
}

std::optional<FileStatus> GetNameStatus(const std::string& path) {
  return StatusOf(AT_FDCWD, path.c_str(), AT_SYMLINK_NOFOLLOW);
}

bool KeepsFileNumbers(const std::string& path) {
  struct statfs volume {};
  if (Uninterrupted([&] { return statfs(path.c_str(), &volume); }) != 0) return true;
  switch (static_cast<std::uint32_t>(volume.f_type)) {
    case 0x4D44:      // FAT
    case 0x2011BAB0:  // exFAT
    case 0x65735546:  // FUSE
    case 0x517B:      // SMB
    case 0xFF534D42:  // CIFS
    case 0xFE534D42:  // SMB 2
      return false;
    default:
      return true;
  }
}

bool IsReadable(const std::string& path) {
  return access(path.c_str(), R_OK) == 0;
}

bool IsWritableFolder(const std::string& folder) {
  const std::optional<FileStatus> status = GetFileStatus(folder);
  if (!status) return false;
  if (!status->bDirectory) {
    errno = ENOTDIR;
    return false;
  }
  return access(folder.c_str(), W_OK | X_OK) == 0;
}

std::optional<std::int64_t> FreeSpace(const std::string& folder) {
  struct statfs status {};
  if (Uninterrupted([&] { return statfs(folder.c_str(), &status); }) != 0) return std::nullopt;
  const auto block = static_cast<std::uint64_t>(status.f_frsize > 0 ? status.f_frsize : status.f_bsize);
  std::int64_t bytes = 0;
  if (__builtin_mul_overflow(status.f_bavail, block, &bytes)) return std::numeric_limits<std::int64_t>::max();
  return bytes;
}

bool RemoveFolder(const std::string& folder) {
  return rmdir(folder.c_str()) == 0;
}

bool RemoveFile(const std::string& path) {
  return unlink(path.c_str()) == 0;
}

bool RenameFile(const std::string& from, const std::string& to, bool replace) {
  if (replace) return rename(from.c_str(), to.c_str()) == 0;
  if (link(from.c_str(), to.c_str()) == 0) {
    unlink(from.c_str());
    return true;
  }
  // Memory cards and some networks know no second name of a file.
  if (errno != EPERM && errno != EOPNOTSUPP && errno != ENOSYS) return false;
  if (GetNameStatus(to)) {
    errno = EEXIST;
    return false;
  }
  return rename(from.c_str(), to.c_str()) == 0;
}

bool RemoveUnusedFile(const std::string& path) {
  // For writing first: locks of some network file systems ask for that. What can be opened in neither way is written
  // by nobody who could lock it either.
  int descriptor = OpenDescriptor(path.c_str(), O_WRONLY | O_NOFOLLOW | O_NONBLOCK);
  if (descriptor < 0) descriptor = OpenDescriptor(path.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK);
  if (descriptor < 0) return RemoveFile(path);
  // Removed behind the lock: nobody can begin to write the file in between.
  const bool used = flock(descriptor, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK;
  const bool removed = !used && RemoveFile(path);
  const int reason = used ? ETXTBSY : errno;
  close(descriptor);
  errno = reason;
  return removed;
}

namespace {

bool CreateFolderFor(mode_t mode, const std::string& folder) {
  if (mkdir(folder.c_str(), mode) == 0) return true;
  const int reason = errno;
  const std::optional<FileStatus> status = GetFileStatus(folder);
  errno = reason;
  return reason == EEXIST && status && status->bDirectory;
}

}  // namespace

bool CreateFolder(const std::string& folder) {
  return CreateFolderFor(S_IRWXU, folder);
}

bool CreateSharedFolder(const std::string& folder) {
  return CreateFolderFor(S_IRWXU | S_IRWXG | S_IRWXO, folder);
}

std::optional<std::vector<std::string>> ListFolder(const std::string& folder) {
  std::unique_ptr<DIR, int (*)(DIR*)> directory(opendir(folder.c_str()), closedir);
  if (!directory) return std::nullopt;
  std::vector<std::string> names;
  errno = 0;
  while (const dirent* entry = readdir(directory.get())) {
    const std::string_view name = entry->d_name;
    if (name != "." && name != "..") names.emplace_back(name);
    errno = 0;
  }
  const int reason = errno;
  if (reason == 0) return names;
  directory.reset();
  errno = reason;
  return std::nullopt;
}

std::string JoinPath(std::string_view folder, std::string_view name) {
  std::string path(folder);
  if (!path.empty() && path.back() != '/') path += '/';
  return path.append(name);
}

std::string FolderOf(std::string_view path) {
  const std::size_t separator = path.rfind('/');
  if (separator == std::string_view::npos) return ".";
  return std::string(path.substr(0, std::max<std::size_t>(separator, 1)));
}

std::string NameOf(std::string_view path) {
  return std::string(path.substr(path.rfind('/') + 1));
}

std::string AbsolutePath(const std::string& path) {
  if (path.starts_with('/')) return path;
  std::string_view rest = path;
  while (rest == "." || rest.starts_with("./")) rest.remove_prefix(std::min<std::size_t>(rest.size(), 2));
  const std::unique_ptr<char, void (*)(void*)> folder(getcwd(nullptr, 0), std::free);
  if (!folder) return path;
  return rest.empty() ? std::string(folder.get()) : JoinPath(folder.get(), rest);
}

bool FileNamesEqual(std::string_view a, std::string_view b) {
  return a == b;
}

std::string FileNameKey(std::string_view name) {
  return std::string(name);
}

std::string LinkedPath(const std::string& path) {
  struct stat status {};
  if (lstat(path.c_str(), &status) != 0 || !S_ISLNK(status.st_mode)) return path;
  const std::unique_ptr<char, void (*)(void*)> whole(realpath(path.c_str(), nullptr), std::free);
  return whole ? std::string(whole.get()) : path;
}

// ---- errors ----------------------------------------------------------------------------------------------------

std::uint32_t LastError() {
  return static_cast<std::uint32_t>(errno);
}

std::optional<std::string> ErrorText(std::uint32_t code) {
  // The system's own, "Text file busy", is about programs that run.
  if (code == ETXTBSY) return "Another program is writing this file";
  const char* text = code <= INT_MAX ? strerrordesc_np(static_cast<int>(code)) : nullptr;
  if (text == nullptr) return std::nullopt;
  return text;
}

std::optional<std::string> RuntimeErrorText(std::uint32_t code) {
  return ErrorText(code);
}

bool MeansHeldOpen(std::uint32_t /*code*/) {
  return false;
}

std::uint32_t MissingBytesError() {
  return EIO;
}

bool MeansMissing(std::uint32_t code) {
  return code == ENOENT || code == ENOTDIR || code == ENAMETOOLONG;
}

bool MeansRefused(std::uint32_t code) {
  return code == EACCES || code == EPERM || MeansCircle(code);
}

bool MeansCircle(std::uint32_t code) {
  return code == ELOOP;
}

bool MeansUnsupported(std::uint32_t code) {
  return code == EINVAL || code == EOPNOTSUPP || code == ENOSYS;
}

bool MeansExisting(std::uint32_t code) {
  return code == EEXIST;
}

// ---- libraries and the program itself --------------------------------------------------------------------------

LibraryHandle LoadSharedLibrary(const std::string& path) {
  return dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
}

void* FindSymbol(LibraryHandle library, const char* name) {
  return dlsym(library, name);
}

void FreeSharedLibrary(LibraryHandle library) {
  dlclose(library);
}

std::string SharedLibraryFileName(std::string_view name) {
  return "lib" + std::string(name) + ".so";
}

std::string ProgramPath() {
  std::string path(256, '\0');
  for (;;) {
    const ssize_t length = readlink("/proc/self/exe", path.data(), path.size());
    if (length < 0) return {};
    if (static_cast<std::size_t>(length) < path.size()) {
      path.resize(static_cast<std::size_t>(length));
      return path;
    }
    path.resize(path.size() * 2);
  }
}

std::optional<std::string> ModuleVersionValue(const std::string& /*path*/, const std::string& /*key*/) {
  return std::nullopt;
}

std::vector<std::string> ProgramArguments(int argc, char** argv) {
  return {argv, argv + argc};
}

// ---- threads, processes, machine -------------------------------------------------------------------------------

void EndProcess(int exitCode) {
  _exit(exitCode);
}

void PrepareProcess() {
  for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    if (fcntl(stream, F_GETFD) != -1 || errno != EBADF) continue;
    // The lowest free descriptor is the stream's own, for those below it are taken by now. What was to be said on
    // stderr is lost anyway; for stdout the null device is opened the wrong way round, so that a report that nobody
    // gets is not taken for one that was delivered.
    Uninterrupted([&] { return open("/dev/null", stream == STDERR_FILENO ? O_WRONLY : O_RDONLY); });
  }
  std::signal(SIGXFSZ, SIG_IGN);
  // A reader of our messages that goes away must not take unfinished files with it.
  std::signal(SIGPIPE, SIG_IGN);
}

namespace {
void (*g_stopHandler)() = nullptr;
}

void HandleStopRequests(void (*handler)()) {
  g_stopHandler = handler;
  struct sigaction action {};
  action.sa_handler = [](int) { g_stopHandler(); };
  action.sa_flags = SA_RESTART;
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    struct sigaction present {};
    sigaction(signal, nullptr, &present);
    // Who starts a program with nohup wants it to outlive the terminal.
    if (signal == SIGHUP && present.sa_handler == SIG_IGN) continue;
    sigaction(signal, &action, nullptr);
  }
}

namespace {
// The nice value that the program was started with: levels are above and below it. "nice carvello-cli" stays nice.
int StartingNice() {
  static const int nice = getpriority(PRIO_PROCESS, static_cast<id_t>(getpid()));
  return nice;
}
}  // namespace

bool SetCurrentThreadPriority(int priority) {
  struct Level {
    int nPriority;
    int nNice;
  };
  // Small steps: what these levels are for is that reading comes before processing, and one step gives a thread a
  // quarter more of a processor than its neighbour has. At 10 below normal a lone job beside another busy program would
  // be left a tenth of a processor. "Idle" alone asks for that.
  constexpr Level kLevels[] = {{15, -20}, {2, -2}, {1, -1}, {0, 0}, {-1, 1}, {-2, 2}, {-15, 19}};
  const auto* level = std::ranges::find(kLevels, priority, &Level::nPriority);
  if (level == std::end(kLevels)) {
    errno = EINVAL;
    return false;
  }
  // Linux keeps the nice value per thread.
  const auto thread = static_cast<id_t>(syscall(SYS_gettid));
  return setpriority(PRIO_PROCESS, thread, StartingNice() + level->nNice) == 0;  // clamped by the system
}

bool CanRaiseThreadPriority() {
  // To "Above normal", as the workers need it: the privilege, or a resource limit that lets the nice value go so low.
  const auto limitOfAboveNormal = static_cast<rlim_t>(21 - StartingNice());
  rlimit limit{};
  if (getrlimit(RLIMIT_NICE, &limit) == 0 && limit.rlim_cur >= limitOfAboveNormal) return true;
  __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
  __user_cap_data_struct data[_LINUX_CAPABILITY_U32S_3] = {};
  if (syscall(SYS_capget, &header, data) != 0) return false;
  return (data[CAP_TO_INDEX(CAP_SYS_NICE)].effective & CAP_TO_MASK(CAP_SYS_NICE)) != 0;
}

void SetCurrentThreadName(const std::string& name) {
  // The system takes 15 bytes and refuses longer names as a whole.
  pthread_setname_np(pthread_self(), name.substr(0, 15).c_str());
}

void DebugOutput(const std::string& line) {
  static const bool wanted = std::getenv("CARVELLO_DEBUG_OUTPUT") != nullptr;
  if (wanted) std::fprintf(stderr, "%s\n", Printable(line).c_str());
}

std::int64_t ProcessCpuMilliseconds() {
  rusage usage{};
  if (getrusage(RUSAGE_SELF, &usage) != 0) return 0;
  const auto milliseconds = [](const timeval& time) { return std::int64_t{time.tv_sec} * 1000 + time.tv_usec / 1000; };
  return milliseconds(usage.ru_utime) + milliseconds(usage.ru_stime);
}

namespace {

// The name of an account by the system's own list; nothing when it is not there. Asked first, for the C library's
// search through all lists that an account can stand in ends the program where it finds no memory.
std::optional<std::string> LocalUserName(uid_t user, std::vector<char>& texts) {
  const std::unique_ptr<FILE, int (*)(FILE*)> list(std::fopen("/etc/passwd", "re"), std::fclose);
  if (!list) {
    if (errno == ENOMEM) throw std::bad_alloc();
    return std::nullopt;
  }
  passwd entry{};
  for (passwd* found = nullptr; fgetpwent_r(list.get(), &entry, texts.data(), texts.size(), &found) == 0;) {
    const std::string_view name = found->pw_name;
    // A sign in front of a name, or alone, refers to another list.
    if (found->pw_uid == user && !name.starts_with('+') && !name.starts_with('-')) return std::string(name);
  }
  return std::nullopt;
}

}  // namespace

std::string UserName() {
  const uid_t user = geteuid();
  std::vector<char> texts(16384);
  if (const auto name = LocalUserName(user, texts)) return *name;
  passwd entry{};
  passwd* found = nullptr;
  const int refusal = getpwuid_r(user, &entry, texts.data(), texts.size(), &found);
  if (refusal == ENOMEM) throw std::bad_alloc();
  if (refusal == 0 && found != nullptr) return entry.pw_name;
  // An account that no list names, as in containers.
  return std::to_string(user);
}

std::string ComputerName() {
  std::array<char, HOST_NAME_MAX + 1> name{};
  if (gethostname(name.data(), name.size() - 1) != 0) return {};
  return name.data();
}

// ---- texts of the system code page -----------------------------------------------------------------------------

std::string Utf8ToSystemCodePage(std::string_view text) {
  return std::string(text);
}

std::string SystemCodePageToUtf8(std::string_view bytes) {
  // What is no UTF-8 was most likely written on Windows.
  return IsUtf8(bytes) ? std::string(bytes) : Windows1252ToUtf8(bytes);
}

}  // namespace carvello::platform
