#include "cli/synth_sigmf.h"

#include <algorithm>
#include <cstddef>
#include <string_view>

#include "support/json_text.h"
#include "support/platform.h"
#include "support/sha2.h"
#include "support/system_time.h"
#include "support/text.h"

namespace carvello {
namespace {

constexpr const char* kData = ".sigmf-data";
constexpr const char* kMeta = ".sigmf-meta";
constexpr const char* kArchive = ".sigmf";
constexpr const char* kCollection = ".sigmf-collection";
constexpr const char* kVersion = "1.2.5";
constexpr const char* kRecorder = "Carvello synth";
constexpr std::size_t kTarBlock = 512;
constexpr std::size_t kTarName = 100;
constexpr std::size_t kTarPrefix = 155;

bool EndsWith(const std::string& path, const char* ending) {
  return ToLowerAscii(path).ends_with(ending);
}

std::string StemOf(const std::string& path) {
  return path.substr(0, path.rfind('.'));
}

// To the nanosecond, cut off.
std::string DateTime(std::int64_t start, std::int64_t frame, std::uint32_t rate) {
  const std::int64_t nanoseconds = frame % rate * 1'000'000'000 / rate;
  return FormatUtc("%Y-%m-%dT%H:%M:%S", start + frame / rate) + Format(".%09lldZ", static_cast<long long>(nanoseconds));
}

std::vector<SSynthLoss> Losses(const SSynthFacts& facts, const SSynthCaptures& captures) {
  std::vector<SSynthLoss> losses;
  for (std::int64_t i = 1; i < captures.nCount; ++i) {
    losses.push_back({facts.nFrames / captures.nCount * i, captures.nLost});
  }
  return losses;
}

void AddCapture(CJsonText& json, const SSynthFacts& facts, std::int64_t frame, std::int64_t lost) {
  json.BeginObject();
  json.Member("core:sample_start", frame);
  json.Member("core:global_index", facts.nFirstFrame + frame + lost);
  json.Member("core:frequency", facts.nCentre);
  json.Member("core:datetime", DateTime(facts.tStart, facts.nFirstFrame + frame + lost, facts.nSampleRate));
  json.EndObject();
}

std::string MetaText(const SSynthFacts& facts, const std::vector<SSynthLoss>& losses) {
  CJsonText json;
  json.BeginObject();
  json.Key("global");
  json.BeginObject();
  json.Member("core:datatype", SampleKindName(facts.kind));
  json.Member("core:version", kVersion);
  json.Member("core:sample_rate", facts.nSampleRate);
  json.Member("core:recorder", kRecorder);
  json.Member("core:description", "Made-up signals");
  json.EndObject();
  json.Key("captures");
  json.BeginArray();
  std::int64_t lost = 0;
  AddCapture(json, facts, 0, lost);
  for (const SSynthLoss& loss : losses) AddCapture(json, facts, loss.nFrame, lost += loss.nLost);
  json.EndArray();
  json.Key("annotations");
  json.BeginArray();
  json.EndArray();
  json.EndObject();
  return json.Document();
}

// Octal digits, and beyond what they hold the number's bytes behind a set bit.
std::string TarNumber(std::int64_t value, int digits) {
  if (value >> 3 * digits == 0) return Format("%0*llo", digits, static_cast<long long>(value)) + '\0';
  std::string bytes(static_cast<std::size_t>(digits) + 1, '\0');
  for (std::size_t i = bytes.size(); value != 0; value >>= 8) bytes[--i] = static_cast<char>(value & 0xFF);
  bytes[0] = static_cast<char>(0x80);
  return bytes;
}

// The head of an ordinary file in an archive.
std::string TarHead(const std::string& folder, const std::string& name, std::int64_t bytes, std::int64_t time) {
  std::string head(kTarBlock, '\0');
  const auto put = [&head](std::size_t offset, std::string_view text) {
    std::copy(text.begin(), text.end(), head.begin() + static_cast<std::ptrdiff_t>(offset));
  };
  put(0, name);
  put(100, TarNumber(0644, 7));
  put(108, TarNumber(0, 7));
  put(116, TarNumber(0, 7));
  put(124, TarNumber(bytes, 11));
  put(136, TarNumber(time, 11));
  put(148, std::string(8, ' '));
  put(156, "0");
  put(257, std::string_view("ustar\0"
                            "00",
                            8));
  put(345, folder);
  std::int64_t sum = 0;
  for (const char c : head) sum += static_cast<unsigned char>(c);
  put(148, TarNumber(sum, 6));
  return head;
}

std::string TarPadding(std::int64_t bytes) {
  const std::size_t over = static_cast<std::size_t>(bytes) % kTarBlock;
  return std::string(over == 0 ? 0 : kTarBlock - over, '\0');
}

}  // namespace

std::optional<ESynthSigMf> SynthSigMfOf(const std::string& path) {
  if (EndsWith(path, kData) || EndsWith(path, kMeta)) return ESynthSigMf::Pair;
  if (EndsWith(path, kArchive)) return ESynthSigMf::Archive;
  if (EndsWith(path, kCollection)) return ESynthSigMf::Collection;
  return std::nullopt;
}

bool FitsArchive(const std::string& path) {
  const std::string stem = StemOf(platform::NameOf(path));
  return stem.size() + std::string_view(kData).size() <= kTarName && stem.size() <= kTarPrefix;
}

SSynthFile LayOutSigMf(const SSynthFacts& facts, const SSynthCaptures& captures, const std::string& path) {
  SSynthFile file;
  file.kind = facts.kind;
  file.nFrames = facts.nFrames;
  file.losses = Losses(facts, captures);
  const std::string meta = MetaText(facts, file.losses);
  if (SynthSigMfOf(path) != ESynthSigMf::Archive) {
    file.strPath = StemOf(path) + kData;
    file.describing = {{StemOf(path) + kMeta, meta}};
    return file;
  }
  file.strPath = path;
  const std::string name = StemOf(platform::NameOf(path));
  file.head = [facts, meta, name](std::int64_t frames) {
    const auto metaBytes = static_cast<std::int64_t>(meta.size());
    return TarHead(name, name + kMeta, metaBytes, facts.tStart) + meta + TarPadding(metaBytes) +
           TarHead(name, name + kData, frames * facts.kind.FrameBytes(), facts.tStart);
  };
  file.tail = [facts](std::int64_t frames) {
    return TarPadding(frames * facts.kind.FrameBytes()) + std::string(2 * kTarBlock, '\0');
  };
  return file;
}

SSynthText LayOutCollection(const std::string& path, const std::vector<SSynthFile>& files) {
  CJsonText json;
  json.BeginObject();
  json.Key("collection");
  json.BeginObject();
  json.Member("core:version", kVersion);
  json.Member("core:description", "Made-up signals");
  json.Key("core:streams");
  json.BeginArray();
  for (const SSynthFile& file : files) {
    const SSynthText& meta = file.describing.front();
    CSha512 sum;
    sum.Add(meta.strText.data(), meta.strText.size());
    json.BeginArray();
    json.Add(StemOf(platform::NameOf(meta.strPath)));
    json.Add(sum.Hex());
    json.EndArray();
  }
  json.EndArray();
  json.EndObject();
  json.EndObject();
  return {path, json.Document()};
}

}  // namespace carvello
