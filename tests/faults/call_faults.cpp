// Preloaded into the program under test: counts the calls that the program makes, kind by kind, from main's first line
// to its return, and lets one of them, or all from one on, fail. What fails is told by the environment:
//
//   FAULT_KIND    open, read, write, seek, truncate, sync, close, rename, remove, stat, folder, lock, memory or thread
//   FAULT_AT      which call of that kind fails; the first is 1
//   FAULT_TIMES   how many calls fail, one after the other; 0: all from there on
//   FAULT_ERROR   an error number; or "short": half of the bytes are transferred; "end": a read tells the end of the
//                 file; "full": a write transfers half and those behind it fail with ENOSPC; "kill": the process dies
//   FAULT_COUNTS  a file of at least (kinds + 1) * 8 bytes, mapped: the calls made of each kind, then the calls failed
//   FAULT_CLOCK   seconds since 1970 at which the clock of the day stands still, so that two runs write equal files
//   FAULT_TRACE   a file to append a line to for every write and sync of a file, see Trace
//   FAULT_PAUSE   microseconds that every read of 64 KiB or more takes longer
//
// What the C library calls within itself (of stdio and the dynamic loader, for instance) is out of reach, apart from
// memory. Nothing is ever synced: no test here takes the power away, and disks are slow.
#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <pthread.h>
#include <sys/file.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/time.h>
#include <sys/uio.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>

extern "C" {
// The C library's own names of what is put in front of it below; they do not look for themselves as dlsym would.
void* __libc_malloc(std::size_t);
void* __libc_calloc(std::size_t, std::size_t);
void* __libc_realloc(void*, std::size_t);
void* __libc_memalign(std::size_t, std::size_t);
}

namespace {

enum EKind {
  Open,
  Read,
  Write,
  Seek,
  Truncate,
  Sync,
  Close,
  Rename,
  Remove,
  Stat,
  Folder,
  Lock,
  Memory,
  Thread,
  Kinds
};
constexpr std::array<const char*, Kinds> kNames = {"open",   "read",  "write",  "seek",   "truncate",
                                                   "sync",   "close", "rename", "remove", "stat",
                                                   "folder", "lock",  "memory", "thread"};
enum class EAction { Pass, Fail, Short, End };

struct SCounts {
  std::array<std::atomic<std::uint64_t>, Kinds> calls;
  std::atomic<std::uint64_t> nFailed;
};

SCounts g_ownCounts;
SCounts* g_pCounts = &g_ownCounts;
std::atomic<bool> g_bActive = false;
int g_kind = Kinds;
std::uint64_t g_nAt = 0;
std::uint64_t g_nTimes = 1;
int g_nError = EIO;
bool g_bShort = false, g_bEnd = false, g_bFull = false, g_bKill = false;
time_t g_tClock = 0;
useconds_t g_nPause = 0;
int g_nTrace = -1;

std::uint64_t Number(const char* name, std::uint64_t otherwise) {
  const char* const text = std::getenv(name);
  return text == nullptr ? otherwise : std::strtoull(text, nullptr, 10);
}

__attribute__((constructor)) void Configure() {
  if (const char* const kind = std::getenv("FAULT_KIND")) {
    g_kind = static_cast<int>(
        std::find_if(kNames.begin(), kNames.end(), [&](auto name) { return std::strcmp(name, kind) == 0; }) -
        kNames.begin());
  }
  g_nAt = Number("FAULT_AT", 0);
  g_nTimes = Number("FAULT_TIMES", 1);
  g_tClock = static_cast<time_t>(Number("FAULT_CLOCK", 0));
  g_nPause = static_cast<useconds_t>(Number("FAULT_PAUSE", 0));
  if (const char* const path = std::getenv("FAULT_TRACE")) {
    g_nTrace = static_cast<int>(syscall(SYS_openat, AT_FDCWD, path, O_WRONLY | O_APPEND | O_CREAT, 0600));
    if (g_nTrace < 0) std::abort();
  }
  if (const char* const error = std::getenv("FAULT_ERROR")) {
    g_bShort = std::strcmp(error, "short") == 0;
    g_bEnd = std::strcmp(error, "end") == 0;
    g_bFull = std::strcmp(error, "full") == 0;
    g_bKill = std::strcmp(error, "kill") == 0;
    g_nError = g_bFull ? ENOSPC : std::atoi(error);
  }
  if (const char* const path = std::getenv("FAULT_COUNTS")) {
    const auto file = static_cast<int>(syscall(SYS_openat, AT_FDCWD, path, O_RDWR, 0));
    void* const place = mmap(nullptr, sizeof(SCounts), PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
    if (place == MAP_FAILED) std::abort();
    syscall(SYS_close, file);
    g_pCounts = static_cast<SCounts*>(place);
  }
}

// Counts a call, and tells what becomes of it. errno is set where it fails.
EAction Next(EKind kind) {
  if (!g_bActive) return EAction::Pass;
  const std::uint64_t number = ++g_pCounts->calls[static_cast<std::size_t>(kind)];
  if (kind != g_kind || number < g_nAt || (g_nTimes != 0 && number >= g_nAt + g_nTimes)) return EAction::Pass;
  ++g_pCounts->nFailed;
  if (g_bKill) kill(getpid(), SIGKILL);
  if (g_bShort || (g_bFull && number == g_nAt)) return EAction::Short;
  if (g_bEnd) return EAction::End;
  errno = g_nError;
  return EAction::Fail;
}

bool Fails(EKind kind) {
  return Next(kind) == EAction::Fail;
}

// "write 131 44 4096" for 4096 bytes at offset 44 of the file with that number, "sync 131 0 0". For what has succeeded.
void Trace(const char* what, int file, off_t offset, ssize_t bytes) {
  if (g_nTrace < 0 || !g_bActive || bytes < 0) return;
  const int reason = errno;
  struct stat status {};
  syscall(SYS_fstat, file, &status);
  std::array<char, 128> line{};
  const int length = std::snprintf(line.data(), line.size(), "%s %llu %lld %lld\n", what,
                                   static_cast<unsigned long long>(status.st_ino), static_cast<long long>(offset),
                                   static_cast<long long>(bytes));
  if (syscall(SYS_write, g_nTrace, line.data(), static_cast<std::size_t>(length)) != length) std::abort();
  errno = reason;
}

int SyncFile(int file) {
  if (Fails(Sync)) return -1;
  Trace("sync", file, 0, 0);
  return 0;
}

std::size_t Half(std::size_t bytes) {
  return bytes < 2 ? bytes : bytes / 2;
}

template <typename TRead>
ssize_t ReadOrFail(std::size_t bytes, TRead read) {
  switch (Next(Read)) {
    case EAction::Fail:
      return -1;
    case EAction::End:
      return 0;
    case EAction::Short:
      return read(Half(bytes));
    case EAction::Pass:
      break;
  }
  return read(bytes);
}

int Mode(int flags, va_list arguments) {
  return (flags & (O_CREAT | O_TMPFILE)) != 0 ? va_arg(arguments, int) : 0;
}

int (*g_main)(int, char**, char**);

int CountedMain(int argc, char** argv, char** environment) {
  g_bActive = true;
  const int result = g_main(argc, argv, environment);
  g_bActive = false;
  return result;
}

}  // namespace

// The function of this name that the program would have called.
#define NEXT(name) static const auto next = reinterpret_cast<decltype(&(name))>(dlsym(RTLD_NEXT, #name))
// A function that fails as a whole or is passed on as a whole.
#define PASS_OR_FAIL(kind, failed, name, ...) \
  NEXT(name);                                 \
  return Fails(kind) ? (failed) : next(__VA_ARGS__)

extern "C" {

int __libc_start_main(int (*program)(int, char**, char**), int argc, char** argv, void (*init)(), void (*fini)(),
                      void (*loaderFini)(), void* stackEnd) {
  g_main = program;
  const auto next = reinterpret_cast<decltype(&__libc_start_main)>(dlsym(RTLD_NEXT, "__libc_start_main"));
  return next(CountedMain, argc, argv, init, fini, loaderFini, stackEnd);
}

// ---- files -----------------------------------------------------------------------------------------------------

#define DEFINE_OPEN(name)                            \
  int name(const char* path, int flags, ...) {       \
    va_list arguments;                               \
    va_start(arguments, flags);                      \
    const int mode = Mode(flags, arguments);         \
    va_end(arguments);                               \
    PASS_OR_FAIL(Open, -1, name, path, flags, mode); \
  }
DEFINE_OPEN(open)
DEFINE_OPEN(open64)

#define DEFINE_OPENAT(name)                                  \
  int name(int folder, const char* path, int flags, ...) {   \
    va_list arguments;                                       \
    va_start(arguments, flags);                              \
    const int mode = Mode(flags, arguments);                 \
    va_end(arguments);                                       \
    PASS_OR_FAIL(Open, -1, name, folder, path, flags, mode); \
  }
DEFINE_OPENAT(openat)
DEFINE_OPENAT(openat64)

int creat(const char* path, mode_t mode) {
  PASS_OR_FAIL(Open, -1, creat, path, mode);
}

int close(int file) {
  NEXT(close);
  // The descriptor is gone, whatever is told.
  const bool fails = Fails(Close);
  const int reason = errno;
  const int result = next(file);
  if (!fails) return result;
  errno = reason;
  return -1;
}

ssize_t read(int file, void* buffer, std::size_t bytes) {
  NEXT(read);
  if (g_nPause != 0 && bytes >= 65536) usleep(g_nPause);
  return ReadOrFail(bytes, [&](std::size_t count) { return next(file, buffer, count); });
}

ssize_t pread(int file, void* buffer, std::size_t bytes, off_t offset) {
  NEXT(pread);
  return ReadOrFail(bytes, [&](std::size_t count) { return next(file, buffer, count, offset); });
}

ssize_t pread64(int file, void* buffer, std::size_t bytes, off64_t offset) {
  return pread(file, buffer, bytes, offset);
}

ssize_t readv(int file, const iovec* buffers, int count) {
  PASS_OR_FAIL(Read, -1, readv, file, buffers, count);
}

ssize_t write(int file, const void* buffer, std::size_t bytes) {
  NEXT(write);
  const EAction action = Next(Write);
  if (action == EAction::Fail) return -1;
  const off_t offset = syscall(SYS_lseek, file, 0, SEEK_CUR);
  const ssize_t written = next(file, buffer, action == EAction::Short ? Half(bytes) : bytes);
  Trace("write", file, offset, written);
  return written;
}

ssize_t pwrite(int file, const void* buffer, std::size_t bytes, off_t offset) {
  NEXT(pwrite);
  const EAction action = Next(Write);
  if (action == EAction::Fail) return -1;
  const ssize_t written = next(file, buffer, action == EAction::Short ? Half(bytes) : bytes, offset);
  Trace("write", file, offset, written);
  return written;
}

ssize_t pwrite64(int file, const void* buffer, std::size_t bytes, off64_t offset) {
  return pwrite(file, buffer, bytes, offset);
}

ssize_t writev(int file, const iovec* buffers, int count) {
  PASS_OR_FAIL(Write, -1, writev, file, buffers, count);
}

off_t lseek(int file, off_t offset, int whence) noexcept {
  PASS_OR_FAIL(Seek, -1, lseek, file, offset, whence);
}
off64_t lseek64(int file, off64_t offset, int whence) noexcept {
  PASS_OR_FAIL(Seek, -1, lseek64, file, offset, whence);
}

int ftruncate(int file, off_t length) noexcept {
  PASS_OR_FAIL(Truncate, -1, ftruncate, file, length);
}
int ftruncate64(int file, off64_t length) noexcept {
  PASS_OR_FAIL(Truncate, -1, ftruncate64, file, length);
}
int truncate(const char* path, off_t length) noexcept {
  PASS_OR_FAIL(Truncate, -1, truncate, path, length);
}

int fsync(int file) {
  return SyncFile(file);
}
int fdatasync(int file) {
  return SyncFile(file);
}
int sync_file_range(int /*file*/, off64_t /*offset*/, off64_t /*bytes*/, unsigned /*flags*/) {
  return Fails(Sync) ? -1 : 0;
}

int flock(int file, int operation) noexcept {
  PASS_OR_FAIL(Lock, -1, flock, file, operation);
}

// ---- names -----------------------------------------------------------------------------------------------------

int rename(const char* from, const char* to) noexcept {
  PASS_OR_FAIL(Rename, -1, rename, from, to);
}
int renameat(int fromFolder, const char* from, int toFolder, const char* to) noexcept {
  PASS_OR_FAIL(Rename, -1, renameat, fromFolder, from, toFolder, to);
}
int renameat2(int fromFolder, const char* from, int toFolder, const char* to, unsigned flags) noexcept {
  PASS_OR_FAIL(Rename, -1, renameat2, fromFolder, from, toFolder, to, flags);
}
int link(const char* from, const char* to) noexcept {
  PASS_OR_FAIL(Rename, -1, link, from, to);
}
int linkat(int fromFolder, const char* from, int toFolder, const char* to, int flags) noexcept {
  PASS_OR_FAIL(Rename, -1, linkat, fromFolder, from, toFolder, to, flags);
}
int unlink(const char* path) noexcept {
  PASS_OR_FAIL(Remove, -1, unlink, path);
}
int unlinkat(int folder, const char* path, int flags) noexcept {
  PASS_OR_FAIL(Remove, -1, unlinkat, folder, path, flags);
}
int remove(const char* path) noexcept {
  PASS_OR_FAIL(Remove, -1, remove, path);
}

int stat(const char* path, struct stat* status) noexcept {
  PASS_OR_FAIL(Stat, -1, stat, path, status);
}
int stat64(const char* path, struct stat64* status) noexcept {
  PASS_OR_FAIL(Stat, -1, stat64, path, status);
}
int lstat(const char* path, struct stat* status) noexcept {
  PASS_OR_FAIL(Stat, -1, lstat, path, status);
}
int lstat64(const char* path, struct stat64* status) noexcept {
  PASS_OR_FAIL(Stat, -1, lstat64, path, status);
}
int fstat(int file, struct stat* status) noexcept {
  PASS_OR_FAIL(Stat, -1, fstat, file, status);
}
int fstat64(int file, struct stat64* status) noexcept {
  PASS_OR_FAIL(Stat, -1, fstat64, file, status);
}
int fstatat(int folder, const char* path, struct stat* status, int flags) noexcept {
  PASS_OR_FAIL(Stat, -1, fstatat, folder, path, status, flags);
}
int fstatat64(int folder, const char* path, struct stat64* status, int flags) noexcept {
  PASS_OR_FAIL(Stat, -1, fstatat64, folder, path, status, flags);
}
int statx(int folder, const char* path, int flags, unsigned mask, struct statx* status) noexcept {
  PASS_OR_FAIL(Stat, -1, statx, folder, path, flags, mask, status);
}
int futimens(int file, const timespec times[2]) noexcept {
  PASS_OR_FAIL(Stat, -1, futimens, file, times);
}
int access(const char* path, int mode) noexcept {
  PASS_OR_FAIL(Stat, -1, access, path, mode);
}
int faccessat(int folder, const char* path, int mode, int flags) noexcept {
  PASS_OR_FAIL(Stat, -1, faccessat, folder, path, mode, flags);
}
ssize_t readlink(const char* path, char* buffer, std::size_t bytes) noexcept {
  PASS_OR_FAIL(Stat, -1, readlink, path, buffer, bytes);
}
char* realpath(const char* path, char* resolved) noexcept {
  PASS_OR_FAIL(Stat, nullptr, realpath, path, resolved);
}
char* getcwd(char* buffer, std::size_t bytes) noexcept {
  PASS_OR_FAIL(Stat, nullptr, getcwd, buffer, bytes);
}

DIR* opendir(const char* path) {
  PASS_OR_FAIL(Folder, nullptr, opendir, path);
}
DIR* fdopendir(int file) {
  PASS_OR_FAIL(Folder, nullptr, fdopendir, file);
}
dirent* readdir(DIR* folder) {
  PASS_OR_FAIL(Folder, nullptr, readdir, folder);
}
dirent64* readdir64(DIR* folder) {
  PASS_OR_FAIL(Folder, nullptr, readdir64, folder);
}

// ---- memory and threads ----------------------------------------------------------------------------------------

void* malloc(std::size_t bytes) noexcept {
  return Fails(Memory) ? nullptr : __libc_malloc(bytes);
}
void* calloc(std::size_t count, std::size_t bytes) noexcept {
  return Fails(Memory) ? nullptr : __libc_calloc(count, bytes);
}
void* realloc(void* block, std::size_t bytes) noexcept {
  return Fails(Memory) ? nullptr : __libc_realloc(block, bytes);
}
void* aligned_alloc(std::size_t alignment, std::size_t bytes) noexcept {
  return Fails(Memory) ? nullptr : __libc_memalign(alignment, bytes);
}
void* memalign(std::size_t alignment, std::size_t bytes) noexcept {
  return Fails(Memory) ? nullptr : __libc_memalign(alignment, bytes);
}
int posix_memalign(void** block, std::size_t alignment, std::size_t bytes) noexcept {
  void* const got = Fails(Memory) ? nullptr : __libc_memalign(alignment, bytes);
  if (got == nullptr) return ENOMEM;
  *block = got;
  return 0;
}

int pthread_create(pthread_t* thread, const pthread_attr_t* attributes, void* (*body)(void*), void* argument) noexcept {
  NEXT(pthread_create);
  return Fails(Thread) ? errno : next(thread, attributes, body, argument);
}

// ---- the clock of the day --------------------------------------------------------------------------------------

int clock_gettime(clockid_t clock, timespec* now) noexcept {
  NEXT(clock_gettime);
  if (g_tClock == 0 || clock != CLOCK_REALTIME) return next(clock, now);
  *now = {g_tClock, 0};
  return 0;
}

time_t time(time_t* now) noexcept {
  timespec moment{};
  clock_gettime(CLOCK_REALTIME, &moment);
  if (now != nullptr) *now = moment.tv_sec;
  return moment.tv_sec;
}

int gettimeofday(timeval* now, void* /*zone*/) noexcept {
  timespec moment{};
  clock_gettime(CLOCK_REALTIME, &moment);
  *now = {moment.tv_sec, moment.tv_nsec / 1000};
  return 0;
}

}  // extern "C"
