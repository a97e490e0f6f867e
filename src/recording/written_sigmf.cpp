#include "recording/written_sigmf.h"

#include <nlohmann/json.hpp>
#include <string_view>
#include <vector>

#include "recording/sigmf_writer.h"
#include "support/platform.h"

namespace carvello {

namespace {

using Json = nlohmann::json;

constexpr std::int64_t kLargestMeta = 1 << 20;  // the program writes some kilobytes
constexpr std::uint16_t kChannels = 2;

// Takes what is looked for as the parser comes upon it; nothing else is held in memory.
class CMetaHandler : public nlohmann::json_sax<Json> {
 public:
  explicit CMetaHandler(SWrittenSigMf& found) : m_found(found) {}

  bool IsOurs() const { return m_bOurs; }
  const std::string& DataType() const { return m_strDataType; }
  bool HasHash() const { return m_bHash; }
  const std::string& Dataset() const { return m_strDataset; }

  bool null() override { return true; }
  bool boolean(bool /*value*/) override { return true; }
  bool number_integer(number_integer_t value) override { return Number(value); }
  bool number_unsigned(number_unsigned_t value) override { return Number(static_cast<std::int64_t>(value)); }
  bool number_float(number_float_t /*value*/, const string_t& /*text*/) override { return true; }
  bool string(string_t& value) override {
    if (Is("global", "core:datatype")) m_strDataType = value;
    if (Is("global", "core:sha512")) m_bHash = true;
    if (Is("global", "core:dataset")) m_strDataset = value;
    return true;
  }
  bool binary(binary_t& /*value*/) override { return true; }
  bool key(string_t& key) override {
    m_strKey = std::move(key);
    if (m_nDepth == 1) m_strTop = m_strKey;
    if (Is("global", "carvello:source")) m_bOurs = true;
    return true;
  }
  bool start_object(std::size_t /*elements*/) override { return Enter(); }
  bool end_object() override { return Leave(); }
  bool start_array(std::size_t /*elements*/) override { return Enter(); }
  bool end_array() override { return Leave(); }
  bool parse_error(std::size_t /*position*/, const std::string& /*token*/, const Json::exception& /*error*/) override {
    return false;
  }

 private:
  // In the object "global", or in one of the list "captures".
  bool Is(const char* top, const char* key) const {
    return m_nDepth == (m_strTop == "captures" ? 3U : 2U) && m_strTop == top && m_strKey == key;
  }
  bool Number(std::int64_t value) {
    if (Is("global", "core:sample_rate")) m_found.file.format.nSamplesPerSec = static_cast<std::uint32_t>(value);
    if (Is("global", "carvello:sample_count")) m_found.frames = value;
    if (m_bOurs && m_nDepth == 3 && m_strTop == "global" && m_strKey == "asked_start") m_found.tAsked = value;
    if (Is("captures", "core:frequency")) m_found.nFrequency = value;
    return true;
  }
  bool Enter() {
    ++m_nDepth;
    return m_nDepth < 16;
  }
  bool Leave() {
    --m_nDepth;
    return true;
  }

  SWrittenSigMf& m_found;
  std::size_t m_nDepth = 0;
  std::string m_strTop;
  std::string m_strKey;
  std::string m_strDataType;
  std::string m_strDataset;
  bool m_bOurs = false;
  bool m_bHash = false;
};

// Nothing, with LastError() or without, where it cannot be had.
std::optional<std::string> ReadMeta(const std::string& path, EWrittenState& state) {
  CFile file;
  state = EWrittenState::Unreadable;
  if (!file.Open(path, platform::EOpenMode::ReadShared)) return std::nullopt;
  const std::int64_t length = file.Length();
  if (length > kLargestMeta) state = EWrittenState::Foreign;
  if (length < 0 || length > kLargestMeta) return std::nullopt;
  std::string text(static_cast<std::size_t>(length), '\0');
  if (!file.ReadExactly(text.data(), text.size())) return std::nullopt;
  return text;
}

// Whether a meta file tells of another file of samples, which stands beside this one.
bool IsOfAnother(const std::string& dataPath, const std::string& dataset) {
  const std::string metaPath = SigMfMetaPath(dataPath);
  const std::string stem = metaPath.substr(0, metaPath.size() - std::string_view(kSigMfMetaExtension).size());
  const std::string described =
      dataset.empty() ? stem + kSigMfDataExtension : platform::JoinPath(platform::FolderOf(dataPath), dataset);
  return !platform::FileNamesEqual(platform::NameOf(described), platform::NameOf(dataPath)) &&
         (platform::GetNameStatus(described) || !platform::MeansMissing(platform::LastError()));
}

void FillFormat(WAVEFORMATEX& format, bool isFloat) {
  format.wFormatTag = isFloat ? kFormatTagFloat : kFormatTagPcm;
  format.nChannels = kChannels;
  format.wBitsPerSample = isFloat ? 32 : 16;
  format.nBlockAlign = static_cast<std::uint16_t>(format.wBitsPerSample / 8 * kChannels);
  format.nAvgBytesPerSec = format.nBlockAlign * format.nSamplesPerSec;
}

}  // namespace

SWrittenSigMf InspectWrittenSigMf(const std::string& dataPath) {
  SWrittenSigMf found;
  const std::string metaPath = SigMfMetaPath(dataPath);
  const auto data = platform::GetFileStatus(dataPath);
  if (!data && !platform::MeansMissing(platform::LastError())) return found;
  const std::int64_t bytes = data ? data->nSize : 0;
  if (!platform::GetFileStatus(metaPath)) {
    if (!platform::MeansMissing(platform::LastError())) return found;
    if (data) found.file.state = bytes == 0 ? EWrittenState::Unfinished : EWrittenState::Foreign;
    return found;
  }
  const std::optional<std::string> text = ReadMeta(metaPath, found.file.state);
  if (!text) return found;
  if (text->empty()) {
    found.file.state = bytes == 0 ? EWrittenState::Unfinished : EWrittenState::Foreign;
    return found;
  }
  CMetaHandler handler(found);
  const bool read = Json::sax_parse(*text, &handler);
  const bool isFloat = handler.DataType() == "cf32_le";
  if (!read || !handler.IsOurs() || IsOfAnother(dataPath, handler.Dataset()) ||
      (!isFloat && handler.DataType() != "ci16_le")) {
    found.file.state = EWrittenState::Foreign;
    return found;
  }
  FillFormat(found.file.format, isFloat);
  found.file.nDataBytes = bytes - bytes % found.file.format.nBlockAlign;
  const bool finished = handler.HasHash() && found.frames && *found.frames * found.file.format.nBlockAlign == bytes;
  found.file.state = finished ? EWrittenState::Finished : EWrittenState::Unfinished;
  return found;
}

}  // namespace carvello
