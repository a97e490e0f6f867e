#include "input/container_raw.h"

#include <charconv>
#include <limits>
#include <string_view>

#include "support/platform.h"
#include "support/text.h"

namespace carvello {

namespace {

constexpr std::size_t kMostNotes = 4096;  // bytes of a PortaPack text; they have some 60

// The number behind "key=" at the begin of a line.
std::optional<std::int64_t> NumberOf(std::string_view text, std::string_view key) {
  for (std::size_t line = 0; line < text.size();) {
    const std::size_t end = std::min(text.find('\n', line), text.size());
    std::string_view rest = text.substr(line, end - line);
    line = end + 1;
    if (!rest.starts_with(key) || rest.substr(key.size(), 1) != "=") continue;
    rest.remove_prefix(key.size() + 1);
    std::int64_t number = 0;
    const auto read = std::from_chars(rest.data(), rest.data() + rest.size(), number);
    if (read.ec == std::errc() && number >= 0) return number;
  }
  return std::nullopt;
}

// The text that a PortaPack leaves beside its .C16 and .C8 files.
void ReadPortaPackText(const std::string& path, SForeignFile& found) {
  const std::string stem = path.substr(0, path.rfind('.'));
  for (const char* const ending : {".TXT", ".txt"}) {
    CFile file;
    const auto status = platform::GetFileStatus(stem + ending);
    if (!status || !status->bRegular || !file.Open(stem + ending, platform::EOpenMode::ReadShared)) continue;
    std::string text(kMostNotes, '\0');
    text.resize(file.Read(text.data(), text.size()));
    found.nError = file.FirstError();
    const std::optional<std::int64_t> rate = NumberOf(text, "sample_rate");
    const std::optional<std::int64_t> centre = NumberOf(text, "center_frequency");
    if (rate && *rate > 0 && *rate <= std::numeric_limits<std::uint32_t>::max()) {
      found.nSampleRate = static_cast<std::uint32_t>(*rate);
    }
    if (centre) found.nCentre = centre;
    if (rate || centre) {
      found.strSource = "PortaPack";
      return;
    }
  }
}

}  // namespace

bool ReadRaw(CFile& file, const std::string& path, bool isGiven, SForeignFile& found) {
  const std::string name = platform::NameOf(path);
  const SRawEnding ending = ReadRawEnding(name);
  if (!ending.bRaw && !isGiven) return false;
  found.strSource = "Raw";
  found.strContainer = "raw";
  found.kind = ending.kind;
  found.nDataBytes = file.Length();
  if (const std::optional<SNameFacts> facts = ReadRecordingName(name)) {
    found.strSource = facts->pszProgram;
    found.nCentre = facts->nCentre;
    found.nSampleRate = facts->nSampleRate;
    found.zonedStart = facts->time;
    found.zone = facts->zone;
    if (!found.kind) found.kind = facts->kind;
    return true;
  }
  const SNameNumbers numbers = ReadNameNumbers(name);
  found.nCentre = numbers.nCentre;
  found.nSampleRate = numbers.nSampleRate;
  const std::string lower = ToLowerAscii(name);
  if (lower.ends_with(".c16") || lower.ends_with(".c8")) ReadPortaPackText(path, found);
  return true;
}

}  // namespace carvello
