#include "support/sparse_file.h"

// clang-format off
#include <windows.h>
#include <winioctl.h>
// clang-format on

#include <stdexcept>

#include "support/platform_windows_text.h"

namespace carvello::test {

void ExtendFile(const std::string& path, std::uint64_t length) {
  // The C runtime's function is not used: it asks for as much free room as the file gets long.
  const HANDLE file =
      CreateFileW(platform::WidePath(path).c_str(), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
  if (file == INVALID_HANDLE_VALUE) throw std::runtime_error("cannot open " + path);
  DWORD ignored = 0;
  // Not every file system has sparse files, or has files that are not.
  DeviceIoControl(file, FSCTL_SET_SPARSE, nullptr, 0, nullptr, 0, &ignored, nullptr);
  FILE_END_OF_FILE_INFO end{};
  end.EndOfFile.QuadPart = static_cast<LONGLONG>(length);
  const bool done = SetFileInformationByHandle(file, FileEndOfFileInfo, &end, sizeof(end)) != 0;
  CloseHandle(file);
  if (!done) throw std::runtime_error("cannot extend " + path);
}

}  // namespace carvello::test
