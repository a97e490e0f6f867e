#include "cluster/part_manifest.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <stdexcept>

#include "cluster/json_numbers.h"
#include "input/wave_file_reader.h"
#include "support/file.h"
#include "support/formatting.h"
#include "support/json_text.h"
#include "support/sha2.h"
#include "support/text.h"

namespace carvello {
namespace {

using Json = nlohmann::json;

constexpr int kFormat = 1;
constexpr std::int64_t kLargestManifest = std::int64_t{256} << 20;
constexpr std::size_t kPiece = std::size_t{1} << 20;

// `error`: the system's, where it did not let the file be read; 0 else.
std::optional<std::string> TextOf(const std::string& path, std::uint32_t& error) {
  CFile file;
  error = 0;
  if (!file.Open(path, platform::EOpenMode::ReadShared)) {
    error = platform::LastError();
    return std::nullopt;
  }
  const std::int64_t length = file.Length();
  std::string text;
  const bool fits = length >= 0 && length <= kLargestManifest;
  if (fits) text.resize(static_cast<std::size_t>(length));
  const bool read = fits && file.ReadExactly(text.data(), text.size());
  error = file.FirstError();
  return read ? std::optional(text) : std::nullopt;
}

// With an end, so that no two sequences of texts are the same.
void AddText(CSha256& hash, const std::string& text) {
  hash.Add(text.c_str(), text.size() + 1);
}

// Of what a join goes by: the samples are told by their own hash, and the marks decide where parts of an output end.
std::string CheckOf(const SPartManifest& manifest) {
  CSha256 hash;
  for (const std::string& text : {manifest.strKey, manifest.strEntry, manifest.strSha256}) AddText(hash, text);
  AddText(hash, std::to_string(manifest.nFirst));
  AddText(hash, std::to_string(manifest.nFrames));
  for (const SStretchMark& mark : manifest.marks) {
    AddText(hash, std::to_string(mark.llFrame));
    AddText(hash, std::to_string(mark.nOutput));
  }
  return hash.Hex();
}

}  // namespace

SPartOrigin OriginOf(const SWorkPlan& plan, const SPlannedRecording& recording) {
  CSha256 hash;
  for (const SPlannedFile& file : recording.files) {
    AddText(hash, file.strPath);
    AddText(hash, std::to_string(file.nSize));
    AddText(hash, std::to_string(file.nModified));
  }
  return {.strVersion = plan.strVersion,
          .strLibrary = plan.strLibrary,
          .strInput = recording.strInput,
          .strStamp = hash.Hex(),
          .strEntries = recording.strEntries};
}

std::string PartKey(const SPartOrigin& origin, const STaskPart& part) {
  CSha256 hash;
  AddText(hash, origin.strVersion);
  AddText(hash, origin.strLibrary);
  AddText(hash, origin.strStamp);
  AddText(hash, origin.strEntries);
  for (const std::int64_t number : {static_cast<std::int64_t>(part.nEntry), part.range.nFirst, part.range.nEnd}) {
    AddText(hash, std::to_string(number));
  }
  return hash.Hex();
}

std::string PartManifestText(const SPartManifest& manifest) {
  CJsonText json;
  json.BeginObject();
  json.Member("carvello_part", kFormat);
  json.Member("version", manifest.origin.strVersion);
  json.Member("library", manifest.origin.strLibrary);
  json.Member("input", manifest.origin.strInput);
  json.Member("input_stamp", manifest.origin.strStamp);
  json.Member("key", manifest.strKey);
  json.Member("output", manifest.strEntry);
  json.Member("first_frame", manifest.nFirst);
  json.Member("frames", manifest.nFrames);
  json.Member("sha256", manifest.strSha256);
  json.Key("marks");
  json.BeginArray();
  for (const SStretchMark& mark : manifest.marks) json.Add(std::vector<std::int64_t>{mark.llFrame, mark.nOutput});
  json.EndArray();
  json.Member("check", CheckOf(manifest));
  json.EndObject();
  return json.Document();
}

std::optional<SPartManifest> ParseManifest(std::string_view text) {
  SPartManifest manifest;
  try {
    const Json json = Json::parse(text);
    if (WholeNumber(json.at("carvello_part")) != kFormat) return std::nullopt;
    manifest.strKey = json.at("key").get<std::string>();
    manifest.strEntry = json.at("output").get<std::string>();
    manifest.nFirst = WholeNumber(json.at("first_frame"));
    manifest.nFrames = WholeNumber(json.at("frames"));
    manifest.strSha256 = json.at("sha256").get<std::string>();
    for (const Json& mark : json.at("marks")) {
      manifest.marks.push_back({WholeNumber(mark.at(0)), WholeNumber(mark.at(1))});
    }
    if (json.at("check").get<std::string>() != CheckOf(manifest)) return std::nullopt;
  } catch (const Json::exception&) {
    return std::nullopt;
  } catch (const std::invalid_argument&) {
    return std::nullopt;
  }
  return manifest;
}

std::optional<SPartManifest> FindManifest(const STaskPart& part, const std::string& key, std::string* problem) {
  const auto tell = [problem](const std::string& text) {
    if (problem != nullptr) *problem = text;
  };
  tell({});
  std::uint32_t unread = 0;
  const std::optional<std::string> text = TextOf(part.strManifest, unread);
  if (!text) {
    if (unread != 0 && !platform::MeansMissing(unread)) {
      tell(part.strManifest + ": cannot be read: " + SystemErrorText(unread));
    }
    return std::nullopt;
  }
  std::optional<SPartManifest> manifest = ParseManifest(*text);
  const bool fits = manifest && manifest->strKey == key && manifest->nFirst == part.range.nFirst &&
                    manifest->nFrames == part.range.nEnd - part.range.nFirst;
  if (!fits) return std::nullopt;
  SPartSamples samples;
  std::string error;
  if (!FindPartSamples(part.strPath, samples, error)) {
    if (platform::IsThere(part.strPath) != std::optional(false)) tell(error);
    return std::nullopt;
  }
  if (samples.nBytes != manifest->nFrames * samples.FrameBytes()) return std::nullopt;
  return manifest;
}

bool IsPartWhole(const STaskPart& part, const std::string& key) {
  const std::optional<SPartManifest> manifest = FindManifest(part, key);
  std::string sha256;
  std::string error;
  std::int64_t frames = 0;
  return manifest && HashPart(part.strPath, sha256, frames, error) && sha256 == manifest->strSha256;
}

bool FindPartSamples(const std::string& path, SPartSamples& samples, std::string& error) {
  CWaveFileReader reader;
  SScanResult scan;
  if (!reader.ScanChunks(path, scan)) {
    error = path + ": " + scan.strError;
    return false;
  }
  samples = {scan.nDataStart, scan.nSampleBytes, scan.format.Format.wBitsPerSample};
  if (samples.nBitsPerSample == 16 || samples.nBitsPerSample == 32) return true;
  error = path + ": no part of an output";
  return false;
}

bool HashPart(const std::string& path, std::string& sha256, std::int64_t& frames, std::string& error) {
  SPartSamples samples;
  if (!FindPartSamples(path, samples, error)) return false;
  CFile file;
  if (!file.Open(path, platform::EOpenMode::ReadShared) || !file.Seek(samples.nOffset)) {
    error = path + ": cannot be read: " + SystemErrorText();
    return false;
  }
  CSha256 hash;
  std::vector<char> piece(kPiece);
  for (std::int64_t left = samples.nBytes; left > 0;) {
    const auto wanted = static_cast<std::size_t>(std::min<std::int64_t>(left, static_cast<std::int64_t>(kPiece)));
    if (!file.ReadExactly(piece.data(), wanted)) {
      error = path + (file.ReadError() == 0 ? std::string(": the file ends early")
                                            : ": cannot be read: " + SystemErrorText(file.ReadError()));
      return false;
    }
    hash.Add(piece.data(), wanted);
    left -= static_cast<std::int64_t>(wanted);
  }
  sha256 = hash.Hex();
  frames = samples.nBytes / samples.FrameBytes();
  return true;
}

}  // namespace carvello
