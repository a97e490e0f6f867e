#include "input/repair_side_file.h"

#include <algorithm>
#include <cstring>
#include <optional>
#include <string_view>

#include "recording/riff_bytes.h"
#include "support/formatting.h"
#include "support/platform.h"
#include "support/sha2.h"
#include "support/text.h"

namespace carvello {

namespace {

constexpr std::string_view kMagic("Carvello repair 1\n");
constexpr std::size_t kHashDigits = 128;
constexpr std::int64_t kLargest = 256 << 20;

std::string HashOf(std::string_view bytes) {
  CSha512 hash;
  hash.Add(bytes.data(), bytes.size());
  return hash.Hex();
}

std::string BytesOf(const SKeptBytes& kept) {
  std::string bytes(kMagic);
  AppendLittleEndian(bytes, static_cast<std::uint64_t>(kept.nModified));
  AppendLittleEndian(bytes, static_cast<std::uint64_t>(kept.nLength));
  AppendLittleEndian(bytes, static_cast<std::uint64_t>(kept.changes.size()));
  for (const SByteChange& change : kept.changes) {
    AppendLittleEndian(bytes, static_cast<std::uint64_t>(change.nOffset));
    AppendLittleEndian(bytes, static_cast<std::uint64_t>(change.strOld.size()));
    bytes += change.strOld + change.strNew;
  }
  return bytes + HashOf(bytes);
}

// Takes numbers and texts off the front of bytes. What is not there is 0 or empty, and the whole no longer good.
class CByteReader {
 public:
  explicit CByteReader(std::string_view bytes) : m_rest(bytes) {}

  std::uint64_t Number() {
    std::uint64_t number = 0;
    const std::string text = Text(sizeof(number));
    if (m_bGood) std::memcpy(&number, text.data(), sizeof(number));
    return number;
  }
  std::string Text(std::uint64_t size) {
    if (size > m_rest.size()) m_bGood = false;
    if (!m_bGood) return {};
    std::string text(m_rest.substr(0, static_cast<std::size_t>(size)));
    m_rest.remove_prefix(text.size());
    return text;
  }
  bool IsGood() const { return m_bGood; }
  bool IsAtEnd() const { return m_bGood && m_rest.empty(); }

 private:
  std::string_view m_rest;
  bool m_bGood = true;
};

std::optional<SKeptBytes> KeptIn(std::string_view bytes) {
  if (bytes.size() < kMagic.size() + kHashDigits || !bytes.starts_with(kMagic)) return std::nullopt;
  const std::string_view body = bytes.substr(0, bytes.size() - kHashDigits);
  if (HashOf(body) != bytes.substr(body.size())) return std::nullopt;
  CByteReader reader(body.substr(kMagic.size()));
  SKeptBytes kept;
  kept.nModified = static_cast<std::int64_t>(reader.Number());
  kept.nLength = static_cast<std::int64_t>(reader.Number());
  const std::uint64_t count = reader.Number();
  for (std::uint64_t i = 0; i < count && reader.IsGood(); ++i) {
    SByteChange change;
    change.nOffset = static_cast<std::int64_t>(reader.Number());
    const std::uint64_t size = reader.Number();
    change.strOld = reader.Text(size);
    change.strNew = reader.Text(size);
    kept.changes.push_back(std::move(change));
  }
  return reader.IsAtEnd() ? std::optional(kept) : std::nullopt;
}

// The beginning of one, or the room for it that a lost supply of power left behind.
bool IsBegunByUs(std::string_view bytes) {
  const std::string_view magic = kMagic.substr(0, std::min(kMagic.size(), bytes.size()));
  return bytes.starts_with(magic) || bytes.find_first_not_of('\0') == std::string_view::npos;
}

}  // namespace

ESideFile ReadSideFile(const std::string& path, SKeptBytes& kept, std::string& error) {
  CFile file;
  if (!file.Open(path, platform::EOpenMode::ReadShared)) {
    const std::uint32_t code = platform::LastError();
    if (platform::MeansMissing(code)) return ESideFile::None;
    error = path + ": cannot be opened: " + SystemErrorText(code);
    return ESideFile::Unreadable;
  }
  const std::int64_t length = file.Length();
  if (length > kLargest) return ESideFile::Foreign;
  std::string bytes(static_cast<std::size_t>(std::max<std::int64_t>(length, 0)), '\0');
  if (length < 0 || !file.ReadExactly(bytes.data(), bytes.size())) {
    error = path + ": cannot be read: " + SystemErrorText(length < 0 ? platform::LastError() : file.ReadError());
    return ESideFile::Unreadable;
  }
  if (std::optional<SKeptBytes> found = KeptIn(bytes)) {
    kept = std::move(*found);
    return ESideFile::Complete;
  }
  return IsBegunByUs(bytes) ? ESideFile::Unfinished : ESideFile::Foreign;
}

bool WriteSideFile(const std::string& path, const SKeptBytes& kept, std::string& error) {
  CFile file;
  if (!file.Open(path, platform::EOpenMode::CreateNew)) {
    error = path + ": cannot be created: " + SystemErrorText();
    return false;
  }
  const std::string bytes = BytesOf(kept);
  bool written = file.Write(bytes.data(), bytes.size()) == bytes.size() && file.Sync();
  std::uint32_t code = written ? 0 : platform::LastError();
  if (!file.Close() && written) {
    written = false;
    code = platform::LastError();
  }
  if (written && !platform::SyncFolder(platform::FolderOf(path))) {
    written = false;
    code = platform::LastError();
  }
  if (written) return true;
  error = path + ": cannot be written: " + SystemErrorText(code);
  platform::RemoveFile(path);
  return false;
}

bool RemoveSideFile(const std::string& path, std::string& error) {
  if (platform::RemoveFile(path)) {
    platform::SyncFolder(platform::FolderOf(path));  // one that comes back is found to be done with
    return true;
  }
  error = path + ": cannot be removed: " + SystemErrorText();
  return false;
}

}  // namespace carvello
