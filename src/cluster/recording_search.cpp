#include "cluster/recording_search.h"

#include <algorithm>
#include <optional>
#include <set>
#include <string_view>
#include <utility>

#include "cluster/task_parts.h"
#include "support/file.h"
#include "support/formatting.h"
#include "support/platform.h"
#include "support/text.h"

namespace carvello {
namespace {

constexpr std::int64_t kLargestList = std::int64_t{64} << 20;
constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";  // some editors begin with it

using FileKey = std::pair<std::uint64_t, std::uint64_t>;

FileKey KeyOf(const platform::FileStatus& status) {
  return {status.nVolume, status.nFileNumber};
}

std::string Unreadable(const std::string& path, std::uint32_t problem) {
  return path + ": cannot be read: " + SystemErrorText(problem);
}

class CSearch {
 public:
  CSearch(const std::vector<std::string>& outputs, SFoundFiles& found) : m_found(found) {
    for (const std::string& folder : outputs) {
      if (const auto status = platform::GetFileStatus(folder)) m_outputs.insert(KeyOf(*status));
    }
  }

  bool IsOfOutputs(const platform::FileStatus& status) const { return m_outputs.contains(KeyOf(status)); }

  // False when the folder itself cannot be read, for the system's last error.
  bool Folder(const std::string& folder, const platform::FileStatus& status) {
    // A link can lead back to a folder above it.
    if (IsOfOutputs(status) || !m_seen.insert(KeyOf(status)).second) return true;
    std::optional<std::vector<std::string>> names = platform::ListFolder(folder);
    if (!names) return false;
    std::sort(names->begin(), names->end());
    std::vector<std::pair<std::string, platform::FileStatus>> folders;
    for (const std::string& name : *names) {
      const std::string path = platform::JoinPath(folder, name);
      const auto file = platform::GetFileStatus(path);
      if (!file) {
        const std::uint32_t problem = platform::LastError();
        // Gone since the folder was listed, if it is not a link.
        if (platform::MeansMissing(problem) && !platform::GetNameStatus(path)) continue;
        const bool isNothing = platform::MeansMissing(problem) || platform::MeansCircle(problem);
        const ELeftOut kind = platform::MeansRefused(problem) ? ELeftOut::Refused : ELeftOut::Unread;
        LeaveOut(path, Unreadable(path, problem), isNothing ? ELeftOut::NoRecording : kind);
      } else if (file->bDirectory) {
        folders.emplace_back(path, *file);
      } else if (!file->bRegular) {
        LeaveOut(path, path + ": is neither a file nor a folder");
      } else if (file->nSize == 0) {
        LeaveOut(path, path + ": is empty");
      } else if (!IsPartsFolderName(platform::NameOf(folder)) || !IsPartName(name)) {
        m_found.files.push_back({path, false});
      }
    }
    for (const auto& [path, below] : folders) {
      if (Folder(path, below)) continue;
      // Many disks have one that is closed to all users.
      const std::uint32_t problem = platform::LastError();
      const bool refused = platform::MeansRefused(problem);
      LeaveOut(path, Unreadable(path, problem), refused ? ELeftOut::NoRecording : ELeftOut::Unread);
    }
    return true;
  }

 private:
  void LeaveOut(const std::string& path, std::string reason, ELeftOut kind = ELeftOut::NoRecording) {
    m_found.leftOut.push_back({path, std::move(reason), kind});
  }

  std::set<FileKey> m_outputs;
  std::set<FileKey> m_seen;
  SFoundFiles& m_found;
};

}  // namespace

bool FindFiles(const std::vector<std::string>& named, const std::vector<std::string>& outputs, SFoundFiles& found,
               std::string& error) {
  CSearch search(outputs, found);
  for (const std::string& name : named) {
    const auto status = platform::GetFileStatus(name);
    if (!status) {
      error = name + ": " + SystemErrorText();
      return false;
    }
    if (!status->bDirectory) {
      found.files.push_back({name, true});
    } else if (search.IsOfOutputs(*status)) {
      error = name + ": is the folder of the outputs. Accepted: another --output, or the names of the recordings in it";
      return false;
    } else if (!search.Folder(name, *status)) {
      error = Unreadable(name, platform::LastError());
      return false;
    }
  }
  return true;
}

bool ReadNameList(const std::string& path, std::vector<std::string>& names, std::string& error) {
  CFile file;
  const bool opened = file.Open(path, platform::EOpenMode::ReadShared);
  const std::uint32_t refusal = opened ? 0 : platform::LastError();
  if (const auto status = platform::GetFileStatus(path); status && !status->bRegular) {
    error = path + ": is no ordinary file. Accepted: a file with a name in each line";
    return false;
  }
  const std::int64_t length = opened ? file.Length() : -1;
  if (length > kLargestList) {
    error = path + ": a list has at most 64 MiB";
    return false;
  }
  std::string text(static_cast<std::size_t>(std::max<std::int64_t>(length, 0)), '\0');
  if (length < 0 || !file.ReadExactly(text.data(), text.size())) {
    error = Unreadable(path, opened ? file.FirstError() : refusal);
    return false;
  }
  for (std::size_t begin = text.starts_with(kUtf8Mark) ? kUtf8Mark.size() : 0; begin < text.size();) {
    const std::size_t end = std::min(text.find('\n', begin), text.size());
    std::string line = text.substr(begin, end - begin);
    if (line.ends_with('\r')) line.pop_back();
    if (!line.empty()) names.push_back(std::move(line));
    begin = end + 1;
  }
  return true;
}

}  // namespace carvello
