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

std::string PathWithEnding(const std::string& stem, const char* ending) {
  return WithEnding(stem, ending, [](const std::string& path) { return platform::GetFileStatus(path).has_value(); });
}

std::string MetaOf(const std::string& dataPath) {
  return PathWithEnding(WithoutEnding(dataPath, kSigMfDataExtension), kSigMfMetaExtension);
}

// A stretch of a file as a text.
bool ReadText(const std::string& path, std::int64_t offset, std::int64_t bytes, std::string& text, SFileStamp& stamp,
              std::string& error) {
  CFile file;
  if (!file.Open(path, platform::EOpenMode::ReadShared)) {
    error = SystemErrorText();
    return false;
  }
  const auto status = file.Status();
  const std::int64_t size = bytes < 0 ? file.Length() : bytes;
  if (!status || size < 0) {
    error = SystemErrorText();
    return false;
  }
  stamp = SFileStamp(*status);
  if (size > kLargestMeta) {
    error = "too large for a meta file. Accepted: at most 64 MiB";
    return false;
  }
  text.assign(static_cast<std::size_t>(size), '\0');
  if (file.Seek(offset) && file.ReadExactly(text.data(), text.size())) return true;
  error = file.ReadError() == 0 ? "the file ends early" : SystemErrorText(file.ReadError());
  return false;
}

// Names of datasets and streams are names alone: nothing leads out of the folder.
bool IsPlainName(const std::string& name) {
  return !name.empty() && name != "." && name != ".." && name.find_first_of("/\\:") == std::string::npos &&
         name.find('\0') == std::string::npos;
}

bool TakeMeta(const std::string& text, SSigMfFiles& files, std::string& error) {
  if (!ParseSigMfMeta(text, files.meta, error)) return false;
  if (files.meta.bMetadataOnly) {
    error = "it describes samples that are kept nowhere (core:metadata_only)";
    return false;
  }
  if (files.meta.strDataset.empty() || IsPlainName(files.meta.strDataset)) return true;
  error = "core:dataset is no file name";
  return false;
}

bool FindBeside(const std::string& metaPath, std::vector<SSigMfFiles>& found, std::string& error) {
  SSigMfFiles files;
  files.strName = platform::NameOf(metaPath);
  std::string text;
  SFileStamp stamp;
  if (!ReadText(metaPath, 0, -1, text, stamp, error) || !TakeMeta(text, files, error)) {
    error.insert(0, Printable(metaPath) + ": ");
    return false;
  }
  const std::string& dataset = files.meta.strDataset;
  files.strPath = dataset.empty() ? PathWithEnding(WithoutEnding(metaPath, kSigMfMetaExtension), kSigMfDataExtension)
                                  : platform::JoinPath(platform::FolderOf(metaPath), dataset);
  const auto status = platform::GetFileStatus(files.strPath);
  if (!status || !status->bRegular || !platform::IsReadable(files.strPath)) {
    error = Format("%s: its file of samples, %s, cannot be read: %s", Printable(metaPath).c_str(),
                   Printable(platform::NameOf(files.strPath)).c_str(), SystemErrorText().c_str());
    return false;
  }
  files.nBytes = status->nSize;
  files.stamp = SFileStamp(*status);
  files.describedBy = {{metaPath, stamp}};
  found.push_back(std::move(files));
  return true;
}

bool FindInArchive(const std::string& path, std::vector<SSigMfFiles>& found, std::vector<std::string>& warnings,
                   std::string& error) {
  CFile file;
  std::vector<STarEntry> entries;
  const auto status = platform::GetFileStatus(path);
  if (!status || !file.Open(path, platform::EOpenMode::ReadShared)) {
    error = SystemErrorText();
    return false;
  }
  if (!WalkTar(file, entries, error)) return false;
  std::map<std::string, const STarEntry*> byName;
  for (const STarEntry& entry : entries) byName[entry.strName] = &entry;
  std::string problem = "the archive holds no meta file";
  for (const STarEntry& entry : entries) {
    if (!EndsWith(entry.strName, kSigMfMetaExtension)) continue;
    SSigMfFiles files;
    files.strName = entry.strName;
    std::string text;
    SFileStamp stamp;
    const STarEntry* pData = nullptr;
    std::string reason;
    if (ReadText(path, entry.nOffset, entry.nBytes, text, stamp, reason) && TakeMeta(text, files, reason)) {
      const std::string& dataset = files.meta.strDataset;
      const std::size_t folder = entry.strName.rfind('/') + 1;  // 0 without one
      const auto isThere = [&](const std::string& name) { return byName.contains(name); };
      const auto data = byName.find(
          dataset.empty() ? WithEnding(WithoutEnding(entry.strName, kSigMfMetaExtension), kSigMfDataExtension, isThere)
                          : entry.strName.substr(0, folder) + dataset);
      reason = "its file of samples is not in the archive";
      if (data != byName.end() && data->second->bSparse) {
        reason =
            "its file of samples is archived without its empty stretches. Accepted: one that is archived as a whole";
      } else if (data != byName.end()) {
        pData = data->second;
      }
    }
    if (pData == nullptr) {
      problem = Printable(entry.strName) + ": " + reason;
      warnings.push_back(problem);
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
  error = problem;
  return false;
}

bool FindInCollection(const std::string& path, std::vector<SSigMfFiles>& found, std::vector<std::string>& warnings,
                      std::string& error) {
  std::string text;
  SFileStamp stamp;
  SFileStamp collectionStamp;
  SigMfStreams streams;
  if (!ReadText(path, 0, -1, text, collectionStamp, error) || !ParseSigMfCollection(text, streams, error)) return false;
  std::string problem;
  for (const auto& [name, hash] : streams) {
    const std::string named = platform::JoinPath(platform::FolderOf(path), name);
    const std::string metaPath =
        EndsWith(name, kSigMfMetaExtension) ? named : PathWithEnding(named, kSigMfMetaExtension);
    problem = IsPlainName(name) ? std::string() : Printable(name) + ": is no file name";
    if (!problem.empty() || !FindBeside(metaPath, found, problem)) {
      warnings.push_back(problem);
      continue;
    }
    found.back().describedBy.push_back({path, collectionStamp});
    CSha512 sum;
    std::string content;
    if (ReadText(metaPath, 0, -1, content, stamp, problem)) sum.Add(content.data(), content.size());
    if (!hash.empty() && ToLowerAscii(hash) != sum.Hex()) {
      warnings.push_back(Printable(metaPath) + ": is not as it was when the collection was made");
    }
  }
  if (!found.empty()) return true;
  warnings.clear();
  error = problem;
  return false;
}

}  // namespace

bool IsLoneSigMfData(const std::string& path) {
  if (!EndsWith(path, kSigMfDataExtension)) return false;
  return !platform::GetFileStatus(MetaOf(path)) && platform::MeansMissing(platform::LastError());
}

bool FindSigMfFiles(const std::string& selectedFile, std::vector<SSigMfFiles>& found,
                    std::vector<std::string>& warnings, std::string& error) {
  found.clear();
  if (EndsWith(selectedFile, kSigMfMetaExtension)) return FindBeside(selectedFile, found, error);
  if (EndsWith(selectedFile, kSigMfDataExtension)) {
    return FindBeside(MetaOf(selectedFile), found, error);
  }
  const bool good = EndsWith(selectedFile, kSigMfCollectionExtension)
                        ? FindInCollection(selectedFile, found, warnings, error)
                        : FindInArchive(selectedFile, found, warnings, error);
  if (!good && !error.starts_with(Printable(platform::FolderOf(selectedFile)))) {
    error.insert(0, Printable(selectedFile) + ": ");
  }
  return good;
}

}  // namespace carvello
