#include "ui/dead_disk.h"

#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <condition_variable>
#include <cstdarg>
#include <cstring>
#include <mutex>
#include <thread>

namespace {

struct SDisk {
  std::mutex mutex;
  std::condition_variable revived;
  std::string folder;  // empty: no disk is dead
  std::thread::id window;
  int nError = 0;  // 0: calls wait
  int nWaiting = 0;
  int nOnWindowThread = 0;
};

// Never destroyed: threads of the program may outlive everything.
SDisk& Disk() {
  static auto* const disk = new SDisk;
  return *disk;
}

// False when the call is to fail.
bool Pass(const char* path) {
  SDisk& disk = Disk();
  std::unique_lock lock(disk.mutex);
  const auto isDead = [&] {
    return !disk.folder.empty() && path != nullptr && std::strncmp(path, disk.folder.c_str(), disk.folder.size()) == 0;
  };
  if (!isDead()) return true;
  if (disk.nError != 0) {
    errno = disk.nError;
    return false;
  }
  if (std::this_thread::get_id() == disk.window) {
    ++disk.nOnWindowThread;
    errno = EIO;
    return false;
  }
  ++disk.nWaiting;
  while (isDead()) disk.revived.wait(lock);
  --disk.nWaiting;
  return true;
}

}  // namespace

#define NEXT(name) static const auto next = reinterpret_cast<decltype(&(name))>(dlsym(RTLD_NEXT, #name))

extern "C" {

int access(const char* path, int mode) noexcept {
  NEXT(access);
  return Pass(path) ? next(path, mode) : -1;
}

int stat(const char* path, struct stat* status) noexcept {
  NEXT(stat);
  return Pass(path) ? next(path, status) : -1;
}

int stat64(const char* path, struct stat64* status) noexcept {
  NEXT(stat64);
  return Pass(path) ? next(path, status) : -1;
}

int lstat64(const char* path, struct stat64* status) noexcept {
  NEXT(lstat64);
  return Pass(path) ? next(path, status) : -1;
}

int statx(int folder, const char* path, int flags, unsigned mask, struct statx* status) noexcept {
  NEXT(statx);
  return Pass(path) ? next(folder, path, flags, mask, status) : -1;
}

int open(const char* path, int flags, ...) {
  NEXT(open);
  va_list arguments;
  va_start(arguments, flags);
  const int mode = (flags & (O_CREAT | O_TMPFILE)) != 0 ? va_arg(arguments, int) : 0;
  va_end(arguments);
  return Pass(path) ? next(path, flags, mode) : -1;
}

int open64(const char* path, int flags, ...) {
  NEXT(open64);
  va_list arguments;
  va_start(arguments, flags);
  const int mode = (flags & (O_CREAT | O_TMPFILE)) != 0 ? va_arg(arguments, int) : 0;
  va_end(arguments);
  return Pass(path) ? next(path, flags, mode) : -1;
}

DIR* opendir(const char* path) {
  NEXT(opendir);
  return Pass(path) ? next(path) : nullptr;
}

}  // extern "C"

namespace carvello::test {

CDeadDisk::CDeadDisk(std::string folder) : CDeadDisk(std::move(folder), 0) {}

CDeadDisk::CDeadDisk(std::string folder, int error) {
  SDisk& disk = Disk();
  const std::scoped_lock lock(disk.mutex);
  disk.folder = std::move(folder);
  disk.nError = error;
  disk.window = std::this_thread::get_id();
  disk.nOnWindowThread = 0;
}

CDeadDisk::~CDeadDisk() {
  Revive();
}

void CDeadDisk::Revive() {
  SDisk& disk = Disk();
  const std::scoped_lock lock(disk.mutex);
  disk.folder.clear();
  disk.revived.notify_all();
}

int CDeadDisk::Waiting() const {
  SDisk& disk = Disk();
  const std::scoped_lock lock(disk.mutex);
  return disk.nWaiting;
}

int CDeadDisk::OnWindowThread() const {
  SDisk& disk = Disk();
  const std::scoped_lock lock(disk.mutex);
  return disk.nOnWindowThread;
}

}  // namespace carvello::test
