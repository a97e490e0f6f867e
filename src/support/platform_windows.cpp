// Files, errors, modules and threads of Windows.
#include "support/platform.h"

// clang-format off
#include <windows.h>
#include <shellapi.h>
// clang-format on

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <memory>
#include <utility>

#include "support/platform_windows_text.h"
#include "support/text.h"

namespace carvello::platform {

namespace {

// A part of at most this many bytes goes into one call: the calls count in 32 bits, and network drives take less.
constexpr std::size_t kLargestTransfer = 64U << 20U;
constexpr std::uint64_t kTicksPerSecond = 10'000'000;  // of a FILETIME
constexpr std::int64_t kSecondsFrom1601To1970 = 11'644'473'600;

struct CloseOnExit {
  void operator()(HANDLE handle) const { CloseHandle(handle); }
};
using OwnedHandle = std::unique_ptr<void, CloseOnExit>;

HANDLE AsHandle(FileHandle file) {
  return reinterpret_cast<HANDLE>(file);
}

std::uint64_t Join(DWORD high, DWORD low) {
  return std::uint64_t{high} << 32U | low;
}

std::int64_t SecondsOf(const FILETIME& time) {
  return static_cast<std::int64_t>(Join(time.dwHighDateTime, time.dwLowDateTime) / kTicksPerSecond) -
         kSecondsFrom1601To1970;
}

std::int64_t NanosecondsOf(const FILETIME& time) {
  constexpr std::int64_t kNanosecondsPerTick = 100;
  const auto ticks = static_cast<std::int64_t>(Join(time.dwHighDateTime, time.dwLowDateTime));
  return (ticks - kSecondsFrom1601To1970 * static_cast<std::int64_t>(kTicksPerSecond)) * kNanosecondsPerTick;
}

bool IsFolder(const std::wstring& path) {
  const DWORD attributes = GetFileAttributesW(path.c_str());
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

// ReadFile or WriteFile in parts until everything is transferred, the file ends or the system refuses.
template <typename Byte, typename Call>
std::size_t TransferAll(Call call, Byte* buffer, std::size_t bytes) {
  std::size_t done = 0;
  while (done < bytes) {
    const auto part = static_cast<DWORD>(std::min(bytes - done, kLargestTransfer));
    DWORD count = 0;
    if (!call(buffer + done, part, &count) || count == 0) break;
    done += count;
  }
  return done;
}

}  // namespace

// ---- files -----------------------------------------------------------------------------------------------------

FileHandle OpenFile(const std::string& path, EOpenMode mode) {
  const bool read = mode == EOpenMode::ReadShared;
  DWORD access = read ? GENERIC_READ : GENERIC_WRITE;
  if (mode == EOpenMode::Change) access = GENERIC_READ | GENERIC_WRITE;
  const DWORD share = read ? FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE : FILE_SHARE_READ;
  DWORD disposition = OPEN_EXISTING;
  if (mode == EOpenMode::CreateNew) disposition = CREATE_NEW;
  if (mode == EOpenMode::Replace) disposition = CREATE_ALWAYS;
  const HANDLE file = CreateFileW(WidePath(path).c_str(), access, share, nullptr, disposition,
                                  FILE_ATTRIBUTE_NORMAL | FILE_FLAG_SEQUENTIAL_SCAN, nullptr);
  return file == INVALID_HANDLE_VALUE ? kNoFile : reinterpret_cast<FileHandle>(file);
}

bool CloseFile(FileHandle file) {
  const DWORD kept = GetLastError();
  if (CloseHandle(AsHandle(file)) == 0) return false;
  SetLastError(kept);
  return true;
}

std::size_t ReadFile(FileHandle file, void* buffer, std::size_t bytes, std::uint32_t& error) {
  error = 0;
  const auto read = [&](char* part, DWORD size, DWORD* count) {
    const bool done = ::ReadFile(AsHandle(file), part, size, count, nullptr) != 0;
    error = done ? 0 : GetLastError();
    return done;
  };
  return TransferAll(read, static_cast<char*>(buffer), bytes);
}

std::size_t WriteFile(FileHandle file, const void* buffer, std::size_t bytes) {
  return TransferAll([&](const char* part, DWORD size,
                         DWORD* count) { return ::WriteFile(AsHandle(file), part, size, count, nullptr) != 0; },
                     static_cast<const char*>(buffer), bytes);
}

bool SeekFile(FileHandle file, std::int64_t position) {
  LARGE_INTEGER target;
  target.QuadPart = position;
  return SetFilePointerEx(AsHandle(file), target, nullptr, FILE_BEGIN) != 0;
}

bool TruncateFile(FileHandle file, std::int64_t length) {
  FILE_END_OF_FILE_INFO end{};
  end.EndOfFile.QuadPart = length;
  return SetFileInformationByHandle(AsHandle(file), FileEndOfFileInfo, &end, sizeof(end)) != 0;
}

std::int64_t FileLength(FileHandle file) {
  LARGE_INTEGER length;
  return GetFileSizeEx(AsHandle(file), &length) != 0 ? length.QuadPart : -1;
}

bool SetModifiedTime(FileHandle file, std::int64_t nanoseconds) {
  constexpr std::int64_t kNanosecondsPerTick = 100;
  const std::int64_t ticks =
      nanoseconds / kNanosecondsPerTick + kSecondsFrom1601To1970 * static_cast<std::int64_t>(kTicksPerSecond);
  FILETIME time{};
  time.dwLowDateTime = static_cast<DWORD>(static_cast<std::uint64_t>(ticks) & 0xFFFFFFFFU);
  time.dwHighDateTime = static_cast<DWORD>(static_cast<std::uint64_t>(ticks) >> 32U);
  return SetFileTime(AsHandle(file), nullptr, nullptr, &time) != 0;
}

bool SyncFile(FileHandle file) {
  // Devices have nothing to sync.
  return FlushFileBuffers(AsHandle(file)) != 0 || GetLastError() == ERROR_INVALID_FUNCTION;
}

bool SyncFileData(FileHandle file) {
  return SyncFile(file);  // no call does less
}

bool SyncFolder(const std::string& /*folder*/) {
  return true;  // the file system's journal keeps names safe, and no call waits for it
}

std::size_t AllowOpenFiles(std::size_t files) {
  return files;  // handles of the system, of which a process has millions; the C runtime's own limit is for its streams
}

std::optional<FileStatus> GetFileStatus(FileHandle file) {
  BY_HANDLE_FILE_INFORMATION information{};
  if (GetFileInformationByHandle(AsHandle(file), &information) == 0) return std::nullopt;
  FileStatus status;
  status.nSize = static_cast<std::int64_t>(Join(information.nFileSizeHigh, information.nFileSizeLow));
  status.bDirectory = (information.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
  status.bRegular = !status.bDirectory && GetFileType(AsHandle(file)) == FILE_TYPE_DISK;
  status.tCreated = SecondsOf(information.ftCreationTime);
  status.tModified = SecondsOf(information.ftLastWriteTime);
  status.nModified = NanosecondsOf(information.ftLastWriteTime);
  status.nVolume = information.dwVolumeSerialNumber;
  status.nFileNumber = Join(information.nFileIndexHigh, information.nFileIndexLow);
  return status;
}

namespace {

constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

std::optional<FileStatus> StatusOf(const std::string& path, DWORD flags) {
  // Attributes only, which even a file that others hold open gives; the flag lets folders be opened too.
  const HANDLE raw = CreateFileW(WidePath(path).c_str(), FILE_READ_ATTRIBUTES, kShareAll, nullptr, OPEN_EXISTING,
                                 FILE_FLAG_BACKUP_SEMANTICS | flags, nullptr);
  if (raw == INVALID_HANDLE_VALUE) return std::nullopt;
  const OwnedHandle handle(raw);
  return GetFileStatus(reinterpret_cast<FileHandle>(handle.get()));
}

}  // namespace

std::optional<FileStatus> GetFileStatus(const std::string& path) {
  return StatusOf(path, 0);
}

std::optional<FileStatus> GetNameStatus(const std::string& path) {
  return StatusOf(path, FILE_FLAG_OPEN_REPARSE_POINT);
}

bool KeepsFileNumbers(const std::string& /*path*/) {
  return true;  // they tell where on the disk a file, or its entry, stands
}

bool IsReadable(const std::string& path) {
  // Opened, for only that tells of a file that another program keeps to itself.
  const HANDLE raw = CreateFileW(WidePath(path).c_str(), GENERIC_READ, kShareAll, nullptr, OPEN_EXISTING,
                                 FILE_FLAG_BACKUP_SEMANTICS, nullptr);
  if (raw == INVALID_HANDLE_VALUE) return false;
  CloseHandle(raw);
  return true;
}

bool IsWritableFolder(const std::string& folder) {
  const std::wstring path = WidePath(folder);
  const DWORD attributes = GetFileAttributesW(path.c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES) return false;
  if (!IsFolder(path)) {
    SetLastError(ERROR_DIRECTORY);
    return false;
  }
  const HANDLE handle =
      CreateFileW(path.c_str(), FILE_ADD_FILE, kShareAll, nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
  if (handle == INVALID_HANDLE_VALUE) return false;
  CloseHandle(handle);
  return true;
}

std::optional<std::int64_t> FreeSpace(const std::string& folder) {
  ULARGE_INTEGER available{};  // to this user, whose share may be smaller than the disk
  if (GetDiskFreeSpaceExW(WidePath(folder).c_str(), &available, nullptr, nullptr) == 0) return std::nullopt;
  constexpr auto kLargest = static_cast<ULONGLONG>(std::numeric_limits<std::int64_t>::max());
  return static_cast<std::int64_t>(std::min(available.QuadPart, kLargest));
}

bool RemoveFolder(const std::string& folder) {
  return RemoveDirectoryW(WidePath(folder).c_str()) != 0;
}

bool RemoveFile(const std::string& path) {
  return DeleteFileW(WidePath(path).c_str()) != 0;
}

bool RenameFile(const std::string& from, const std::string& to, bool replace) {
  return MoveFileExW(WidePath(from).c_str(), WidePath(to).c_str(), replace ? MOVEFILE_REPLACE_EXISTING : 0) != 0;
}

bool RemoveUnusedFile(const std::string& path) {
  return RemoveFile(path);  // what is open for writing is shared for reading only, so the system refuses by itself
}

bool CreateFolder(const std::string& folder) {
  if (CreateDirectoryW(WidePath(folder).c_str(), nullptr) != 0) return true;  // in a folder that is the user's own
  const DWORD reason = GetLastError();
  const std::optional<FileStatus> status = GetFileStatus(folder);
  SetLastError(reason);
  return reason == ERROR_ALREADY_EXISTS && status && status->bDirectory;
}

bool CreateSharedFolder(const std::string& folder) {
  return CreateFolder(folder);  // who may go in is what the folder above hands down
}

std::optional<std::vector<std::string>> ListFolder(const std::string& folder) {
  struct CloseFind {
    void operator()(HANDLE handle) const { FindClose(handle); }
  };
  WIN32_FIND_DATAW entry{};
  const HANDLE raw = FindFirstFileW(WidePath(JoinPath(folder, "*")).c_str(), &entry);
  // Some file systems have not even the folder itself in an empty one.
  if (raw == INVALID_HANDLE_VALUE && GetLastError() == ERROR_NO_MORE_FILES) return std::vector<std::string>();
  if (raw == INVALID_HANDLE_VALUE) return std::nullopt;
  std::unique_ptr<void, CloseFind> search(raw);
  std::vector<std::string> names;
  do {
    const std::wstring_view name = entry.cFileName;
    if (name != L"." && name != L"..") names.push_back(Narrow(name));
  } while (FindNextFileW(search.get(), &entry) != 0);
  const DWORD reason = GetLastError();
  if (reason == ERROR_NO_MORE_FILES) return names;
  search.reset();
  SetLastError(reason);
  return std::nullopt;
}

namespace {
constexpr std::string_view kSeparators = "\\/:";
}

std::string JoinPath(std::string_view folder, std::string_view name) {
  std::string path(folder);
  if (!path.empty() && kSeparators.find(path.back()) == std::string_view::npos) path += '\\';
  return path.append(name);
}

std::string FolderOf(std::string_view path) {
  const std::size_t separator = path.find_last_of(kSeparators);
  if (separator == std::string_view::npos) return ".";
  // Roots keep their separator: "\", "C:\" and, for what stands in a drive's present folder, "C:".
  const bool isRoot = separator == 0 || path[separator] == ':' || path[separator - 1] == ':';
  return std::string(path.substr(0, isRoot ? separator + 1 : separator));
}

std::string NameOf(std::string_view path) {
  return std::string(path.substr(path.find_last_of(kSeparators) + 1));
}

std::string AbsolutePath(const std::string& path) {
  const std::wstring wide = Wide(path);
  const std::wstring full =
      GrowingText([&](wchar_t* buffer, DWORD size) { return GetFullPathNameW(wide.c_str(), size, buffer, nullptr); });
  return full.empty() ? path : Narrow(full);
}

bool FileNamesEqual(std::string_view a, std::string_view b) {
  const std::wstring wideA = Wide(a);
  const std::wstring wideB = Wide(b);
  return CompareStringOrdinal(wideA.c_str(), static_cast<int>(wideA.size()), wideB.c_str(),
                              static_cast<int>(wideB.size()), TRUE) == CSTR_EQUAL;
}

std::string FileNameKey(std::string_view name) {
  const std::wstring wide = Wide(name);
  // Letter for letter, as names are compared.
  std::wstring upper = wide;
  LCMapStringEx(LOCALE_NAME_INVARIANT, LCMAP_UPPERCASE, wide.c_str(), static_cast<int>(wide.size()), upper.data(),
                static_cast<int>(upper.size()), nullptr, nullptr, 0);
  return Narrow(upper);
}

std::string LinkedPath(const std::string& path) {
  const std::wstring wide = WidePath(path);
  const DWORD attributes = GetFileAttributesW(wide.c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES || (attributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0) return path;
  const HANDLE raw =
      CreateFileW(wide.c_str(), 0, kShareAll, nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
  if (raw == INVALID_HANDLE_VALUE) return path;
  const std::wstring whole = GrowingText([raw](wchar_t* buffer, DWORD size) {
    return GetFinalPathNameByHandleW(raw, buffer, size, FILE_NAME_NORMALIZED | VOLUME_NAME_DOS);
  });
  CloseHandle(raw);
  return whole.empty() ? path : Narrow(whole);
}

// ---- errors ----------------------------------------------------------------------------------------------------

std::uint32_t LastError() {
  return GetLastError();
}

std::optional<std::string> ErrorText(std::uint32_t code) {
  std::array<wchar_t, 512> text{};
  const DWORD length = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, code, 0,
                                      text.data(), static_cast<DWORD>(text.size()), nullptr);
  if (length == 0) return std::nullopt;
  std::string line = ReplaceAll(ReplaceAll(Narrow({text.data(), length}), "\r\n", " "), "\n\r", " ");
  std::replace_if(
      line.begin(), line.end(), [](char c) { return c == '\r' || c == '\n'; }, ' ');
  return line;
}

std::optional<std::string> RuntimeErrorText(std::uint32_t code) {
  // The runtime counts what can happen to a file in kinds of its own.
  switch (code) {
    case ERROR_SUCCESS:
      return std::strerror(0);
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
    case ERROR_INVALID_DRIVE:
    case ERROR_BAD_NETPATH:
    case ERROR_BAD_NET_NAME:
      return std::strerror(ENOENT);
    case ERROR_SHARING_VIOLATION:
    case ERROR_LOCK_VIOLATION:
      // The runtime's "Permission denied" would send the user looking for rights; the system's own text tells of the
      // other program.
      return ErrorText(code);
    case ERROR_ACCESS_DENIED:
      return std::strerror(EACCES);
    case ERROR_TOO_MANY_OPEN_FILES:
      return std::strerror(EMFILE);
    case ERROR_NOT_ENOUGH_MEMORY:
    case ERROR_OUTOFMEMORY:
      return std::strerror(ENOMEM);
    default:
      return std::strerror(EINVAL);
  }
}

bool MeansHeldOpen(std::uint32_t code) {
  return code == ERROR_ACCESS_DENIED;
}

std::uint32_t MissingBytesError() {
  return ERROR_READ_FAULT;
}

bool MeansMissing(std::uint32_t code) {
  return code == ERROR_FILE_NOT_FOUND || code == ERROR_PATH_NOT_FOUND || code == ERROR_INVALID_NAME ||
         code == ERROR_BAD_PATHNAME || code == ERROR_FILENAME_EXCED_RANGE;
}

bool MeansRefused(std::uint32_t code) {
  return code == ERROR_ACCESS_DENIED || code == ERROR_SHARING_VIOLATION || code == ERROR_LOCK_VIOLATION ||
         MeansCircle(code);
}

bool MeansCircle(std::uint32_t code) {
  return code == ERROR_CANT_RESOLVE_FILENAME;
}

bool MeansUnsupported(std::uint32_t code) {
  return code == ERROR_INVALID_PARAMETER || code == ERROR_NOT_SUPPORTED || code == ERROR_INVALID_FUNCTION;
}

bool MeansExisting(std::uint32_t code) {
  return code == ERROR_FILE_EXISTS || code == ERROR_ALREADY_EXISTS;
}

// ---- libraries and the program itself --------------------------------------------------------------------------

LibraryHandle LoadSharedLibrary(const std::string& path) {
  return LoadLibraryW(WidePath(path).c_str());
}

void* FindSymbol(LibraryHandle library, const char* name) {
  return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(library), name));
}

void FreeSharedLibrary(LibraryHandle library) {
  FreeLibrary(static_cast<HMODULE>(library));
}

std::string SharedLibraryFileName(std::string_view name) {
  return std::string(name) + ".dll";
}

std::string ProgramPath() {
  return Narrow(GrowingText([](wchar_t* buffer, DWORD size) { return GetModuleFileNameW(nullptr, buffer, size); }));
}

std::optional<std::string> ModuleVersionValue(const std::string& path, const std::string& key) {
  const std::wstring module = WidePath(path);
  std::vector<char> record(GetFileVersionInfoSizeW(module.c_str(), nullptr));
  if (record.empty() || GetFileVersionInfoW(module.c_str(), 0, static_cast<DWORD>(record.size()), record.data()) == 0) {
    return std::nullopt;
  }
  void* found = nullptr;
  UINT length = 0;
  if (VerQueryValueW(record.data(), L"\\VarFileInfo\\Translation", &found, &length) == 0 || length < 4) {
    return std::nullopt;
  }
  const auto* translation = static_cast<const WORD*>(found);
  const std::string name =
      Format("\\StringFileInfo\\%04X%04X\\%s", unsigned{translation[0]}, unsigned{translation[1]}, key.c_str());
  if (VerQueryValueW(record.data(), Wide(name).c_str(), &found, &length) == 0 || length == 0) return std::nullopt;
  return Narrow(static_cast<const wchar_t*>(found));
}

std::vector<std::string> ProgramArguments(int argc, char** argv) {
  // The C runtime hands arguments over in the system code page, which loses characters; the command line has them all.
  int count = 0;
  const std::unique_ptr<LPWSTR, decltype(&LocalFree)> wide(CommandLineToArgvW(GetCommandLineW(), &count), LocalFree);
  if (!wide) return {argv, argv + argc};
  std::vector<std::string> arguments;
  for (int index = 0; index < count; ++index) arguments.push_back(Narrow(wide.get()[index]));
  return arguments;
}

// ---- threads, processes, machine -------------------------------------------------------------------------------

// ExitProcess would wait for locks that a thread may hold that never goes on.
void EndProcess(int exitCode) {
  TerminateProcess(GetCurrentProcess(), static_cast<UINT>(exitCode));
  std::abort();  // never reached
}

void PrepareProcess() {
  // The number of a stream that the parent closed can become that of the next file; whoever asks for the stream would
  // then be given the file.
  for (const DWORD stream : {STD_INPUT_HANDLE, STD_OUTPUT_HANDLE, STD_ERROR_HANDLE}) {
    SetLastError(ERROR_SUCCESS);
    if (GetFileType(GetStdHandle(stream)) == FILE_TYPE_UNKNOWN && GetLastError() != ERROR_SUCCESS) {
      SetStdHandle(stream, nullptr);
    }
  }
  // A missing disk is an error for the caller, not a system dialog that holds the program up.
  SetErrorMode(SEM_FAILCRITICALERRORS);
  // Shells that come from POSIX systems set TZ to names that the C runtime misreads as zones of its own; without it
  // local times are the system's.
  _wputenv(L"TZ=");
  _tzset();
}

bool SetCurrentThreadPriority(int priority) {
  return SetThreadPriority(GetCurrentThread(), priority) != 0;
}

bool CanRaiseThreadPriority() {
  return true;
}

namespace {
std::atomic<void (*)()> g_stopHandler{nullptr};
}

void HandleStopRequests(void (*handler)()) {
  g_stopHandler = handler;
  SetConsoleCtrlHandler(
      [](DWORD event) -> BOOL {
        g_stopHandler.load()();
        // The system ends the program when this function returns, or else after some seconds, which it needs to come
        // to its own end.
        if (event == CTRL_CLOSE_EVENT || event == CTRL_LOGOFF_EVENT || event == CTRL_SHUTDOWN_EVENT) Sleep(INFINITE);
        return TRUE;
      },
      TRUE);
}

void SetCurrentThreadName(const std::string& name) {
  // Looked up at run time: Windows has it since version 10 only.
  using SetDescription = HRESULT(WINAPI*)(HANDLE, PCWSTR);
  const FARPROC found = GetProcAddress(GetModuleHandleW(L"kernel32.dll"), "SetThreadDescription");
  if (found == nullptr) return;
  reinterpret_cast<SetDescription>(reinterpret_cast<void*>(found))(GetCurrentThread(), Wide(name).c_str());
}

void DebugOutput(const std::string& line) {
  OutputDebugStringW(Wide(line + "\n").c_str());
}

std::int64_t ProcessCpuMilliseconds() {
  FILETIME created{};
  FILETIME ended{};
  FILETIME kernel{};
  FILETIME user{};
  if (GetProcessTimes(GetCurrentProcess(), &created, &ended, &kernel, &user) == 0) return 0;
  const std::uint64_t ticks =
      Join(kernel.dwHighDateTime, kernel.dwLowDateTime) + Join(user.dwHighDateTime, user.dwLowDateTime);
  return static_cast<std::int64_t>(ticks / (kTicksPerSecond / 1000));
}

namespace {

std::string ShortName(BOOL(WINAPI* call)(LPWSTR, LPDWORD)) {
  std::array<wchar_t, 256> name{};
  auto size = static_cast<DWORD>(name.size());
  return call(name.data(), &size) != 0 ? Narrow(name.data()) : std::string();
}

}  // namespace

std::string UserName() {
  return ShortName(GetUserNameW);
}

std::string ComputerName() {
  return ShortName(GetComputerNameW);
}

}  // namespace carvello::platform
