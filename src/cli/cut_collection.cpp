#include "cli/cut_collection.h"

#include <array>
#include <utility>
#include <vector>

#include "recording/sigmf_writer.h"
#include "support/file.h"
#include "support/formatting.h"
#include "support/platform.h"
#include "support/sha2.h"
#include "support/text.h"
#include "support/whole_file.h"

namespace carvello {
namespace {

constexpr std::size_t kPiece = 65'536;

bool HashFile(const std::string& path, std::string& hash) {
  CFile file;
  CSha512 sum;
  std::array<char, kPiece> piece;
  if (!file.Open(path, platform::EOpenMode::ReadShared)) return false;
  while (const std::size_t count = file.Read(piece.data(), piece.size())) sum.Add(piece.data(), count);
  hash = sum.Hex();
  return file.ReadError() == 0;
}

}  // namespace

bool IsOwnCollection(const std::string& path) {
  CFile file;
  std::string text(kPiece, '\0');
  if (!file.Open(path, platform::EOpenMode::ReadShared)) return false;
  text.resize(file.Read(text.data(), text.size()));
  return text.find("\"carvello:recorder\"") != std::string::npos;
}

bool WriteSigMfCollection(const std::string& path, const CRecordingSet& recording, const SCutReport& report,
                          bool replace, std::string& error) {
  std::vector<std::pair<std::string, std::string>> streams;
  for (const SCutOutput& output : report.outputs) {
    if (!output.result.bOk) continue;
    const std::size_t before = streams.size();
    bool isPair = false;
    for (const std::string& file : output.result.files) {
      isPair = isPair || file.ends_with(kSigMfDataExtension);
      if (!file.ends_with(kSigMfMetaExtension)) continue;
      std::string hash;
      if (!HashFile(file, hash)) {
        error = "--collection: " + file + ": " + SystemErrorText();
        return false;
      }
      const std::string name = platform::NameOf(file);
      streams.emplace_back(name.substr(0, name.size() - std::string_view(kSigMfMetaExtension).size()), hash);
    }
    if (isPair && streams.size() == before) {
      error = "--collection: " + output.result.strFileName + ": its meta file cannot be read";
      return false;
    }
  }
  if (streams.empty()) return true;
  const std::string input = recording.files.empty() ? "" : platform::NameOf(recording.files.front().strPath);
  const std::string text = BuildSigMfCollection("Cut from " + input, streams);
  if (WriteWholeFile(path, text.data(), text.size(), replace, error)) return true;
  error.insert(0, "--collection: ");
  return false;
}

}  // namespace carvello
