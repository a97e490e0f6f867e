#include "recording/new_file.h"

#include "support/formatting.h"
#include "support/platform.h"
#include "support/text.h"

namespace carvello {

namespace {

// Why a file that must not replace anything could not be created.
std::string WhyTaken(const std::string& path) {
  if (!platform::GetFileStatus(path)) return "A link that leads nowhere stands under this name";
  if (platform::IsReadable(path)) return "The file exists already";
  const std::string reason = SystemErrorText();
  return "The file exists already and cannot be read: " + reason;
}

}  // namespace

bool OpenNewFile(CFile& file, const std::string& path, const SWritePolicy& policy, std::uint32_t& code,
                 std::string& reason) {
  const auto mode = policy.bReplace ? platform::EOpenMode::Replace : platform::EOpenMode::CreateNew;
  if (file.Open(path, mode)) return true;
  code = platform::LastError();
  reason = platform::MeansExisting(code) ? WhyTaken(path) : SystemErrorText(code);
  return false;
}

void RemoveNewFile(CFile& file, const std::string& path) {
  const auto ours = file.Status();
  const auto named = platform::GetNameStatus(path);
  file.Close();
  const bool same =
      ours && named && ours->bRegular && ours->nVolume == named->nVolume && ours->nFileNumber == named->nFileNumber;
  if (same) platform::RemoveFile(path);
}

std::optional<bool> OpenByName(const CFile& written, const std::string& path, CFile& named) {
  if (!named.Open(path, platform::EOpenMode::ReadShared)) return std::nullopt;
  const auto own = written.Status();
  const auto found = named.Status();
  if (!own || !found) return std::nullopt;
  return own->nVolume == found->nVolume && own->nFileNumber == found->nFileNumber;
}

}  // namespace carvello
