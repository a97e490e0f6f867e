#include "cluster/recording_search.h"

#include <algorithm>
#include <set>
#include <utility>

#include "support/file.h"
#include "support/formatting.h"
#include "support/platform.h"
#include "support/text.h"

namespace carvello {
namespace {

constexpr std::int64_t kLargestList = std::int64_t{64} << 20;

class CSearch {
 public:
  CSearch(const std::vector<std::string>& leftOut, std::vector<SFoundFile>& found, std::string& error)
      : m_found(found), m_error(error) {
    for (const std::string& folder : leftOut) {
      if (const auto status = platform::GetFileStatus(folder)) m_seen.insert({status->nVolume, status->nFileNumber});
    }
  }

  bool Folder(const std::string& folder) {
    // A link can lead back to a folder above it.
    const auto status = platform::GetFileStatus(folder);
    if (!status) return Fail(folder);
    if (!m_seen.insert({status->nVolume, status->nFileNumber}).second) return true;
    std::optional<std::vector<std::string>> names = platform::ListFolder(folder);
    if (!names) return Fail(folder);
    std::sort(names->begin(), names->end());
    std::vector<std::string> folders;
    for (const std::string& name : *names) {
      std::string path = platform::JoinPath(folder, name);
      const auto file = platform::GetFileStatus(path);
      if (!file) continue;  // gone meanwhile, or a link that leads nowhere
      if (file->bDirectory)
        folders.push_back(std::move(path));
      else if (file->bRegular && file->nSize > 0)
        m_found.push_back({std::move(path), false});
    }
    return std::all_of(folders.begin(), folders.end(), [this](const std::string& each) { return Folder(each); });
  }

 private:
  bool Fail(const std::string& path) {
    m_error = path + ": cannot be read: " + SystemErrorText();
    return false;
  }

  std::set<std::pair<std::uint64_t, std::uint64_t>> m_seen;  // folders, and those that are left out
  std::vector<SFoundFile>& m_found;
  std::string& m_error;
};

}  // namespace

bool FindFiles(const std::vector<std::string>& named, const std::vector<std::string>& leftOut,
               std::vector<SFoundFile>& found, std::string& error) {
  CSearch search(leftOut, found, error);
  for (const std::string& name : named) {
    const auto status = platform::GetFileStatus(name);
    if (!status) {
      error = name + ": " + SystemErrorText();
      return false;
    }
    if (!status->bDirectory) {
      found.push_back({name, true});
    } else if (!search.Folder(name)) {
      return false;
    }
  }
  return true;
}

bool ReadNameList(const std::string& path, std::vector<std::string>& names, std::string& error) {
  CFile file;
  const bool opened = file.Open(path, platform::EOpenMode::ReadShared);
  const std::int64_t length = opened ? file.Length() : -1;
  if (length > kLargestList) {
    error = path + ": a list has at most 64 MiB";
    return false;
  }
  std::string text(static_cast<std::size_t>(std::max<std::int64_t>(length, 0)), '\0');
  if (length < 0 || !file.ReadExactly(text.data(), text.size())) {
    error = path +
            ": cannot be read: " + SystemErrorText(file.FirstError() != 0 ? file.FirstError() : platform::LastError());
    return false;
  }
  for (std::size_t begin = 0; begin < text.size();) {
    const std::size_t end = std::min(text.find('\n', begin), text.size());
    std::string line = text.substr(begin, end - begin);
    if (line.ends_with('\r')) line.pop_back();
    if (!line.empty()) names.push_back(std::move(line));
    begin = end + 1;
  }
  return true;
}

}  // namespace carvello
