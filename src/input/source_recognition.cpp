#include "input/source_recognition.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "input/auxi_block.h"
#include "input/calendar_time.h"
#include "input/file_name_source.h"
#include "input/format_chunk.h"
#include "input/signal_info_source.h"
#include "support/text.h"

namespace carvello {

namespace {

bool IsXml(const std::string& auxi) {
  constexpr std::string_view kXmlStart("<\0?\0x\0m\0l\0", 10);
  return std::string_view(auxi).substr(0, kXmlStart.size()) == kXmlStart;
}

#pragma pack(push, 1)
struct SRcvr {
  std::uint32_t nCentreFrequency = 0;
  std::uint32_t nRateIndex = 0;
  std::int64_t tStart = 0;
  std::array<std::uint8_t, 18> rest{};
};
#pragma pack(pop)
static_assert(sizeof(SRcvr) == 34);

// The last two are out of order, as the receiver numbers them.
constexpr std::array<std::uint32_t, 6> kPerseusRates = {125'000, 250'000, 500'000, 1'000'000, 2'000'000, 1'600'000};
constexpr std::uint32_t kPerseusClock = 80'000'000;

}  // namespace

void RecogniseSource(const SSourceEvidence& evidence, SScanResult& result) {
  const bool xml = IsXml(evidence.strAuxi);
  if (xml) result.strXml = Utf16ToUtf8(Utf16FromLittleEndian(evidence.strAuxi));

  const WAVEFORMATEXTENSIBLE& format = result.format;
  const std::int64_t dataBytes = result.nDataBytes;
  RecordingSourceInfo& source = result.source;
  const bool signalInfo = RecogniseSignalInfo(evidence.strMeta, dataBytes, format, source);
  if (!evidence.strAuxi.empty() && !xml) {
    RecogniseAuxi(evidence.strFileName, evidence.strAuxi, evidence.bElad, dataBytes, format, source, evidence.tCreated);
  }
  if (!evidence.strRcvr.empty()) RecognisePerseus(evidence.strRcvr, dataBytes, format, source);

  const bool nameAlone = evidence.strAuxi.empty() && evidence.strRcvr.empty() && !signalInfo;
  if (nameAlone && format.Format.nSamplesPerSec > 0 && format.Format.nChannels > 0) {
    RecogniseAuxi(evidence.strFileName, {}, evidence.bElad, dataBytes, format, source, evidence.tCreated);
  }
}

bool RecogniseAuxi(const std::string& fileName, std::string_view auxi, bool elad, std::int64_t dataBytes,
                   const WAVEFORMATEXTENSIBLE& format, RecordingSourceInfo& source,
                   std::optional<std::int64_t> created) {
  RecordingSourceInfo found;
  found.format = format.Format;
  found.nDataBytes = dataBytes;
  if (!ReadAuxiBlock(auxi, elad, found)) {
    if (!ReadFileName(fileName, created, found)) return false;
    if (!auxi.empty()) found.strNote = Format("its auxi chunk of %zu bytes is of no known program", auxi.size());
  }

  // Whatever stop time was reckoned with, the record's duration is by the format's own bytes per second.
  const double bytesPerSecond =
      format.Format.nAvgBytesPerSec > 0 ? format.Format.nAvgBytesPerSec : BytesPerSecond(format.Format);
  found.dDuration = bytesPerSecond > 0 ? static_cast<double>(dataBytes) / bytesPerSecond : 0;
  source = found;
  return true;
}

bool RecognisePerseus(std::string_view rcvr, std::int64_t dataBytes, const WAVEFORMATEXTENSIBLE& format,
                      RecordingSourceInfo& source) {
  SRcvr block;
  std::memcpy(&block, rcvr.data(), std::min(rcvr.size(), sizeof(block)));

  RecordingSourceInfo found;
  found.strSourceName = kSourcePerseus;
  found.format = format.Format;
  found.nDataBytes = dataBytes;
  found.nCentreFrequency = block.nCentreFrequency;
  found.nADFrequency = kPerseusClock;
  found.nBandwidth =
      block.nRateIndex < kPerseusRates.size() ? kPerseusRates[block.nRateIndex] : format.Format.nSamplesPerSec;
  found.start = UtcSystemTime(block.tStart, "start time of the rcvr chunk");
  const double bytesPerSecond = format.Format.wBitsPerSample / 8.0 * found.nBandwidth * 2;
  found.dDuration = bytesPerSecond > 0 ? static_cast<double>(dataBytes) / bytesPerSecond : 0;
  found.stop = AddSeconds(found.start, found.dDuration);
  source = found;
  return true;
}

}  // namespace carvello
