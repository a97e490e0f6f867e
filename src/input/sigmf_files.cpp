#include "input/sigmf_files.h"

#include <map>
#include <optional>
#include <utility>

#include "input/tar_walk.h"
#include "recording/sigmf_writer.h"
#include "support/file.h"
#include "support/formatting.h"
#include "support/platform.h"
#include "support/sha2.h"
#include "support/text.h"

namespace carvello {

namespace {

constexpr std::int64_t kLargestMeta = std::int64_t{64} << 20;

bool EndsWith(const std::string& path, const char* ending) {
  return ToLowerAscii(path).ends_with(ending);
}

std::string WithoutEnding(const std::string& path, const char* ending) {
  return path.substr(0, path.size() - std::string_view(ending).size());
}

std::string ToUpperAscii(std::string text) {
  for (char& c : text) c = c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
  return text;
}

// Where endings are written in upper case, that of the other file of a pair may be so too. The lower case where neither
// is there.
template <typename TExists>
std::string WithEnding(const std::string& stem, const char* ending, TExists exists) {
  const std::string upper = stem + ToUpperAscii(ending);
  return !exists(stem + ending) && exists(upper) ? upper : stem + ending;
}

// What the system does not tell of may be there: reading it tells then.
std::string PathWithEnding(const std::string& stem, const char* ending) {
  return WithEnding(stem, ending, [](const std::string& path) {
    return platform::GetFileStatus(path) || !platform::MeansMissing(platform::LastError());
  });
}

std::string MetaOf(const std::string& dataPath) {
  return PathWithEnding(WithoutEnding(dataPath, kSigMfDataExtension), kSigMfMetaExtension);
}

bool Fail(SSigMfProblem& problem, const std::string& text) {
  problem = {text, false};
  return false;
}

bool FailBySystem(SSigMfProblem& problem, std::uint32_t error) {
  problem = {SystemErrorText(error), !platform::MeansMissing(error)};
  return false;
}

// A stretch of a file as a text.
bool ReadText(const std::string& path, std::int64_t offset, std::int64_t bytes, std::string& text, SFileStamp& stamp,
              SSigMfProblem& problem) {
  CFile file;
  if (!file.Open(path, platform::EOpenMode::ReadShared)) return FailBySystem(problem, platform::LastError());
  const auto status = file.Status();
  if (!status) return FailBySystem(problem, platform::LastError());
  const std::int64_t size = bytes < 0 ? file.Length() : bytes;
  if (size < 0) return FailBySystem(problem, file.FirstError());
  stamp = SFileStamp(*status);
  if (size > kLargestMeta) return Fail(problem, "too large for a meta file. Accepted: at most 64 MiB");
  text.assign(static_cast<std::size_t>(size), '\0');
  if (file.Seek(offset) && file.ReadExactly(text.data(), text.size())) return true;
  if (file.FirstError() != 0) return FailBySystem(problem, file.FirstError());
  return Fail(problem, "the file ends early");
}

// Names of datasets and streams are names alone: nothing leads out of the folder.
bool IsPlainName(const std::string& name) {
  return !name.empty() && name != "." && name != ".." && name.find_first_of("/\\:") == std::string::npos &&
         name.find('\0') == std::string::npos;
}

bool TakeMeta(const std::string& text, SSigMfFiles& files, SSigMfProblem& problem) {
  std::string error;
  if (!ParseSigMfMeta(text, files.meta, error)) return Fail(problem, error);
  if (files.meta.bMetadataOnly) {
    return Fail(problem, "it describes samples that are kept nowhere (core:metadata_only)");
  }
  if (files.meta.strDataset.empty() || IsPlainName(files.meta.strDataset)) return true;
  return Fail(problem, "core:dataset is no file name");
}

bool FindBeside(const std::string& metaPath, std::vector<SSigMfFiles>& found, SSigMfProblem& problem) {
  SSigMfFiles files;
  files.strName = platform::NameOf(metaPath);
  std::string text;
  SFileStamp stamp;
  if (!ReadText(metaPath, 0, -1, text, stamp, problem) || !TakeMeta(text, files, problem)) {
    problem.strText.insert(0, Printable(metaPath) + ": ");
    return false;
  }
  const std::string& dataset = files.meta.strDataset;
  files.strPath = dataset.empty() ? PathWithEnding(WithoutEnding(metaPath, kSigMfMetaExtension), kSigMfDataExtension)
                                  : platform::JoinPath(platform::FolderOf(metaPath), dataset);
  const auto status = platform::GetFileStatus(files.strPath);
  if (!status || !status->bRegular || !platform::IsReadable(files.strPath)) {
    if (status && !status->bRegular) {
      Fail(problem, "is no ordinary file");
    } else {
      FailBySystem(problem, platform::LastError());
    }
    problem.strText.insert(0, Format("%s: its file of samples, %s, cannot be read: ", Printable(metaPath).c_str(),
                                     Printable(platform::NameOf(files.strPath)).c_str()));
    return false;
  }
  files.nBytes = status->nSize;
  files.stamp = SFileStamp(*status);
  files.describedBy = {{metaPath, stamp}};
  found.push_back(std::move(files));
  return true;
}

bool FindInArchive(const std::string& path, std::vector<SSigMfFiles>& found, std::vector<std::string>& warnings,
                   SSigMfProblem& problem) {
  CFile file;
  std::vector<STarEntry> entries;
  const auto status = platform::GetFileStatus(path);
  if (!status || !file.Open(path, platform::EOpenMode::ReadShared)) {
    return FailBySystem(problem, platform::LastError());
  }
  std::string error;
  if (!WalkTar(file, entries, error)) {
    return file.FirstError() != 0 ? FailBySystem(problem, file.FirstError()) : Fail(problem, error);
  }
  std::map<std::string, const STarEntry*> byName;
  for (const STarEntry& entry : entries) byName[entry.strName] = &entry;
  Fail(problem, "the archive holds no meta file");
  for (const STarEntry& entry : entries) {
    if (!EndsWith(entry.strName, kSigMfMetaExtension)) continue;
    SSigMfFiles files;
    files.strName = entry.strName;
    std::string text;
    SFileStamp stamp;
    const STarEntry* pData = nullptr;
    SSigMfProblem reason;
    if (ReadText(path, entry.nOffset, entry.nBytes, text, stamp, reason) && TakeMeta(text, files, reason)) {
      const std::string& dataset = files.meta.strDataset;
      const std::size_t folder = entry.strName.rfind('/') + 1;  // 0 without one
      const auto isThere = [&](const std::string& name) { return byName.contains(name); };
      const auto data = byName.find(
          dataset.empty() ? WithEnding(WithoutEnding(entry.strName, kSigMfMetaExtension), kSigMfDataExtension, isThere)
                          : entry.strName.substr(0, folder) + dataset);
      reason.strText = "its file of samples is not in the archive";
      if (data != byName.end() && data->second->bSparse) {
        reason.strText =
            "its file of samples is archived without its empty stretches. Accepted: one that is archived as a whole";
      } else if (data != byName.end()) {
        pData = data->second;
      }
    }
    if (pData == nullptr) {
      problem = {Printable(entry.strName) + ": " + reason.strText, reason.bUnread};
      if (problem.bUnread) return false;
      warnings.push_back(problem.strText);
      continue;
    }
    files.strPath = path;
    files.nOffset = pData->nOffset;
    files.nBytes = pData->nBytes;
    files.stamp = SFileStamp(*status);
    if (pData->nMissing > 0) {
      warnings.push_back(Format("%s: the archive was cut short, %lld bytes of its samples are missing",
                                Printable(entry.strName).c_str(), static_cast<long long>(pData->nMissing)));
    }
    found.push_back(std::move(files));
  }
  if (!found.empty()) return true;
  warnings.clear();
  return false;
}

bool FindInCollection(const std::string& path, std::vector<SSigMfFiles>& found, std::vector<std::string>& warnings,
                      SSigMfProblem& problem) {
  std::string text;
  SFileStamp stamp;
  SFileStamp collectionStamp;
  SigMfStreams streams;
  if (!ReadText(path, 0, -1, text, collectionStamp, problem)) return false;
  if (std::string error; !ParseSigMfCollection(text, streams, error)) return Fail(problem, error);
  problem = {};
  for (const auto& [name, hash] : streams) {
    const std::string named = platform::JoinPath(platform::FolderOf(path), name);
    const std::string metaPath =
        EndsWith(name, kSigMfMetaExtension) ? named : PathWithEnding(named, kSigMfMetaExtension);
    const bool isName = IsPlainName(name) || Fail(problem, Printable(name) + ": is no file name");
    if (!isName || !FindBeside(metaPath, found, problem)) {
      if (problem.bUnread) return false;
      warnings.push_back(problem.strText);
      continue;
    }
    found.back().describedBy.push_back({path, collectionStamp});
    CSha512 sum;
    std::string content;
    if (!ReadText(metaPath, 0, -1, content, stamp, problem)) {
      problem.strText.insert(0, Printable(metaPath) + ": ");
      return false;
    }
    sum.Add(content.data(), content.size());
    if (!hash.empty() && ToLowerAscii(hash) != sum.Hex()) {
      warnings.push_back(Printable(metaPath) + ": is not as it was when the collection was made");
    }
  }
  if (!found.empty()) return true;
  warnings.clear();
  return false;
}

}  // namespace

bool IsLoneSigMfData(const std::string& path) {
  if (!EndsWith(path, kSigMfDataExtension)) return false;
  return !platform::GetFileStatus(MetaOf(path)) && platform::MeansMissing(platform::LastError());
}

bool FindSigMfFiles(const std::string& selectedFile, std::vector<SSigMfFiles>& found,
                    std::vector<std::string>& warnings, SSigMfProblem& problem) {
  found.clear();
  problem = {};
  if (EndsWith(selectedFile, kSigMfMetaExtension)) return FindBeside(selectedFile, found, problem);
  if (EndsWith(selectedFile, kSigMfDataExtension)) {
    return FindBeside(MetaOf(selectedFile), found, problem);
  }
  const bool good = EndsWith(selectedFile, kSigMfCollectionExtension)
                        ? FindInCollection(selectedFile, found, warnings, problem)
                        : FindInArchive(selectedFile, found, warnings, problem);
  if (!good && !problem.strText.starts_with(Printable(platform::FolderOf(selectedFile)))) {
    problem.strText.insert(0, Printable(selectedFile) + ": ");
  }
  return good;
}

}  // namespace carvello
