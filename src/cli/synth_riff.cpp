#include "cli/synth_riff.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "recording/riff_bytes.h"
#include "support/system_time.h"
#include "support/text.h"

namespace carvello {
namespace {

constexpr std::int64_t kClock = 122'880'000;  // Hz, of the converter
constexpr std::uint16_t kPcm = 1;
constexpr std::uint16_t kFloat = 3;

void Add16(std::string& bytes, std::int64_t value) {
  AppendLittleEndian(bytes, static_cast<std::uint16_t>(value));
}

void Add32(std::string& bytes, std::int64_t value) {
  AppendLittleEndian(bytes, static_cast<std::uint32_t>(value));
}

std::string Chunk(const char* identifier, std::string body, std::size_t size) {
  body.resize(size, '\0');
  return RiffChunk(identifier, body);
}

using Calendar = std::string (*)(const char* format, std::int64_t seconds);

// A calendar record of Windows. The last second of a recording need not be whole.
void AddCalendar(std::string& bytes, Calendar calendar, std::int64_t seconds, std::int64_t milliseconds) {
  for (const char* const field : {"%Y", "%m", "%w", "%d", "%H", "%M", "%S"}) {
    Add16(bytes, std::stoi(calendar(field, seconds)));
  }
  Add16(bytes, milliseconds);
}

std::string Start(const SSynthFacts& facts, Calendar calendar) {
  std::string bytes;
  AddCalendar(bytes, calendar, facts.tStart, 0);
  return bytes;
}

std::string Auxi(const SSynthFacts& facts, std::size_t size, Calendar calendar) {
  std::string body = Start(facts, calendar);
  const std::int64_t seconds = facts.nFrames / facts.nSampleRate;
  AddCalendar(body, calendar, facts.tStart + seconds, facts.nFrames % facts.nSampleRate * 1000 / facts.nSampleRate);
  Add32(body, facts.nCentre);
  Add32(body, kClock);
  return Chunk("auxi", body, size);
}

// As text of 16-bit characters with a zero behind it.
std::string Halvarn(const SSynthFacts& facts, const std::string& level) {
  const std::string text = Format(
      "<?xml version=\"1.0\"?><SDR-XML-Root Description=\"Saved recording data\"><Definition "
      "SoftwareName=\"Carvello synth\" RadioModel=\"Carvello synth\" XMLLevel=\"%s\" FirstFile=\"%s\" "
      "BitsPerSample=\"%u\" "
      "BytesPerSecond=\"%lld\" RadioCenterFreq=\"%lld\" SampleRate=\"%u\" UTCSeconds=\"%lld\"/></SDR-XML-Root>",
      level.c_str(), facts.strFileName.c_str(), facts.kind.nBits,
      static_cast<long long>(facts.nSampleRate) * facts.kind.FrameBytes(), static_cast<long long>(facts.nCentre),
      facts.nSampleRate, static_cast<long long>(facts.tStart));
  std::string body;
  for (const char c : text) Add16(body, c);
  Add16(body, 0);
  return RiffChunk("auxi", body);
}

std::string FormatBody(const SSynthFacts& facts) {
  const std::uint32_t frame = facts.kind.FrameBytes();
  std::string body;
  Add16(body, facts.kind.number == ENumber::Float ? kFloat : kPcm);
  Add16(body, 2);
  Add32(body, facts.nSampleRate);
  Add32(body, std::int64_t{facts.nSampleRate} * frame);
  Add16(body, frame);
  Add16(body, facts.kind.nBits);
  return body;
}

// `behind`: bytes of the file behind the format.
std::string RiffHead(const SSynthFacts& facts, std::int64_t behind) {
  const std::string format = RiffChunk("fmt ", FormatBody(facts));
  std::string head = "RIFF";
  Add32(head, 4 + static_cast<std::int64_t>(format.size()) + behind);
  return head + "WAVE" + format;
}

// By which GPS is ahead of UTC.
std::int64_t LeapSeconds(std::int64_t seconds) {
  constexpr std::array<std::int64_t, 3> kSteps = {1'341'100'800, 1'435'708'800, 1'483'228'800};
  return 15 + std::count_if(kSteps.begin(), kSteps.end(), [seconds](std::int64_t step) { return seconds >= step; });
}

}  // namespace

std::string HalvarnChunk(const SSynthFacts& facts) {
  return Halvarn(facts, "");
}

std::string Halvarn2Chunk(const SSynthFacts& facts) {
  return Halvarn(facts, "XMLLevel002");
}

std::string Halvarn3Chunk(const SSynthFacts& facts) {
  return Halvarn(facts, "XMLLevel003");
}

std::string Auxi28(const SSynthFacts& facts) {
  std::string body = Start(facts, FormatUtc);
  Add32(body, facts.nCentre);
  Add32(body, kClock);
  return Chunk("auxi", body, 28);
}

std::string Auxi44(const SSynthFacts& facts) {
  return Auxi(facts, 44, FormatUtc);
}

std::string Auxi68(const SSynthFacts& facts) {
  return Auxi(facts, 68, FormatLocal);
}

std::string Auxi72(const SSynthFacts& facts) {
  return Auxi(facts, 72, FormatUtc);
}

std::string Auxi164(const SSynthFacts& facts) {
  return Auxi(facts, 164, FormatUtc);
}

std::string LocalAuxi164(const SSynthFacts& facts) {
  return Auxi(facts, 164, FormatLocal);
}

std::string EladChunks(const SSynthFacts& facts) {
  return Chunk("elad", "", 20) + Auxi164(facts);
}

std::string RcvrChunk(const SSynthFacts& facts) {
  // What stands for a rate that the receiver does not have lies behind the last of them.
  constexpr std::array<std::uint32_t, 6> kRates = {125'000, 250'000, 500'000, 1'000'000, 2'000'000, 1'600'000};
  std::string body;
  Add32(body, facts.nCentre);
  Add32(body, std::find(kRates.begin(), kRates.end(), facts.nSampleRate) - kRates.begin());
  AppendLittleEndian(body, static_cast<std::uint64_t>(facts.tStart));
  return Chunk("rcvr", body, 34);
}

std::string SignalInfoChunk(const SSynthFacts& facts) {
  return RiffChunk(
      "meta", Format("<?xml version='1.0' encoding='UTF-8'?>\r\n"
                     "<signalinfo xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\"><bandwidth>%u.000</bandwidth>"
                     "<data_type>complex</data_type><if_frequency>0</if_frequency>"
                     "<rf_frequency>%lld.000</rf_frequency><sample_rate>%u.000</sample_rate>"
                     "<signaltime>%s</signaltime></signalinfo>",
                     facts.nSampleRate, static_cast<long long>(facts.nCentre), facts.nSampleRate,
                     FormatUtc("%Y-%m-%dT%H:%M:%S.000Z", facts.tStart).c_str()));
}

std::string WaveHead(const SSynthFacts& facts, const std::string& chunks) {
  const std::int64_t dataBytes = facts.nFrames * facts.kind.FrameBytes();
  std::string head = RiffHead(facts, static_cast<std::int64_t>(chunks.size()) + 8 + dataBytes) + chunks + "data";
  Add32(head, dataBytes);
  return head;
}

std::string KiwiHead(const SSynthFacts& facts) {
  constexpr std::int64_t kBlockHead = 8 + 10 + 8;
  const std::int64_t blocks = (facts.nFrames + kKiwiFrames - 1) / kKiwiFrames;
  return RiffHead(facts, blocks * kBlockHead + facts.nFrames * facts.kind.FrameBytes());
}

std::string KiwiBlockHead(const SSynthFacts& facts, std::int64_t first, std::int64_t frames) {
  constexpr std::int64_t kGpsEpoch = 315'964'800;
  constexpr std::int64_t kWeek = 604'800;
  constexpr std::int64_t kNanoseconds = 1'000'000'000;
  const std::int64_t gps = facts.tStart - kGpsEpoch + LeapSeconds(facts.tStart) + first / facts.nSampleRate;
  std::string body(2, '\0');  // a fix of this very second
  Add32(body, gps % kWeek);
  Add32(body, first % facts.nSampleRate * kNanoseconds / facts.nSampleRate);
  std::string head = RiffChunk("kiwi", body) + "data";
  Add32(head, frames * facts.kind.FrameBytes());
  return head;
}

}  // namespace carvello
