// Any bytes as the files of a recording, one after the other with a mark between them: the analysis of the set and what
// is told of it. No file holds more than it has, and no text moves a terminal's cursor.
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <optional>

#include "cli/info_report.h"
#include "engine/recording_input.h"
#include "fuzz_checks.h"

using namespace carvello;

namespace {

constexpr std::string_view kMark = "<<<next file>>>";
constexpr std::size_t kMostFiles = 4;

// A folder in memory where there is one, removed at the end.
class CFolder {
 public:
  CFolder() {
    const char* const base = std::filesystem::exists("/dev/shm") ? "/dev/shm" : "/tmp";
    std::string path = std::string(base) + "/carvello-fuzz-XXXXXX";
    fuzz::Require(mkdtemp(path.data()) != nullptr);
    m_path = path;
  }
  ~CFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
  }
  CFolder(const CFolder&) = delete;
  CFolder& operator=(const CFolder&) = delete;

  // The names that the program itself gives to the files of a set.
  std::string Path(std::size_t index) const { return (m_path / Format("rec %03zu.wav", index)).string(); }

  void Fill(std::string_view bytes) const {
    for (std::size_t i = 0; i < kMostFiles; ++i) {
      const std::size_t end = bytes.find(kMark);
      if (i > 0 && bytes.empty()) {
        std::filesystem::remove(Path(i));
        continue;
      }
      const std::string_view content = bytes.substr(0, end);
      std::ofstream(Path(i), std::ios::binary | std::ios::trunc)
          .write(content.data(), static_cast<std::streamsize>(content.size()));
      bytes.remove_prefix(end == std::string_view::npos ? bytes.size() : end + kMark.size());
    }
  }

 private:
  std::filesystem::path m_path;
};

void Tell(const SRecordingInput& input, std::size_t count) {
  const CRecordingSet& set = input.recording;
  fuzz::Require(!set.files.empty() && set.files.size() <= kMostFiles && set.nSampleRate > 0);
  std::int64_t bytes = 0;
  for (const SRecordingFile& file : set.files) {
    fuzz::Require(file.nDataBytes >= 0 && file.nSampleBytes >= 0);
    bytes += file.nSampleBytes;
  }
  fuzz::Require(bytes <= static_cast<std::int64_t>(count));
  fuzz::RequirePrintable(InfoText(set, input.infoTexts), true);
  const std::string json = PrintableJson(InfoJson(set, input.infoTexts));
  fuzz::RequirePrintable(json, true);
  fuzz::Require(nlohmann::json::parse(json)["fileCount"] == set.files.size());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
  static const CFolder folder;
  folder.Fill(fuzz::Text(bytes, count));
  SRecordingInput input;
  std::string error;
  if (ReadRecordingInput(folder.Path(0), input, error)) {
    Tell(input, count);
  } else {
    fuzz::Require(error.find("rec 000.wav") != std::string::npos);
  }
  return 0;
}
