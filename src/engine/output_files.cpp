#include "engine/output_files.h"

#include <algorithm>
#include <iterator>
#include <string_view>
#include <utility>

#include "recording/sigmf_writer.h"
#include "support/formatting.h"
#include "support/platform.h"
#include "support/text.h"

namespace carvello {

namespace {

bool SameFile(const platform::FileStatus& a, const platform::FileStatus& b) {
  return a.nVolume == b.nVolume && a.nFileNumber == b.nFileNumber;
}

// A numbered name taken apart: stem, digits, extension with its dot.
struct SPartName {
  std::string_view stem;
  std::string_view digits;
  std::string_view extension;
};

// Nothing when no split gives such a name: three digits, or more of them without a zero in front.
std::optional<SPartName> TakeApart(std::string_view name) {
  constexpr std::size_t kFewestDigits = 3;
  const std::size_t dot = std::min(name.rfind('.'), name.size());
  const std::string_view base = name.substr(0, dot);
  const std::size_t blank = base.rfind(' ');
  if (blank == std::string_view::npos) return std::nullopt;
  const std::string_view digits = base.substr(blank + 1);
  const bool isNumber = digits.find_first_not_of("0123456789") == std::string_view::npos;
  const bool isGiven = digits.size() == kFewestDigits || (digits.size() > kFewestDigits && digits.front() != '0');
  if (!isNumber || !isGiven) return std::nullopt;
  return SPartName{base.substr(0, blank), digits, name.substr(dot)};
}

// Whether `name` is a numbered part of the output that is called `outputName`.
bool IsPartOf(std::string_view name, std::string_view outputName) {
  const std::size_t dot = std::min(outputName.rfind('.'), outputName.size());
  const auto part = TakeApart(name);
  return part && platform::FileNamesEqual(part->stem, outputName.substr(0, dot)) &&
         platform::FileNamesEqual(part->extension, outputName.substr(dot));
}

// What tells names apart whatever a system makes of upper and lower case: the digits in them.
std::string DigitsOf(std::string_view stem) {
  std::string digits;
  std::copy_if(stem.begin(), stem.end(), std::back_inserter(digits), [](char c) { return c >= '0' && c <= '9'; });
  return digits;
}

}  // namespace

void COutputFolders::TellProblem(const std::string& path) {
  m_strProblem = path + ": " + SystemErrorText();
}

std::optional<platform::FileStatus> COutputFolders::StatusOf(const std::string& path) {
  const auto status = platform::GetFileStatus(path);
  if (!status && !platform::MeansMissing(platform::LastError())) TellProblem(path);
  return status;
}

bool COutputFolders::Counts(const std::string& path) {
  const std::optional<bool> there = platform::IsThere(path);
  if (!there) TellProblem(path);
  if (!there.value_or(false)) return false;
  if (!platform::GetFileStatus(path) || platform::IsReadable(path)) return true;
  if (!platform::MeansRefused(platform::LastError())) TellProblem(path);
  return false;
}

const COutputFolders::SFolder& COutputFolders::NumberedNames(const std::string& folder) {
  const auto [place, isNew] = m_folders.try_emplace(folder);
  SFolder& found = place->second;
  if (isNew) {
    const auto names = platform::ListFolder(folder);
    const std::uint32_t error = names ? 0 : platform::LastError();
    found.bClosed = !names && platform::MeansRefused(error);
    if (!names && !found.bClosed && !platform::MeansMissing(error)) {
      found.strProblem = folder + ": " + SystemErrorText(error);
    }
    for (const std::string& name : names.value_or(std::vector<std::string>())) {
      if (const auto part = TakeApart(name)) found.names.emplace(DigitsOf(part->stem), name);
    }
  }
  if (!found.strProblem.empty()) m_strProblem = found.strProblem;
  return found;
}

std::vector<std::string> COutputFolders::ExistingParts(const OutputEntry& entry) {
  m_strProblem.clear();
  return PartsNamed(entry, entry.strFileName);
}

std::vector<std::string> COutputFolders::ExistingMetaParts(const OutputEntry& entry) {
  m_strProblem.clear();
  return PartsNamed(entry, SigMfMetaPath(entry.strFileName));
}

// The parts of the entry's output among the files that are numbered as the parts of this path are.
std::vector<std::string> COutputFolders::PartsNamed(const OutputEntry& entry, const std::string& path) {
  std::vector<std::string> parts;
  if (IsOneFile(entry)) return parts;
  const std::string folder = platform::FolderOf(path);
  const std::string outputName = platform::NameOf(path);
  const std::string stem = outputName.substr(0, outputName.rfind('.'));
  const SFolder& found = NumberedNames(folder);
  if (found.bClosed) {
    // From the first on, as they are written.
    for (int number = 0;; ++number) {
      parts.push_back(platform::JoinPath(
          folder, Format("%s %03d%s", stem.c_str(), number, outputName.substr(stem.size()).c_str())));
      const std::optional<bool> there = platform::IsThere(parts.back());
      if (there.value_or(false)) continue;
      if (!there) TellProblem(parts.back());
      parts.pop_back();
      return parts;
    }
  }
  const auto [begin, end] = found.names.equal_range(DigitsOf(stem));
  for (auto name = begin; name != end; ++name) {
    if (IsPartOf(name->second, outputName)) parts.push_back(platform::JoinPath(folder, name->second));
  }
  // "999" stands before "1000".
  std::sort(parts.begin(), parts.end(), [](const std::string& a, const std::string& b) {
    return a.size() != b.size() ? a.size() < b.size() : a < b;
  });
  return parts;
}

std::vector<std::string> COutputFolders::ExistingOutputFiles(const OutputEntry& entry) {
  m_strProblem.clear();
  std::vector<std::string> files = PartsNamed(entry, entry.strFileName);
  files.insert(files.begin(), entry.strFileName);
  if (HasMeta(entry)) AddMetaPaths(entry, files);
  std::erase_if(files, [this](const std::string& file) { return !Counts(file); });
  return files;
}

// The meta files of all files, and those of parts that are gone. Not all need be there.
void COutputFolders::AddMetaPaths(const OutputEntry& entry, std::vector<std::string>& files) {
  if (IsOneFile(entry)) {
    files.push_back(SigMfMetaPath(entry.strFileName));
    return;
  }
  for (std::string& meta : PartsNamed(entry, SigMfMetaPath(entry.strFileName))) files.push_back(std::move(meta));
}

std::vector<std::string> COutputFolders::InputFilesReplaced(const OutputEntry& entry,
                                                            const std::vector<std::string>& inputFiles) {
  const std::string folder = platform::FolderOf(entry.strFileName);
  const std::string outputName = platform::NameOf(entry.strFileName);
  const std::vector<std::string> existing = ExistingOutputFiles(entry);
  const auto areSame = [this](const std::string& a, const std::string& b) {
    const auto statusA = StatusOf(a);
    const auto statusB = StatusOf(b);
    return statusA && statusB && SameFile(*statusA, *statusB);
  };
  std::vector<std::string> replaced;
  for (const std::string& input : inputFiles) {
    const std::string inputName = platform::NameOf(input);
    const bool byName =
        (platform::FileNamesEqual(inputName, outputName) || (!IsOneFile(entry) && IsPartOf(inputName, outputName))) &&
        areSame(platform::FolderOf(input), folder);
    const bool bySameFile =
        std::any_of(existing.begin(), existing.end(), [&](const auto& file) { return areSame(file, input); });
    if (byName || bySameFile) replaced.push_back(input);
  }
  return replaced;
}

std::optional<std::string> RemoveOldParts(const OutputEntry& entry) {
  COutputFolders folders;
  // From part 0 on, which whoever writes an output of this name holds until its end.
  std::vector<std::string> parts = folders.ExistingParts(entry);
  if (!folders.Problem().empty()) return folders.Problem();
  if (HasMeta(entry)) {
    for (std::string& meta : folders.ExistingMetaParts(entry)) parts.push_back(std::move(meta));
    if (!folders.Problem().empty()) return folders.Problem();
  }
  for (const std::string& part : parts) {
    // What another job has removed in the meantime is gone as well; which of the two goes on shows at part 0.
    if (platform::RemoveUnusedFile(part) || platform::MeansMissing(platform::LastError())) continue;
    return Format("%s: %s", part.c_str(), SystemErrorText().c_str());
  }
  return std::nullopt;
}

}  // namespace carvello
