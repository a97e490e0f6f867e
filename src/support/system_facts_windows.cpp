#include "support/system_facts.h"

// clang-format off
#include <windows.h>
// clang-format on

#include <array>
#include <cwchar>

#include "support/formatting.h"
#include "support/my_settings_store.h"
#include "support/platform_windows_text.h"
#include "support/text.h"

namespace carvello::platform {

namespace {

template <typename Function>
Function FunctionOf(const wchar_t* module, const char* name) {
  const FARPROC found = GetProcAddress(GetModuleHandleW(module), name);
  return reinterpret_cast<Function>(reinterpret_cast<void*>(found));
}

// The version that the system has, whatever it says to programs that it takes for old ones.
std::string NtVersion() {
  using Tell = LONG(WINAPI*)(OSVERSIONINFOW*);
  const auto tell = FunctionOf<Tell>(L"ntdll.dll", "RtlGetVersion");
  OSVERSIONINFOW version{};
  version.dwOSVersionInfoSize = sizeof(version);
  if (tell == nullptr || tell(&version) != 0) return {};
  return Format("%lu.%lu.%lu", version.dwMajorVersion, version.dwMinorVersion, version.dwBuildNumber);
}

std::string WineVersion() {
  using Tell = const char*(__cdecl*)();
  const auto tell = FunctionOf<Tell>(L"ntdll.dll", "wine_get_version");
  return tell == nullptr ? std::string() : std::string(" on Wine ") + tell();
}

std::string RegistryText(const wchar_t* name) {
  std::array<wchar_t, 256> text{};
  auto bytes = static_cast<DWORD>(sizeof(text));
  if (RegGetValueW(HKEY_LOCAL_MACHINE, L"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion", name, RRF_RT_REG_SZ, nullptr,
                   text.data(), &bytes) != ERROR_SUCCESS) {
    return {};
  }
  return Narrow(text.data());
}

std::string Variable(const wchar_t* name) {
  return Narrow(
      GrowingText([name](wchar_t* buffer, DWORD size) { return GetEnvironmentVariableW(name, buffer, size); }));
}

std::optional<double> ProcessorQuota() {
  constexpr double kWhole = 10'000;  // the rate counts hundredths of a per cent of all processors
  JOBOBJECT_CPU_RATE_CONTROL_INFORMATION control{};
  if (QueryInformationJobObject(nullptr, JobObjectCpuRateControlInformation, &control, sizeof(control), nullptr) == 0) {
    return std::nullopt;
  }
  constexpr DWORD kHardLimit = JOB_OBJECT_CPU_RATE_CONTROL_ENABLE | JOB_OBJECT_CPU_RATE_CONTROL_HARD_CAP;
  if ((control.ControlFlags & kHardLimit) != kHardLimit) return std::nullopt;
  return control.CpuRate / kWhole * GetActiveProcessorCount(ALL_PROCESSOR_GROUPS);
}

std::optional<std::int64_t> MemoryLimit() {
  JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits{};
  if (QueryInformationJobObject(nullptr, JobObjectExtendedLimitInformation, &limits, sizeof(limits), nullptr) == 0) {
    return std::nullopt;
  }
  if ((limits.BasicLimitInformation.LimitFlags & JOB_OBJECT_LIMIT_PROCESS_MEMORY) == 0) return std::nullopt;
  return static_cast<std::int64_t>(limits.ProcessMemoryLimit);
}

const char* DriveKind(const wchar_t* root) {
  switch (GetDriveTypeW(root)) {
    case DRIVE_REMOVABLE:
      return ", removable";
    case DRIVE_REMOTE:
      return ", network";
    case DRIVE_CDROM:
      return ", disc";
    case DRIVE_RAMDISK:
      return ", memory";
    default:
      return "";
  }
}

}  // namespace

Finding SystemName() {
  const std::string product = RegistryText(L"ProductName");
  const std::string release = RegistryText(L"DisplayVersion");
  return {(product.empty() ? std::string("Windows") : product) + (release.empty() ? "" : " " + release) + WineVersion(),
          ""};
}

Finding KernelName() {
  const std::string version = NtVersion();
  if (version.empty()) return {"", "the system does not tell its version"};
  return {"Windows NT " + version + ", x86_64", ""};
}

Finding RuntimeName() {
#ifdef _UCRT
  return {"ucrt", ""};
#else
  return {"msvcrt", ""};
#endif
}

Finding LocaleName() {
  std::array<wchar_t, LOCALE_NAME_MAX_LENGTH> name{};
  if (GetUserDefaultLocaleName(name.data(), static_cast<int>(name.size())) == 0) return {"", SystemErrorText()};
  return {Narrow(name.data()), ""};
}

Finding TimeZoneName() {
  DYNAMIC_TIME_ZONE_INFORMATION zone{};
  if (GetDynamicTimeZoneInformation(&zone) == TIME_ZONE_ID_INVALID) return {"", SystemErrorText()};
  const std::string name = Narrow(zone.TimeZoneKeyName[0] != L'\0' ? zone.TimeZoneKeyName : zone.StandardName);
  if (name.empty()) return {"", "the system's zone has no name"};
  return {name, ""};
}

ProcessorLimits GetProcessorLimits() {
  ProcessorLimits limits;
  limits.nPresent = GetActiveProcessorCount(ALL_PROCESSOR_GROUPS);
  DWORD_PTR allowed = 0;
  DWORD_PTR present = 0;
  // Both are 0 for a process whose threads run in several groups of processors; it may use them all.
  if (GetProcessAffinityMask(GetCurrentProcess(), &allowed, &present) != 0) {
    limits.nAllowed = allowed == 0 ? limits.nPresent : static_cast<unsigned>(__builtin_popcountll(allowed));
  }
  limits.quota = ProcessorQuota();
  return limits;
}

MemoryFacts GetMemoryFacts() {
  MemoryFacts facts;
  MEMORYSTATUSEX status{};
  status.dwLength = sizeof(status);
  if (GlobalMemoryStatusEx(&status) != 0) {
    facts.total = static_cast<std::int64_t>(status.ullTotalPhys);
    facts.available = static_cast<std::int64_t>(status.ullAvailPhys);
  }
  facts.limit = MemoryLimit();
  return facts;
}

Finding FileSystemOf(const std::string& folder) {
  std::array<wchar_t, 1024> root{};
  std::array<wchar_t, MAX_PATH + 1> kind{};
  if (GetVolumePathNameW(WidePath(folder).c_str(), root.data(), static_cast<DWORD>(root.size())) == 0 ||
      GetVolumeInformationW(root.data(), nullptr, 0, nullptr, nullptr, nullptr, kind.data(),
                            static_cast<DWORD>(kind.size())) == 0) {
    return {"", SystemErrorText()};
  }
  return {Narrow(kind.data()) + " on " + Narrow(root.data()) + DriveKind(root.data()), ""};
}

std::string SettingsPlace() {
  return std::string("HKEY_CURRENT_USER\\") + kSettingsKey;
}

std::string UserDataFolder() {
  return Variable(L"LOCALAPPDATA");
}

std::string HomeFolder() {
  return Variable(L"USERPROFILE");
}

std::string WhyNotLoaded(const std::string& library) {
  const HMODULE loaded = LoadLibraryW(WidePath(library).c_str());
  if (loaded == nullptr) return SystemErrorText();
  FreeLibrary(loaded);
  return {};
}

FileHandle OpenScratchFile(const std::string& folder) {
  const std::string name =
      Format("carvello-%lu-%llu.tmp", GetCurrentProcessId(), static_cast<unsigned long long>(GetTickCount64()));
  const HANDLE file = CreateFileW(WidePath(JoinPath(folder, name)).c_str(), GENERIC_READ | GENERIC_WRITE | DELETE,
                                  FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, CREATE_NEW,
                                  FILE_FLAG_DELETE_ON_CLOSE, nullptr);
  return file == INVALID_HANDLE_VALUE ? kNoFile : reinterpret_cast<FileHandle>(file);
}

FileHandle OpenPastCache(FileHandle scratchFile) {
  const HANDLE file = ReOpenFile(reinterpret_cast<HANDLE>(scratchFile), GENERIC_READ,
                                 FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, FILE_FLAG_NO_BUFFERING);
  return file == INVALID_HANDLE_VALUE ? kNoFile : reinterpret_cast<FileHandle>(file);
}

}  // namespace carvello::platform
