#include "engine/output_files.h"

#include <algorithm>
#include <optional>
#include <string_view>

#include "support/platform.h"

namespace carvello {

namespace {

bool SameFile(const platform::FileStatus& a, const platform::FileStatus& b) {
  return a.nVolume == b.nVolume && a.nFileNumber == b.nFileNumber;
}

bool SameFile(const std::string& a, const std::string& b) {
  const auto statusA = platform::GetFileStatus(a);
  const auto statusB = platform::GetFileStatus(b);
  return statusA && statusB && SameFile(*statusA, *statusB);
}

// Whether `name` is a numbered part of the output that is called `outputName`: its stem, a blank, at least three
// digits, and its extension.
bool IsPartOf(std::string_view name, std::string_view outputName) {
  const std::size_t dot = outputName.rfind('.');
  const std::string_view stem = outputName.substr(0, dot);
  const std::string_view extension = dot == std::string_view::npos ? std::string_view{} : outputName.substr(dot);
  constexpr std::size_t kFewestDigits = 3;
  if (name.size() < stem.size() + 1 + kFewestDigits + extension.size()) return false;
  const std::string_view digits = name.substr(stem.size() + 1, name.size() - stem.size() - 1 - extension.size());
  return platform::FileNamesEqual(name.substr(0, stem.size()), stem) && name[stem.size()] == ' ' &&
         digits.find_first_not_of("0123456789") == std::string_view::npos &&
         platform::FileNamesEqual(name.substr(name.size() - extension.size()), extension);
}

}  // namespace

std::vector<std::string> ExistingParts(const OutputEntry& entry) {
  std::vector<std::string> parts;
  if (IsSingleRf64(entry)) return parts;
  const std::string folder = platform::FolderOf(entry.strFileName);
  const std::string outputName = platform::NameOf(entry.strFileName);
  const auto names = platform::ListFolder(folder);
  if (!names) return parts;
  for (const std::string& name : *names) {
    if (IsPartOf(name, outputName)) parts.push_back(platform::JoinPath(folder, name));
  }
  std::sort(parts.begin(), parts.end());
  return parts;
}

std::vector<std::string> ExistingOutputFiles(const OutputEntry& entry) {
  std::vector<std::string> files = ExistingParts(entry);
  if (platform::GetFileStatus(entry.strFileName)) files.insert(files.begin(), entry.strFileName);
  return files;
}

std::vector<std::string> InputFilesReplaced(const OutputEntry& entry, const std::vector<std::string>& inputFiles) {
  const std::string folder = platform::FolderOf(entry.strFileName);
  const std::string outputName = platform::NameOf(entry.strFileName);
  const std::vector<std::string> existing = ExistingOutputFiles(entry);
  std::vector<std::string> replaced;
  for (const std::string& input : inputFiles) {
    const std::string inputName = platform::NameOf(input);
    const bool byName = (platform::FileNamesEqual(inputName, outputName) ||
                         (!IsSingleRf64(entry) && IsPartOf(inputName, outputName))) &&
                        SameFile(platform::FolderOf(input), folder);
    const bool bySameFile =
        std::any_of(existing.begin(), existing.end(), [&](const auto& file) { return SameFile(file, input); });
    if (byName || bySameFile) replaced.push_back(input);
  }
  return replaced;
}

}  // namespace carvello
