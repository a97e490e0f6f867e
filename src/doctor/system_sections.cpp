#include "doctor/system_sections.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <ctime>
#include <optional>

#include "doctor/disk_speed.h"
#include "doctor/processor_name.h"
#include "fourier/instruction_set.h"
#include "support/formatting.h"
#include "support/platform.h"
#include "support/system_facts.h"
#include "support/text.h"

namespace carvello {

namespace {

constexpr const char* kNotTold = "the system does not tell";

void AddBytes(SReportSection& section, std::string_view key, std::string_view label,
              const std::optional<std::int64_t>& bytes) {
  if (bytes) {
    section.Number(key, label, *bytes, ShownBytes(static_cast<double>(*bytes)));
  } else {
    section.Missing(key, label, kNotTold);
  }
}

void AddCount(SReportSection& section, std::string_view key, std::string_view label, unsigned count) {
  if (count > 0) {
    section.Number(key, label, std::int64_t{count});
  } else {
    section.Missing(key, label, kNotTold);
  }
}

void AddProcessor(SReportSection& section) {
  section.Text("processor", "processor", ProcessorName());
  const platform::ProcessorLimits limits = platform::GetProcessorLimits();
  AddCount(section, "processors", "processors", limits.nPresent);
  AddCount(section, "processorsAllowed", "of these allowed", limits.nAllowed);
  if (limits.quota) {
    section.Number("processorQuota", "limited to the time of", *limits.quota, Format("%.2f processors", *limits.quota));
  } else {
    section.None("processorQuota", "limit of their time");
  }
  if (limits.nGranted > 0) {
    section.Number("processorsGranted", "granted by the batch system", std::int64_t{limits.nGranted});
  }
  std::string sets;
  for (const EInstructionSet set : InstructionSets()) sets += (sets.empty() ? "" : ", ") + std::string(NameOf(set));
  section.Text("instructionSets", "instruction sets", sets);
}

void AddMemory(SReportSection& section) {
  const platform::MemoryFacts memory = platform::GetMemoryFacts();
  AddBytes(section, "memoryBytes", "memory", memory.total);
  AddBytes(section, "memoryAvailableBytes", "memory available", memory.available);
  if (memory.limit) {
    AddBytes(section, "memoryLimitBytes", "memory limited to", memory.limit);
  } else {
    section.None("memoryLimitBytes", "limit of memory");
  }
}

// "+02:00", of this moment.
std::string UtcOffset() {
  constexpr std::int64_t kMinute = 60;
  const std::int64_t now = std::time(nullptr);
  std::tm local{};
  if (!platform::LocalTime(now, local)) return {};
  const std::int64_t minutes = (platform::UtcSeconds(local) - now) / kMinute;
  const auto size = static_cast<long long>(minutes < 0 ? -minutes : minutes);
  return Format("%c%02lld:%02lld", minutes < 0 ? '-' : '+', size / kMinute, size % kMinute);
}

std::string StateOf(const std::string& folder) {
  const std::optional<platform::FileStatus> status = platform::GetFileStatus(folder);
  if (!status) {
    const std::uint32_t error = platform::LastError();
    return platform::MeansMissing(error) ? "does not exist" : "cannot be seen: " + SystemErrorText(error);
  }
  if (!status->bDirectory) return "is a file";
  return platform::IsWritableFolder(folder) ? "writable" : "not writable: " + SystemErrorText();
}

void AddFolder(SReportSection& section, std::string_view key, std::string_view label, const std::string& folder) {
  if (folder.empty()) {
    section.Missing(key, label, "the system tells of no place for it");
    return;
  }
  section.Text(key, label, WithoutHome(folder) + ", " + StateOf(folder));
}

std::string FolderIn(const std::string& folder, std::string_view name) {
  return folder.empty() ? folder : platform::JoinPath(platform::JoinPath(folder, "Carvello"), name);
}

void AddSpeed(SReportSection& section, const std::string& folder) {
  const SDiskSpeed speed = MeasureDisk(folder);
  const std::string problem = speed.strProblem;
  if (speed.fWriteRate > 0) {
    section.Number("writeBytesPerSecond", "written", speed.fWriteRate,
                   ShownBytes(speed.fWriteRate) + "/s, " + ShownBytes(static_cast<double>(speed.nBytes)) +
                       " brought to the medium");
  } else {
    section.Missing("writeBytesPerSecond", "written", problem);
  }
  if (speed.fReadRate > 0) {
    const char* const from =
        speed.bReadPastCache ? "/s, past the system's cache" : "/s, maybe from memory: the cache cannot be passed here";
    section.Number("readBytesPerSecond", "read", speed.fReadRate, ShownBytes(speed.fReadRate) + from);
    section.Flag("readPastCache", "read past the cache", speed.bReadPastCache, speed.bReadPastCache ? "yes" : "no");
  } else {
    section.Missing("readBytesPerSecond", "read", problem);
  }
}

}  // namespace

SReportSection SystemSection() {
  SReportSection section{"system", "System", {}};
  section.Text("system", "system", platform::SystemName());
  section.Text("kernel", "kernel", platform::KernelName());
  section.Text("runtime", "C library", platform::RuntimeName());
  AddProcessor(section);
  AddMemory(section);
  section.Text("locale", "locale", platform::LocaleName());
  section.Text("timeZone", "time zone", platform::TimeZoneName());
  section.Text("utcOffset", "offset from UTC", UtcOffset());
  return section;
}

SReportSection FoldersSection() {
  SReportSection section{"folders", "Folders in use", {}};
  const std::string settings = platform::SettingsPlace();
  if (settings.starts_with("HKEY_")) {
    section.Text("settings", "settings", settings);
  } else {
    AddFolder(section, "settings", "settings", settings.empty() ? settings : platform::FolderOf(settings));
  }
  AddFolder(section, "overviews", "overviews", FolderIn(platform::UserCacheFolder(), "overviews"));
  AddFolder(section, "lists", "lists of entries", FolderIn(platform::UserDataFolder(), "lists"));
  AddFolder(section, "temporary", "temporary files", platform::TempFolder());
  return section;
}

SReportSection DiskSection(const std::string& folder, bool measure) {
  SReportSection section{"disks", "Disk of " + WithoutHome(folder), {}, true};
  section.Text("folder", "folder", WithoutHome(platform::AbsolutePath(folder)));
  section.Text("state", "state", StateOf(folder));
  section.Text("fileSystem", "file system", platform::FileSystemOf(folder));
  const std::optional<std::int64_t> space = platform::FreeSpace(folder);
  const std::string problem = space ? std::string() : SystemErrorText();
  if (space) {
    AddBytes(section, "freeBytes", "free", space);
  } else {
    section.Missing("freeBytes", "free", problem);
  }
  if (measure) AddSpeed(section, folder);
  return section;
}

}  // namespace carvello
