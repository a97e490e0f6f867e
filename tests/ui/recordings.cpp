#include "ui/recordings.h"

#include <filesystem>

#include "recording/layout.h"
#include "support/sparse_file.h"
#include "support/temp_folder.h"
#include "support/text.h"

namespace carvello::test {

namespace {

std::string Chunk(const std::string& identifier, const std::string& body) {
  return identifier + Le32(body.size()) + body;
}

}  // namespace

void WriteRecording(const std::string& path, const SRecordingSpec& spec) {
  const std::uint32_t frameBytes = spec.nBitsPerSample / 8 * 2;
  const std::uint32_t bytesPerSecond = spec.nSampleRate * frameBytes;
  const auto dataBytes = static_cast<std::uint64_t>(spec.nSeconds) * bytesPerSecond;
  const std::string name = Utf8Of(PathOf(path).filename());
  const std::string xml = Format(
      "<?xml version=\"1.0\"?><SDR-XML-Root><Definition XMLLevel=\"XMLLevel003\" FirstFile=\"%s\" Filename=\"%s\" "
      "RadioModel=\"Test Radio\" RadioSerial=\"SN-0042\" ADFrequency=\"122880000\" BitsPerSample=\"%u\" "
      "BytesPerSecond=\"%u\" RadioCenterFreq=\"%lld\" SampleRate=\"%u\" UTCSeconds=\"%lld\" /></SDR-XML-Root>",
      (spec.strFirstFile.empty() ? name : spec.strFirstFile).c_str(), name.c_str(), spec.nBitsPerSample, bytesPerSecond,
      static_cast<long long>(spec.nCentre), spec.nSampleRate, static_cast<long long>(spec.tStart));
  const std::string chunks = Chunk("fmt ", Le16(1) + Le16(2) + Le32(spec.nSampleRate) + Le32(bytesPerSecond) +
                                               Le16(frameBytes) + Le16(spec.nBitsPerSample)) +
                             Chunk("auxi", Utf16Bytes(xml) + std::string(2, '\0')) + "data" + Le32(dataBytes);
  WriteWholeFile(path, "RIFF" + Le32(4 + chunks.size() + dataBytes) + "WAVE" + chunks);
  ExtendFile(path, 12 + chunks.size() + dataBytes);
}

}  // namespace carvello::test
