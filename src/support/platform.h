// Everything that differs between operating systems, in one place: platform_posix.cpp and platform_windows.cpp
// implement it, and nothing else knows which system it runs on. Paths and texts are UTF-8.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <ctime>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace carvello::platform {

// ---- files -----------------------------------------------------------------------------------------------------

// An open file of the system: a descriptor on POSIX, a handle on Windows. 0 is never a valid value on Windows, and is
// never handed out on POSIX either (descriptors travel as descriptor + 1).
using FileHandle = std::intptr_t;
inline constexpr FileHandle kNoFile = 0;

enum class EOpenMode {
  ReadShared,  // existing file, sequential access hint, denies nobody anything
  CreateNew,   // for writing; refused when anything stands under the name, also a link that leads nowhere
  Replace,     // for writing; what stands under the name is emptied
  Change,      // existing file, for reading and writing
};
// A file that is open for writing is locked: whoever opens it for writing as well is refused, and the error's text says
// that another program holds it. Others may read it.

// kNoFile on failure; LastError() then holds the reason. A directory is refused.
FileHandle OpenFile(const std::string& path, EOpenMode mode);
// False when the system tells only now that something written is lost, as network file systems do.
bool CloseFile(FileHandle file);
// Bytes read or written, short at the end of the file or on failure; interrupted calls go on, and large requests are
// split as the system needs. `error` becomes the system's code, 0 for a read that is only short because the file ends.
// On a short write LastError() holds the reason.
std::size_t ReadFile(FileHandle file, void* buffer, std::size_t bytes, std::uint32_t& error);
std::size_t WriteFile(FileHandle file, const void* buffer, std::size_t bytes);
// 64-bit absolute seek. False on failure.
bool SeekFile(FileHandle file, std::int64_t position);
// Cuts (or extends) the file to `length` bytes; the position stays. False on failure.
bool TruncateFile(FileHandle file, std::int64_t length);
// Sets when the file was changed last, in nanoseconds since 1970 UTC, as exact as the file system keeps it; the file is
// open for writing. False on failure.
bool SetModifiedTime(FileHandle file, std::int64_t nanoseconds);
// Current length of the open file in bytes, or -1.
std::int64_t FileLength(FileHandle file);
// Waits until what was written to the file, or the names in the folder, stand on the medium. False when the system says
// that something is lost. True for folders where the system keeps names safe by itself, and where it cannot sync them.
bool SyncFile(FileHandle file);
bool SyncFileData(FileHandle file);  // the bytes and what it takes to find them again, but no times
bool SyncFolder(const std::string& folder);

// Sees to it that so many files can be open in this process at a time, as far as the system lets it. Gives the number
// that can; those that are open already count.
std::size_t AllowOpenFiles(std::size_t files);

struct FileStatus {
  std::int64_t nSize = 0;  // bytes
  bool bDirectory = false;
  bool bRegular = false;       // an ordinary file: no folder, pipe, socket or device
  std::int64_t tCreated = 0;   // seconds since 1970 UTC; the change time where the file system has no birth time
  std::int64_t tModified = 0;  // seconds since 1970 UTC
  std::int64_t nModified = 0;  // the same in nanoseconds, as exact as the file system keeps it
  std::uint64_t nVolume = 0;   // volume and file number together identify the file whatever its path
  std::uint64_t nFileNumber = 0;
};
// Nothing when the status cannot be had.
std::optional<FileStatus> GetFileStatus(const std::string& path);
std::optional<FileStatus> GetFileStatus(FileHandle file);  // of an open file, whatever its name leads to now
// Whether a file keeps its number while nobody has it open. Not so where the file system makes numbers up, as those of
// memory cards do, and some that other machines or programs provide.
bool KeepsFileNumbers(const std::string& path);
// Of what stands under the name itself, be it a link that leads nowhere; nothing when the name is free.
std::optional<FileStatus> GetNameStatus(const std::string& path);
// On false LastError() holds the reason.
bool IsReadable(const std::string& path);
// Whether new files can be created in the folder. On false LastError() holds the reason.
bool IsWritableFolder(const std::string& folder);
bool RemoveFile(const std::string& path);
// The same, but refused while another program is writing the file.
bool RemoveUnusedFile(const std::string& path);
// Gives a file another name in its folder. Without `replace` nothing that stands under the new name is touched, and the
// call fails; with it, the new name leads to either file at any moment. On false LastError() holds the reason.
bool RenameFile(const std::string& from, const std::string& to, bool replace);
// Creates a folder for this user alone, in one that exists. True when it is there already. On false LastError() holds
// the reason.
bool CreateFolder(const std::string& folder);
// The same for everybody whom the process's mask for new files lets in.
bool CreateSharedFolder(const std::string& folder);
// Of an empty one. On false LastError() holds the reason.
bool RemoveFolder(const std::string& folder);
// Bytes that this user can still write to the disk that the folder is on. Nothing when that cannot be had.
std::optional<std::int64_t> FreeSpace(const std::string& folder);
// Names (not paths) of everything in the folder but "." and "..", in the order the system gives. Nothing on failure,
// also in the middle of the list; LastError() then holds the reason.
std::optional<std::vector<std::string>> ListFolder(const std::string& folder);

// Folder and name joined by the system's separator; a separator at the folder's end is not doubled.
std::string JoinPath(std::string_view folder, std::string_view name);
// What stands before and behind the last separator ("/" everywhere; also "\" and a drive's ":" on Windows). The folder
// of a bare name is ".", that of a file in the root keeps its separator.
std::string FolderOf(std::string_view path);
std::string NameOf(std::string_view path);
// The path from the root on, by the present folder; links and ".." stay as they are.
std::string AbsolutePath(const std::string& path);
bool FileNamesEqual(std::string_view a, std::string_view b);  // without case on Windows
// The same for names that are equal, and for no others.
std::string FileNameKey(std::string_view name);
// Where a link in the place of the path leads, on and on; the path itself when there is none, or it leads nowhere.
std::string LinkedPath(const std::string& path);

// ---- errors ----------------------------------------------------------------------------------------------------

std::uint32_t LastError();  // errno, or GetLastError()
// The system's text, with a space for each of its line breaks; nothing when it has none.
std::optional<std::string> ErrorText(std::uint32_t code);
// The C runtime's text for an error of that code; nothing when it has none. The system's own, where both are one.
std::optional<std::string> RuntimeErrorText(std::uint32_t code);
// Whether the code is the one by which the system refuses what another program holds open: 5 ("access denied") on
// Windows. POSIX systems have none, there 5 is an input/output error and a refusal is about permissions.
bool MeansHeldOpen(std::uint32_t code);
// The code for bytes that a file should hold and does not give.
std::uint32_t MissingBytesError();
// Whether the code is one by which the system says that there is no file of that name, or can be none.
bool MeansMissing(std::uint32_t code);
// Whether the code is the one by which the system says that links lead back to each other.
bool MeansCircle(std::uint32_t code);
// Whether the code is one by which the system says that what it was asked for cannot be done with that file at all.
bool MeansUnsupported(std::uint32_t code);
// Whether the code is the one by which the system says that something stands under the name already.
bool MeansExisting(std::uint32_t code);
// Whether the code is one by which the system refuses this user a file that is in order, or finds that a name leads
// nowhere but in a circle; any other failure is a fault.
bool MeansRefused(std::uint32_t code);

// Whether something stands under the name, be it a link that leads nowhere. Nothing where the system does not tell:
// LastError() holds the reason.
inline std::optional<bool> IsThere(const std::string& path) {
  if (GetNameStatus(path)) return true;
  return MeansMissing(LastError()) ? std::optional(false) : std::nullopt;
}

// ---- libraries and the program itself --------------------------------------------------------------------------

using LibraryHandle = void*;
LibraryHandle LoadSharedLibrary(const std::string& path);  // nullptr on failure
void* FindSymbol(LibraryHandle library, const char* name);
void FreeSharedLibrary(LibraryHandle library);
// "Vantrel" becomes "libVantrel.so" or "Vantrel.dll".
std::string SharedLibraryFileName(std::string_view name);
std::string ProgramPath();
// One value of the version record inside another program or library, by its key; nothing when it has none, as on
// systems whose modules carry no such record.
std::optional<std::string> ModuleVersionValue(const std::string& path, const std::string& key);
std::vector<std::string> ProgramArguments(int argc, char** argv);  // UTF-8 on every system, the program's name first

// ---- threads, processes, machine -------------------------------------------------------------------------------

// To be called once, first of all, by every program of ours: makes a reached file-size limit an ordinary write error
// instead of the end of the process, and sees to it that no file that is opened from here on can take the place of a
// standard stream that was closed. Writing to a closed stdout fails as before.
void PrepareProcess();
// Ends the process at once, with this exit code: nothing is waited for or cleaned up, whatever threads are still at
// work.
[[noreturn]] void EndProcess(int exitCode);
// Sets the calling thread's priority: 15, 2, 1, 0, -1, -2, -15 as in the log texts of the workers. False when the
// system refuses (raising a priority needs a privilege on Linux).
bool SetCurrentThreadPriority(int priority);
// Whether a thread that was set to a lower priority can be set back to a higher one. Not so on Linux without the
// privilege to lower a nice value.
bool CanRaiseThreadPriority();
// From here on Ctrl-C, the request to terminate and what else ends a program in good time (the end of its terminal or
// console, of the user's session, of the system) call `handler` instead. It may be called at any moment, in the middle
// of any other call, and must do with what a signal handler may. Windows ends the program a few seconds after the last
// three.
void HandleStopRequests(void (*handler)());
void SetCurrentThreadName(const std::string& name);
// A line for a developer's debugger: its output window on Windows; stderr on POSIX, and there only when the environment
// variable CARVELLO_DEBUG_OUTPUT is set.
void DebugOutput(const std::string& line);
// User and kernel time of this process, in milliseconds.
std::int64_t ProcessCpuMilliseconds();
unsigned ProcessorCount();  // that the process may run on and keep busy, by a container's limits too; at least 1
std::string UserName();
std::string ComputerName();

// ---- time ------------------------------------------------------------------------------------------------------

// The 172-byte TIME_ZONE_INFORMATION record (little-endian, names as 32 UTF-16 characters), and the status that goes
// with it: 0 unknown, 1 standard time, 2 daylight time.
struct TimeZoneRecord {
  std::uint32_t nStatus = 0;
  std::array<std::uint8_t, 172> bytes{};
};
TimeZoneRecord GetTimeZoneRecord();

// Broken-down times; false for a value that the system cannot convert.
bool UtcTime(std::int64_t seconds, std::tm& out);
bool LocalTime(std::int64_t seconds, std::tm& out);
// The inverse functions; -1 for fields that no calendar has, as far as the system notices.
std::int64_t UtcSeconds(const std::tm& fields);
std::int64_t LocalSeconds(const std::tm& fields);
// strftime with the C locale's names, whatever locale the process has set. Empty when the result has more than 127
// characters.
std::string FormatTime(const char* format, const std::tm& fields);
// The user's short date, in the user's own locale.
std::string ShortDate(const std::tm& fields);
// The user's time format, in the user's own locale.
std::string LocaleTime(const std::tm& fields);

// ---- texts of the system code page (ANSI on Windows, UTF-8 elsewhere) ------------------------------------------

std::string Utf8ToSystemCodePage(std::string_view text);
// Where the code page is UTF-8, bytes that are none are taken for Windows-1252.
std::string SystemCodePageToUtf8(std::string_view bytes);

// ---- desktop and console ---------------------------------------------------------------------------------------

std::string TempFolder();
// Where programs keep for this user what they can make again: XDG_CACHE_HOME or ~/.cache, %LOCALAPPDATA% on Windows. It
// may not exist yet. Empty when the system tells of none.
std::string UserCacheFolder();
// A window as the system names it, for what it shows on behalf of that window; 0 is none. Used on Windows only.
using WindowId = std::uintptr_t;
// Opens a file or folder with the desktop's own program. On false LastError() holds the reason.
bool OpenWithDesktop(WindowId parent, const std::string& path, const std::string& verb);
// Whether the desktop has a program for an existing file, which is of one of the media types, for example
// "application/rtf". (The name tells the system on Windows, the types tell it elsewhere.)
bool HasProgramFor(const std::string& path, const std::vector<std::string>& mediaTypes);
bool IsTerminal(int standardStream);  // 1 stdout, 2 stderr
unsigned TerminalColumns();           // 80 where it is not known
void UseUtf8Console();                // the program's texts on a console are UTF-8 from here on

}  // namespace carvello::platform
