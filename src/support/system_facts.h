// What a report about a fault tells of the system. Nothing here is needed for cutting, and nothing here fails: what
// cannot be had says why. system_facts_posix.cpp and system_facts_windows.cpp implement it; paths and texts are UTF-8.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "support/platform.h"

namespace carvello::platform {

// What was found or, where nothing was, why not.
struct Finding {
  std::string strValue;
  std::string strProblem;
};

Finding SystemName();   // "Debian GNU/Linux 12 (bookworm)"
Finding KernelName();   // "Linux 6.1.0-18-amd64, x86_64"
Finding RuntimeName();  // of the C library: "glibc 2.36"
Finding LocaleName();   // the user's, as the system calls it
Finding TimeZoneName();

struct ProcessorLimits {
  unsigned nPresent = 0;  // 0 where the system does not tell
  unsigned nAllowed = 0;  // those that this process may run on; 0 where the system does not tell
  // Of so many processors' time, by the limits that containers and job schedulers set; nothing where there is none.
  std::optional<double> quota;
  unsigned nGranted = 0;  // by the batch system whose job this is, bound to them or not; 0 where none tells
};
ProcessorLimits GetProcessorLimits();
// What a batch system's variable tells, null where there is none: 0 for what is no number of processors.
unsigned GrantedProcessors(const char* told);
// Those that the process can keep busy: what of a processor's time is left over counts as one from a half on.
unsigned UsableProcessors(const ProcessorLimits& limits);

struct MemoryFacts {
  std::optional<std::int64_t> total;      // bytes
  std::optional<std::int64_t> available;  // without anything being swapped out
  std::optional<std::int64_t> limit;      // that containers and job schedulers set
};
MemoryFacts GetMemoryFacts();

// Kind and place of the file system that the folder is on: "ext4 on /home", "NTFS on C:\".
Finding FileSystemOf(const std::string& folder);

// Where the dialog keeps its settings: a file, or a key of the registry. Empty when the system tells of no place.
std::string SettingsPlace();
// Where programs keep for this user what is the user's own. Empty when the system tells of none.
std::string UserDataFolder();
std::string HomeFolder();

// Why the library cannot be loaded, in the system's words; empty when it can.
std::string WhyNotLoaded(const std::string& library);

// A new file in the folder, for writing and reading, that is gone when it is closed, however the program ends (save
// where a file system cannot do that and the power fails). kNoFile on failure; LastError() then holds the reason.
FileHandle OpenScratchFile(const std::string& folder);
// The same file anew, for reading from the medium and not from what the system keeps in memory: in whole multiples of
// kDirectAlignment, into memory and from places that are aligned to it. kNoFile where the system or the file system
// does not do that.
FileHandle OpenPastCache(FileHandle scratchFile);
inline constexpr std::size_t kDirectAlignment = 4096;

}  // namespace carvello::platform
